// SPDX-License-Identifier: MIT
// Environments in text files.
#include <algorithm>
#include <limits>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/reader.hpp"
#include "env/report.hpp"
#include "env/writer.hpp"
#include "memory/owned.hpp"
#include "platform/text_stream.hpp"

namespace kv::env {

namespace {

// The buffer of a file: smaller when memory is short.
class FileBuffer {
  public:
    FileBuffer() {
        constexpr std::uint32_t kUsual = 30000;
        constexpr std::uint32_t kSmallest = 2;
        for (size_ = kUsual; !allocate() && size_ > kSmallest;) size_ = size_ / 2 + 1;
        if (block_ == nullptr) throw std::bad_alloc();
    }

    char *data() { return block_.get(); }
    std::size_t size() const { return size_; }

  private:
    bool allocate() {
        block_.reset(static_cast<char *>(heap_calloc(size_, 1)));
        return block_ != nullptr;
    }

    memory::Owned<char> block_;
    std::uint32_t size_;
};

class FileSource : public Source {
  public:
    explicit FileSource(platform::TextReader &file) : file_(file) {}

    bool refill() override {
        const std::size_t count = file_.read(buffer_.data(), buffer_.size());
        position = buffer_.data();
        end = position + count;
        return count > 0;
    }
    bool complete() const override { return !file_.failed(); }

  private:
    platform::TextReader &file_;
    FileBuffer buffer_;
};

class FileSink : public Sink {
  public:
    explicit FileSink(platform::TextWriter &file) : file_(file) {}

    void put(const char *text, std::size_t size) override {
        while (size > buffer_.size() - held_) {
            const std::size_t room = buffer_.size() - held_;
            hold(text, room);
            flush();
            text += room;
            size -= room;
        }
        hold(text, size);
    }
    void flush() {
        file_.write(buffer_.data(), held_);  // a failure shows when the file is committed
        held_ = 0;
    }

  private:
    void hold(const char *text, std::size_t size) {
        std::copy(text, text + size, buffer_.data() + held_);
        held_ += size;
    }

    platform::TextWriter &file_;
    FileBuffer buffer_;
    std::size_t held_ = 0;
};

std::int32_t to_mtime(std::int64_t seconds) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(seconds, Limits::min(), Limits::max()));
}

void keep_modification_time(const platform::TextReader &file, ENV *env) {
    std::int64_t seconds = 0;
    if (!file.modification_time(seconds)) {
        kv_message("_fstat failed", nullptr, nullptr, kFiles, __LINE__);
    } else if (env->is_subenv()) {
        kv_message("Try to call 'env_core_set_mtime' for subenv", nullptr, nullptr, kCore, __LINE__);
    } else {
        env->mtime = to_mtime(seconds);
    }
}

// Files are opened and put in place without the lock of the environments: both may have to wait for other
// processes.
std::int32_t read_file(const char *file_name, ENV *env) {
    platform::TextReader file;
    if (!file.open(file_name)) {
        report("cann't open to read:", file_name, kFiles);
        return ENV_ERROR;
    }
    const Lock lock;
    const std::int32_t status = enter(env, [&] {
        FileSource source(file);
        return read_text(source, env);
    });
    if (file.failed()) report("cann't read:", file_name, kFiles);
    if (env != nullptr) keep_modification_time(file, env);
    return status;
}

std::int32_t write_file(const char *file_name, ENV *env) {
    platform::TextWriter file;
    if (!file.open(file_name)) {
        report("cann't open to write:", file_name, kFiles);
        return ENV_ERROR;
    }
    FileSink sink(file);
    enter(env, [&] {
        write_text(sink, env);
        return std::int32_t{ENV_OK};
    });
    sink.flush();
    if (file.commit()) return ENV_OK;
    report("cann't write:", file_name, kFiles);
    return ENV_ERROR;
}

}  // namespace

}  // namespace kv::env

int32_t env_read_file(const char *file_name, ENV *env) noexcept {
    return kv::env::read_file(file_name, env);
}

int32_t env_save_file(const char *file_name, ENV *env) noexcept {
    try {
        return kv::env::write_file(file_name, env);
    } catch (const std::bad_alloc &) {
        kv::env::report("out of space", file_name, kv::env::kFiles);
        return ENV_ERROR;
    }
}

void env_write_file(const char *file_name, ENV *env) noexcept {
    env_save_file(file_name, env);
}

int32_t env_get_file_mtime(ENV *env) noexcept {
    if (env == nullptr || env->is_subenv()) return kv::env::kNoTime;
    return env->mtime;
}

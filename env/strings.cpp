// SPDX-License-Identifier: MIT
// Environments in texts in memory.
#include <algorithm>
#include <cstring>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/reader.hpp"
#include "env/report.hpp"
#include "env/writer.hpp"
#include "memory/owned.hpp"

namespace {

class StringSource : public kv::env::Source {
  public:
    explicit StringSource(const char *text) : Source(kv::env::CarriageReturns::all) {
        position = text;
        end = text + std::strlen(text);
    }

    bool refill() override { return false; }
};

// A growing text with CR LF at its line ends; empty once the heap was exhausted.
class StringSink : public kv::env::Sink {
  public:
    explicit StringSink(uint32_t capacity)
        : text_(static_cast<char *>(heap_malloc(capacity))), capacity_(capacity) {}

    bool complete() const { return text_ != nullptr; }

    void put(const char *text, std::size_t size) override {
        while (size > 0) {
            if (*text == '\n') {
                add("\r\n", 2);
                ++text;
                --size;
                continue;
            }
            const void *line_end = std::memchr(text, '\n', size);
            const std::size_t plain =
                line_end != nullptr ? static_cast<std::size_t>(static_cast<const char *>(line_end) - text)
                                    : size;
            add(text, plain);
            text += plain;
            size -= plain;
        }
    }

    void put_line(const char *text, std::size_t size) override {
        add(text, size);
        add("\r\n", 2);
    }

    char *release() {
        if (text_ != nullptr) text_.get()[length_] = '\0';
        return text_.release();
    }

  private:
    void add(const char *text, std::size_t size) {
        if (text_ == nullptr || (size >= capacity_ - length_ && !grow(size))) return;
        std::memcpy(text_.get() + length_, text, size);
        length_ += static_cast<uint32_t>(size);
    }

    // By half, so that a long text is not copied for every few lines that it grows.
    bool grow(std::size_t size) {
        const uint64_t wanted = capacity_ + std::max<uint64_t>(capacity_ / 2, size + 1);
        auto *block = wanted <= UINT32_MAX
                          ? static_cast<char *>(heap_realloc(text_.get(), static_cast<uint32_t>(wanted)))
                          : nullptr;
        if (block == nullptr) {
            kv::env::report("Can not allocate buffer", nullptr, kv::env::kFiles);
            text_.reset();
            return false;
        }
        static_cast<void>(text_.release());  // realloc took it over
        text_.reset(block);
        capacity_ = static_cast<uint32_t>(wanted);
        return true;
    }

    kv::memory::Owned<char> text_;
    uint32_t capacity_;
    uint32_t length_ = 0;
};

}  // namespace

int32_t env_read_from_string(const char *text, ENV *env) noexcept {
    return kv::env::enter(env, [&] {
        StringSource source(text);
        return kv::env::read_text(source, env);
    });
}

char *env_write_to_string(ENV *env) noexcept {
    constexpr uint32_t kFirstCapacity = 30000;
    StringSink sink(kFirstCapacity);
    if (!sink.complete()) {
        kv::env::report("Can not allocate buffer", nullptr, kv::env::kFiles);
        return nullptr;
    }
    kv::env::enter(env, [&] {
        kv::env::write_text(sink, env);
        return std::int32_t{ENV_OK};
    });
    return sink.release();
}

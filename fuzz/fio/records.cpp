// SPDX-License-Identifier: MIT
// Handles on any content, checked against plain models: the header and typed values of binary files, and
// reading, writing and positions of text files.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

// The file lives in memory and is opened by its descriptor's name.
class MemoryFile {
  public:
    MemoryFile() : descriptor_(memfd_create("records", 0)) {
        KV_REQUIRE(descriptor_ >= 0);
        path_ = "/proc/self/fd/" + std::to_string(descriptor_);
    }
    const char *path() const { return path_.c_str(); }
    void set(const std::string &content) const {
        KV_REQUIRE(ftruncate(descriptor_, 0) == 0);
        KV_REQUIRE(pwrite(descriptor_, content.data(), content.size(), 0) ==
                   static_cast<ssize_t>(content.size()));
    }
    std::string content() const {
        std::string content(static_cast<size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
        KV_REQUIRE(pread(descriptor_, content.data(), content.size(), 0) ==
                   static_cast<ssize_t>(content.size()));
        return content;
    }

  private:
    int descriptor_;
    std::string path_;
};

const MemoryFile &file() {
    static const MemoryFile file;
    return file;
}

using kvfuzz::Input;

class Handle {
  public:
    explicit Handle(uint32_t flags) : handle_(fio_open(nullptr, file().path(), flags)) {
        KV_REQUIRE(handle_ != nullptr);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle() { KV_REQUIRE(fio_close(handle_) == 0); }
    operator FIO *() const { return handle_; }  // NOLINT(google-explicit-constructor)

  private:
    FIO *handle_;
};

struct BinaryModel {
    std::string_view content;
    size_t position = 0;
    int order = FIO_NOHEADER;

    explicit BinaryModel(std::string_view bytes) : content(bytes) {
        const std::string_view word = bytes.substr(0, std::min(bytes.substr(0, 8).find('\0'), size_t{8}));
        if (word.find("@kv") == word.npos && word.find("1.1") == word.npos) return;
        order = bytes.size() >= 16 && bytes.substr(8, 8) == "MOTOROLA" ? FIO_MOTOROLA : FIO_INTEL;
        position = std::min<size_t>(16, bytes.size());
    }
    // The bytes of a value in the order of this machine; null if there are not enough, which takes them.
    const char *take(size_t size, char *bytes) {
        const std::string_view value = content.substr(position, size);
        position += value.size();
        if (value.size() < size) return nullptr;
        std::copy(value.begin(), value.end(), bytes);
        if (order == FIO_MOTOROLA) std::reverse(bytes, bytes + size);
        return bytes;
    }
};

template <typename Value>
void check_value(FIO *handle, BinaryModel &model, int32_t (*get)(FIO *, Value *), bool any_order) {
    Value value{};
    const int32_t result = get(handle, &value);
    if (!any_order && model.order != FIO_INTEL) {
        KV_REQUIRE(result == -1);
        return;
    }
    char bytes[sizeof value];
    const char *expected = model.take(sizeof value, bytes);
    KV_REQUIRE(result == (expected != nullptr ? 0 : -1));
    if (expected != nullptr) KV_REQUIRE(std::memcmp(&value, expected, sizeof value) == 0);
}

void check_records(Input input) {
    Input steps = input.split(input.byte() % 32);
    const std::string content = input.rest();
    file().set(content);
    const Handle handle(FIO_READ | FIO_HEADER);
    BinaryModel model(content);
    KV_REQUIRE(fio_tell(handle) == static_cast<int32_t>(model.position));
    while (!steps.empty()) {
        switch (steps.byte() % 6) {
            case 0:
                check_value(handle, model, fio_getdouble, true);
                break;
            case 1:
                check_value(handle, model, fio_getlong, true);
                break;
            case 2:
                check_value(handle, model, fio_getfloat, false);
                break;
            case 3:
                check_value(handle, model, fio_getshort, false);
                break;
            case 4: {
                char byte;
                const char *expected = model.take(1, &byte);
                KV_REQUIRE(fio_getchar(handle, nullptr) ==
                           (expected != nullptr ? static_cast<unsigned char>(byte) : -1));
                break;
            }
            default: {
                const size_t target = steps.byte();
                KV_REQUIRE(fio_seek(handle, static_cast<int32_t>(target), 0) == 0);
                model.position = std::min(target, content.size());
                if (target > content.size()) return;
            }
        }
        KV_REQUIRE(fio_tell(handle) == static_cast<int32_t>(model.position));
    }
    KV_REQUIRE(fio_length(handle) == static_cast<int32_t>(content.size()));
}

// The characters of a text file and their offsets. It begins with some plain characters.
struct TextModel {
    std::string text;
    size_t plain;
    std::vector<int32_t> offsets;  // of those behind the plain ones, and last that of the end
    size_t position = 0;

    explicit TextModel(const std::string &content, size_t plain_characters)
        : text(content, 0, plain_characters), plain(plain_characters) {
        size_t at = plain;
        for (; at < content.size() && content[at] != '\x1A'; ++at) {
            offsets.push_back(static_cast<int32_t>(at));
            if (content[at] == '\r' && at + 1 < content.size() && content[at + 1] == '\n') ++at;
            text += content[at];
        }
        offsets.push_back(static_cast<int32_t>(at));
    }
    int32_t offset(size_t character) const {
        return character < plain ? static_cast<int32_t>(character) : offsets[character - plain];
    }
    // What a line read gives.
    std::string line(size_t max, std::string_view delims) {
        std::string line;
        while (position < text.size()) {
            const char c = text[position++];
            if (c == '\n' || c == '\0') break;
            line += c;
            if (line.size() == max || delims.find(c) != delims.npos) break;
        }
        return line;
    }
};

void check_text_step(FIO *handle, TextModel &model, Input &steps) {
    const bool ended = model.position == model.text.size();
    char buffer[64] = "~";
    switch (const unsigned step = steps.byte(); step % 6) {
        case 0:
            KV_REQUIRE(fio_getchar(handle, nullptr) ==
                       (ended ? -1 : static_cast<unsigned char>(model.text[model.position])));
            if (!ended) ++model.position;
            break;
        case 1:
        case 2: {
            const int32_t max = 1 + static_cast<int32_t>(step / 6);
            const char *delims = step % 6 == 1 ? "" : "\r,";
            const int32_t result = step % 6 == 1 ? fio_getstring(handle, max, buffer)
                                                 : fio_getstringdel(handle, max, delims, buffer);
            KV_REQUIRE(result == (ended ? -1 : 0));
            KV_REQUIRE(model.line(static_cast<size_t>(max), delims) == buffer);
            break;
        }
        case 3: {
            const uint32_t count = fio_fread(buffer, 1, step / 6, handle);
            const std::string_view rest = std::string_view(model.text).substr(model.position, step / 6);
            KV_REQUIRE(std::string_view(buffer, count) == rest);
            model.position += count;
            break;
        }
        case 4: {  // to where a character was, from the beginning or from here
            const size_t target = model.text.size() - std::min<size_t>(steps.byte(), model.text.size());
            const int32_t from = step / 6 % 2 != 0 ? fio_tell(handle) : 0;
            KV_REQUIRE(fio_seek(handle, model.offset(target) - from, from != 0 ? 1 : 0) == 0);
            model.position = target;
            break;
        }
        default:
            KV_REQUIRE(fio_length(handle) >= model.offsets.back());
    }
    KV_REQUIRE(fio_tell(handle) == model.offset(model.position));
}

void check_reading(Input input, size_t padding) {
    Input steps = input.split(input.byte() % 64);
    const std::string content = std::string(padding, '.') + input.rest();
    file().set(content);
    const Handle handle(FIO_READ | FIO_TEXT);
    TextModel model(content, padding);
    if (padding > 0) {
        KV_REQUIRE(fio_getchar(handle, nullptr) == '.');
        model.position = 1;
        std::string bytes(padding - 2, '\0');
        KV_REQUIRE(fio_fread(bytes.data(), 1, static_cast<uint32_t>(padding - 2), handle) == padding - 2);
        model.position = padding - 1;
    }
    while (!steps.empty()) check_text_step(handle, model, steps);
}

// Appends a text as it stands on disk.
void append_lines(std::string &disk, std::string_view text) {
    for (size_t feed; (feed = text.find('\n')) != text.npos; text.remove_prefix(feed + 1)) {
        disk.append(text.substr(0, feed)).append("\r\n");
    }
    disk.append(text);
}

// Writing in pieces, overwriting some of it, and reading it back.
void check_writing(Input input, size_t padding) {
    Input pieces = input.split(input.byte() % 16);
    const std::string content = std::string(padding, '.') + input.rest();
    file().set("old");
    std::string disk;
    {
        const Handle handle(FIO_WRITE | FIO_UPDATE | FIO_TEXT);
        size_t done = 0;
        while (done < content.size()) {
            const size_t room = pieces.empty() ? content.size() : padding * (done == 0) + pieces.byte();
            const size_t size = std::min(content.size() - done, room + 1);
            KV_REQUIRE(fio_fwrite(content.data() + done, 1, static_cast<uint32_t>(size), handle) == size);
            append_lines(disk, std::string_view(content).substr(done, size));
            done += size;
            KV_REQUIRE(fio_tell(handle) == static_cast<int32_t>(disk.size()));
        }
        TextModel model(disk, padding);
        KV_REQUIRE(fio_seek(handle, 0, 0) == 0);
        std::string text(content.size() + 1, '\0');
        text.resize(fio_fread(text.data(), 1, static_cast<uint32_t>(text.size()), handle));
        KV_REQUIRE(text == model.text);
    }
    KV_REQUIRE(file().content() == disk);
}

bool quiet() {
    kv_error_onoff(0);
    unsetenv("KV_DEBUG_OUTPUT");
    setenv("KV_DRIVE_C", "/nonexistent", 1);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = quiet();
    KV_REQUIRE(ready);
    Input input(data, size);
    // A few runs begin just before the end of a block: the C library's, and the text layer's.
    const unsigned kind = input.byte();
    constexpr size_t kPaddings[] = {4090, 8190, 16380};
    const size_t padding = kind / 4 < 61 ? 0 : kPaddings[kind / 4 - 61];
    if (kind % 4 == 0) {
        check_writing(input, padding);
    } else if (kind % 4 == 1) {
        check_records(input);
    } else {
        check_reading(input, padding);
    }
    return 0;
}

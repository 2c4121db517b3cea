// SPDX-License-Identifier: MIT
// Opening and closing, with the identification header of binary files.
#include <cerrno>
#include <cstring>
#include <optional>

#include "kv/strings.h"

#include "fio/handle.hpp"
#include "fio/path_join.hpp"
#include "memory/owned.hpp"

namespace kv::fio {

const char kUnknownName[] = "????";

namespace {

using platform::StreamMode;

constexpr std::size_t kWordSize = 8;
constexpr char kIdentification[] = "1.1  @kv";
constexpr char kIntel[] = "INTEL   ";
constexpr char kMotorola[] = "MOTOROLA";

std::optional<StreamMode> stream_mode(std::uint32_t flags) {
    using Access = StreamMode::Access;
    StreamMode mode{Access::read, (flags & FIO_UPDATE) != 0, (flags & FIO_TEXT) != 0};
    switch (flags & (FIO_READ | FIO_WRITE | FIO_APPEND)) {
        case FIO_READ:
            return mode;
        case FIO_WRITE:
            mode.access = Access::write;
            return mode;
        case FIO_APPEND:
            mode.access = Access::append;
            return mode;
        default:
            return std::nullopt;
    }
}

struct HeaderWord {
    char text[kWordSize + 1] = {};
};

HeaderWord read_word(std::FILE *fp) {
    HeaderWord word;
    const std::size_t read = std::fread(word.text, 1, kWordSize, fp);
    word.text[read] = '\0';  // what is missing, and the end
    return word;
}

// Later writes and the closing tell of a write error.
void write_header(std::FILE *fp) {
    static_cast<void>(std::fwrite(kIdentification, 1, kWordSize, fp));
    static_cast<void>(std::fwrite(kIntel, 1, kWordSize, fp));
}

std::int32_t read_header(std::FILE *fp) {
    const HeaderWord identification = read_word(fp);
    if (std::strstr(identification.text, "@kv") == nullptr &&
        std::strstr(identification.text, "1.1") == nullptr) {
        std::rewind(fp);
        return FIO_NOHEADER;
    }
    return std::strcmp(read_word(fp).text, kMotorola) == 0 ? FIO_MOTOROLA : FIO_INTEL;
}

}  // namespace

}  // namespace kv::fio

FIO *fio_open(const char *dir, const char *name, uint32_t flags) noexcept {
    using namespace kv::fio;
    const auto mode = stream_mode(flags);
    if (!mode) return nullptr;
    Path path;
    if (!path.join(nullptr, dir, name)) {
        errno = ENAMETOOLONG;
        return nullptr;
    }

    // The handle comes first: opening may empty the file, which an exhausted heap must not do.
    kv::memory::Owned<FIO> handle = kv::memory::make_owned<FIO>();
    if (handle == nullptr) return nullptr;
    const kv::platform::Stream stream = kv::platform::open_stream(path.text, *mode);
    if (stream.file == nullptr) return nullptr;
    const char *copy = str_alloc(path.text);
    handle->fp = stream.file;
    handle->text = stream.text;
    handle->byteorder = FIO_INTEL;
    handle->mode = flags;
    handle->name = copy != nullptr ? copy : kUnknownName;

    if ((flags & FIO_HEADER) != 0 && (flags & (FIO_TEXT | FIO_APPEND)) == 0) {
        if ((flags & FIO_WRITE) != 0) {
            write_header(stream.file);
        } else {
            handle->byteorder = read_header(stream.file);
            // The first thing on a handle that is to be updated may be a write.
            if (mode->update) kv::platform::stream_seek(stream, 0, SEEK_CUR);
        }
    }
    return handle.release();
}

int32_t fio_close(FIO *handle) noexcept {
    const kv::memory::Owned<FIO> owned(handle);
    if (owned == nullptr) return 0;
    if (owned->name != kv::fio::kUnknownName) heap_free(const_cast<char *>(owned->name));
    return std::fclose(owned->fp) == 0 ? 0 : -1;
}

FILE *fio_fp(FIO *handle) noexcept {
    return handle->fp;
}

const char *fio_filename(FIO *handle) noexcept {
    return handle != nullptr ? handle->name : nullptr;
}

// SPDX-License-Identifier: MIT
// Streams of the C library. Binary ones are its own; text streams are its streams over a layer that
// translates line ends.
//
// The layer counts positions in bytes on disk. So that the C library's arithmetic on positions (its
// position is the layer's, less what is still in its buffer) stays right, the layer delivers every CR LF
// in a piece of its own: within a piece, one character is one byte.
#include "platform/posix/stream.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace {
constexpr char kCtrlZ = 26;
}

struct TextLayer {
    explicit TextLayer(bool appends) : append(appends) {}

    int descriptor = -1;
    const bool append;
    bool seekable = false;
    bool line_end = false;     // the last piece was a CR LF
    std::int64_t offset = 0;   // of the descriptor; the block that was read ends there
    std::size_t length = 0;    // bytes in the block
    std::size_t limit = 0;     // bytes before a Ctrl-Z in it
    std::size_t position = 0;  // the next one
    char block[16384];

    std::int64_t tell() const { return offset - static_cast<std::int64_t>(length - position); }
    void drop_block() { length = limit = position = 0; }
    int refill();
    bool align();
    std::size_t translate(const char *text, std::size_t size, std::size_t &taken);
};

// Reads a block after the bytes that are left (at most one carriage return). The number of bytes read, 0
// at the end, -1 after an error; what is left stays in each case.
int TextLayer::refill() {
    const std::size_t kept = length - position;
    std::memmove(block, block + position, kept);
    position = 0;
    length = limit = kept;
    ssize_t count;
    do {
        count = ::read(descriptor, block + kept, sizeof block - kept);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) return static_cast<int>(count);
    offset += count;
    length += static_cast<std::size_t>(count);
    const void *mark = std::memchr(block, kCtrlZ, length);
    limit = mark != nullptr ? static_cast<std::size_t>(static_cast<const char *>(mark) - block) : length;
    return static_cast<int>(count);
}

// Moves the descriptor back to where reading stands.
bool TextLayer::align() {
    const std::int64_t target = tell();
    line_end = false;
    if (position != length) {
        if (!seekable || lseek(descriptor, target, SEEK_SET) < 0) return false;
        offset = target;
    }
    drop_block();
    return true;
}

// Fills the block with what is to be written; its size.
std::size_t TextLayer::translate(const char *text, std::size_t size, std::size_t &taken) {
    std::size_t held = 0;
    for (taken = 0; taken < size && sizeof block - held >= 2; ++taken) {
        if (text[taken] == '\n') block[held++] = '\r';
        block[held++] = text[taken];
    }
    return held;
}

namespace {

ssize_t read_text(void *cookie, char *buffer, std::size_t size) {
    TextLayer &layer = *static_cast<TextLayer *>(cookie);
    layer.line_end = false;
    if (size == 0) return 0;
    if (layer.position == layer.length) {
        if (const int count = layer.refill(); count <= 0) return count;
    }
    if (layer.position == layer.limit) return 0;  // a Ctrl-Z
    if (layer.block[layer.position] == '\r' && layer.position + 1 == layer.length && layer.refill() < 0) {
        return -1;  // what follows the carriage return decides about it
    }
    const char *start = layer.block + layer.position;
    const std::size_t left = layer.limit - layer.position;
    if (left >= 2 && start[0] == '\r' && start[1] == '\n') {
        layer.position += 2;
        layer.line_end = true;
        *buffer = '\n';
        return 1;
    }
    const char *end = start + std::min(size, left);
    const char *stop = start + 1;
    for (; stop != end; ++stop) {
        stop = static_cast<const char *>(std::memchr(stop, '\r', static_cast<std::size_t>(end - stop)));
        if (stop == nullptr) stop = end;
        if (stop == end || stop + 1 == start + left || stop[1] == '\n') break;
    }
    const auto count = static_cast<std::size_t>(stop - start);
    std::memcpy(buffer, start, count);
    layer.position += count;
    return static_cast<ssize_t>(count);
}

// The number of characters that are wholly on disk.
ssize_t write_text(void *cookie, const char *text, std::size_t size) {
    TextLayer &layer = *static_cast<TextLayer *>(cookie);
    if (!layer.align()) return 0;
    std::size_t done = 0;
    bool failed = false;
    while (done < size && !failed) {
        std::size_t taken = 0;
        const std::size_t held = layer.translate(text + done, size - done, taken);
        std::size_t written = 0;
        while (written < held && !failed) {
            const ssize_t count = ::write(layer.descriptor, layer.block + written, held - written);
            if (count > 0) written += static_cast<std::size_t>(count);
            failed = count == 0 || (count < 0 && errno != EINTR);
        }
        layer.offset += static_cast<std::int64_t>(written);
        if (!failed) {
            done += taken;
            continue;
        }
        for (std::size_t bytes = text[done] == '\n' ? 2 : 1; bytes <= written;) {
            written -= bytes;
            bytes = text[++done] == '\n' ? 2 : 1;
        }
        // The carriage return of a line feed that failed would stand there twice after another attempt.
        if (written == 1 && layer.seekable && lseek(layer.descriptor, layer.offset - 1, SEEK_SET) >= 0) {
            --layer.offset;
        }
    }
    if (layer.append && layer.seekable) layer.offset = lseek(layer.descriptor, 0, SEEK_CUR);
#ifndef __GLIBC__
    if (done < size) return -1;  // musl takes what is short for success
#endif
    return static_cast<ssize_t>(done);
}

int seek_text(void *cookie, off64_t *position, int origin) {
    TextLayer &layer = *static_cast<TextLayer *>(cookie);
    if (!layer.seekable) {
        errno = ESPIPE;
        return -1;
    }
    std::int64_t target = layer.tell();
    if (origin == SEEK_CUR && *position == 0) {
        *position = target;
        return 0;
    }
    if (origin == SEEK_SET) target = 0;
    if (origin == SEEK_END) target = lseek(layer.descriptor, 0, SEEK_END);
    const bool valid = target >= 0 && !__builtin_add_overflow(target, *position, &target) && target >= 0;
    const std::int64_t start = layer.offset - static_cast<std::int64_t>(layer.length);
    const bool in_block =
        origin != SEEK_END && target >= start && target <= start + static_cast<std::int64_t>(layer.limit);
    if (valid && in_block) {
        layer.position = static_cast<std::size_t>(target - start);
    } else if (valid && lseek(layer.descriptor, target, SEEK_SET) >= 0) {
        layer.drop_block();
        layer.offset = target;
    } else {
        lseek(layer.descriptor, layer.offset, SEEK_SET);
        errno = EINVAL;
        return -1;
    }
    layer.line_end = false;
    *position = target;
    return 0;
}

int close_text(void *cookie) {
    const memory::Owned<TextLayer> layer(static_cast<TextLayer *>(cookie));
    return ::close(layer->descriptor);
}

int open_flags(const StreamMode &mode) {
    using Access = StreamMode::Access;
    int flags = O_RDWR;
    if (!mode.update) flags = mode.access == Access::read ? O_RDONLY : O_WRONLY;
    if (mode.access == Access::write) flags |= O_CREAT | O_TRUNC;
    if (mode.access == Access::append) flags |= O_CREAT | O_APPEND;
    return flags | O_NOCTTY;
}

const char *mode_text(const StreamMode &mode) {
    switch (mode.access) {
        case StreamMode::Access::read:
            return mode.update ? "r+b" : "rb";
        case StreamMode::Access::write:
            return mode.update ? "w+b" : "wb";
        default:
            return mode.update ? "a+b" : "ab";
    }
}

void remove_end_mark(int descriptor, const struct stat &status) {
    char last = 0;
    if (!S_ISREG(status.st_mode) || status.st_size == 0) return;
    if (pread(descriptor, &last, 1, status.st_size - 1) != 1 || last != kCtrlZ) return;
    if (ftruncate(descriptor, status.st_size - 1) != 0) return;  // then it stays
}

std::FILE *open_text(TextLayer &layer, int descriptor, const StreamMode &mode) {
    layer.descriptor = descriptor;
    layer.seekable = lseek(descriptor, 0, SEEK_CUR) >= 0;
    return fopencookie(&layer, mode_text(mode), {read_text, write_text, seek_text, close_text});
}

}  // namespace

Stream open_stream(const char *path, const StreamMode &mode) {
    // Before the file, which opening may empty.
    memory::Owned<TextLayer> layer =
        mode.text ? memory::make_owned<TextLayer>(mode.access == StreamMode::Access::append) : nullptr;
    if (mode.text && layer == nullptr) return {};
    posix::HostPath host;
    const bool reads = mode.access == StreamMode::Access::read;
    if (!posix::map_path(path, reads ? posix::Purpose::read : posix::Purpose::write, host)) return {};
    posix::Descriptor file(posix::open_descriptor(host.text, open_flags(mode)));
    const int descriptor = file.value();
    struct stat status;
    if (descriptor < 0 || fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) return {};
    if (mode.text && mode.update) remove_end_mark(descriptor, status);
    Stream stream{mode.text ? open_text(*layer, descriptor, mode) : fdopen(descriptor, mode_text(mode)),
                  layer.get()};
    if (stream.file == nullptr) return {};
    static_cast<void>(file.release());   // closing the stream closes it
    static_cast<void>(layer.release());  // and frees the layer
    __fsetlocking(stream.file, FSETLOCKING_BYCALLER);
    // The C library begins at the end then.
    if (mode.access == StreamMode::Access::append) static_cast<void>(stream_seek(stream, 0, SEEK_SET));
    return stream;
}

std::int64_t stream_tell(const Stream &stream) {
    if (stream.text == nullptr) return ftello(stream.file);
    // A line feed that waits to be written is one character, but two bytes.
    if (__fwriting(stream.file) != 0 && std::fflush(stream.file) != 0) return -1;
    const std::int64_t position = ftello(stream.file);
    // Before a line end that was read and put back.
    const bool put_back = stream.text->line_end && position == stream.text->tell() - 1;
    return put_back ? position - 1 : position;
}

bool stream_seek(const Stream &stream, std::int64_t offset, int origin) {
    if (stream.text == nullptr || origin == SEEK_END) return fseeko(stream.file, offset, origin) == 0;
    // Moving by a distance from the current position takes the C library straight there; for an absolute
    // one it may read the beginning of a block and count characters.
    const std::int64_t position = stream_tell(stream);
    if (position < 0) return false;
    if (origin == SEEK_CUR) offset += position;
    if (offset < 0) return false;
    return fseeko(stream.file, offset - ftello(stream.file), SEEK_CUR) == 0;
}

int posix::stream_descriptor(const Stream &stream) {
    return stream.text != nullptr ? stream.text->descriptor : fileno(stream.file);
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Streams of the C library, which translates text streams itself.
//
// What the C library tells as the position of a text stream supposes that every line ends with CR LF, and
// that nothing stands after a Ctrl-Z. Here the position is found from the bytes on disk: those that the
// stream's buffer was filled from end at the position of the file.
#include "platform/win32/stream.hpp"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <string_view>

#include "platform/win32/handle.hpp"

namespace kv::platform {

namespace {

constexpr char kCtrlZ = 26;

// Reads at an offset; the position of the file stays. The number of bytes read.
std::size_t read_at(std::FILE *file, std::int64_t offset, char *buffer, std::size_t size) {
    const HANDLE handle = win32::handle_of(file);
    LARGE_INTEGER before;
    if (SetFilePointerEx(handle, LARGE_INTEGER{}, &before, FILE_CURRENT) == 0) return 0;
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD count = 0;
    if (ReadFile(handle, buffer, static_cast<DWORD>(size), &count, &place) == 0) count = 0;
    SetFilePointerEx(handle, before, nullptr, FILE_BEGIN);
    return count;
}

// Goes back over the bytes that `text` was translated from. False if it was not translated from them.
bool go_back(std::string_view raw, std::string_view text, std::size_t &end) {
    for (; !text.empty(); text.remove_suffix(1)) {
        if (end == 0 || raw[end - 1] != text.back()) return false;
        --end;
        if (text.back() == '\n' && end > 0 && raw[end - 1] == '\r') --end;
    }
    return true;
}

// The buffer of a stream that is being read: what has been given, and what has not.
struct Buffered {
    explicit Buffered(const std::FILE *file)
        : start(file->_base != nullptr ? file->_base : ""),
          given(file->_base != nullptr ? static_cast<std::size_t>(file->_ptr - file->_base) : 0),
          left(file->_cnt > 0 ? static_cast<std::size_t>(file->_cnt) : 0) {}

    std::string_view all() const { return {start, given + left}; }
    std::string_view rest() const { return {start + given, left}; }

    const char *start;
    std::size_t given;
    std::size_t left;
};

// The first Ctrl-Z before `end`; `end` if there is none.
std::int64_t find_end_mark(std::FILE *file, std::int64_t end) {
    char block[8192];
    for (std::int64_t offset = 0; offset < end;) {
        const auto size = static_cast<std::size_t>(std::min<std::int64_t>(end - offset, sizeof block));
        const std::size_t count = read_at(file, offset, block, size);
        const void *mark = std::memchr(block, kCtrlZ, count);
        if (mark != nullptr) return offset + (static_cast<const char *>(mark) - block);
        if (count == 0) break;
        offset += static_cast<std::int64_t>(count);
    }
    return end;
}

// Where reading stands, if the buffer was filled with bytes that end at `end`.
std::int64_t tell_reading(std::FILE *file, std::int64_t end) {
    const Buffered buffered(file);
    if (buffered.left == 0 && std::feof(file) != 0) return find_end_mark(file, end);
    constexpr std::int64_t kMostBytes = 2 * 4096 + 2;  // of a buffer of line feeds, and a look ahead
    char window[kMostBytes];
    const std::int64_t start = std::max<std::int64_t>(end - kMostBytes, 0);
    const auto size = static_cast<std::size_t>(end - start);
    const std::string_view raw(window, read_at(file, start, window, size));
    const std::int64_t plain = end - static_cast<std::int64_t>(buffered.left);
    if (buffered.all().empty() || raw.size() < size) return plain;  // nothing is buffered, or after the end
    // The position, if what is in the buffer ends at this place of the window.
    const auto position = [&](std::size_t last) {
        std::size_t first = last;
        if (!go_back(raw, buffered.all(), first)) return std::int64_t{-1};
        go_back(raw, buffered.rest(), last);
        return start + static_cast<std::int64_t>(last);
    };
    // The library drops what stands after a Ctrl-Z.
    for (std::size_t at = raw.find(kCtrlZ); at != raw.npos; at = raw.find(kCtrlZ, at + 1)) {
        if (const std::int64_t found = position(at); found >= 0) return found;
    }
    if (const std::int64_t found = position(raw.size()); found >= 0) return found;
    // A carriage return whose line feed is yet to be read has been dropped; the line end begins there.
    if (raw.back() == '\r') {
        if (const std::int64_t found = position(raw.size() - 1); found >= 0) return found;
    }
    std::size_t next = raw.size();
    return go_back(raw, buffered.rest(), next) ? start + static_cast<std::int64_t>(next) : plain;
}

DWORD access_rights(const StreamMode &mode) {
    const bool reads = mode.update || mode.access == StreamMode::Access::read;
    const bool writes = mode.update || mode.access != StreamMode::Access::read;
    return (reads ? GENERIC_READ : 0) | (writes ? GENERIC_WRITE : 0);
}

DWORD disposition(const StreamMode &mode) {
    return mode.access == StreamMode::Access::read ? OPEN_EXISTING : OPEN_ALWAYS;
}

int descriptor_flags(const StreamMode &mode) {
    const bool only_reads = !mode.update && mode.access == StreamMode::Access::read;
    return (mode.text ? _O_TEXT : _O_BINARY) | (mode.access == StreamMode::Access::append ? _O_APPEND : 0) |
           (only_reads ? _O_RDONLY : 0) | _O_NOINHERIT;
}

const char *mode_text(const StreamMode &mode) {
    constexpr const char *kTexts[3][2][2] = {
        {{"rb", "rt"}, {"r+b", "r+t"}}, {{"wb", "wt"}, {"w+b", "w+t"}}, {{"ab", "at"}, {"a+b", "a+t"}}};
    return kTexts[static_cast<int>(mode.access)][mode.update ? 1 : 0][mode.text ? 1 : 0];
}

void remove_end_mark(HANDLE handle) {
    LARGE_INTEGER size;
    char last = 0;
    DWORD count = 0;
    LARGE_INTEGER back;
    back.QuadPart = -1;
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &size) == 0 || size.QuadPart == 0 ||
        SetFilePointerEx(handle, back, nullptr, FILE_END) == 0)
        return;
    const bool marked = ReadFile(handle, &last, 1, &count, nullptr) != 0 && count == 1 && last == kCtrlZ;
    if (marked && SetFilePointerEx(handle, back, nullptr, FILE_END) != 0) SetEndOfFile(handle);
    SetFilePointerEx(handle, LARGE_INTEGER{}, nullptr, FILE_BEGIN);
}

}  // namespace

Stream open_stream(const char *path, const StreamMode &mode) {
    win32::Handle handle(win32::open_file(path, access_rights(mode), disposition(mode)));
    if (!handle.valid()) return {};
    if (mode.access == StreamMode::Access::write) SetEndOfFile(handle.get());
    if (mode.text && mode.update) remove_end_mark(handle.get());
    const int descriptor = _open_osfhandle(win32::from_handle(handle.get()), descriptor_flags(mode));
    if (descriptor < 0) return {};
    static_cast<void>(handle.release());
    std::FILE *file = _fdopen(descriptor, mode_text(mode));
    if (file == nullptr) _close(descriptor);
    return {file, nullptr};
}

std::int64_t stream_tell(const Stream &stream) {
    std::FILE *file = stream.file;
    if ((file->_flag & _IOWRT) != 0 && std::fflush(file) != 0) return -1;
    if ((_setmode(_fileno(file), _O_BINARY) & _O_TEXT) == 0) return _ftelli64(file);
    _setmode(_fileno(file), _O_TEXT);
    const std::int64_t position = _lseeki64(_fileno(file), 0, SEEK_CUR);
    const bool reads = (file->_flag & _IOREAD) != 0;
    return position >= 0 && reads ? tell_reading(file, position) : position;
}

bool stream_seek(const Stream &stream, std::int64_t offset, int origin) {
    // A position before the beginning must not cost the buffer.
    if (origin == SEEK_CUR) {
        const std::int64_t position = stream_tell(stream);
        if (position < 0) return false;
        offset += position;
    } else if (origin == SEEK_END) {
        if (std::fflush(stream.file) != 0) return false;
        const std::int64_t size = _filelengthi64(_fileno(stream.file));
        if (size < 0) return false;
        offset += size;
    }
    if (offset < 0 || _fseeki64(stream.file, offset, SEEK_SET) != 0) return false;
    stream.file->_flag &= ~_IOEOF;  // which not every version of the library does
    return true;
}

HANDLE win32::stream_handle(const Stream &stream) {
    return stream.file != nullptr ? win32::handle_of(stream.file) : INVALID_HANDLE_VALUE;
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Reading files, their status, and the log.
#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "platform/win32/content_lock.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

using win32::from_handle;
using win32::to_handle;

namespace {

bool means_missing(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return true;
        default:
            return false;
    }
}

}  // namespace

InputFile::~InputFile() {
    if (locked_) win32::unlock_content(to_handle(handle_));
    win32::close_handle(handle_);
}

bool InputFile::open(const char *path, Content content) {
    handle_ = from_handle(win32::open_file(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN));
    missing_ = handle_ == -1 && means_missing(GetLastError());
    if (handle_ != -1 && content == Content::consistent) {
        locked_ = win32::lock_content(to_handle(handle_), false, win32::Waiting());
    }
    return handle_ != -1;
}

std::int64_t InputFile::read(char *buffer, std::size_t size) {
    return win32::read_some(to_handle(handle_), buffer, size);
}

std::int64_t InputFile::read_at(std::int64_t offset, char *buffer, std::size_t size) {
    const HANDLE handle = to_handle(handle_);
    LARGE_INTEGER before;
    if (SetFilePointerEx(handle, LARGE_INTEGER{}, &before, FILE_CURRENT) == 0) return -1;
    LARGE_INTEGER position;
    position.QuadPart = offset;
    std::size_t done = 0;
    std::int64_t count = SetFilePointerEx(handle, position, nullptr, FILE_BEGIN) != 0 ? 1 : -1;
    while (done < size && count > 0) {
        count = win32::read_some(handle, buffer + done, size - done);
        if (count > 0) done += static_cast<std::size_t>(count);
    }
    SetFilePointerEx(handle, before, nullptr, FILE_BEGIN);
    return count < 0 ? -1 : static_cast<std::int64_t>(done);
}

bool InputFile::modification_time(std::int64_t &seconds) const {
    FILETIME time;
    if (io_fails() || GetFileTime(to_handle(handle_), nullptr, nullptr, &time) == 0) return false;
    seconds = win32::seconds_since_1970(time);
    return true;
}

ReportFile::~ReportFile() {
    win32::close_handle(handle_);
}

bool ReportFile::open(const char *path, bool empty_first, Busy) {
    // With this right alone, the system puts all that is written at the end.
    constexpr DWORD kAppend = FILE_APPEND_DATA;
    handle_ =
        from_handle(win32::open_file(path, empty_first ? kAppend | FILE_WRITE_DATA : kAppend, OPEN_ALWAYS));
    if (handle_ == -1) return false;
    if (empty_first) SetEndOfFile(to_handle(handle_));
    return true;
}

void ReportFile::write(std::string_view text) {
    const HANDLE handle = to_handle(handle_);
    char block[1024];
    std::size_t held = 0;
    for (const char c : text) {
        if (sizeof block - held < 2) {
            win32::write_all(handle, block, held);
            held = 0;
        }
        if (c == '\n') block[held++] = '\r';
        block[held++] = c;
    }
    win32::write_all(handle, block, held);
}

bool modification_time(const char *path, std::int64_t &seconds) {
    const win32::Handle file(win32::open_entry(path));
    FILETIME time;
    if (!file.valid() || GetFileTime(file.get(), nullptr, nullptr, &time) == 0) return false;
    seconds = win32::seconds_since_1970(time);
    return true;
}

}  // namespace kv::platform

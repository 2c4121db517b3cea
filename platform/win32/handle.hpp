// SPDX-License-Identifier: MIT
// Handles of files. Everything the system is asked for goes through its functions for 8-bit texts, so that
// names are passed on as the bytes they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <io.h>
#include <windows.h>

#include "platform/platform.hpp"
#include "platform/win32/waiting.hpp"

namespace kv::platform::win32 {

/// A handle as platform.hpp keeps it; -1 is none.
inline HANDLE to_handle(std::intptr_t value) {
    return reinterpret_cast<HANDLE>(value);
}

inline std::intptr_t from_handle(HANDLE handle) {
    return reinterpret_cast<std::intptr_t>(handle);
}

/// That of a stream of the C library, which keeps it.
inline HANDLE handle_of(std::FILE *stream) {
    return to_handle(_get_osfhandle(_fileno(stream)));
}

/// A file that nobody else is kept from, not even from removing or replacing it. INVALID_HANDLE_VALUE if it
/// cannot be opened, or is a directory.
HANDLE open_file(const char *path, DWORD access, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL);
/// The same, but what somebody else does not share now is asked for again until the waiting ends.
HANDLE open_shared_file(const char *path, DWORD access, DWORD disposition, const Waiting &waiting);
/// A file or a directory, to ask about it.
HANDLE open_entry(const char *path);
/// What the system tells of an open file; `exists` is false for what is no file on a disk.
FileStamp stamp_of(HANDLE handle);
/// The same of what a path leads to.
FileStamp stamp_of(const char *path);
/// How many names an open file has; 0 if the system does not tell.
DWORD link_count(HANDLE handle);
/// -1 is ignored.
void close_handle(std::intptr_t handle);

bool write_all(HANDLE handle, const char *bytes, std::size_t size);
/// Reads as many bytes as there are, up to `size`; -1 after an error.
std::int64_t read_some(HANDLE handle, char *buffer, std::size_t size);

/// Closed when destroyed.
class Handle {
  public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle() {
        if (valid()) CloseHandle(handle_);
    }

    bool valid() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }
    HANDLE get() const { return handle_; }
    HANDLE release() {
        const HANDLE handle = handle_;
        handle_ = INVALID_HANDLE_VALUE;
        return handle;
    }

  private:
    HANDLE handle_;
};

/// The system's times count 100 nanoseconds since 1601.
std::int64_t since_1970(const FILETIME &time);

inline std::int64_t seconds_since_1970(const FILETIME &time) {
    constexpr std::int64_t kPerSecond = 10'000'000;
    const std::int64_t ticks = since_1970(time);
    return ticks / kPerSecond - (ticks % kPerSecond < 0 ? 1 : 0);
}

}  // namespace kv::platform::win32

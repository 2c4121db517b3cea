// SPDX-License-Identifier: MIT
#include "platform/win32/handle.hpp"

#include <algorithm>

#include "platform/failpoint.hpp"

namespace kv::platform::win32 {

namespace {
// The system takes sizes of 32 bits, and some network drives none that are near that.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 24;

}  // namespace

HANDLE open_file(const char *path, DWORD access, DWORD disposition, DWORD flags) {
    if (io_fails()) {
        SetLastError(ERROR_OPEN_FAILED);
        return INVALID_HANDLE_VALUE;
    }
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return CreateFileA(path, access, kShareAll, nullptr, disposition, flags, nullptr);
}

HANDLE open_shared_file(const char *path, DWORD access, DWORD disposition, const Waiting &waiting) {
    HANDLE handle;
    do {
        handle = open_file(path, access, disposition);
    } while (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION &&
             waiting.pause());
    return handle;
}

HANDLE open_entry(const char *path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return CreateFileA(path, FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

FileStamp stamp_of(HANDLE handle) {
    BY_HANDLE_FILE_INFORMATION of;
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileInformationByHandle(handle, &of) == 0) return {};
    const auto joined = [](DWORD high, DWORD low) { return static_cast<std::uint64_t>(high) << 32 | low; };
    return {true, of.dwVolumeSerialNumber, joined(of.nFileIndexHigh, of.nFileIndexLow),
            static_cast<std::int64_t>(joined(of.nFileSizeHigh, of.nFileSizeLow)),
            static_cast<std::int64_t>(
                joined(of.ftLastWriteTime.dwHighDateTime, of.ftLastWriteTime.dwLowDateTime))};
}

FileStamp stamp_of(const char *path) {
    const Handle entry(open_entry(path));
    return entry.valid() ? stamp_of(entry.get()) : FileStamp();
}

DWORD link_count(HANDLE handle) {
    BY_HANDLE_FILE_INFORMATION of;
    return GetFileInformationByHandle(handle, &of) != 0 ? of.nNumberOfLinks : 0;
}

void close_handle(std::intptr_t handle) {
    if (handle != -1) CloseHandle(to_handle(handle));
}

bool write_all(HANDLE handle, const char *bytes, std::size_t size) {
    if (io_fails()) return false;
    while (size > 0) {
        DWORD count = 0;
        const auto piece = static_cast<DWORD>(std::min(size, kMostAtOnce));
        if (WriteFile(handle, bytes, piece, &count, nullptr) == 0 || count == 0) return false;
        bytes += count;
        size -= count;
    }
    return true;
}

std::int64_t read_some(HANDLE handle, char *buffer, std::size_t size) {
    if (io_fails()) return -1;
    DWORD count = 0;
    const auto piece = static_cast<DWORD>(std::min(size, kMostAtOnce));
    if (ReadFile(handle, buffer, piece, &count, nullptr) != 0) return count;
    return GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
}

std::int64_t since_1970(const FILETIME &time) {
    constexpr std::int64_t kFrom1601To1970 = 116'444'736'000'000'000;
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) - kFrom1601To1970;
}

}  // namespace kv::platform::win32

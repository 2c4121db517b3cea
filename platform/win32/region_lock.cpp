// SPDX-License-Identifier: MIT
// Locks on the bytes of a file, between processes and between streams. The system keeps others from reading
// and writing what is locked.
#include <algorithm>

#include "platform/platform.hpp"
#include "platform/win32/stream.hpp"

namespace kv::platform {

namespace {

LockResult result_of(bool done) {
    if (done) return LockResult::done;
    switch (GetLastError()) {
        case ERROR_INVALID_HANDLE:
            return LockResult::bad_file;
        case ERROR_LOCK_VIOLATION:
        case ERROR_IO_PENDING:
        case ERROR_ACCESS_DENIED:
            return LockResult::denied;
        default:
            return LockResult::failed;
    }
}

bool change(HANDLE handle, std::int64_t size, bool locked) {
    OVERLAPPED start{};
    const auto low = static_cast<DWORD>(size);
    const auto high = static_cast<DWORD>(size >> 32);
    if (!locked) return UnlockFileEx(handle, 0, low, high, &start) != 0;
    constexpr DWORD kHow = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    return LockFileEx(handle, kHow, 0, low, high, &start) != 0;
}

}  // namespace

// The system ends the lock with the stream.
RegionLock::~RegionLock() = default;

// `holder_` is the number of bytes that are locked: the system unlocks only what was locked in one piece,
// and refuses a second lock on it.
LockResult RegionLock::lock(const Stream &stream) {
    const HANDLE handle = win32::stream_handle(stream);
    if (handle == INVALID_HANDLE_VALUE) return LockResult::bad_file;
    LARGE_INTEGER size;
    // Asking for the position writes what is still in the stream's buffer, which counts to the length.
    if (GetFileType(handle) != FILE_TYPE_DISK || stream_tell(stream) < 0 ||
        GetFileSizeEx(handle, &size) == 0)
        return LockResult::no_position;
    const auto bytes = static_cast<std::intptr_t>(std::min<std::int64_t>(size.QuadPart, INTPTR_MAX));
    if (bytes == 0 || bytes == holder_) return LockResult::done;
    if (const LockResult result = unlock(stream); result != LockResult::done) return result;
    const LockResult result = result_of(change(handle, bytes, true));
    if (result == LockResult::done) holder_ = bytes;
    return result;
}

LockResult RegionLock::unlock(const Stream &stream) {
    const HANDLE handle = win32::stream_handle(stream);
    if (handle == INVALID_HANDLE_VALUE) return LockResult::bad_file;
    if (GetFileType(handle) != FILE_TYPE_DISK) return LockResult::no_position;
    if (holder_ < 0) return LockResult::done;
    const LockResult result = result_of(change(handle, holder_, false));
    if (result == LockResult::done) holder_ = -1;
    return result;
}

}  // namespace kv::platform

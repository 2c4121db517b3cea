// SPDX-License-Identifier: MIT
#include "platform/win32/content_lock.hpp"

namespace kv::platform::win32 {

namespace {

// The way to the content is through the gate, which a writer keeps shut while it waits for the readers to
// end: new readers would keep it waiting for ever.
constexpr ULONGLONG kGate = 1ULL << 62;
constexpr ULONGLONG kContent = kGate + 1;

OVERLAPPED place_of(ULONGLONG byte) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(byte);
    place.OffsetHigh = static_cast<DWORD>(byte >> 32);
    return place;
}

bool lock(HANDLE file, ULONGLONG byte, bool exclusive, const Waiting &waiting) {
    const DWORD how = LOCKFILE_FAIL_IMMEDIATELY | (exclusive ? DWORD{LOCKFILE_EXCLUSIVE_LOCK} : 0);
    for (;;) {
        OVERLAPPED place = place_of(byte);
        if (LockFileEx(file, how, 0, 1, 0, &place) != 0) return true;
        const DWORD error = GetLastError();
        if (error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING) return true;
        if (!waiting.pause()) return false;
    }
}

void unlock(HANDLE file, ULONGLONG byte) {
    OVERLAPPED place = place_of(byte);
    UnlockFileEx(file, 0, 1, 0, &place);
}

}  // namespace

bool lock_content(HANDLE file, bool exclusive, const Waiting &waiting) {
    if (!lock(file, kGate, exclusive, waiting)) return false;
    const bool locked = lock(file, kContent, exclusive, waiting);
    unlock(file, kGate);
    return locked;
}

void unlock_content(HANDLE file) {
    unlock(file, kContent);
}

}  // namespace kv::platform::win32

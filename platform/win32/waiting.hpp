// SPDX-License-Identifier: MIT
// Waiting for what others have: a file, or a lock on it.
#pragma once

#include <algorithm>
#include <windows.h>

#include "platform/lock_timeout.hpp"

namespace kv::platform::win32 {

/// Begins with the object, and ends after lock_timeout().
class Waiting {
  public:
    Waiting() : limit_(lock_timeout()) {}
    explicit Waiting(DWORD limit) : limit_(limit) {}

    /// Milliseconds until the end.
    DWORD left() const {
        const ULONGLONG passed = GetTickCount64() - begin_;
        return passed < limit_ ? static_cast<DWORD>(limit_ - passed) : 0;
    }
    /// Waits a little. False, at once, if the time is over.
    bool pause() const {
        constexpr DWORD kLongest = 10;
        const DWORD time = std::min(left(), kLongest);
        if (time == 0) return false;
        Sleep(time);
        return true;
    }

  private:
    DWORD limit_;
    ULONGLONG begin_ = GetTickCount64();
};

}  // namespace kv::platform::win32

// SPDX-License-Identifier: MIT
// The lock on the content of a file between those who know it: exclusive for who writes in place, shared
// for who reads. It is on bytes that no file reaches, so that nobody else meets it.
#pragma once

#include "platform/win32/handle.hpp"

namespace kv::platform::win32 {

/// False if others have kept the lock until the waiting ended. Where there are no locks, nobody waits.
bool lock_content(HANDLE file, bool exclusive, const Waiting &waiting);
void unlock_content(HANDLE file);

}  // namespace kv::platform::win32

// SPDX-License-Identifier: MIT
// How long one waits for somebody else's lock on a file.
#pragma once

#include <cstdint>

namespace kv::platform {

/// Milliseconds: KV_LOCK_TIMEOUT, which is a decimal number of seconds (0: one attempt, without waiting),
/// or 10 seconds if that is not set, or is no such number.
std::uint32_t lock_timeout();

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// The seam at which tests make system calls on files fail. Nothing else uses it.
#pragma once

#include <atomic>
#include <cstdint>

namespace kv::platform {

/// Calls that still succeed before the failures begin; negative: no failure is planned.
extern std::atomic<std::int64_t> calls_until_failure;
/// Whether all calls fail once the failures have begun, or only the first.
extern std::atomic<bool> failures_last;

/// True, with errno, if the call that is about to be made (open, read, write, flush, rename, ...) is to
/// fail. Removing a file never fails.
bool planned_io_failure();

inline bool io_fails() {
    return calls_until_failure.load(std::memory_order_relaxed) >= 0 && planned_io_failure();
}

/// Lets `successes` calls succeed and then one, or all, fail; a negative number ends the failures.
void plan_io_failure(std::int64_t successes, bool lasting);

}  // namespace kv::platform

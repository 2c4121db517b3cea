// SPDX-License-Identifier: MIT
// The seam at which tests make allocations fail. Nothing else uses it.
#pragma once

#include <atomic>
#include <cstdint>

namespace kv::memory {

/// Allocations that still succeed before the failures begin; negative: no failure is planned.
inline constinit std::atomic<std::int64_t> allocations_until_failure{-1};

/// True if the allocation that is about to be made is to fail. Once the failures have begun, every
/// allocation fails until plan_failure() is called again.
inline bool allocation_fails() {
    if (allocations_until_failure.load(std::memory_order_relaxed) < 0) return false;
    if (allocations_until_failure.load(std::memory_order_relaxed) == 0) return true;
    allocations_until_failure.fetch_sub(1, std::memory_order_relaxed);
    return false;
}

/// Lets `successes` allocations succeed and all later ones fail; a negative number ends the failures.
inline void plan_failure(std::int64_t successes) {
    allocations_until_failure = successes;
}

}  // namespace kv::memory

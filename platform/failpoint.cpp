// SPDX-License-Identifier: MIT
#include "platform/failpoint.hpp"

#include <cerrno>

namespace kv::platform {

constinit std::atomic<std::int64_t> calls_until_failure{-1};
constinit std::atomic<bool> failures_last{false};

bool planned_io_failure() {
    const std::int64_t left = calls_until_failure;
    if (left > 0) {
        calls_until_failure = left - 1;
        return false;
    }
    if (!failures_last) calls_until_failure = -1;
    errno = EIO;
    return true;
}

void plan_io_failure(std::int64_t successes, bool lasting) {
    failures_last = lasting;
    calls_until_failure = successes;
}

}  // namespace kv::platform

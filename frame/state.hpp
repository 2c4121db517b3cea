// SPDX-License-Identifier: MIT
// All process-wide state of the runtime frame.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "kv/frame.h"

#include "platform/platform.hpp"

namespace kv::frame {

inline constexpr int kTraceEntries = 20;
inline constexpr int kTraceNameLength = 79;
inline constexpr int kApplicationNameLength = 20;

struct TraceEntry {
    char name[kTraceNameLength + 1];
    std::int32_t count;
};

struct ExitNode {
    kv_exit_function fn;
    ExitNode *next;
};

struct State {
    platform::Lock &log_lock;

    platform::Lock &trace_lock;
    std::array<TraceEntry, kTraceEntries> trace;  // [0] is the outermost
    int trace_depth;
    bool trace_off;

    std::int32_t error_output;
    char application_name[80];

    ExitNode *first_exit_node;
    ExitNode *last_exit_node;
    ExitNode *running_exit_node;  // the one whose function runs, while the list runs

    std::atomic<std::int32_t> platform_code;  // 0: not asked yet
};

extern State state;

}  // namespace kv::frame

// SPDX-License-Identifier: MIT
// What the clock keeps for the whole process.
#pragma once

#include <cstdint>

#include "kv/clock.h"

namespace kv::clock {

struct State {
    char date[80];  // the results of clock_date() and clock_time()
    char time[80];

    CLOCK_TIMER *timers[CLOCK_MOST_TIMERS];  // in the order of opening, never closed
    std::int32_t timer_count;
};

inline constinit State state{};

}  // namespace kv::clock

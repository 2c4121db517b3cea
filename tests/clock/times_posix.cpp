// SPDX-License-Identifier: MIT
// The time zone that a process sets itself, as POSIX lets it.
#include <gtest/gtest.h>

#include "kv/clock.h"
#include "kv/frame.h"

namespace {

constexpr int32_t kSpring = 1774746000;  // 29 March 2026, 01:00 UTC: 02:00 becomes 03:00 in Berlin

TEST(ClockTimesOnPosix, FollowTheTimeZone) {
    kv_putenv("TZ=Europe/Berlin");
    EXPECT_STREQ(clock_time(kSpring, 0), "03:00");
    kv_putenv("TZ=UTC");
    EXPECT_STREQ(clock_time(kSpring, 0), "01:00");
    CLOCK_RECORD record{0, 0, 1, 29, 2, 126, 0, 0};
    EXPECT_EQ(clock_makevalue(&record), kSpring);
}

}  // namespace

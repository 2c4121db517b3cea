// SPDX-License-Identifier: MIT
// Times as numbers, texts and records, around the changes of daylight saving and at the ends of the range.
#include <cstddef>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>

#include "kv/clock.h"

#include "tests/support/support.hpp"

namespace {

constexpr int32_t kSpring = 1774746000;  // 29 March 2026, 01:00 UTC: 02:00 becomes 03:00 in Berlin
constexpr int32_t kAutumn = 1792890000;  // 25 October 2026, 01:00 UTC: 03:00 becomes 02:00

static_assert(sizeof(CLOCK_RECORD) == 32 && offsetof(CLOCK_RECORD, yday) == 28);

class ClockTimes : public testing::Test {
  protected:
    ClockTimes() { kvtest::use_time_zone_of_berlin(); }
};

TEST_F(ClockTimes, Texts) {
    const struct {
        int32_t time;
        const char *date, *long_date, *time_of_day, *with_seconds;
    } cases[] = {
        {1772690649, "05.03.26", "05. Maerz 2026", "07:04", "07:04:09"},
        {1795042799, "18.11.26", "18. November 2026", "23:59", "23:59:59"},
        {kSpring - 1, "29.03.26", "29. Maerz 2026", "01:59", "01:59:59"},
        {kSpring, "29.03.26", "29. Maerz 2026", "03:00", "03:00:00"},
        {kAutumn - 1, "25.10.26", "25. Oktober 2026", "02:59", "02:59:59"},
        {kAutumn, "25.10.26", "25. Oktober 2026", "02:00", "02:00:00"},
        {1, "01.01.70", "01. Januar 1970", "01:00", "01:00:01"},
        {1770037200, "02.02.26", "02. Februar 2026", "14:00", "14:00:00"},
        {1777636800, "01.05.26", "01. Mai 2026", "14:00", "14:00:00"},
        {1780315200, "01.06.26", "01. Juni 2026", "14:00", "14:00:00"},
        {1782907200, "01.07.26", "01. Juli 2026", "14:00", "14:00:00"},
        {1785585600, "01.08.26", "01. August 2026", "14:00", "14:00:00"},
        {1788264000, "01.09.26", "01. September 2026", "14:00", "14:00:00"},
        {1796130000, "01.12.26", "01. Dezember 2026", "14:00", "14:00:00"},
        {954540000, "01.04.00", "01. April 2000", "00:00", "00:00:00"},
        {INT32_MAX, "19.01.38", "19. Januar 2038", "04:14", "04:14:07"},
        {-1, "???", "???", "???", "???"},
        {INT32_MIN, "???", "???", "???", "???"},
    };
    for (const auto &c : cases) {
        EXPECT_STREQ(clock_date(c.time, 0), c.date) << c.time;
        EXPECT_STREQ(clock_date(c.time, -1), c.long_date) << c.time;
        EXPECT_STREQ(clock_time(c.time, 0), c.time_of_day) << c.time;
        EXPECT_STREQ(clock_time(c.time, 2), c.with_seconds) << c.time;
    }
    const char *date = clock_date(1, 0);
    clock_time(1, 0);
    EXPECT_STREQ(date, "01.01.70");  // a buffer for each of the two
}

TEST_F(ClockTimes, ZeroIsNow) {
    const int32_t before = clock_value();
    EXPECT_NEAR(static_cast<double>(before), static_cast<double>(std::time(nullptr)), 2);
    CLOCK_RECORD record{};
    clock_makestruct(0, &record);
    const int32_t now = clock_makevalue(&record);
    // The second time in the hour that comes twice is taken for the first.
    EXPECT_TRUE(now >= before - 3600 && now <= clock_value()) << now;
    std::string date, expected;
    for (int32_t start = 0; start != clock_value();) {  // again when a second has just gone by
        start = clock_value();
        date = std::string(clock_date(0, 0)) + clock_time(0, 1);
        expected = std::string(clock_date(start, 0)) + clock_time(start, 1);
    }
    EXPECT_EQ(date, expected);
}

TEST_F(ClockTimes, Records) {
    const struct {
        CLOCK_RECORD record;  // wday and yday are results
        int32_t value;
    } cases[] = {
        {{9, 4, 7, 5, 2, 126, 4, 63}, 1772690649},
        {{0, 0, 0, 32, 0, 126, 0, 31}, 1769900400},         // 1 February
        {{-1, 0, 3, 29, 2, 126, 0, 87}, kSpring - 1},       // the second before the change
        {{0, 0, 3, 29, 2, 126, 0, 87}, kSpring},            //
        {{0, 30, 2, 29, 2, 126, 0, 87}, kSpring - 1800},    // in the hour that is left out
        {{59, 59, 1, 25, 9, 126, 0, 297}, kAutumn - 3601},  // before the hour that comes twice
        {{0, 30, 2, 25, 9, 126, 0, 297}, kAutumn - 1800},   // in it
        {{0, 0, 3, 25, 9, 126, 0, 297}, kAutumn + 3600},    // and after it
        {{0, 0, 0, 31, 11, 100, 0, 365}, 978217200},        // the last day of a leap year
        {{0, 0, 24 * 366, 0, 0, 100, 0, 365}, 978217200},   // hours of a whole year
        {{7, 14, 4, 19, 0, 138, 2, 18}, INT32_MAX},         //
        {{0, 0, 1, 1, 0, 70, 4, 0}, 0},                     //
    };
    for (const int32_t earlier_month : {0, 6}) {  // what was asked before does not matter
        for (const auto &c : cases) {
            CLOCK_RECORD earlier{0, 0, 12, 1, earlier_month, 126, 0, 0};
            clock_makevalue(&earlier);
            CLOCK_RECORD record = c.record;
            record.wday = record.yday = -7;
            EXPECT_EQ(clock_makevalue(&record), c.value);
            // Only these two are results; the others stay, even out of their ranges.
            EXPECT_EQ(std::memcmp(&record, &c.record, sizeof record), 0) << c.value;
        }
    }
    for (int32_t time = 86400; time < INT32_MAX - 9999999; time += 9999999) {
        CLOCK_RECORD record{};
        clock_makestruct(time, &record);
        CLOCK_RECORD again = record;
        again.wday = again.yday = -1;
        const int32_t value = clock_makevalue(&again);
        EXPECT_TRUE(value == time || value == time - 3600) << time;  // the hour that comes twice
        EXPECT_EQ(again.wday, record.wday) << time;
        EXPECT_EQ(again.yday, record.yday) << time;
    }
}

TEST_F(ClockTimes, WhatHasNoValue) {
    const CLOCK_RECORD cases[] = {
        {8, 14, 4, 19, 0, 138, 5, 6},      // a second too late
        {59, 59, 0, 1, 0, 70, 5, 6},       // a second too early
        {0, 0, 0, 1, 0, -1900, 5, 6},      //
        {0, 0, 0, 1, 0, INT32_MAX, 5, 6},  //
        {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, 5, 6},
        {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, 5, 6},
    };
    for (const CLOCK_RECORD &c : cases) {
        CLOCK_RECORD record = c;
        EXPECT_EQ(clock_makevalue(&record), -1) << c.year;
        EXPECT_EQ(record.wday, 5) << c.year;
        EXPECT_EQ(record.yday, 6) << c.year;
    }
    CLOCK_RECORD record{1, 2, 3, 4, 5, 6, 7, 8};
    const CLOCK_RECORD zeros{};
    clock_makestruct(-1, &record);
    EXPECT_EQ(std::memcmp(&record, &zeros, sizeof record), 0);
}

}  // namespace

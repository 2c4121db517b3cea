// SPDX-License-Identifier: MIT
// Timers and their report. Timers cannot be closed: the tests stand in the order in which they fill the
// table.
#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "kv/clock.h"

#include "tests/support/support.hpp"

namespace {

static_assert(sizeof(CLOCK_TIMER) == 96 && offsetof(CLOCK_TIMER, total_ms) == 88);

// The report, and the head that it has to have.
std::string report(int32_t mode, std::string &head) {
    for (int32_t start = 0; start != clock_value();) {
        start = clock_value();
        head = std::string("   Zeitmessung vom ") + clock_date(0, 0) + ", " + clock_time(0, 1) + "\n\n";
        clock_timertable("c:\\zeiten.txt", mode);
    }
    return kvtest::read_report(kvtest::drive_c() / "zeiten.txt");
}

TEST(ClockTimers, WithoutTimers) {
    std::string head;
    const std::string text = report(CLOCK_TABLE_OVERWRITE, head);
    EXPECT_EQ(text, head + "keine Timer vorhanden.");
    clock_timertable("c:\\no directory\\zeiten.txt", 1);
    clock_timertable("", 0);
    clock_timerstart(nullptr);
    clock_timerstop(nullptr);
    clock_timerreset(nullptr);
    EXPECT_EQ(clock_timerget(nullptr), 0);
}

TEST(ClockTimers, AddUp) {
    CLOCK_TIMER *timer = clock_timeropen("Netz");
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(clock_timerget(timer), 0);
    const auto start_before = [&](int32_t milliseconds) {
        clock_timerstart(timer);
        EXPECT_NEAR(timer->start_sec, clock_value(), 1);
        EXPECT_EQ(timer->start_ms, timer->start_ms % 1000);
        timer->start_sec -= milliseconds / 1000;
        timer->start_ms -= milliseconds % 1000;
    };
    const auto expect_total = [&](uint32_t total) {
        const auto passed = static_cast<uint32_t>(clock_timerget(timer)) - total;
        EXPECT_LE(passed, 10000U) << total;  // the test itself takes time
    };
    start_before(15000);
    clock_timerstop(timer);
    start_before(15000);
    clock_timerstop(timer);
    EXPECT_EQ(timer->starts, 2);
    expect_total(30000);
    clock_timerstop(timer);  // once more since the same start
    EXPECT_EQ(timer->starts, 3);
    expect_total(45000);
    clock_timerreset(timer);
    EXPECT_STREQ(timer->name, "Netz");
    EXPECT_EQ(timer->start_sec + timer->start_ms + timer->total_ms + timer->starts, 0);
    constexpr int32_t kDays = 24 * 86400 * 1000;
    start_before(kDays);
    clock_timerstop(timer);
    expect_total(kDays);
    start_before(kDays);
    clock_timerstop(timer);  // wraps
    expect_total(2U * kDays);
    clock_timerreset(timer);
}

TEST(ClockTimers, Report) {
    // What AddUp has opened, if it ran in this process, stands first.
    std::string head;
    std::string expected = report(CLOCK_TABLE_OVERWRITE, head);
    expected.erase(0, head.size());
    const std::string rule = "   -----------------|---------|----------\n";
    if (expected == "keine Timer vorhanden.") {
        expected = "          Timername |  Starts |  Sekunden\n" + rule;
    }
    const struct {
        const char *name;
        int32_t starts, total_ms;
        const char *line;
    } timers[] = {
        {"Eingabe", 2, 3000, "            Eingabe |       2 |     3.000\n"},
        {"", 0, 0, "                    |       0 |     0.000\n"},
        {"Steifigkeitsmatrix", 1234567, 7, "    Steifigkeitsmatrix | 1234567 |     0.007\n"},
        {"lang", 1, -1, "               lang |       1 | 4294967.295\n"},
    };
    for (const auto &t : timers) {
        CLOCK_TIMER *timer = clock_timeropen(t.name);
        ASSERT_NE(timer, nullptr);
        timer->starts = t.starts;
        timer->total_ms = t.total_ms;
        expected += t.line + rule;
    }
    std::string first_head;
    const std::string first = report(CLOCK_TABLE_OVERWRITE, first_head);
    EXPECT_EQ(first, first_head + expected);
    clock_timertable("C:/ZEITEN.TXT", CLOCK_TABLE_APPEND);
    const std::string both = kvtest::read_report(kvtest::drive_c() / "zeiten.txt");
    EXPECT_EQ(both.substr(0, first.size()), first);
    EXPECT_EQ(both.size(), 2 * first.size());
    EXPECT_EQ(report(2, head).size(), first.size());
}

TEST(ClockTimers, HaveALimit) {
    const std::string longest(79, 'n');
    CLOCK_TIMER *timer = clock_timeropen((longest + "x").c_str());
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->name, longest);
    int failures = 0;
    kvtest::sweep_allocation_failures([&](std::int64_t successes) {
        const bool opened = clock_timeropen("t") != nullptr;
        EXPECT_EQ(opened, successes > 0);
        failures += opened ? 0 : 1;
    });
    EXPECT_EQ(failures, 1);
    int opened = 0;
    while (opened <= CLOCK_MOST_TIMERS && clock_timeropen("t") != nullptr) ++opened;
    EXPECT_EQ(clock_timeropen("t"), nullptr);
    std::string head;
    const std::string table = report(0, head);
    int rows = 0;  // each is followed by a rule, as is the heading
    for (auto at = table.find("-|-"); at != std::string::npos; at = table.find("\n   -", at)) {
        at += 1;
        ++rows;
    }
    EXPECT_EQ(rows - 1, CLOCK_MOST_TIMERS);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Environment variables and the kind of platform.
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

TEST(Process, EnvironmentVariables) {
    const char *const fallback = "x";
    EXPECT_EQ(kv_getenv("KV_NO_SUCH_VARIABLE", fallback), fallback);
    EXPECT_EQ(kv_getenv("KV_NO_SUCH_VARIABLE", nullptr), nullptr);

    char setting[] = "KV_TEST_A=1=2";
    EXPECT_EQ(kv_putenv(setting), 0);
    std::memset(setting, 'z', sizeof setting - 1);
    EXPECT_STREQ(kv_getenv("KV_TEST_A", nullptr), "1=2");
    EXPECT_EQ(kv_putenv("KV_TEST_A="), 0);
    EXPECT_EQ(kv_getenv("KV_TEST_A", nullptr), nullptr);
    for (const char *malformed : {"", "KV_TEST_A", "=1"}) EXPECT_EQ(kv_putenv(malformed), -1) << malformed;

    kvtest::sweep_allocation_failures(
        [](std::int64_t successes) { EXPECT_EQ(kv_putenv("KV_TEST_B=1"), successes == 0 ? -1 : 0); });
}

TEST(Process, ThePlatformIsTodaysWindows) {
    EXPECT_EQ(kv_get_win32(), 5);
    EXPECT_EQ(kv_get_win32(), 5);
}

TEST(Process, TheVersionIsThatOfTheHeaders) {
    EXPECT_STREQ(kv_version(), KV_VERSION);
    int major = 0;
    int minor = 0;
    int patch = 0;
    ASSERT_EQ(std::sscanf(kv_version(), "%d.%d.%d", &major, &minor, &patch), 3) << kv_version();
    EXPECT_EQ(KV_VERSION_NUMBER, major * 10000 + minor * 100 + patch);
}

TEST(Process, SignalsAndWaitsReturn) {
    kv_beep();
    kv_tone();
    kv_wait();
    kv_pause();
    heap_statistic();
}

}  // namespace

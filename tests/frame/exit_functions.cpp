// SPDX-License-Identifier: MIT
// Exit functions.
#include <gtest/gtest.h>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

std::string g_calls;

void f() {
    g_calls += 'f';
}
void g() {
    g_calls += 'g';
}
void registers_g() {
    g_calls += 'r';
    endprog_fkt(KV_ENDPROG_REGISTER, g);
}
void ends() {
    g_calls += 'e';
    kv_atexit();
}
void frees() {
    g_calls += 'x';
    endprog_fkt(KV_ENDPROG_FREE, nullptr);
}

struct ExitFunctions : testing::Test {
    ExitFunctions() { g_calls.clear(); }
    ~ExitFunctions() override { endprog_fkt(KV_ENDPROG_FREE, nullptr); }

    void add(std::initializer_list<kv_exit_function> functions) {
        for (const kv_exit_function function : functions)
            EXPECT_EQ(endprog_fkt(KV_ENDPROG_REGISTER, function), 0);
    }
};

TEST_F(ExitFunctions, RunInTheOrderOfRegistrationAndOnce) {
    kvtest::clear_log();
    add({f, g, f});
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ONE, g), 0);
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ALL, nullptr), 0);
    EXPECT_EQ(kv_atexit(), 0);
    EXPECT_EQ(kv_atexit(), 0);
    EXPECT_EQ(g_calls, "gfgffgf");
    EXPECT_EQ(kvtest::read_log(), "");
}

TEST_F(ExitFunctions, RefuseWhatMakesNoSense) {
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ALL, nullptr), 0);
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_REGISTER, nullptr), -1);
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ONE, nullptr), -1);
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ONE, f), -1);
    for (const int mode : {-1, 4, 100}) EXPECT_EQ(endprog_fkt(mode, f), -1) << mode;
    EXPECT_EQ(kv_atexit(), 0);
    EXPECT_EQ(g_calls, "");
}

TEST_F(ExitFunctions, MayChangeTheListThatRuns) {
    add({registers_g, f});
    EXPECT_EQ(kv_atexit(), 0);
    add({f, ends, g});
    EXPECT_EQ(kv_atexit(), 0);
    add({f, frees, g});
    EXPECT_EQ(endprog_fkt(KV_ENDPROG_RUN_ALL, nullptr), 0);
    EXPECT_EQ(g_calls, "rfgfegfx");
}

TEST_F(ExitFunctions, AnExhaustedHeapLeavesTheListAsItWas) {
    add({f});
    kvtest::sweep_allocation_failures([](std::int64_t successes) {
        kvtest::clear_log();
        const int32_t result = endprog_fkt(KV_ENDPROG_REGISTER, g);
        EXPECT_EQ(result, successes == 0 ? -1 : 0);
        EXPECT_EQ(kvtest::count_in_log("out of space"), successes == 0 ? 1 : 0);
    });
    kv_atexit();
    EXPECT_EQ(g_calls, "fgg");
}

}  // namespace

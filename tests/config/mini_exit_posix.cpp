// SPDX-License-Identifier: MIT
// A cache that finds no memory ends the process. On POSIX alone: the test forks for each end.
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "kv.h"

#include "memory/failpoint.hpp"
#include "tests/config/mini_caches.hpp"
#include "tests/support/support.hpp"

namespace {

using namespace kvtest;

// Runs it in a process of its own, in which allocations fail after some. 0 when it was done or kv_exit()
// was called with the text; the log tells which.
void in_child(std::int64_t successes, const std::function<void()> &run, bool &done) {
    clear_log();
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        static_cast<void>(std::freopen("/dev/null", "w", stderr));
        kv::memory::plan_failure(successes);
        run();
        kv::memory::plan_failure(-1);
        _exit(77);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << status;
    done = WEXITSTATUS(status) == 77;
    ASSERT_TRUE(done || WEXITSTATUS(status) == 0) << WEXITSTATUS(status);
    ASSERT_EQ(count_in_log("Insufficient of memory."), done ? 0 : 1);
}

TEST(MiniExhaustion, LoadingAndWritingEndTheProcess) {
    use_file("[A]\na=1\nb=2\n[B]\nc=3\n");
    const Cache cache(MINI_READONLY);
    const std::string text(300, 'x');
    const std::function<void()> runs[] = {
        [&] { value(cache, "A", "b"); },
        [&] { mini_write_string(cache, "B", "c", text.c_str()); },
        [&] { mini_write_string(cache, "C", "c", text.c_str()); },
    };
    for (const auto &run : runs) {
        int exits = 0;
        bool done = false;
        for (int successes = 0; !done && successes < 50; ++successes) {
            in_child(successes, run, done);
            if (HasFatalFailure()) return;
            if (!done) ++exits;
        }
        EXPECT_TRUE(done);
        EXPECT_GE(exits, 2);
    }
}

}  // namespace

// SPDX-License-Identifier: MIT
// Reports of several threads at once.
#include <atomic>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

TEST(FrameThreads, EntriesNeverInterleave) {
    constexpr int kThreads = 8;
    constexpr int kReports = 50;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            const std::string text(3000, static_cast<char>('a' + thread));
            for (int i = 0; i < kReports; ++i) {
                kv_message(text.c_str(), text.c_str(), nullptr, "f", thread);
                EXPECT_EQ(kv_get_win32(), 5);
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    int whole = 0;
    for (int thread = 0; thread < kThreads; ++thread) {
        const std::string text = "  " + std::string(3000, static_cast<char>('a' + thread)) + "!\n";
        whole += kvtest::count_in_log("line " + std::to_string(thread) + ":\n" + text + text + "\n\n");
    }
    EXPECT_EQ(whole, kThreads * kReports);
}

// Of a trace that its own thread changes.
TEST(FrameThreads, TracebacksHaveWholeNames) {
    std::atomic<bool> ended{false};
    std::thread tracing([&] {
        for (char c = 'a'; !ended; c = c == 'z' ? 'a' : static_cast<char>(c + 1)) {
            kv_begin(std::string(79, c).c_str());
            kv_end();
        }
    });
    for (int i = 0; i < 4000; ++i) kv_switch_error(1, "f", 1);
    ended = true;
    tracing.join();
    std::istringstream log(kvtest::read_log());
    for (std::string line; std::getline(log, line);) {
        if (line.substr(0, 4) != "  - " || line == "  - main.") continue;
        EXPECT_EQ(line, "  - " + std::string(79, line[4]) + " called from ...");
    }
}

}  // namespace

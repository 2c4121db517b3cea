// SPDX-License-Identifier: MIT
// Children that are forked while other threads are inside the library; other systems do not fork.
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "kv.h"

namespace {

// True if the function returns true in a forked child, and within a minute.
bool in_child(const std::function<bool()> &function) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        _exit(function() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

// Takes every lock once.
bool works(ENV *env) {
    CLOCK_RECORD record;
    clock_makestruct(0, &record);
    kv_message("report", nullptr, nullptr, "f", 1);
    kv_begin("name");
    kv_end();
    return env_put(env, "s", "a", "1") == 0 && env_delete(env, "s", "a") == 0 && fio_ispath("C:.") == 1 &&
           record.year > 100;
}

struct Forks : testing::Test {
    ~Forks() override {
        for (ENV *each : {env, written}) EXPECT_EQ(env_close(each, 0), 0);
    }

    ENV *const env = env_open(1, nullptr);
    ENV *const written = env_open(2, nullptr);
    std::atomic<bool> inside{false};
    std::atomic<bool> ended{false};
    std::atomic<bool> good{true};
};

TEST_F(Forks, LeaveTheLocksUsable) {
    std::thread threads[3];
    for (std::thread &thread : threads) {
        thread = std::thread([this, own = env_open(3, nullptr)] {
            while (!ended) good = good && works(own);
            env_close(own, 0);
        });
    }
    for (int i = 0; i < 40 && !HasFailure(); ++i) EXPECT_TRUE(in_child([&] { return works(env); })) << i;
    ended = true;
    for (std::thread &thread : threads) thread.join();
    EXPECT_TRUE(good);
}

// The thread that forks may hold the lock, or another one that waits for what happens after the fork.
TEST_F(Forks, InsideAnOperation) {
    env_put(written, "s", "a", "1");
    const auto fork_inside = [](int32_t, void *test) {
        auto &self = *static_cast<Forks *>(test);
        if (!self.inside.exchange(true)) self.good = in_child([&] { return works(self.env); });
    };
    EXPECT_TRUE(in_child([&] {
        env_write(fork_inside, this, written);
        std::thread other([&] { good = good && works(env); });
        other.join();
        return good.load();
    }));
    std::thread holder([&] {
        const auto wait_inside = [](int32_t, void *test) {
            auto &self = *static_cast<Forks *>(test);
            self.inside = true;
            while (!self.ended) std::this_thread::yield();
        };
        env_write(wait_inside, this, written);
    });
    while (!inside) std::this_thread::yield();
    EXPECT_TRUE(in_child([&] { return works(env); }));
    ended = true;
    holder.join();
}

}  // namespace

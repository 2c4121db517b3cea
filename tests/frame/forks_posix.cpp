// Children that are forked while other threads are inside the library; other systems do not fork.
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "kv.h"

#include "tests/support/support.hpp"

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

bool works(ENV *env) {
    char text[8] = "";
    CLOCK_RECORD record;
    clock_makestruct(0, &record);
    kv_message("child", nullptr, nullptr, "f", 1);
    kv_begin("child");
    kv_end();
    return env_put(env, "s", "child", "1") == 0 && env_get(env, "s", "child", 1, sizeof text, text) >= 0 &&
           fio_ispath("C:.") == 1 && record.year > 100;
}

TEST(Forks, LeaveTheLocksUsable) {
    ENV *const env = env_open(1, nullptr);
    std::atomic<bool> ended{false};
    const auto until_ended = [&](const std::function<void()> &step) {
        return std::thread([&ended, step] {
            while (!ended) step();
        });
    };
    const std::string text(1000, 'x');
    std::thread threads[] = {
        until_ended([&] { kv_message(text.c_str(), nullptr, nullptr, "f", 1); }), until_ended([&] {
            env_put(env, "s", text.c_str(), text.c_str()), env_delete(env, "s", text.c_str());
        }),
        until_ended([] { kv_begin("parent"), kv_end(); }), until_ended([] {
            CLOCK_RECORD record;
            clock_makestruct(fio_ispath("C:."), &record);
        })};
    for (int i = 0; i < 40 && !HasFailure(); ++i) EXPECT_TRUE(in_child([&] { return works(env); })) << i;
    ended = true;
    for (std::thread &thread : threads) thread.join();
    EXPECT_EQ(env_close(env, 0), 0);
}

struct Fork {
    ENV *written;
    ENV *env;
    std::atomic<bool> inside;
    std::atomic<bool> ended;
};

// The thread that forks may hold the lock, or another one that waits for what happens after the fork.
TEST(Forks, InsideAnOperation) {
    Fork state{env_open(1, nullptr), env_open(2, nullptr), false, false};
    env_put(state.written, "s", "a", "1");
    EXPECT_TRUE(in_child([&] {
        env_write(
            [](int32_t, void *s) {
                Fork &fork = *static_cast<Fork *>(s);
                if (!fork.inside.exchange(true)) fork.ended = in_child([&] { return works(fork.env); });
            },
            &state, state.written);
        std::thread other([&] { state.ended = state.ended && works(state.env); });
        other.join();
        return state.ended.load();
    }));
    std::thread holder([&] {
        env_write(
            [](int32_t, void *s) {
                Fork &fork = *static_cast<Fork *>(s);
                fork.inside = true;
                while (!fork.ended) std::this_thread::yield();
            },
            &state, state.written);
    });
    while (!state.inside) std::this_thread::yield();
    EXPECT_TRUE(in_child([&] { return works(state.env); }));
    state.ended = true;
    holder.join();
    for (ENV *env : {state.written, state.env}) EXPECT_EQ(env_close(env, 0), 0);
}

}  // namespace

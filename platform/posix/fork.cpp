// SPDX-License-Identifier: MIT
// What a fork does with the locks: the child has one thread, and nobody who would release what another
// thread of the parent held.
#include <chrono>
#include <pthread.h>
#include <thread>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {

template <typename Step>
void for_each_lock(Step step) {
    for (Lock &lock : locks) step(lock);
}

}  // namespace

std::uintptr_t Lock::this_thread() {
    return pthread_self();
}

void Lock::survive_forks() {
    // Two threads may come here at once; handlers that run twice do no harm.
    pthread_atfork([] { for_each_lock([](Lock &lock) { lock.before_fork(); }); },
                   [] { for_each_lock([](Lock &lock) { lock.after_fork_in_parent(); }); },
                   [] { for_each_lock([](Lock &lock) { lock.after_fork_in_child(); }); });
    survives_forks_ = true;
}

// The holder of the lock may be waiting for what only the child will do, so the wait has an end.
void Lock::before_fork() {
    const std::uintptr_t self = this_thread();
    if (owner_.load(std::memory_order_relaxed) != self) {
        constexpr int kMostTries = 1000;
        for (int i = 0; !mutex_.try_lock(); ++i) {
            if (i == kMostTries) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        owner_.store(self, std::memory_order_relaxed);
    }
    ++depth_;
    ++forks_;
}

bool Lock::after_fork_in_parent() {
    const bool own = owner_.load(std::memory_order_relaxed) == this_thread();
    if (own && forks_ > 0) {
        --forks_;
        unlock();
    }
    return own;
}

void Lock::after_fork_in_child() {
    if (after_fork_in_parent()) return;
    mutex_.reset();
    owner_.store(0, std::memory_order_relaxed);
    depth_ = forks_ = 0;
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
#include <type_traits>

#include "platform/platform.hpp"

namespace kv::platform {

static_assert(std::is_trivially_destructible_v<Lock>, "threads may outlive main()");

bool Mutex::try_lock() {
    State expected = State::free;
    return state_.compare_exchange_strong(expected, State::held, std::memory_order_acquire,
                                          std::memory_order_relaxed);
}

void Mutex::lock() {
    constexpr int kTries = 100;
    for (int i = 0; i < kTries; ++i) {
        if (state_.load(std::memory_order_relaxed) == State::free && try_lock()) return;
    }
    while (state_.exchange(State::waited_for, std::memory_order_acquire) != State::free) {
        state_.wait(State::waited_for, std::memory_order_relaxed);
    }
}

void Mutex::unlock() {
    if (state_.exchange(State::free, std::memory_order_release) == State::waited_for) state_.notify_one();
}

void Lock::lock() {
    if (!survives_forks_.load(std::memory_order_relaxed)) survive_forks();
    const std::uintptr_t self = this_thread();
    if (owner_.load(std::memory_order_relaxed) != self) {
        mutex_.lock();
        owner_.store(self, std::memory_order_relaxed);
    }
    ++depth_;
}

void Lock::unlock() {
    if (--depth_ > 0) return;
    owner_.store(0, std::memory_order_relaxed);
    mutex_.unlock();
}

}  // namespace kv::platform

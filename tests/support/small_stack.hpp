// SPDX-License-Identifier: MIT
// A thread with little stack, for inputs that must not cost any.
#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <pthread.h>

namespace kvtest {

/// Runs `body` on a stack of 256 KiB.
inline void on_small_stack(std::function<void()> body) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    const auto call = [](void *argument) -> void * {
        (*static_cast<std::function<void()> *>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace kvtest

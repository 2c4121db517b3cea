// SPDX-License-Identifier: MIT
// Stacks and queues. What is left in them when they are closed is for the leak check.
#include <algorithm>
#include <gtest/gtest.h>

#include "kv/containers.h"

#include "tests/support/support.hpp"

namespace {

TEST(StackQueue, Orders) {
    STACK *stack = stack_open();
    QUEUE *queue = queue_open();
    for (int round = 0; round < 2; ++round) {  // again after they ran empty
        for (const kv_value value : {INTPTR_MAX, kv_value{0}, INTPTR_MIN}) {
            stack_push(stack, value);
            queue_post(queue, value);
        }
        for (const kv_value value : {INTPTR_MIN, kv_value{0}, INTPTR_MAX, kv_value{0}}) {
            EXPECT_EQ(stack_get(stack), value);
            EXPECT_EQ(stack_pop(stack), value);
        }
        for (const kv_value value : {INTPTR_MAX, kv_value{0}, INTPTR_MIN, kv_value{0}}) {
            EXPECT_EQ(queue_look(queue), value);
            EXPECT_EQ(queue_get(queue), value);
        }
        for (kv_value value = 1; value <= 3; ++value) queue_post(queue, value);
        queue_clear(queue);
    }
    stack_push(nullptr, 1);
    EXPECT_EQ(stack_pop(nullptr), 0);
    EXPECT_EQ(stack_get(nullptr), 0);
    stack_close(nullptr);
    queue_post(queue, 8);
    queue_close(queue);
    stack_push(stack, 8);
    stack_close(stack);
}

TEST(StackQueue, ExhaustedHeap) {
    kvtest::sweep_allocation_failures([](std::int64_t successes) {
        STACK *stack = stack_open();
        ASSERT_EQ(stack != nullptr, successes >= 1);
        for (kv_value value = 1; value <= 3; ++value) stack_push(stack, value);
        const auto kept = static_cast<kv_value>(std::clamp<std::int64_t>(successes - 1, 0, 3));
        for (kv_value value = kept; value >= 0; --value) EXPECT_EQ(stack_pop(stack), value);
        stack_close(stack);
    });
    kvtest::sweep_allocation_failures([](std::int64_t successes) {
        QUEUE *queue = queue_open();
        ASSERT_EQ(queue != nullptr, successes >= 1);
        if (queue == nullptr) return;
        for (kv_value value = 1; value <= 3; ++value) queue_post(queue, value);
        for (kv_value value = 1; value <= 3; ++value)
            EXPECT_EQ(queue_get(queue), value < successes ? value : 0);
        queue_close(queue);
    });
}

}  // namespace

// SPDX-License-Identifier: MIT
// The allocation wrappers, and the limits of pool heaps. Which pieces those give is for the model of the
// fuzz target.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "kv.h"

#include "memory/failpoint.hpp"
#include "memory/owned.hpp"
#include "tests/models/pool.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::count_in_log;
using kvtest::PoolModel;

TEST(Heap, BlocksComeGrowAndGo) {
    auto *zeros = static_cast<unsigned char *>(heap_calloc(4, 8));
    ASSERT_NE(zeros, nullptr);
    EXPECT_EQ(std::count(zeros, zeros + 32, 0), 32);
    std::memset(zeros, 7, 32);
    auto *larger = static_cast<unsigned char *>(heap_realloc(zeros, 100000));
    ASSERT_NE(larger, nullptr);
    EXPECT_EQ(std::count(larger, larger + 32, 7), 32);
    kv::memory::plan_failure(0);
    EXPECT_EQ(heap_realloc(larger, 200000), nullptr);  // which keeps the block
    EXPECT_EQ(heap_malloc(1), nullptr);
    EXPECT_EQ(heap_calloc(1, 1), nullptr);
    EXPECT_EQ(kv::memory::make_owned<int>(), nullptr);
    kv::memory::plan_failure(-1);
    EXPECT_EQ(std::count(larger, larger + 32, 7), 32);
    heap_free(larger);
    heap_free(heap_realloc(nullptr, 5));
    heap_free(nullptr);
}

TEST(Heap, SmartFreeClearsTheVariable) {
    kvtest::clear_log();
    void *block = heap_malloc(10);
    heap_smart_free(&block);
    EXPECT_EQ(block, nullptr);
    heap_smart_free(&block);
    EXPECT_EQ(kvtest::read_log(), "");
    heap_smart_free(nullptr);
    EXPECT_EQ(count_in_log("> MESSAGE in Unknown Application \"Heap\" line "), 1);
    EXPECT_EQ(count_in_log("\n  heap_smart_free: NIL-reference!\n\n\n"), 1);
}

TEST(Heap, ContainersReportExhaustionAndGiveEverythingBack) {
    kvtest::sweep_allocation_failures([](std::int64_t successes) {
        try {
            kv::memory::Vector<int> numbers;
            for (int i = 0; i < 100; ++i) numbers.push_back(i);
            EXPECT_EQ(numbers[99], 99);
        } catch (const std::bad_alloc &) {
            EXPECT_LT(successes, 8);
        }
    });
    EXPECT_THROW(kv::memory::Allocator<double>().allocate(std::size_t{1} << 30), std::bad_alloc);
}

TEST(Pool, RefusesWhatItCannotGive) {
    kvtest::clear_log();
    HEAP *pool = heap_open(9, 0);
    EXPECT_NE(heap_allocate(pool, 16), nullptr);
    for (const int32_t size : {17, INT32_MAX, -1, INT32_MIN})
        EXPECT_EQ(heap_allocate(pool, size), nullptr) << size;
    EXPECT_EQ(count_in_log("  heap_allocate: parameter 'size' greater than cachesize!"), 4);
    EXPECT_EQ(heap_allocate(nullptr, 8), nullptr);
    EXPECT_EQ(count_in_log("  heap_allocate: incorrect ID for this heap!"), 1);
    heap_deallocate(nullptr, pool);
    EXPECT_EQ(count_in_log("  heap_deallocate: incorrect ID for this heap!"), 1);
    heap_close(pool);
    heap_close(nullptr);
    for (const int32_t size : {-1, INT32_MAX, INT32_MIN}) EXPECT_EQ(heap_open(size, 0), nullptr) << size;
    EXPECT_EQ(count_in_log("  heap_open: out of space!"), 3);
    HEAP *empty = heap_open(0, 1);
    EXPECT_NE(heap_allocate(empty, 0), nullptr);
    heap_close(empty);
}

TEST(Pool, ExhaustedHeap) {
    kvtest::clear_log();
    int refused = 0;
    kvtest::sweep_allocation_failures([&](std::int64_t) {
        HEAP *pool = heap_open(16, 0);
        refused += pool == nullptr ? 1 : 0;
        if (pool == nullptr) return;
        PoolModel model(16);
        for (int i = 0; i < 20; ++i) {
            auto *piece = static_cast<char *>(heap_allocate(pool, i % 16));
            EXPECT_TRUE(piece == nullptr || model.takes(i % 16, piece));
            refused += piece == nullptr ? 1 : 0;
        }
        heap_close(pool);
    });
    EXPECT_EQ(count_in_log(": out of space!"), refused);
}

}  // namespace

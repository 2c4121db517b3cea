// The allocation wrappers.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "kv.h"

#include "memory/failpoint.hpp"
#include "memory/owned.hpp"
#include "tests/support/support.hpp"

namespace {

TEST(Heap, BlocksComeGrowAndGo) {
    auto *zeros = static_cast<unsigned char *>(heap_calloc(4, 8));
    ASSERT_NE(zeros, nullptr);
    EXPECT_EQ(std::count(zeros, zeros + 32, 0), 32);
    std::memset(zeros, 7, 32);
    auto *larger = static_cast<unsigned char *>(heap_realloc(zeros, 100000));
    ASSERT_NE(larger, nullptr);
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
    EXPECT_EQ(kvtest::count_in_log("> MESSAGE in Unknown Application \"Heap\" line "), 1);
    EXPECT_EQ(kvtest::count_in_log("\n  heap_smart_free: NIL-reference!\n\n\n"), 1);
}

TEST(Heap, AFailedReallocKeepsTheBlock) {
    auto *block = static_cast<char *>(heap_malloc(4));
    std::strcpy(block, "abc");
    kv::memory::plan_failure(0);
    EXPECT_EQ(heap_realloc(block, 8), nullptr);
    EXPECT_EQ(heap_malloc(1), nullptr);
    EXPECT_EQ(heap_calloc(1, 1), nullptr);
    kv::memory::plan_failure(-1);
    EXPECT_STREQ(block, "abc");
    heap_free(block);
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

}  // namespace

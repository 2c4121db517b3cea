// SPDX-License-Identifier: MIT
// Hash tables: sizes, threads, limits. Where keys are found is for the model of the fuzz target.
#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

int32_t often_extreme(const char *key) {
    static constexpr int32_t kHashes[] = {INT32_MIN, INT32_MAX, 0, -1, 5};
    return kHashes[static_cast<unsigned char>(std::string(key).back()) % 5];
}

// A lookup in the midst of a lookup, in a table with the same parent.
HASH *beside = nullptr;
int32_t looks_beside(const char *key) {
    if (HASH *table = std::exchange(beside, nullptr); table != nullptr) {
        hash_get(table, "a missing key", nullptr, nullptr);
        beside = table;
    }
    return often_extreme(key);
}

TEST(Hash, LookupsWithinLookups) {
    HASH *parent = hash_open(1, 30, looks_beside, nullptr);
    HASH *table = hash_open(2, 4, nullptr, parent);
    HASH *other = hash_open(3, 4, nullptr, parent);
    for (int i = 0; i < 20; ++i) hash_put(parent, std::to_string(i).c_str(), i);
    beside = other;
    for (int i = 0; i < 20; ++i) {
        kv_value value = -1;
        int32_t id = -1;
        EXPECT_GE(hash_get(table, std::to_string(i).c_str(), &value, &id), 0);
        EXPECT_EQ(value, i);
        EXPECT_EQ(id, 1);
    }
    hash_close(parent);  // has children: stays
    EXPECT_GE(hash_put(parent, "x", 1), 0);
    beside = nullptr;
    for (HASH *each : {other, table, parent}) hash_close(each);
}

// Every thread has tables of its own under one parent, and finds there what is in the parent.
TEST(Hash, ThreadsShareAParent) {
    HASH *parent = hash_open(1, 401, often_extreme, nullptr);  // most keys lie far behind their home
    for (int i = 0; i < 60; ++i) hash_put(parent, std::to_string(i).c_str(), i);
    std::atomic<int> missed{0};
    const auto look_up = [&] {
        for (int round = 0; round < 300; ++round) {
            HASH *own = hash_open(2, 3, nullptr, parent);
            for (int i = 0; i < 60; ++i) {
                kv_value value = -1;
                hash_get(own, std::to_string(i).c_str(), &value, nullptr);
                missed += value == i ? 0 : 1;
            }
            hash_close(own);
        }
    };
    std::thread threads[] = {std::thread(look_up), std::thread(look_up), std::thread(look_up)};
    for (std::thread &thread : threads) thread.join();
    EXPECT_EQ(missed, 0);
    hash_close(parent);
}

TEST(Hash, Sizes) {
    const struct {
        int32_t wanted;
        int32_t slots;
    } rows[] = {{INT32_MIN, 3}, {0, 3}, {2, 3}, {3, 3}, {4, 5}, {9, 11}, {10, 11}, {100, 101}, {121, 127}};
    for (const auto &row : rows) {
        HASH *table = hash_open(0, row.wanted, nullptr, nullptr);
        int32_t stored = 0;
        while (hash_put(table, std::to_string(stored).c_str(), stored) >= 0) ++stored;
        EXPECT_EQ(stored, row.slots) << row.wanted;
        EXPECT_EQ(hash_put(table, "0", 7),
                  hash_get(table, "0", nullptr, nullptr));  // full, but it is there
        hash_close(table);
    }
}

// Of NIL for a key only a removal tells; of a NIL table nothing.
TEST(Hash, NilArguments) {
    kvtest::clear_log();
    HASH *table = hash_open(10, 5, nullptr, nullptr);
    for (HASH *each : {table, static_cast<HASH *>(nullptr)}) {
        EXPECT_EQ(hash_put(each, nullptr, 1), -1);
        EXPECT_EQ(hash_get(each, nullptr, nullptr, nullptr), -1);
        EXPECT_EQ(hash_get_index(each, 0, nullptr, nullptr), -1);
        EXPECT_EQ(kvtest::read_log(), "");
    }
    EXPECT_EQ(hash_remove_name(nullptr, nullptr), -1);
    EXPECT_EQ(hash_remove_name(table, nullptr), -1);
    EXPECT_EQ(kvtest::count_in_log(">ERROR  in Unknown Application \"Hash\""), 1);
    EXPECT_EQ(kvtest::count_in_log("   NIL  parameter!\n"), 1);
    for (const int32_t bad : {-1, 5, INT32_MAX, INT32_MIN}) EXPECT_EQ(hash_remove_index(table, bad), -1);
    hash_reset(nullptr);
    hash_close(nullptr);
    hash_close(table);
}

TEST(Hash, ExhaustedHeap) {
    kvtest::sweep_allocation_failures([](std::int64_t) {
        HASH *table = hash_open(1, 11, nullptr, nullptr);
        if (table == nullptr) return;
        for (const char *key : {"a", "b", "c"}) {
            const int32_t index = hash_put(table, key, 1);
            char *copy = nullptr;
            EXPECT_EQ(hash_get(table, key, nullptr, nullptr), index);
            const bool given = hash_get_index(table, index, &copy, nullptr) >= 0;
            EXPECT_EQ(given, copy != nullptr);
            heap_free(copy);
        }
        hash_close(table);
    });
}

}  // namespace

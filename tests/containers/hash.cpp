// SPDX-License-Identifier: MIT
// Hash tables, against a model that walks the slots as the interface describes it.
#include "tests/models/hash.hpp"

#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <utility>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

using kvmodel::HashTable;

int32_t byte_sum(const char *key) {
    int32_t sum = 0;
    for (; *key != '\0'; ++key) sum += static_cast<signed char>(*key);
    return sum;
}

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

std::string random_key(std::mt19937 &random) {
    std::string key(1 + random() % 2, ' ');
    for (char &c : key) c = static_cast<char>(std::string("abcdeABC\xE4\xFC")[random() % 10]);
    return key;
}

void compare(HASH *table, const HashTable &model) {
    for (int32_t i = -1; i <= static_cast<int32_t>(model.slots.size()); ++i) {
        const HashTable::Slot *expected = model.at(i);
        char *key = nullptr;
        kv_value value = -77;
        EXPECT_EQ(hash_get_index(table, i, &key, &value), expected != nullptr ? i : -1);
        EXPECT_EQ(key != nullptr ? key : "(none)", expected != nullptr ? expected->key : "(none)");
        EXPECT_EQ(value, expected != nullptr ? expected->value : -77);
        heap_free(key);
    }
}

TEST(Hash, BehavesAsTheModel) {
    std::mt19937 random(11);
    for (const hash_function function : {hash_function{nullptr}, &often_extreme, &looks_beside}) {
        HashTable models[] = {{1, 31, function != nullptr ? function : byte_sum, nullptr},
                              {2, 13, byte_sum, &models[0]},
                              {3, 5, byte_sum, &models[1]}};
        HASH *tables[3];
        tables[0] = hash_open(1, 30, function, nullptr);
        tables[1] = hash_open(2, 12, byte_sum, tables[0]);
        tables[2] = hash_open(3, 4, nullptr, tables[1]);  // the parent's function
        HASH *other = beside = hash_open(4, 4, nullptr, tables[1]);
        for (kv_value step = 0; step < 20000 && !testing::Test::HasFailure(); ++step) {
            const size_t which = random() % 3;
            const std::string key = random_key(random);
            switch (random() % 4) {
                case 0:
                    EXPECT_EQ(hash_put(tables[which], key.c_str(), step), models[which].put(key, step));
                    break;
                case 1:
                    EXPECT_EQ(hash_remove_name(tables[which], key.c_str()), models[which].remove(key));
                    break;
                default: {
                    kv_value value = -5, expected_value = -5;
                    int32_t id = -6, expected_id = -6;
                    EXPECT_EQ(hash_get(tables[which], key.c_str(), &value, &id),
                              models[which].get(key, expected_value, expected_id))
                        << key;
                    EXPECT_EQ(value, expected_value);
                    EXPECT_EQ(id, expected_id);
                }
            }
            if (step % 1000 == 999) compare(tables[which], models[which]);
            if (step % 5000 == 4999) {
                hash_reset(tables[which]);
                for (auto &slot : models[which].slots) slot.reset();
            }
        }
        hash_close(tables[0]);  // has children: stays
        EXPECT_EQ(hash_put(tables[0], "x", 1), models[0].put("x", 1));
        beside = nullptr;
        for (HASH *table : {other, tables[2], tables[1], tables[0]}) hash_close(table);
    }
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

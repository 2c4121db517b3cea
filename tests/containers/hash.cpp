// Hash tables, against a model that walks the slots as the interface describes it.
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

int32_t byte_sum(const char *key) {
    int32_t sum = 0;
    for (; *key != '\0'; ++key) sum += static_cast<signed char>(*key);
    return sum;
}

int32_t often_extreme(const char *key) {
    static constexpr int32_t kHashes[] = {INT32_MIN, INT32_MAX, 0, -1, 5};
    return kHashes[static_cast<unsigned char>(std::string(key).back()) % 5];
}

struct Model {
    struct Slot {
        std::string key;
        kv_value value;
    };
    Model(int32_t number, int32_t size, hash_function function, Model *enclosing)
        : id(number), slots(static_cast<size_t>(size)), hashfn(function), parent(enclosing) {}

    size_t home(const std::string &key) const {
        const int64_t hash = hashfn(key.c_str());
        return static_cast<size_t>(std::abs(hash)) % (slots.size() - 1) + 1;
    }
    int32_t place(const std::string &key) const {
        const size_t start = home(key);
        size_t at = start;
        do {
            if (!slots[at] || slots[at]->key == key) return static_cast<int32_t>(at);
            at = (at + start) % slots.size();
        } while (at != start);
        return -1;
    }
    int32_t put(const std::string &key, kv_value value) {
        const int32_t at = place(key);
        if (at >= 0) slots[static_cast<size_t>(at)] = Slot{key, value};
        return at;
    }
    int32_t remove(const std::string &key) {
        const int32_t at = place(key);
        if (at < 0 || !slots[static_cast<size_t>(at)]) return -1;
        slots[static_cast<size_t>(at)].reset();
        return at;
    }
    int32_t get(const std::string &key, kv_value &value, int32_t &found_id) const {
        for (size_t pass = 1; pass <= 50; ++pass) {
            for (const Model *table = this; table != nullptr; table = table->parent) {
                if (pass > table->slots.size()) continue;
                const size_t at = table->home(key) * pass % table->slots.size();
                if (!table->slots[at] || table->slots[at]->key != key) continue;
                value = table->slots[at]->value;
                found_id = table->id;
                return static_cast<int32_t>(at);
            }
        }
        return -1;
    }

    int32_t id;
    std::vector<std::optional<Slot>> slots;
    hash_function hashfn;
    Model *parent;
};

std::string random_key(std::mt19937 &random) {
    std::string key(1 + random() % 2, ' ');
    for (char &c : key) c = static_cast<char>(std::string("abcdeABC\xE4\xFC")[random() % 10]);
    return key;
}

void compare(HASH *table, const Model &model) {
    for (int32_t i = 0; i < static_cast<int32_t>(model.slots.size()); ++i) {
        const auto &expected = model.slots[static_cast<size_t>(i)];
        char *key = nullptr;
        kv_value value = -77;
        EXPECT_EQ(hash_get_index(table, i, &key, &value), expected ? i : -1);
        EXPECT_EQ(key != nullptr ? key : "(none)", expected ? expected->key : "(none)");
        EXPECT_EQ(value, expected ? expected->value : -77);
        heap_free(key);
    }
}

TEST(Hash, BehavesAsTheModel) {
    std::mt19937 random(11);
    for (const hash_function function : {hash_function{nullptr}, &often_extreme}) {
        const hash_function used = function != nullptr ? function : byte_sum;
        Model models[] = {{1, 31, used, nullptr}, {2, 13, used, &models[0]}, {3, 5, byte_sum, &models[1]}};
        HASH *tables[3];
        tables[0] = hash_open(1, 30, function, nullptr);
        tables[1] = hash_open(2, 12, nullptr, tables[0]);
        tables[2] = hash_open(3, 4, byte_sum, tables[1]);
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
                    kv_value value = -5;
                    kv_value expected_value = -5;
                    int32_t id = -6;
                    int32_t expected_id = -6;
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
        for (HASH *table : {tables[0], tables[1], tables[2], tables[1], tables[0]}) hash_close(table);
    }
}

TEST(Hash, Sizes) {
    const struct {
        int32_t wanted;
        int32_t slots;
    } rows[] = {{INT32_MIN, 3}, {-7, 3}, {0, 3},   {1, 3},     {2, 3},    {3, 3},
                {4, 5},         {9, 11}, {10, 11}, {100, 101}, {121, 127}};
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

TEST(Hash, ParentsAndIndexes) {
    HASH *outer = hash_open(10, 5, nullptr, nullptr);
    HASH *inner = hash_open(20, 5, nullptr, outer);
    hash_close(outer);  // has a child: stays
    const int32_t index = hash_put(outer, "x", 1);
    int32_t id = 0;
    EXPECT_EQ(hash_get(inner, "x", nullptr, &id), index);
    EXPECT_EQ(id, 10);
    EXPECT_EQ(hash_remove_name(inner, "x"), -1);  // is not in this table
    EXPECT_EQ(hash_remove_index(outer, index), index);
    EXPECT_EQ(hash_remove_index(outer, index), -1);
    for (const int32_t bad : {-1, 5, INT32_MAX, INT32_MIN}) {
        char *key = nullptr;
        EXPECT_EQ(hash_remove_index(outer, bad), -1);
        EXPECT_EQ(hash_get_index(outer, bad, &key, nullptr), -1);
    }
    // Of NIL for a key only a removal tells.
    kvtest::clear_log();
    EXPECT_EQ(hash_put(inner, nullptr, 1), -1);
    EXPECT_EQ(hash_get(inner, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(kvtest::read_log(), "");
    EXPECT_EQ(hash_remove_name(inner, nullptr), -1);
    EXPECT_EQ(kvtest::count_in_log(">ERROR  in Unknown Application \"Hash\""), 1);
    EXPECT_EQ(kvtest::count_in_log("   NIL  parameter!\n"), 1);
    hash_close(inner);
    hash_close(outer);
    EXPECT_EQ(hash_remove_name(nullptr, nullptr), -1);
    EXPECT_EQ(hash_put(nullptr, "x", 1), -1);
    EXPECT_EQ(hash_get(nullptr, "x", nullptr, nullptr), -1);
    EXPECT_EQ(hash_get_index(nullptr, 0, nullptr, nullptr), -1);
    hash_reset(nullptr);
    hash_close(nullptr);
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

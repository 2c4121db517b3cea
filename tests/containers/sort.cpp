// SPDX-License-Identifier: MIT
// Sorting vectors. Lists are for the model of the fuzz target.
#include "kv/sort.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "tests/support/support.hpp"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <typename Number>
std::vector<Number> numbers(std::size_t count, std::mt19937_64 &random) {
    std::vector<Number> result(count);
    for (Number &number : result) {
        const uint64_t bits = random();
        if constexpr (std::is_same_v<Number, double>) {
            std::memcpy(&number, &bits, sizeof number);
            if (std::isnan(number)) number = static_cast<double>(bits % 100) - 50;
        } else {
            number = static_cast<int32_t>(random() % 2 == 0 ? bits : bits % 100);
        }
    }
    return result;
}

// Sorts values, and a copy of them through pointers, which point to the same values in the same order then.
template <typename Number>
void sort_both_ways(std::vector<Number> &values) {
    const auto count = static_cast<int32_t>(values.size());
    const std::vector<Number> before = values;
    std::vector<Number> untouched = values;
    std::vector<Number *> pointers(values.size());
    if constexpr (std::is_same_v<Number, double>) {
        sort_dvector_by_index(untouched.data(), pointers.data(), count);
        sort_dvector(values.data(), count);
    } else {
        sort_lvector_by_index(untouched.data(), pointers.data(), count);
        sort_lvector(values.data(), count);
    }
    EXPECT_EQ(untouched, before);
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(*pointers[i], values[i]);
    std::sort(pointers.begin(), pointers.end());
    EXPECT_EQ(std::adjacent_find(pointers.begin(), pointers.end()), pointers.end());
}

template <typename Number>
class SortVectors : public testing::Test {};
using Numbers = testing::Types<double, int32_t>;
TYPED_TEST_SUITE(SortVectors, Numbers);

// In short and in long vectors, and where the heap has no room.
TYPED_TEST(SortVectors, AscendAndKeepEveryValue) {
    std::mt19937_64 random(3);
    for (const std::size_t count : std::initializer_list<std::size_t>{0, 1, 2, 3, 100, 999, 1000, 5000}) {
        const std::vector<TypeParam> values = numbers<TypeParam>(count, random);
        std::vector<TypeParam> expected = values;
        std::sort(expected.begin(), expected.end());
        kvtest::sweep_allocation_failures([&](std::int64_t) {
            std::vector<TypeParam> sorted = values;
            sort_both_ways(sorted);
            EXPECT_EQ(sorted, expected);
        });
    }
}

TEST(Sort, SpecialValues) {
    for (const std::size_t count : {std::size_t{7}, std::size_t{5000}}) {
        std::vector<double> values{kInfinity, -0.0, 3, std::nan(""), -kInfinity, 0.0, -std::nan("")};
        values.resize(count, 3.0);
        sort_dvector(values.data(), static_cast<int32_t>(count));
        std::erase_if(values, [](double value) { return std::isnan(value); });
        EXPECT_EQ(values.size(), count - 2);
        EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    }
    sort_dvector(nullptr, -1);
    sort_lvector_by_index(nullptr, nullptr, INT32_MIN);
}

TEST(Sort, Quick) {
    int16_t values[] = {3, -1, 2, 2};
    const auto descending = [](const void *a, const void *b) {
        return *static_cast<const int16_t *>(b) - *static_cast<const int16_t *>(a);
    };
    sort_quick(values, 4, sizeof *values, descending);
    EXPECT_TRUE(std::is_sorted(std::rbegin(values), std::rend(values)));
    sort_quick(nullptr, 0, 8, descending);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Sorting by a whole-number key, digit by digit from the lowest, which compares nothing.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

#include "memory/owned.hpp"

namespace kv::containers {

// Numbers as unsigned whole numbers in the same order. Values that are not a number come first or last, by
// their sign, so that they disturb nobody's order.

inline std::uint32_t order_key(std::int32_t value) {
    return static_cast<std::uint32_t>(value) ^ 0x80000000U;
}

inline std::uint64_t order_key(double value) {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

/// Sorts by the unsigned key that `key_of` gives for an item; equal keys keep their order. False, with
/// nothing done, if the heap has no room for a second copy.
template <typename Item, typename KeyOf>
bool radix_sort(std::span<Item> items, KeyOf key_of) {
    using Key = std::invoke_result_t<KeyOf, const Item &>;
    constexpr int kDigitBits = 11;
    constexpr int kDigits = (std::numeric_limits<Key>::digits + kDigitBits - 1) / kDigitBits;
    constexpr std::size_t kValues = std::size_t{1} << kDigitBits;
    using Counts = std::array<std::array<std::uint32_t, kValues>, kDigits>;

    const auto digit = [](Key key, int number) {
        return static_cast<std::size_t>(key >> (number * kDigitBits)) & (kValues - 1);
    };
    memory::Vector<Item> copy;
    auto counts = memory::make_owned<Counts>();
    if (counts == nullptr) return false;
    try {
        copy.resize(items.size());
    } catch (const std::bad_alloc &) {
        return false;
    }
    for (auto &of_digit : *counts) of_digit.fill(0);
    for (const Item &item : items) {
        const Key key = key_of(item);
        for (int number = 0; number < kDigits; ++number)
            ++(*counts)[static_cast<std::size_t>(number)][digit(key, number)];
    }
    std::span<Item> from = items;
    std::span<Item> to = copy;
    for (int number = 0; number < kDigits; ++number) {
        auto &place = (*counts)[static_cast<std::size_t>(number)];
        if (place[digit(key_of(from.front()), number)] == from.size()) continue;  // all the same
        std::uint32_t next = 0;
        for (std::uint32_t &count : place) next += std::exchange(count, next);
        for (const Item &item : from) to[place[digit(key_of(item), number)]++] = item;
        std::swap(from, to);
    }
    if (from.data() != items.data()) std::copy(from.begin(), from.end(), items.begin());
    return true;
}

}  // namespace kv::containers

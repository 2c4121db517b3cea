// SPDX-License-Identifier: MIT
// The index of the keywords.
#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <set>
#include <span>
#include <utility>

#include "kv/memory.h"

#include "memory/owned.hpp"
#include "scan/scanner.hpp"

namespace kv::scan {

namespace {

// By the text.
class Less {
  public:
    explicit Less(const char *const *keywords) : keywords_(keywords) {}
    bool operator()(std::int32_t a, std::int32_t b) const {
        return std::strcmp(keywords_[a], keywords_[b]) < 0;
    }

  private:
    const char *const *keywords_;
};

// The order that a selection sort gives: the first of the smallest texts that are left is swapped into each
// position in turn. Which of several equal keywords a search finds depends on it. `order` has the indexes,
// sorted by their texts.
void order_by_selection(std::span<std::int32_t> order, Less less) {
    using Ranked = std::pair<std::int32_t, std::int32_t>;  // the rank of a text, and its position
    std::set<Ranked, std::less<>, memory::Allocator<Ranked>> left;
    memory::Vector<std::int32_t> ranks(order.size());  // of the texts, by index
    std::int32_t rank = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && less(order[i - 1], order[i])) ++rank;
        ranks[static_cast<std::size_t>(order[i])] = rank;
    }
    const auto rank_at = [&](std::int32_t position) {
        return ranks[static_cast<std::size_t>(order[static_cast<std::size_t>(position)])];
    };
    std::iota(order.begin(), order.end(), 0);
    const auto count = static_cast<std::int32_t>(order.size());
    for (std::int32_t i = 0; i < count; ++i) left.emplace(rank_at(i), i);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t smallest = left.begin()->second;
        left.erase(left.begin());
        if (smallest == i) continue;
        left.erase(Ranked(rank_at(i), i));
        left.emplace(rank_at(i), smallest);
        std::swap(order[static_cast<std::size_t>(i)], order[static_cast<std::size_t>(smallest)]);
    }
}

}  // namespace

bool order_keywords(SCANNER &scanner) {
    const auto count = static_cast<std::size_t>(scanner.keyword_count);
    memory::Owned<char> block(
        static_cast<char *>(heap_calloc(static_cast<std::uint32_t>(count), sizeof *scanner.keyword_order)));
    if (block == nullptr) return false;
    const std::span<std::int32_t> order(reinterpret_cast<std::int32_t *>(block.get()), count);
    const Less less(scanner.keywords);
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), less);
    const auto equal = [&](std::int32_t a, std::int32_t b) { return !less(a, b); };
    try {
        if (std::adjacent_find(order.begin(), order.end(), equal) != order.end())
            order_by_selection(order, less);
    } catch (const std::bad_alloc &) {
        return false;
    }
    scanner.keyword_order = reinterpret_cast<std::int32_t *>(block.release());
    return true;
}

std::int32_t find_keyword(const SCANNER &scanner, const char *text) {
    std::int32_t low = 0;
    std::int32_t high = scanner.keyword_count - 1;
    for (const std::int32_t edge : {low, high}) {
        const std::int32_t keyword = scanner.keyword_order[edge];
        if (std::strcmp(text, scanner.keywords[keyword]) == 0) return keyword;
    }
    while (low < high - 1) {
        const std::int32_t middle = low + (high - low) / 2;
        const std::int32_t keyword = scanner.keyword_order[middle];
        const int order = std::strcmp(text, scanner.keywords[keyword]);
        if (order == 0) return keyword;
        (order > 0 ? low : high) = middle;
    }
    return -1;
}

}  // namespace kv::scan

#include "scan/keywords.hpp"

#include <algorithm>
#include <cstring>
#include <span>

#include "kv/memory.h"

namespace kv::scan {

namespace {

// Brings the smallest text that is left to each position in turn, by an exchange. Which of several equal
// keywords a search finds depends on this.
void sort_by_selection(std::span<std::int32_t> order, const char *const *keywords) {
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        std::size_t smallest = i;
        for (std::size_t k = i + 1; k < order.size(); ++k) {
            if (std::strcmp(keywords[order[k]], keywords[order[smallest]]) < 0) smallest = k;
        }
        std::swap(order[i], order[smallest]);
    }
}

}  // namespace

bool order_keywords(SCANNER &scanner) {
    const auto count = static_cast<std::size_t>(scanner.keyword_count);
    scanner.keyword_order = static_cast<std::int32_t *>(
        heap_calloc(static_cast<std::uint32_t>(count), sizeof *scanner.keyword_order));
    if (scanner.keyword_order == nullptr) return false;
    const std::span<std::int32_t> order(scanner.keyword_order, count);
    const auto number = [&] {
        for (std::size_t i = 0; i < count; ++i) order[i] = static_cast<std::int32_t>(i);
    };
    const char *const *keywords = scanner.keywords;
    number();
    std::sort(order.begin(), order.end(),
              [&](std::int32_t a, std::int32_t b) { return std::strcmp(keywords[a], keywords[b]) < 0; });
    const bool repeated =
        std::adjacent_find(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
            return std::strcmp(keywords[a], keywords[b]) == 0;
        }) != order.end();
    if (repeated) {
        number();
        sort_by_selection(order, keywords);
    }
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

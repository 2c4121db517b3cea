// SPDX-License-Identifier: MIT
#include "tools/kv/suggestion.hpp"

#include <algorithm>

namespace kvtool {

namespace {

char lower(char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

// A third of the letters may be wrong.
std::size_t limit(std::size_t longest) {
    return std::max<std::size_t>(2 * longest / 3, 2);
}

// The number of characters to insert, delete, replace, or to swap with their neighbours; twice that, and
// one for each letter in another case. Words that differ too much in length, or are longer than what a
// person mistypes, are as far from each other as can be.
std::size_t distance(std::string_view a, std::string_view b) {
    constexpr std::size_t kLongest = 60;
    const std::size_t longest = std::max(a.size(), b.size());
    const std::size_t at_least = 2 * (longest - std::min(a.size(), b.size()));
    if (longest > kLongest || at_least > limit(longest)) return 2 * longest;
    std::vector<std::vector<std::size_t>> rows(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) rows[i][0] = 2 * i;
    for (std::size_t j = 0; j <= b.size(); ++j) rows[0][j] = 2 * j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool alike = lower(a[i - 1]) == lower(b[j - 1]);
            const std::size_t replaced = a[i - 1] == b[j - 1] ? 0 : alike ? 1 : 2;
            rows[i][j] = std::min({rows[i - 1][j] + 2, rows[i][j - 1] + 2, rows[i - 1][j - 1] + replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 2);
            }
        }
    }
    return rows[a.size()][b.size()];
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string> &candidates) {
    const std::string *nearest = nullptr;
    std::size_t least = 0;
    for (const std::string &candidate : candidates) {
        // The case of all letters may be wrong.
        std::size_t far = distance(word, candidate);
        const auto same = [](char a, char b) { return lower(a) == lower(b); };
        if (std::equal(word.begin(), word.end(), candidate.begin(), candidate.end(), same)) far = 1;
        if (word.size() > 2 && candidate.starts_with(word)) far = std::min<std::size_t>(far, 2);
        const std::size_t longest = std::max(word.size(), candidate.size());
        if (far > limit(longest) || far >= 2 * longest) continue;
        if (nearest != nullptr && far >= least) continue;
        nearest = &candidate;
        least = far;
    }
    return nearest != nullptr ? "; did you mean '" + *nearest + "'?" : "";
}

}  // namespace kvtool

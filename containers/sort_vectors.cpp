// SPDX-License-Identifier: MIT
// Sorting vectors of numbers, in place or through pointers, and the runtime library's quicksort.
#include <algorithm>
#include <cstdlib>
#include <span>

#include "kv/sort.h"

#include "containers/radix.hpp"

using kv::containers::order_key;
using kv::containers::radix_sort;

namespace {

// Fewer are sorted faster by comparing.
constexpr std::size_t kFew = 1000;

template <typename Number>
void sort_values(Number *values, std::int32_t n) {
    if (n <= 1) return;
    const std::span<Number> all(values, static_cast<std::size_t>(n));
    const auto key_of = [](const Number &value) { return order_key(value); };
    if (all.size() >= kFew && radix_sort(all, key_of)) return;
    std::sort(all.begin(), all.end(), [](Number a, Number b) { return order_key(a) < order_key(b); });
}

template <typename Number>
struct Keyed {
    decltype(order_key(Number{})) key;
    Number *value;
};

template <typename Number>
bool sort_pointers_by_keys(std::span<Number *> pointers) {
    kv::memory::Vector<Keyed<Number>> keyed;
    try {
        keyed.resize(pointers.size());
    } catch (const std::bad_alloc &) {
        return false;
    }
    std::transform(pointers.begin(), pointers.end(), keyed.begin(), [](Number *value) {
        return Keyed<Number>{order_key(*value), value};
    });
    if (!radix_sort(std::span(keyed), [](const Keyed<Number> &each) { return each.key; })) return false;
    std::transform(keyed.begin(), keyed.end(), pointers.begin(),
                   [](const Keyed<Number> &each) { return each.value; });
    return true;
}

template <typename Number>
void sort_pointers(Number *values, Number **pointers, std::int32_t n) {
    if (n <= 0) return;
    const std::span<Number *> all(pointers, static_cast<std::size_t>(n));
    for (Number *&pointer : all) pointer = values++;
    if (all.size() >= kFew && sort_pointers_by_keys(all)) return;
    std::sort(all.begin(), all.end(),
              [](const Number *a, const Number *b) { return order_key(*a) < order_key(*b); });
}

}  // namespace

void sort_dvector(double *values, int32_t n) noexcept {
    sort_values(values, n);
}

void sort_lvector(int32_t *values, int32_t n) noexcept {
    sort_values(values, n);
}

void sort_dvector_by_index(double *values, double **pointers, int32_t n) noexcept {
    sort_pointers(values, pointers, n);
}

void sort_lvector_by_index(int32_t *values, int32_t **pointers, int32_t n) noexcept {
    sort_pointers(values, pointers, n);
}

void sort_quick(void *base, uint32_t n, uint32_t size,
                int (*compare)(const void *a, const void *b)) noexcept {
    if (n > 0 && size > 0) std::qsort(base, n, size, compare);
}

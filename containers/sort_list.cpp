// SPDX-License-Identifier: MIT
// Sorting lists: short ones by insertion, long ones by merging.
//
// The order is defined as that of an insertion from the front: an element goes in front of the first one
// that does not stay in front of it by the comparison. For every comparison that orders consistently the
// same order comes out of merging neighbouring pieces in which the earlier element is compared with the
// later one and stays in front only if the comparison says so. For the others, only inserting gives it.
#include <array>
#include <cstdint>

#include "kv/sort.h"

namespace {

constexpr std::int32_t kMostInserted = 64;

class Order {
  public:
    Order(std::int32_t mode, sort_compare_function compare) : compare_(compare), key_(mode == 1 ? 1 : 2) {}

    /// Whether `earlier` of the input stays in front of `later`.
    bool keeps(LIST_ELEM *earlier, LIST_ELEM *later) const { return compare_(earlier, later) == key_; }

  private:
    sort_compare_function compare_;
    std::int32_t key_;
};

void sort_by_inserting(LIST &list, const Order &order) {
    LIST sorted{};
    for (LIST_ELEM *element = list.first; element != nullptr;) {
        LIST_ELEM *const next = element->next;
        LIST_ELEM *behind = sorted.first;
        while (behind != nullptr && order.keeps(behind, element)) behind = behind->next;
        if (behind != nullptr) {
            list_insert_before(&sorted, behind, element);
        } else {
            list_insert_after(&sorted, nullptr, element);
        }
        element = next;
    }
    list = sorted;
}

// Takes the first element off a chain. The one after the new first is needed soon: it is fetched ahead,
// since what a large list costs is waiting for its elements.
inline LIST_ELEM *take_first(LIST_ELEM *&chain) {
    LIST_ELEM *first = chain;
    chain = first->next;
    if (chain != nullptr) __builtin_prefetch(chain->next);
    return first;
}

// Merges two chains along their `next`; those of `earlier` came first in the input.
LIST_ELEM *merge(LIST_ELEM *earlier, LIST_ELEM *later, const Order &order) {
    LIST_ELEM *first = nullptr;
    LIST_ELEM **link = &first;
    while (earlier != nullptr && later != nullptr) {
        LIST_ELEM *chosen = take_first(order.keeps(earlier, later) ? earlier : later);
        *link = chosen;
        link = &chosen->next;
    }
    *link = earlier != nullptr ? earlier : later;
    return first;
}

// The last merge makes the list, with the links in both directions.
void merge_into(LIST &list, LIST_ELEM *earlier, LIST_ELEM *later, const Order &order) {
    list.first = nullptr;
    list.last = nullptr;
    LIST_ELEM **link = &list.first;
    while (earlier != nullptr || later != nullptr) {
        const bool keep = later == nullptr || (earlier != nullptr && order.keeps(earlier, later));
        LIST_ELEM *chosen = take_first(keep ? earlier : later);
        *link = chosen;
        link = &chosen->next;
        chosen->prev = list.last;
        list.last = chosen;
    }
    *link = nullptr;
}

void sort_by_merging(LIST &list, const Order &order) {
    // pieces[i] is a sorted chain of 2^i elements, or none; those with a larger i came earlier.
    std::array<LIST_ELEM *, 32> pieces{};
    for (LIST_ELEM *element = list.first; element != nullptr;) {
        LIST_ELEM *piece = element;
        element = element->next;
        piece->next = nullptr;
        std::size_t i = 0;
        for (; pieces[i] != nullptr; ++i) {
            piece = merge(pieces[i], piece, order);
            pieces[i] = nullptr;
        }
        pieces[i] = piece;
    }
    LIST_ELEM *first_part = nullptr;  // merged last, so that the merge that makes the list has two parts
    LIST_ELEM *rest = nullptr;
    for (LIST_ELEM *piece : pieces) {
        if (piece == nullptr) continue;
        if (first_part != nullptr) rest = merge(first_part, rest, order);
        first_part = piece;
    }
    merge_into(list, first_part, rest, order);
}

}  // namespace

void sort_list(LIST *list, int32_t mode, sort_compare_function compare) noexcept {
    const Order order(mode, compare);
    if (list->count <= kMostInserted) {
        sort_by_inserting(*list, order);
    } else {
        sort_by_merging(*list, order);
    }
}

// Sorting lists by merging.
//
// The order is defined as that of an insertion from the front: an element goes in front of the first one
// that does not stay in front of it by the comparison. For every comparison that orders consistently the
// same order comes out of merging neighbouring pieces in which the earlier element is compared with the
// later one and stays in front only if the comparison says so.
#include <array>
#include <cstdint>

#include "kv/sort.h"

namespace {

class Order {
  public:
    Order(std::int32_t mode, sort_compare_function compare) : compare_(compare), key_(mode == 1 ? 1 : 2) {}

    /// Whether `earlier` of the input stays in front of `later`.
    bool keeps(LIST_ELEM *earlier, LIST_ELEM *later) const { return compare_(earlier, later) == key_; }

  private:
    sort_compare_function compare_;
    std::int32_t key_;
};

// Merges two chains along their `next`; those of `earlier` came first in the input.
LIST_ELEM *merge(LIST_ELEM *earlier, LIST_ELEM *later, const Order &order) {
    LIST_ELEM *first = nullptr;
    LIST_ELEM **link = &first;
    while (earlier != nullptr && later != nullptr) {
        LIST_ELEM *&chosen = order.keeps(earlier, later) ? earlier : later;
        *link = chosen;
        link = &chosen->next;
        chosen = chosen->next;
    }
    *link = earlier != nullptr ? earlier : later;
    return first;
}

LIST_ELEM *sort(LIST_ELEM *element, const Order &order) {
    // pieces[i] is a sorted chain of 2^i elements, or none; those with a larger i came earlier.
    std::array<LIST_ELEM *, 32> pieces{};
    while (element != nullptr) {
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
    LIST_ELEM *all = nullptr;
    for (LIST_ELEM *piece : pieces) {
        if (piece != nullptr) all = merge(piece, all, order);
    }
    return all;
}

}  // namespace

void sort_list(LIST *list, int32_t mode, sort_compare_function compare) noexcept {
    list->first = sort(list->first, Order(mode, compare));
    list->last = nullptr;
    for (LIST_ELEM *element = list->first; element != nullptr; element = element->next) {
        element->prev = list->last;
        list->last = element;
    }
}

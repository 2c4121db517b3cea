// SPDX-License-Identifier: MIT
// Sorting a list as the interface describes it: inserting its elements from the front.
#pragma once

#include <algorithm>
#include <vector>

#include "kv/sort.h"

namespace kvmodel {

/// The order in which sort_list() is to leave the elements.
inline std::vector<LIST_ELEM *> inserted(const std::vector<LIST_ELEM *> &input, int32_t mode,
                                         sort_compare_function compare) {
    std::vector<LIST_ELEM *> result;
    for (LIST_ELEM *element : input) {
        const auto stays = [&](LIST_ELEM *each) { return compare(each, element) == (mode == 1 ? 1 : 2); };
        result.insert(std::find_if_not(result.begin(), result.end(), stays), element);
    }
    return result;
}

/// The elements of a list; one that is NIL at the end if its links or its count are wrong.
inline std::vector<LIST_ELEM *> elements_of(const LIST &list) {
    std::vector<LIST_ELEM *> result;
    LIST_ELEM *previous = nullptr;
    bool right = true;
    for (LIST_ELEM *element = list.first; element != nullptr; element = element->next) {
        right = right && element->prev == previous;
        result.push_back(previous = element);
    }
    right = right && list.last == previous && list.count == static_cast<int32_t>(result.size());
    if (!right) result.push_back(nullptr);
    return result;
}

}  // namespace kvmodel

// SPDX-License-Identifier: MIT
// Doubly linked lists of elements that begin with their links.
#include "kv/containers.h"
#include "kv/frame.h"

namespace {

constexpr char kSource[] = "List";

// The two directions in which a list is walked.
using Link = LIST_ELEM *LIST_ELEM::*;

LIST_ELEM *search(LIST_ELEM *start, const LIST_ELEM *end, Link onward, list_compare_function compare,
                  kv_value key) {
    while (start != nullptr) {
        LIST_ELEM *const element = start;
        start = element->*onward;  // before the callback, which may unlink the element
        if (compare(element, key) == 1) return element;
        if (element == end) return nullptr;
    }
    return nullptr;
}

void traverse(LIST_ELEM *start, Link onward, list_visit_function visit, void *argument) {
    while (start != nullptr) {
        LIST_ELEM *const element = start;
        start = element->*onward;
        visit(element, argument);
    }
}

// Links an element between two neighbours, either of which may be missing.
void link_between(LIST *list, LIST_ELEM *prev, LIST_ELEM *next, LIST_ELEM *element) {
    element->prev = prev;
    element->next = next;
    (prev != nullptr ? prev->next : list->first) = element;
    (next != nullptr ? next->prev : list->last) = element;
    ++list->count;
}

}  // namespace

void list_init(LIST *list) noexcept {
    if (list == nullptr) {
        kv_error("list_open: invalid listdescriptor", nullptr, nullptr, kSource, __LINE__);
        return;
    }
    *list = {};
}

void list_insert_before(LIST *list, LIST_ELEM *reference, LIST_ELEM *element) noexcept {
    if (reference == nullptr) return link_between(list, nullptr, list->first, element);
    if (reference->prev == nullptr && reference != list->first) {
        kv_error("list_insert_before: list is not in order", nullptr, nullptr, kSource, __LINE__);
        return;
    }
    link_between(list, reference->prev, reference, element);
}

void list_insert_after(LIST *list, LIST_ELEM *reference, LIST_ELEM *element) noexcept {
    if (reference == nullptr) return link_between(list, list->last, nullptr, element);
    if (reference->next == nullptr && reference != list->last) {
        kv_error("list_insert_after: list is not in order", nullptr, nullptr, kSource, __LINE__);
        return;
    }
    link_between(list, reference, reference->next, element);
}

void list_delete(LIST *list, LIST_ELEM *element) noexcept {
    if (element == nullptr) return;
    LIST_ELEM *const prev = element->prev;
    LIST_ELEM *const next = element->next;
    --list->count;
    (prev != nullptr ? prev->next : list->first) = next;
    (next != nullptr ? next->prev : list->last) = prev;
}

void list_free(LIST *list, LIST_ELEM *element, list_free_function free_element) noexcept {
    if (element == nullptr) return;
    list_delete(list, element);
    if (free_element != nullptr) free_element(element);
}

void list_free_all(LIST *list, list_free_function free_element) noexcept {
    if (free_element != nullptr) {
        for (LIST_ELEM *element = list->first; element != nullptr;) {
            LIST_ELEM *const next = element->next;
            free_element(element);
            element = next;
        }
    }
    *list = {};
}

LIST_ELEM *list_search(const LIST *list, list_compare_function compare, kv_value key) noexcept {
    return search(list->first, nullptr, &LIST_ELEM::next, compare, key);
}

LIST_ELEM *list_search_from(const LIST *, LIST_ELEM *start, list_compare_function compare,
                            kv_value key) noexcept {
    return search(start, nullptr, &LIST_ELEM::next, compare, key);
}

LIST_ELEM *list_search_to(const LIST *list, LIST_ELEM *end, list_compare_function compare,
                          kv_value key) noexcept {
    return search(list->first, end, &LIST_ELEM::next, compare, key);
}

LIST_ELEM *list_search_from_to(const LIST *, LIST_ELEM *start, LIST_ELEM *end,
                               list_compare_function compare, kv_value key) noexcept {
    return search(start, end, &LIST_ELEM::next, compare, key);
}

LIST_ELEM *list_search_backward(const LIST *list, list_compare_function compare, kv_value key) noexcept {
    return search(list->last, nullptr, &LIST_ELEM::prev, compare, key);
}

void list_traverse(const LIST *list, list_visit_function visit, void *argument) noexcept {
    traverse(list->first, &LIST_ELEM::next, visit, argument);
}

void list_traverse_backward(const LIST *list, list_visit_function visit, void *argument) noexcept {
    traverse(list->last, &LIST_ELEM::prev, visit, argument);
}

LIST_ELEM *list_get_element_by_number(const LIST *list, int32_t number) noexcept {
    LIST_ELEM *element = list->first;
    for (; number > 1 && element != nullptr; --number) element = element->next;
    return element;
}

LIST_ELEM *list_next_elem(const LIST_ELEM *element) noexcept {
    return element != nullptr ? element->next : nullptr;
}

LIST_ELEM *list_prev_elem(const LIST_ELEM *element) noexcept {
    return element != nullptr ? element->prev : nullptr;
}

int32_t list_isinlist(const LIST *list, const LIST_ELEM *element) noexcept {
    if (element == nullptr) return 0;
    // The element's own links say nothing: they keep their values when it is unlinked.
    for (const LIST_ELEM *at = list->first; at != nullptr; at = at->next) {
        if (at == element) return 1;
    }
    return 0;
}

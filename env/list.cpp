// SPDX-License-Identifier: MIT
#include "env/list.hpp"

#include <new>

#include "env/index.hpp"
#include "env/state.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

// Shorter lists are walked.
constexpr std::int32_t kHandful = 8;

void link_into_index(List &list, Element &element) {
    if (list.index == nullptr) return;
    try {
        list.index->linked(element);
    } catch (const std::bad_alloc &) {
        drop_index(list);
    }
}

// A long list's index, made now if need be; null if the list is short or the heap has no room.
Index *index_of(List &list) {
    if (list.index == nullptr && list.count > kHandful)
        list.index = memory::make_owned<Index>(list).release();
    return list.index;
}

// True if a list has a table of names, which is made now if the list is long and the heap has room.
bool has_names(List &list) {
    if (list.names.is_built()) return true;
    if (list.count <= kHandful || index_of(list) == nullptr) return false;
    try {
        list.index->build_names();
        return true;
    } catch (const std::bad_alloc &) {
        drop_index(list);
        return false;
    }
}

}  // namespace

void append(List &list, ElementPointer owned) {
    Element *element = owned.release();
    element->parent = &list;
    element->previous = list.last;
    element->next = nullptr;
    (list.last != nullptr ? list.last->next : list.first) = element;
    list.last = element;
    ++list.count;
    link_into_index(list, *element);
}

void insert_before(Element &where, ElementPointer owned) {
    Element *element = owned.release();
    List &list = *where.parent;
    element->parent = &list;
    element->previous = where.previous;
    element->next = &where;
    (where.previous != nullptr ? where.previous->next : list.first) = element;
    where.previous = element;
    ++list.count;
    ++state.changes;
    link_into_index(list, *element);
}

ElementPointer unlink(Element &element) {
    List &list = *element.parent;
    if (list.index != nullptr) list.index->unlinking(element);
    (element.previous != nullptr ? element.previous->next : list.first) = element.next;
    (element.next != nullptr ? element.next->previous : list.last) = element.previous;
    --list.count;
    ++state.changes;
    return ElementPointer(&element);
}

void splice(List &to, List &from) {
    for (Element *element = from.first; element != nullptr;) {
        Element *next = element->next;
        append(to, ElementPointer(element));
        element = next;
    }
    from.first = from.last = nullptr;
    from.count = 0;
}

Element *find(List &list, std::string_view name, std::int32_t n) {
    if (n == 0) return list.first;
    if (has_names(list)) return list.names.find(name).at(n);
    for (Element *element = list.first; element != nullptr; element = element->next) {
        if (element->is_named(name) && --n == 0) return element;
    }
    return nullptr;
}

std::int32_t count_named(List &list, std::string_view name) {
    if (has_names(list)) return list.names.find(name).count();
    std::int32_t count = 0;
    for (const Element *element = list.first; element != nullptr; element = element->next) {
        if (element->is_named(name)) ++count;
    }
    return count;
}

std::int32_t occurrence(const Element &element) {
    const std::string_view name = element.name_view();
    if (has_names(*element.parent)) return element.parent->names.find(name).position(element);
    std::int32_t count = 1;
    for (const Element *each = element.previous; each != nullptr; each = each->previous) {
        if (each->is_named(name)) ++count;
    }
    return count;
}

Element *at(List &list, std::int32_t position) {
    if (position < 1 || position > list.count) return nullptr;
    Index *index = index_of(list);
    if (index != nullptr && position > kHandful) {
        try {
            return index->at(position);
        } catch (const std::bad_alloc &) {
            drop_index(list);
            index = nullptr;
        }
    }
    // The first few are walked to, so that taking a list apart from its front builds nothing.
    Element *element = list.first;
    for (std::int32_t left = position; left > 1; --left) element = element->next;
    if (index != nullptr) index->remember(element, position);
    return element;
}

}  // namespace kv::env

#include "env/list.hpp"

#include <new>
#include <string>

#include "env/index.hpp"
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

// Asks a long list's index, made now if need be; without room for it, or in a short list, walks.
template <typename Ask, typename Walk>
auto search(List &list, Ask ask, Walk walk) {
    if (list.count > kHandful) {
        try {
            if (list.index == nullptr) list.index = memory::make_owned<Index>(list).release();
            if (list.index != nullptr) return ask(*list.index);
        } catch (const std::bad_alloc &) {
            drop_index(list);
        }
    }
    return walk();
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
    link_into_index(list, *element);
}

ElementPointer unlink(Element &element) {
    List &list = *element.parent;
    if (list.index != nullptr) list.index->unlinking(element);
    (element.previous != nullptr ? element.previous->next : list.first) = element.next;
    (element.next != nullptr ? element.next->previous : list.last) = element.previous;
    --list.count;
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
    return search(
        list, [&](Index &index) { return index.named(name, n); },
        [&]() -> Element * {
            Element *element = list.first;
            for (std::int32_t left = n; element != nullptr; element = element->next) {
                if (element->is_named(name) && --left == 0) break;
            }
            return element;
        });
}

std::int32_t count_named(List &list, std::string_view name) {
    return search(
        list, [&](Index &index) { return index.count_named(name); },
        [&] {
            std::int32_t count = 0;
            for (const Element *element = list.first; element != nullptr; element = element->next) {
                if (element->is_named(name)) ++count;
            }
            return count;
        });
}

std::int32_t occurrence(const Element &element) {
    return search(
        *element.parent, [&](Index &index) { return index.occurrence(element); },
        [&] {
            const std::string_view name = element.name();
            std::int32_t count = 1;
            for (const Element *each = element.previous; each != nullptr; each = each->previous) {
                if (each->is_named(name)) ++count;
            }
            return count;
        });
}

Element *at(List &list, std::int32_t position) {
    if (position < 1 || position > list.count) return nullptr;
    const auto walk = [&] {
        Element *element = list.first;
        for (std::int32_t left = position; left > 1; --left) element = element->next;
        return element;
    };
    return search(
        list,
        [&](Index &index) {
            // The first few are walked to, so that taking a list apart from its front builds nothing.
            if (position > kHandful) return index.at(position);
            Element *element = walk();
            index.remember(element, position);
            return element;
        },
        walk);
}

}  // namespace kv::env

// SPDX-License-Identifier: MIT
#include "env/element.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "env/index.hpp"
#include "env/state.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

// Texts up to this size share the block of their element.
constexpr std::size_t kLongestTextInside = 256;

char *room_of(Element &element) {
    return element.name() + std::strlen(element.name()) + 1;
}

bool text_is_inside(Element &element) {
    return element.text == room_of(element);
}

char *allocate_text(std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    auto *block = static_cast<char *>(heap_malloc(static_cast<std::uint32_t>(size)));
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void copy_text(char *destination, std::string_view text) {
    std::memmove(destination, text.data(), text.size());
    destination[text.size()] = '\0';
}

// An element that is an external holding null, with room for a text of `room` bytes.
ElementPointer make_element(std::string_view name, std::size_t room, std::uint32_t span = kNoSpan) {
    const std::size_t text_end = sizeof(Element) + name.size() + 1 + room;
    const std::size_t size = text_end + (span != kNoSpan ? sizeof span : 0);
    if (size > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    void *block = heap_malloc(static_cast<std::uint32_t>(size));
    if (block == nullptr) throw std::bad_alloc();
    auto *element = ::new (block) Element{};
    element->type = ENV_TYPE_EXTERNAL;
    element->room = static_cast<std::uint16_t>(room & 0x3FFF);
    if (span != kNoSpan) {
        element->has_span = 1;
        std::memcpy(reinterpret_cast<char *>(element) + text_end, &span, sizeof span);
    }
    element->name_length = static_cast<std::uint8_t>(std::min(name.size(), Element::kLongName));
    copy_text(element->name(), name);
    return ElementPointer(element);
}

// Frees what the element itself holds: its text, or its list, which has no elements any more.
void free_content(Element &element) {
    if (element.type == ENV_TYPE_DATA) {
        if (!text_is_inside(element)) heap_free(element.text);
    } else if (List *list = element.list(); list != nullptr) {
        drop_index(*list);
        heap_free(list);
    }
}

}  // namespace

bool Element::is_named_at_length(std::string_view wanted) const {
    return std::strncmp(name(), wanted.data(), wanted.size()) == 0 && name()[wanted.size()] == '\0';
}

std::uint32_t Element::span() const {
    std::uint32_t number;
    std::memcpy(&number, name() + name_view().size() + 1 + room, sizeof number);
    return number;
}

std::int32_t Element::status() const {
    switch (type) {
        case ENV_TYPE_DATA:
            return ENV_DATA;
        case ENV_TYPE_BLOCK:
            return ENV_BLOCK;
        default:
            return ENV_EXTERNAL;
    }
}

void free_element(Element *top) {
    Element *element = top;
    for (;;) {
        for (List *list = element->list(); list != nullptr && list->first != nullptr;
             list = element->list()) {
            element = list->first;
        }
        // Nothing is left below: go on to the next one of the list, else up to the owner of the list.
        Element *next = nullptr;
        if (element != top) {
            next = element->next;
            if (next == nullptr) {
                next = element->parent->owner;
                next->children->first = nullptr;
            }
        }
        free_content(*element);
        heap_free(element);
        if (next == nullptr) return;
        element = next;
    }
}

void clear_list(List &list) {
    ++state.changes;
    drop_index(list);
    for (Element *element = list.first; element != nullptr;) {
        Element *next = element->next;
        free_element(element);
        element = next;
    }
    list.count = 0;
    list.first = list.last = nullptr;
}

ElementPointer make_data(std::string_view name, std::string_view text, std::uint32_t span) {
    ElementPointer element =
        make_element(name, text.size() < kLongestTextInside ? text.size() + 1 : 0, span);
    if (element->room == 0) {
        set_text(*element, text);
        element->changed = 0;
        return element;
    }
    element->type = ENV_TYPE_DATA;
    element->text = element->name() + name.size() + 1;
    copy_text(element->text, text);
    return element;
}

ElementPointer make_block(std::string_view name, std::uint32_t span) {
    ElementPointer element = make_element(name, 0, span);
    element->type = ENV_TYPE_BLOCK;
    return element;
}

ElementPointer make_external(std::string_view name, void *external) {
    ElementPointer element = make_element(name, 0);
    element->external = external;
    return element;
}

bool make_list(Element &block) {
    if (block.children != nullptr) return true;
    block.children = memory::make_owned<List>().release();
    if (block.children == nullptr) return false;
    block.children->owner = &block;
    return true;
}

void set_text(Element &element, std::string_view text) {
    if (element.type == ENV_TYPE_DATA) {
        const std::size_t length = std::strlen(element.text);
        if (element.has_span != 0 && text == std::string_view(element.text, length)) return;
        element.changed = 1;
        if (text.size() <= length) {
            copy_text(element.text, text);
            return;
        }
    }
    char *buffer = text.size() < element.room ? room_of(element) : allocate_text(text.size() + 1);
    copy_text(buffer, text);
    if (List *list = element.list(); list != nullptr) clear_list(*list);
    // A text that was inside and grows within its room stays where it is.
    if (element.type != ENV_TYPE_DATA || element.text != buffer) free_content(element);
    element.type = ENV_TYPE_DATA;
    element.changed = 1;
    element.text = buffer;
}

void set_external(Element &element, void *external) {
    if (List *list = element.list(); list != nullptr) clear_list(*list);
    free_content(element);
    element.type = ENV_TYPE_EXTERNAL;
    element.external = external;
}

void set_list(Element &element, List *list) {
    free_content(element);
    element.type = ENV_TYPE_BLOCK;
    element.children = list;
    list->owner = &element;
}

const Element *following(const Element *element, const Element *top) {
    if (const List *list = element->list(); list != nullptr && list->first != nullptr) return list->first;
    while (element != top) {
        if (element->next != nullptr) return element->next;
        element = element->parent->owner;
    }
    return nullptr;
}

bool pinned_below(const Element &top) {
    for (const Element *element = following(&top, &top); element != nullptr;
         element = following(element, &top)) {
        if (element->pins != 0) return true;
    }
    return false;
}

}  // namespace kv::env

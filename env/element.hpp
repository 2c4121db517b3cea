// SPDX-License-Identifier: MIT
// The records of the tree: elements and the lists that hold them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "kv/env.h"

#include "env/bytes.hpp"
#include "env/name_table.hpp"

namespace kv::env {

struct Element;
class Index;

/// The elements of a block, or the sections of a root environment, in their order.
struct List {
    NameTable names;  // built, with the index, when a search by name in a long list needs it
    std::int32_t count = 0;
    Element *first = nullptr;
    Element *last = nullptr;
    Element *owner = nullptr;  // the block that has this list; null for the sections
    Index *index = nullptr;    // built when a search in a long list needs it, see index.hpp
};

/// One element. Its name stands after the record in the same block of memory, and after the name there
/// may be room for its text. A section is an element whose list has no owner.
///
/// The fields that a search needs stand last, next to the name.
struct Element {
    static constexpr std::size_t kLongName = 255;

    Element *next;
    Element *previous;
    std::uint64_t order;  // grows along the list; kept only while the list has an index
    List *parent;         // the list that holds it
    union {
        char *text;      // ENV_TYPE_DATA: never null; in the element's own block or one of its own
        List *children;  // ENV_TYPE_BLOCK: null until the block receives a child
        void *external;  // ENV_TYPE_EXTERNAL: the application's
    };
    std::uint32_t pins;          // reasons not to free it: sub-environments open on it
    std::uint16_t room : 14;     // bytes for a text after the name
    std::uint16_t has_span : 1;  // the number of its span is after that room, see spans.hpp
    std::uint16_t changed : 1;   // the text is no longer that of the span
    std::uint8_t type;
    std::uint8_t name_length;  // kLongName: or more

    char *name() { return reinterpret_cast<char *>(this + 1); }
    const char *name() const { return reinterpret_cast<const char *>(this + 1); }
    std::string_view name_view() const {
        return {name(), name_length < kLongName ? name_length : std::strlen(name())};
    }
    bool is_named(std::string_view wanted) const {
        if (wanted.size() >= kLongName) return is_named_at_length(wanted);
        return name_length == wanted.size() && same_bytes(name(), wanted.data(), wanted.size());
    }
    bool is_named_at_length(std::string_view wanted) const;
    bool is_section() const { return parent->owner == nullptr; }
    /// The number of its span, if it has one.
    std::uint32_t span() const;
    /// The list of a block that has one; null for everything else.
    List *list() const { return type == ENV_TYPE_BLOCK ? children : nullptr; }
    /// ENV_DATA, ENV_BLOCK or ENV_EXTERNAL.
    std::int32_t status() const;
};

/// Lets the processor fetch an element that is about to be read. Its record, its name and its text may lie
/// in two cache lines: both are fetched at once.
inline void prefetch(const Element &element) {
    constexpr std::size_t kCacheLine = 64;
    __builtin_prefetch(&element);
    __builtin_prefetch(reinterpret_cast<const char *>(&element) + kCacheLine);
}

/// Frees a detached element with its subtree, however deep that is.
void free_element(Element *element);
struct FreeElement {
    void operator()(Element *element) const { free_element(element); }
};
using ElementPointer = std::unique_ptr<Element, FreeElement>;

/// Frees every element of a list and its index; the list is empty then.
void clear_list(List &list);

/// The number of no span.
inline constexpr std::uint32_t kNoSpan = 0xFFFFFFFF;

// New elements; each throws std::bad_alloc when the heap is exhausted.
ElementPointer make_data(std::string_view name, std::string_view text, std::uint32_t span = kNoSpan);
ElementPointer make_block(std::string_view name, std::uint32_t span = kNoSpan);
ElementPointer make_external(std::string_view name, void *external);
/// Gives a block without a list an empty one. False when the heap is exhausted.
bool make_list(Element &block);

/// Turns any element into a data element; its old content is freed. Throws std::bad_alloc, and then the
/// element is as it was. The text may be part of what is freed.
void set_text(Element &element, std::string_view text);
/// Turns any element into an external; its old content is freed.
void set_external(Element &element, void *external);
/// Turns any element into a block that takes over `list`; a block's own list must be null.
void set_list(Element &element, List *list);

/// True if an element below `element` has a pin.
bool pinned_below(const Element &element);
inline bool pinned(const Element &element) {
    return element.pins != 0 || pinned_below(element);
}

/// The element that follows `element` in a walk through the subtree of `top`, parents first; null at the
/// end. The walk needs no memory, since every list knows its owner.
const Element *following(const Element *element, const Element *top);

}  // namespace kv::env

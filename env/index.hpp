// The index of a long list: finds its elements by name and by position without walking it.
//
// Results are exactly those of walking the list. The index is built by the first search that profits from
// it and kept in step by the functions of list.hpp; when the heap has no room for it, it is dropped and the
// searches walk.
#pragma once

#include <cstdint>
#include <string_view>

#include "env/element.hpp"
#include "env/ordered.hpp"
#include "memory/owned.hpp"

namespace kv::env {

/// A place of an index's hash table of names (open addressing, linear probing).
struct Slot {
    std::uint32_t hash;
    bool repeated;
    union {
        Element *only;  // null: the place is free
        Ordered *all;   // several elements of the name, in their order; owned
    };

    Element *first() const { return repeated ? all->front() : only; }
    std::int32_t count() const {
        return repeated ? static_cast<std::int32_t>(all->size()) : only != nullptr;
    }
    /// The n-th of them, from 1; null if there are fewer.
    Element *at(std::int32_t n) const;
};

/// The slot of a name in a list that has a table, or the free one where it would go.
inline const Slot &find_slot(const List &list, std::string_view name, std::uint32_t hash) {
    for (std::uint32_t place = hash & list.slot_mask;; place = (place + 1) & list.slot_mask) {
        const Slot &slot = list.slots[place];
        if (slot.only == nullptr || (slot.hash == hash && slot.first()->is_named(name))) return slot;
    }
}

class Index {
  public:
    explicit Index(List &list) : list_(list) {}
    Index(const Index &) = delete;
    Index &operator=(const Index &) = delete;
    ~Index();

    /// Builds the table of names, which find_slot() needs. Like all that builds here it throws
    /// std::bad_alloc, and the index is unusable then.
    void build_names();
    /// The element at a position of the list, from 1.
    Element *at(std::int32_t position);

    /// After `element` was linked into the list. Throws std::bad_alloc; the index is unusable then.
    void linked(Element &element);
    /// Before `element` is unlinked.
    void unlinking(const Element &element);
    /// The next search by position begins here.
    void remember(Element *element, std::int32_t position);

  private:
    Slot &slot_of(std::string_view name, std::uint32_t hash);
    void build_order();
    void number();
    void use_table(memory::Vector<Slot> &table);
    void add_name(Element &element);
    void remove_name(const Element &element);
    void remove_slot(std::size_t place);
    void grow();

    List &list_;
    memory::Vector<Slot> slots_;  // a power of two of them, empty until the first search by name
    std::size_t used_ = 0;
    Ordered order_;  // empty until the first search by position that needs it
    bool ordered_ = false;
    bool numbered_ = false;
    Element *remembered_ = nullptr;
    std::int32_t remembered_position_ = 0;
};

/// Frees a list's index, if it has one.
void drop_index(List &list);

}  // namespace kv::env

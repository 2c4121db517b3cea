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

class Index {
  public:
    explicit Index(const List &list) : list_(list) {}
    Index(const Index &) = delete;
    Index &operator=(const Index &) = delete;
    ~Index();

    // The searches build what they need and throw std::bad_alloc when there is no room for it.

    /// The n-th element of a name, from 1; null if there are fewer.
    Element *named(std::string_view name, std::int32_t n);
    std::int32_t count_named(std::string_view name);
    /// 1 + the number of elements before `element` with its name.
    std::int32_t occurrence(const Element &element);
    /// The element at a position of the list, from 1.
    Element *at(std::int32_t position);

    /// After `element` was linked into the list. Throws std::bad_alloc; the index is unusable then.
    void linked(Element &element);
    /// Before `element` is unlinked.
    void unlinking(const Element &element);
    /// The next search by position begins here.
    void remember(Element *element, std::int32_t position);

  private:
    // A place of the hash table (open addressing, linear probing).
    struct Slot {
        std::uint32_t hash;
        bool repeated;
        union {
            Element *only;  // null: the place is free
            Ordered *all;   // several elements of the name; owned
        };
    };

    Element *first_of(const Slot &slot) const { return slot.repeated ? slot.all->front() : slot.only; }
    Slot &find(std::string_view name, std::uint32_t hash);
    void build_names();
    void build_order();
    void number();
    void add_name(Element &element);
    void remove_name(const Element &element);
    void remove_slot(std::size_t place);
    void grow();

    const List &list_;
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

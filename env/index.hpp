// SPDX-License-Identifier: MIT
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
    explicit Index(List &list) : list_(list) {}
    Index(const Index &) = delete;
    Index &operator=(const Index &) = delete;
    ~Index() = default;

    /// Builds the list's table of names. Like all that builds here it throws std::bad_alloc; the index is
    /// to be dropped then.
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
    void build_order();
    void number();

    List &list_;
    Ordered order_;  // empty until the first search by position that needs it
    bool ordered_ = false;
    bool numbered_ = false;
    Element *remembered_ = nullptr;
    std::int32_t remembered_position_ = 0;
};

/// Frees a list's index with its table of names, if it has one.
void drop_index(List &list);

}  // namespace kv::env

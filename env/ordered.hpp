// SPDX-License-Identifier: MIT
// The order of the elements of a list, for finding an element's position and the element at a position.
#pragma once

#include <cstddef>
#include <cstdint>

#include "env/element.hpp"
#include "memory/owned.hpp"

namespace kv::env {

/// Gives all elements of a list their order numbers.
void number_all(const List &list);
/// Gives an element that has just been linked into a numbered list its order number. Neighbours get new
/// numbers where there is no room between them, which is rare enough to cost little on average.
void number_linked(Element &element);

/// Elements of one list, sorted by their order numbers. Kept in chunks of a few hundred, so that an
/// insertion or a removal moves little.
class Ordered {
  public:
    std::size_t size() const { return size_; }
    Element *front() const { return chunks_.front().front(); }
    /// The element at a position, from 0.
    Element *at(std::size_t position);
    /// The position of an element that is in here.
    std::size_t position(const Element &element);
    /// Throws std::bad_alloc; this is unusable then.
    void insert(Element *element);
    /// The element is in here.
    void erase(const Element &element);

  private:
    using Chunk = memory::Vector<Element *>;

    std::size_t chunk_of(const Element &element) const;
    void settle(std::size_t chunk);

    std::size_t size_ = 0;
    memory::Vector<Chunk> chunks_;          // none is empty
    memory::Vector<std::uint32_t> starts_;  // the position of each chunk's first element ...
    std::size_t settled_ = 0;               // ... as far as they are known
};

}  // namespace kv::env

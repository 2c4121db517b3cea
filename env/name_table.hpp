// SPDX-License-Identifier: MIT
// The names of a long list: a hash table from a name to the elements that have it.
//
// A random lookup in a large list costs what its cache misses cost, so that the table is small: a place
// takes six bytes, a tag of 16 bits, made of the name's hash, and a reference of 32, the distance from a
// base address in units of the allocator's alignment. A hundred thousand names take less than a megabyte,
// which stays in a cache. Where an element lies too far from the others, the references are whole pointers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kv::env {

struct Element;
struct List;
class Ordered;

/// The elements of one name.
class Namesakes {
  public:
    Namesakes() = default;
    Namesakes(void *reference, bool repeated);

    /// Lets the processor fetch the only one, which is about to be read.
    void prefetch_only() const;
    /// The first of them; null if there are none.
    Element *first() const;
    std::int32_t count() const;
    /// The n-th of them, from 1; null if there are fewer.
    Element *at(std::int32_t n) const;
    /// 1 + the number of those before `element`, which is one of them.
    std::int32_t position(const Element &element) const;

  private:
    Element *only_ = nullptr;
    Ordered *all_ = nullptr;  // if there are several
};

/// Plain data: a list's owner clears it. All that adds to it throws std::bad_alloc; it is to be cleared
/// then.
class NameTable {
  public:
    bool is_built() const { return block_ != nullptr; }
    /// Builds the table for all elements of a list, which have their order numbers.
    void build(const List &list);
    void clear();

    // The table is built.
    Namesakes find(std::string_view name) const;
    void insert(Element &element);
    void remove(const Element &element);

  private:
    using Tag = std::uint16_t;

    std::size_t size() const { return std::size_t{mask_} + 1; }
    Tag *tags() const { return reinterpret_cast<Tag *>(block_); }
    char *references() const { return block_ + size() * sizeof(Tag); }
    void *reference(std::size_t place) const;
    bool can_refer_to(const void *target) const;
    void refer(std::size_t place, const void *target);
    std::size_t place_of(std::string_view name, std::uint32_t hash) const;
    Namesakes namesakes(std::size_t place) const;
    void allocate(std::size_t size, bool wide);
    void rebuild(std::size_t size, bool wide);
    void put(std::size_t place, Tag tag, void *target);
    void free_place(std::size_t place);

    char *block_ = nullptr;  // the tags, then the references, a power of two of each
    std::uintptr_t base_ = 0;
    std::uint32_t mask_ = 0;
    std::uint32_t used_ : 31 = 0;
    std::uint32_t wide_ : 1 = 0;  // the references are pointers
};

}  // namespace kv::env

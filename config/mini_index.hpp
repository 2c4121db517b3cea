// SPDX-License-Identifier: MIT
// The names of a long list: a hash table from a name to the nodes that have it.
//
// A place is one word: the address of a node, and in the 16 bits that addresses leave free a part of the
// name's hash, so that a search reads hardly any node but the one it looks for.
#pragma once

#include <cstdint>
#include <string_view>

namespace kv::mini {

/// What the elements of a list have in common. The name is zero-terminated.
struct Node {
    Node *next;
    Node *previous;
    Node *namesake;  ///< in an index: the next node of this name; the last one's is the first one
    char *name;
    std::int32_t order;  ///< grows along the list
    std::uint32_t name_size : 31;
    std::uint32_t owns_name : 1;  ///< the name is a block of its own

    std::string_view key() const { return {name, name_size}; }
};

/// What may find no room on the heap throws std::bad_alloc; the index is to be cleared then.
class Index {
  public:
    Index() = default;
    Index(const Index &) = delete;
    Index &operator=(const Index &) = delete;
    ~Index() { clear(); }

    bool is_built() const { return places_ != nullptr; }
    /// Builds the index of the list that begins with `first` and has `count` nodes.
    void build(Node *first, std::uint32_t count);
    void clear();

    // The index is built.
    /// The first node of this name in the list's order; null if there is none.
    Node *find(std::string_view name) const;
    void insert(Node &node);
    void remove(const Node &node);

  private:
    using Place = std::uint64_t;

    static Place place_for(Node &node, std::uint32_t hash);
    static Node *node_at(Place place);
    static const Node *fetch(Place place);
    std::uint32_t position_of(std::string_view name, std::uint32_t hash) const;
    void allocate(std::uint32_t size);
    void grow();
    void free_position(std::uint32_t position);

    Place *places_ = nullptr;  // a power of two of them; 0: free; else the last node of a name
    std::uint32_t mask_ = 0;
    std::uint32_t used_ = 0;
};

}  // namespace kv::mini

// SPDX-License-Identifier: MIT
// Lists of named nodes, in order, with an index of the names once they are long.
#pragma once

#include <cstdint>
#include <string_view>

#include "config/mini_index.hpp"
#include "memory/owned.hpp"

namespace kv::mini {

/// Links the nodes and finds them; they belong to the list that is made of this one.
class NodeList {
  public:
    NodeList() = default;
    NodeList(const NodeList &) = delete;
    NodeList &operator=(const NodeList &) = delete;

    /// The first node of this name; null if there is none. The index is built here, so that a list that
    /// is never searched has none.
    Node *find(std::string_view name);
    /// Gives a node of the list a new name. Throws std::bad_alloc, nothing being changed.
    void rename(Node &node, std::string_view name);

  protected:
    ~NodeList() = default;
    void append(Node &node);
    void prepend(Node &node);
    void unlink(Node &node);

    Node *first_ = nullptr;
    Node *last_ = nullptr;

  private:
    void index(Node &node);
    void renumber();

    std::uint32_t count_ = 0;
    Index index_;
};

/// A list of T, each in a block of its own.
template <typename T>
class List : public NodeList {
  public:
    List() = default;
    ~List() { clear(); }

    T *first() const { return static_cast<T *>(first_); }
    T *find(std::string_view name) { return static_cast<T *>(NodeList::find(name)); }
    T &append(memory::Owned<T> node) {
        NodeList::append(*node);
        return *node.release();
    }
    T &prepend(memory::Owned<T> node) {
        NodeList::prepend(*node);
        return *node.release();
    }
    void move_to_end(T &node) {
        unlink(node);
        NodeList::append(node);
    }
    void remove(T &node) {
        unlink(node);
        memory::Release()(&node);
    }
    void clear() {
        while (first_ != nullptr) remove(*first());
    }
};

/// The node after this one; null at the end.
template <typename T>
T *next(const T *node) {
    return static_cast<T *>(node->next);
}

}  // namespace kv::mini

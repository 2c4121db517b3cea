// SPDX-License-Identifier: MIT
// The singly linked chain that stacks and queues are made of.
#pragma once

#include "kv/types.h"

#include "memory/owned.hpp"

namespace kv::containers {

struct Node {
    kv_value value;
    Node *next;
};

/// A node that belongs to the caller; null when the heap is exhausted.
inline Node *make_node(kv_value value, Node *next) {
    return memory::make_owned<Node>(Node{value, next}).release();
}

inline kv_value first_value(const Node *first) {
    return first != nullptr ? first->value : 0;
}

/// Takes the first node off the chain and frees it; its value, 0 for an empty chain.
inline kv_value take_first(Node *&first) {
    if (first == nullptr) return 0;
    const memory::Owned<Node> node(first);
    first = node->next;
    return node->value;
}

inline void free_chain(Node *&first) {
    while (first != nullptr) take_first(first);
}

}  // namespace kv::containers

// SPDX-License-Identifier: MIT
#include "config/mini_list.hpp"

#include <cstring>
#include <new>

namespace kv::mini {

namespace {
constexpr std::uint32_t kLongestWalk = 8;  // up to here a walk is as fast as the index
}

// An index that finds no room is dropped: the list is walked then.
void NodeList::index(Node &node) {
    if (!index_.is_built()) return;
    try {
        index_.insert(node);
    } catch (const std::bad_alloc &) {
        index_.clear();
    }
}

// Gives all nodes their order anew, the first one's far from both ends of what an order can be.
void NodeList::renumber() {
    std::int32_t order = 0;
    for (Node *node = first_; node != nullptr; node = node->next) node->order = order++;
}

void NodeList::append(Node &node) {
    if (last_ != nullptr && last_->order == INT32_MAX) renumber();
    node.order = last_ != nullptr ? last_->order + 1 : 0;
    node.previous = last_;
    node.next = nullptr;
    (last_ != nullptr ? last_->next : first_) = &node;
    last_ = &node;
    ++count_;
    index(node);
}

void NodeList::prepend(Node &node) {
    if (first_ == nullptr) {
        append(node);
        return;
    }
    if (first_->order == INT32_MIN) renumber();
    node.order = first_->order - 1;
    node.previous = nullptr;
    node.next = first_;
    first_->previous = &node;
    first_ = &node;
    ++count_;
    index(node);
}

void NodeList::unlink(Node &node) {
    if (index_.is_built()) index_.remove(node);
    (node.previous != nullptr ? node.previous->next : first_) = node.next;
    (node.next != nullptr ? node.next->previous : last_) = node.previous;
    if (--count_ == 0) index_.clear();
}

Node *NodeList::find(std::string_view name) {
    if (count_ > kLongestWalk && !index_.is_built()) {
        try {
            index_.build(first_, count_);
        } catch (const std::bad_alloc &) {
            index_.clear();
        }
    }
    if (index_.is_built()) return index_.find(name);
    Node *node = first_;
    while (node != nullptr && node->key() != name) node = node->next;
    return node;
}

void NodeList::rename(Node &node, std::string_view name) {
    char *const copy = memory::Allocator<char>().allocate(name.size() + 1);
    std::memcpy(copy, name.data(), name.size());
    copy[name.size()] = '\0';
    if (index_.is_built()) index_.remove(node);
    if (node.owns_name) heap_free(node.name);
    node.name = copy;
    node.name_size = static_cast<std::uint32_t>(name.size()) & INT32_MAX;
    node.owns_name = 1;
    index(node);
}

}  // namespace kv::mini

// SPDX-License-Identifier: MIT
#include "config/mini_index.hpp"

#include <cstring>
#include <new>

#include "kv/memory.h"

namespace kv::mini {

namespace {

constexpr int kAddressBits = 48;
constexpr std::uint64_t kAddressMask = (std::uint64_t{1} << kAddressBits) - 1;
constexpr std::uint32_t kSmallestSize = 32;
constexpr std::uint32_t kLargestSize = std::uint32_t{1} << 28;  // what one block can hold

std::uint64_t mix(std::uint64_t value) {
    constexpr std::uint64_t kMultiplier = 0x9e3779b97f4a7c15U;
    value *= kMultiplier;
    return value ^ (value >> 32);
}

std::uint32_t hash_of(std::string_view name) {
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    std::uint64_t hash = mix(name.size() + 1);
    const char *at = name.data();
    std::size_t left = name.size();
    for (; left >= kWord; at += kWord, left -= kWord) {
        std::uint64_t word;
        std::memcpy(&word, at, kWord);
        hash = mix(hash ^ word);
    }
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < left; ++i) word = word << 8 | static_cast<unsigned char>(at[i]);
    hash = mix(hash ^ word);
    return static_cast<std::uint32_t>(hash ^ (hash >> 29));
}

// How full a table of this size becomes: a small one stays in the caches, and the tags make long searches
// cheap.
std::uint32_t most_used(std::uint32_t size) {
    return size / 5 * 4;
}

std::uint64_t tag_of(std::uint32_t hash) {
    return std::uint64_t{hash >> 16} << kAddressBits;
}

}  // namespace

Index::Place Index::place_for(Node &node, std::uint32_t hash) {
    const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&node));
    if ((address & ~kAddressMask) != 0) throw std::bad_alloc();  // an address that needs all its bits
    return address | tag_of(hash);
}

Node *Index::node_at(Place place) {
    const auto address = static_cast<std::uintptr_t>(place & kAddressMask);
    return reinterpret_cast<Node *>(address);  // NOLINT(performance-no-int-to-ptr)
}

void Index::clear() {
    heap_free(places_);
    places_ = nullptr;
    used_ = 0;
}

void Index::allocate(std::uint32_t size) {
    if (size > kLargestSize) throw std::bad_alloc();
    auto *const places = static_cast<Place *>(heap_calloc(size, sizeof(Place)));
    if (places == nullptr) throw std::bad_alloc();
    places_ = places;
    mask_ = size - 1;
}

void Index::build(Node *first, std::uint32_t count) {
    clear();
    std::uint32_t size = kSmallestSize;
    while (size < kLargestSize && most_used(size) < count) size *= 2;
    allocate(size);
    for (Node *node = first; node != nullptr; node = node->next) insert(*node);
}

// The name stands after the record: where they lie in two cache lines, both are fetched at once.
const Node *Index::fetch(Place place) {
    constexpr std::size_t kCacheLine = 64;
    const Node *const node = node_at(place);
    __builtin_prefetch(reinterpret_cast<const char *>(node) + kCacheLine);
    return node;
}

// The position of the name, or the free one at which it would be inserted.
std::uint32_t Index::position_of(std::string_view name, std::uint32_t hash) const {
    const std::uint64_t tag = tag_of(hash);
    std::uint32_t position = hash & mask_;
    for (; places_[position] != 0; position = (position + 1) & mask_) {
        const Place place = places_[position];
        if ((place & ~kAddressMask) == tag && fetch(place)->key() == name) break;
    }
    return position;
}

Node *Index::find(std::string_view name) const {
    const Place place = places_[position_of(name, hash_of(name))];
    return place != 0 ? node_at(place)->namesake : nullptr;
}

void Index::grow() {
    Place *const old = places_;
    const std::uint32_t old_size = mask_ + 1;
    allocate(old_size * 2);
    for (std::uint32_t i = 0; i < old_size; ++i) {
        if (old[i] == 0) continue;
        std::uint32_t position = hash_of(node_at(old[i])->key()) & mask_;
        while (places_[position] != 0) position = (position + 1) & mask_;
        places_[position] = old[i];
    }
    heap_free(old);
}

void Index::insert(Node &node) {
    if (used_ >= most_used(mask_ + 1)) grow();
    const std::uint32_t hash = hash_of(node.key());
    const std::uint32_t position = position_of(node.key(), hash);
    const Place place = place_for(node, hash);
    if (places_[position] == 0) {
        node.namesake = &node;
        places_[position] = place;
        ++used_;
        return;
    }
    Node *const last = node_at(places_[position]);
    Node *before = last;
    if (node.order > last->order) {
        places_[position] = place;
    } else {
        while (before->namesake->order < node.order) before = before->namesake;
    }
    node.namesake = before->namesake;
    before->namesake = &node;
}

void Index::remove(const Node &node) {
    const std::uint32_t hash = hash_of(node.key());
    const std::uint32_t position = position_of(node.key(), hash);
    Node *const last = node_at(places_[position]);
    if (last->namesake == last) {
        free_position(position);
        return;
    }
    Node *before = last;
    while (before->namesake != &node) before = before->namesake;
    before->namesake = node.namesake;
    if (last == &node) places_[position] = place_for(*before, hash);
}

// Moves those after the position up that are not where they belong, so that no search ends too early.
void Index::free_position(std::uint32_t position) {
    for (std::uint32_t i = (position + 1) & mask_; places_[i] != 0; i = (i + 1) & mask_) {
        const std::uint32_t home = hash_of(node_at(places_[i])->key()) & mask_;
        if (((i - home) & mask_) < ((i - position) & mask_)) continue;
        places_[position] = places_[i];
        position = i;
    }
    places_[position] = 0;
    --used_;
}

}  // namespace kv::mini

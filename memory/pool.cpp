// SPDX-License-Identifier: MIT
// Pool heaps.
//
// The documented rule is that the first block of the chain with more bytes left than the piece needs
// serves. The last block, from which most pieces come, is looked at by itself; the blocks before it are the
// leaves of a tree of maxima, so that the first one with enough free bytes is found without visiting the
// full ones. `most_before` is the tree's root: a piece that no block before the last can take costs no
// search.
#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

#include "kv/frame.h"
#include "kv/memory.h"

#include "memory/owned.hpp"

namespace {

struct Block {
    std::int32_t cachesize;  // bytes of the data area, a multiple of 8
    std::int32_t remaining;  // bytes of it not yet handed out
    std::int32_t clear;
    char *cursor;  // start of the free part
    Block *next;
};

constexpr std::size_t kUnit = 8;

template <typename Size>
constexpr Size round_up(Size size) {
    return (size + kUnit - 1) / kUnit * kUnit;
}

void report(const char *text, std::int32_t line = __builtin_LINE()) {
    kv_error(text, nullptr, nullptr, "Heap", line);
}

// Null when the heap is exhausted. The record that begins the block has `header` bytes.
void *allocate_block(std::size_t header, std::int32_t cachesize) {
    const std::size_t size = round_up(header) + static_cast<std::size_t>(cachesize);
    if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    return heap_malloc(static_cast<std::uint32_t>(size));
}

}  // namespace

// A pool is its first block, whose header is followed by what the pool needs besides.
struct HEAP {
    Block block;
    // The free part of the last block. That block's header is brought up to date when another one is
    // appended.
    char *cursor;
    char *end;
    std::size_t most_before = 0;  // the most bytes left in a block before the last
    Block *last;
    kv::memory::Vector<Block *> before;
    kv::memory::Vector<std::int32_t> tree;  // [1] is the root, [n] the maximum of [2n] and [2n + 1]

    explicit HEAP(const Block &first)
        : block(first), cursor(first.cursor), end(first.cursor + first.remaining), last(&block) {}

    std::size_t left() const { return static_cast<std::size_t>(end - cursor); }
    void *take(std::size_t size) { return std::exchange(cursor, cursor + size); }
    std::size_t leaves() const { return tree.size() / 2; }
    void set_leaf(std::size_t index, std::int32_t left);
    std::size_t first_with_more(std::int32_t size) const;
    void append_block();
    void *take_before(std::int32_t size);
};

void HEAP::set_leaf(std::size_t index, std::int32_t left) {
    std::size_t node = leaves() + index;
    tree[node] = left;
    while (node > 1) {
        node /= 2;
        const std::int32_t most = std::max(tree[2 * node], tree[2 * node + 1]);
        if (tree[node] == most) break;
        tree[node] = most;
    }
    most_before = static_cast<std::size_t>(tree[1]);
}

// The first block before the last with more than `size` bytes left. There has to be one.
std::size_t HEAP::first_with_more(std::int32_t size) const {
    std::size_t node = 1;
    while (node < leaves()) node = tree[2 * node] > size ? 2 * node : 2 * node + 1;
    return node - leaves();
}

// Appends a new block. Throws std::bad_alloc; the pool is unchanged then.
void HEAP::append_block() {
    const std::size_t count = before.size() + 1;
    before.reserve(std::bit_ceil(count));
    if (leaves() < count) {
        kv::memory::Vector<std::int32_t> larger(2 * std::bit_ceil(count), 0);
        const std::size_t first_leaf = larger.size() / 2;
        for (std::size_t i = 0; i < before.size(); ++i) larger[first_leaf + i] = before[i]->remaining;
        for (std::size_t node = first_leaf; --node > 0;)
            larger[node] = std::max(larger[2 * node], larger[2 * node + 1]);
        tree.swap(larger);
    }
    void *memory = allocate_block(sizeof(Block), block.cachesize);
    if (memory == nullptr) throw std::bad_alloc();
    last->cursor = cursor;
    last->remaining = static_cast<std::int32_t>(left());
    before.push_back(last);
    set_leaf(count - 1, last->remaining);
    char *data = static_cast<char *>(memory) + round_up(sizeof(Block));
    last->next = ::new (memory) Block{block.cachesize, block.cachesize, block.clear, data, nullptr};
    last = last->next;
    cursor = data;
    end = data + block.cachesize;
}

// A piece of a block before the last. One of those has enough free bytes.
void *HEAP::take_before(std::int32_t size) {
    const std::size_t index = first_with_more(size);
    Block &serving = *before[index];
    void *piece = serving.cursor;
    serving.cursor += size;
    serving.remaining -= size;
    set_leaf(index, serving.remaining);
    return piece;
}

namespace {

[[gnu::noinline]] void *refuse_without_pool() noexcept {
    report("heap_allocate: incorrect ID for this heap");
    return nullptr;
}

// A piece that the last block does not serve; null if it is refused. A function of its own, so that
// heap_allocate() is short.
[[gnu::noinline]] void *allocate_elsewhere(HEAP &pool, std::int32_t size) noexcept {
    if (size < 0 || size > pool.block.cachesize) {
        report("heap_allocate: parameter 'size' greater than cachesize");
        return nullptr;
    }
    // The capacity is a multiple of 8, so that rounding up stays within it.
    const std::size_t rounded = round_up(static_cast<std::size_t>(size));
    void *piece = nullptr;
    if (rounded < pool.most_before) {
        piece = pool.take_before(static_cast<std::int32_t>(rounded));
    } else {
        try {
            pool.append_block();
        } catch (const std::bad_alloc &) {
            report("heap_allocate: out of space");
            return nullptr;
        }
        piece = pool.take(rounded);
    }
    if (pool.block.clear != 0) std::memset(piece, 0, static_cast<std::size_t>(size));
    return piece;
}

}  // namespace

HEAP *heap_open(int32_t cachesize, int32_t clear) noexcept {
    const std::int64_t rounded =
        static_cast<std::int64_t>(round_up(static_cast<std::size_t>(std::max(cachesize, 0))));
    void *memory = nullptr;
    if (cachesize >= 0 && rounded <= std::numeric_limits<std::int32_t>::max())
        memory = allocate_block(sizeof(HEAP), static_cast<std::int32_t>(rounded));
    if (memory == nullptr) {
        report("heap_open: out of space");
        return nullptr;
    }
    const auto capacity = static_cast<std::int32_t>(rounded);
    char *data = static_cast<char *>(memory) + round_up(sizeof(HEAP));
    return ::new (memory) HEAP(Block{capacity, capacity, clear, data, nullptr});
}

void *heap_allocate(HEAP *pool, int32_t size) noexcept {
    if (pool == nullptr) return refuse_without_pool();
    // A negative size is, as an unsigned number, more than any block has left.
    const auto rounded = round_up<std::uint64_t>(static_cast<std::uint32_t>(size));
    if (rounded < pool->most_before || rounded >= pool->left()) return allocate_elsewhere(*pool, size);
    void *piece = pool->take(static_cast<std::size_t>(rounded));
    return pool->block.clear == 0 ? piece : std::memset(piece, 0, static_cast<std::size_t>(size));
}

void heap_deallocate(HEAP *pool, void *) noexcept {
    if (pool == nullptr) report("heap_deallocate: incorrect ID for this heap");
}

void heap_close(HEAP *pool) noexcept {
    if (pool == nullptr) return;
    for (Block *block = pool->block.next; block != nullptr;) {
        Block *next = block->next;
        heap_free(block);
        block = next;
    }
    std::destroy_at(pool);
    heap_free(pool);
}

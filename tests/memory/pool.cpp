// Pool heaps, against a model that walks the chain of blocks as the interface describes it.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

// Where each block's data begins is learnt from the first piece that comes from it.
class Model {
  public:
    explicit Model(int32_t cachesize)
        : cachesize_((cachesize + 7) / 8 * 8), blocks_{{nullptr, cachesize_}} {}

    // The block that has to serve, a new one if need be.
    std::size_t serve(int32_t size) {
        const int32_t rounded = (size + 7) / 8 * 8;
        std::size_t i = 0;
        while (i < blocks_.size() && blocks_[i].remaining <= rounded) ++i;
        if (i == blocks_.size()) blocks_.push_back({nullptr, cachesize_});
        return i;
    }

    // Checks that a piece lies where it has to.
    void expect(int32_t size, char *piece) {
        Block &block = blocks_[serve(size)];
        const int32_t used = cachesize_ - block.remaining;
        if (block.data == nullptr) block.data = piece;
        ASSERT_EQ(piece, block.data + used) << "block " << &block - blocks_.data() << ", size " << size;
        block.remaining -= (size + 7) / 8 * 8;
    }

    std::size_t blocks() const { return blocks_.size(); }

  private:
    struct Block {
        char *data;
        int32_t remaining;
    };
    int32_t cachesize_;
    std::vector<Block> blocks_;
};

TEST(Pool, GivesThePieceThatWalkingTheChainGives) {
    std::mt19937 random(7);
    for (const int32_t cachesize : {1, 16, 100, 1000}) {
        HEAP *pool = heap_open(cachesize, 0);
        Model model(cachesize);
        for (int i = 0; i < 5000 && !testing::Test::HasFatalFailure(); ++i) {
            // Phases of small and of large pieces: holes are left and filled.
            const auto most = static_cast<uint32_t>(i / 500 % 2 == 0 ? cachesize : cachesize / 5);
            const auto size = static_cast<int32_t>(random() % (most + 1));
            auto *piece = static_cast<char *>(heap_allocate(pool, size));
            ASSERT_NE(piece, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(piece) % 8, 0U);
            std::memset(piece, i, static_cast<size_t>(size));
            model.expect(size, piece);
        }
        EXPECT_GT(model.blocks(), 10U) << cachesize;
        heap_deallocate(pool, pool);
        heap_close(pool);
    }
}

TEST(Pool, ClearsWhatWasAskedFor) {
    HEAP *pool = heap_open(64, 1);
    for (const int32_t size : {0, 1, 7, 9, 64, 64}) {
        auto *piece = static_cast<char *>(heap_allocate(pool, size));
        EXPECT_EQ(std::count(piece, piece + size, 0), size);
        std::memset(piece, 7, static_cast<size_t>((size + 7) / 8 * 8));
    }
    heap_close(pool);
}

TEST(Pool, RefusesWhatItCannotGive) {
    kvtest::clear_log();
    HEAP *pool = heap_open(9, 0);
    EXPECT_NE(heap_allocate(pool, 16), nullptr);
    for (const int32_t size : {17, INT32_MAX, -1, INT32_MIN})
        EXPECT_EQ(heap_allocate(pool, size), nullptr) << size;
    EXPECT_EQ(kvtest::count_in_log("  heap_allocate: parameter 'size' greater than cachesize!"), 4);
    EXPECT_EQ(heap_allocate(nullptr, 8), nullptr);
    EXPECT_EQ(kvtest::count_in_log("  heap_allocate: incorrect ID for this heap!"), 1);
    heap_deallocate(nullptr, pool);
    EXPECT_EQ(kvtest::count_in_log("  heap_deallocate: incorrect ID for this heap!"), 1);
    heap_close(pool);
    heap_close(nullptr);
    EXPECT_EQ(heap_open(-1, 0), nullptr);
    EXPECT_EQ(heap_open(INT32_MAX, 0), nullptr);
    EXPECT_EQ(kvtest::count_in_log("  heap_open: out of space!"), 2);
    HEAP *empty = heap_open(0, 1);
    EXPECT_NE(heap_allocate(empty, 0), nullptr);
    heap_close(empty);
}

TEST(Pool, ExhaustedHeap) {
    kvtest::sweep_allocation_failures([](std::int64_t) {
        HEAP *pool = heap_open(16, 0);
        if (pool == nullptr) return;
        Model model(16);
        for (int i = 0; i < 20; ++i) {
            if (void *piece = heap_allocate(pool, i % 16)) model.expect(i % 16, static_cast<char *>(piece));
        }
        heap_close(pool);
    });
}

}  // namespace

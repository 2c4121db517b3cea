// SPDX-License-Identifier: MIT
// A model of pool heaps that walks the chain of blocks as the interface describes it.
#pragma once

#include <cstdint>
#include <vector>

namespace kvtest {

/// Where each block's data begins is learnt from the first piece that comes from it.
class PoolModel {
  public:
    explicit PoolModel(int32_t cachesize) : capacity_(rounded(cachesize)), blocks_{{nullptr, capacity_}} {}

    bool can_serve(int32_t size) const { return size >= 0 && rounded(size) <= capacity_; }
    /// Whether a piece lies where it has to: in the first block with more room, or in a new one.
    bool takes(int32_t size, char *piece) {
        std::size_t i = 0;
        while (i < blocks_.size() && blocks_[i].remaining <= rounded(size)) ++i;
        if (i == blocks_.size()) blocks_.push_back({nullptr, capacity_});
        Block &block = blocks_[i];
        if (block.data == nullptr) block.data = piece;
        char *const expected = block.data + (capacity_ - block.remaining);
        block.remaining -= rounded(size);
        return piece == expected;
    }
    std::size_t blocks() const { return blocks_.size(); }

  private:
    struct Block {
        char *data;
        int32_t remaining;
    };
    static int32_t rounded(int32_t size) { return (size + 7) / 8 * 8; }

    int32_t capacity_;
    std::vector<Block> blocks_;
};

}  // namespace kvtest

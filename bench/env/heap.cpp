// SPDX-License-Identifier: MIT
#include "bench/env/heap.hpp"

#include <cstdlib>
#include <malloc.h>

namespace kvbench {

std::size_t heap_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

EmptyThreadCache::EmptyThreadCache() {
    constexpr std::size_t kLargestCached = 1032;
    constexpr std::size_t kSizeStep = 16;
    constexpr int kKeptPerSize = 7;
    for (std::size_t size = 24; size <= kLargestCached; size += kSizeStep) {
        for (int i = 0; i < kKeptPerSize; ++i) {
            void *block = std::malloc(size);
            if (block == nullptr) std::abort();
            *static_cast<void **>(block) = taken_;
            taken_ = block;
        }
    }
}

EmptyThreadCache::~EmptyThreadCache() {
    while (taken_ != nullptr) {
        void *next = *static_cast<void **>(taken_);
        std::free(taken_);
        taken_ = next;
    }
}

}  // namespace kvbench

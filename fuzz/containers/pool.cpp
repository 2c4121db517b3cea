// Pieces of random sizes, each where walking the chain of blocks puts it.
#include <cstring>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool quiet = (kvfuzz::quiet(), true);
    static_cast<void>(quiet);
    struct Block {
        char *data;
        int32_t remaining;
    };
    kvfuzz::Input input(data, size);
    const int32_t wanted = input.byte();
    const int32_t capacity = (wanted + 7) / 8 * 8;
    const int32_t clear = input.byte() & 1;
    HEAP *pool = heap_open(wanted, clear);
    std::vector<Block> blocks{{nullptr, capacity}};
    while (!input.empty()) {
        const int32_t asked = input.byte() - 2;
        auto *piece = static_cast<char *>(heap_allocate(pool, asked));
        const int32_t rounded = (asked + 7) / 8 * 8;
        KV_REQUIRE((piece != nullptr) == (asked >= 0 && rounded <= capacity));
        if (piece == nullptr) continue;
        if (clear != 0) {
            for (int32_t i = 0; i < asked; ++i) KV_REQUIRE(piece[i] == 0);
        }
        std::memset(piece, 0x55, static_cast<std::size_t>(asked));
        std::size_t serving = 0;
        while (serving < blocks.size() && blocks[serving].remaining <= rounded) ++serving;
        if (serving == blocks.size()) blocks.push_back({nullptr, capacity});
        Block &block = blocks[serving];
        if (block.data == nullptr) block.data = piece;
        KV_REQUIRE(piece == block.data + (capacity - block.remaining));
        block.remaining -= rounded;
    }
    heap_close(pool);
    return 0;
}

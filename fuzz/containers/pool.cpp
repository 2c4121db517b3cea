// SPDX-License-Identifier: MIT
// Pieces of random sizes, each where walking the chain of blocks puts it.
#include "tests/models/pool.hpp"

#include <algorithm>
#include <cstring>

#include "kv.h"

#include "fuzz/support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool quiet = (kvfuzz::quiet(), true);
    static_cast<void>(quiet);
    kvfuzz::Input input(data, size);
    const int32_t wanted = input.byte();
    const int32_t clear = input.byte() & 1;
    HEAP *pool = heap_open(wanted, clear);
    kvtest::PoolModel model(wanted);
    while (!input.empty()) {
        const int32_t asked = input.byte() - 2;
        auto *piece = static_cast<char *>(heap_allocate(pool, asked));
        KV_REQUIRE((piece != nullptr) == model.can_serve(asked));
        if (piece == nullptr) continue;
        KV_REQUIRE(clear == 0 || std::count(piece, piece + asked, 0) == asked);
        std::memset(piece, 0x55, static_cast<std::size_t>(asked));
        KV_REQUIRE(model.takes(asked, piece));
    }
    heap_close(pool);
    return 0;
}

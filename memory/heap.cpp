// SPDX-License-Identifier: MIT
// The exported allocation wrappers over the runtime library's heap.
#include <cstdlib>

#include "kv/frame.h"
#include "kv/memory.h"

#include "memory/failpoint.hpp"

void *heap_malloc(uint32_t size) noexcept {
    return kv::memory::allocation_fails() ? nullptr : std::malloc(size);
}

void *heap_calloc(uint32_t count, uint32_t size) noexcept {
    return kv::memory::allocation_fails() ? nullptr : std::calloc(count, size);
}

void *heap_realloc(void *block, uint32_t size) noexcept {
    return kv::memory::allocation_fails() ? nullptr : std::realloc(block, size);
}

void heap_free(void *block) noexcept {
    std::free(block);
}

void heap_smart_free(void *reference) noexcept {
    if (reference == nullptr) {
        kv_message("heap_smart_free: NIL-reference", nullptr, nullptr, "Heap", __LINE__);
        return;
    }
    void **variable = static_cast<void **>(reference);
    heap_free(*variable);
    *variable = nullptr;
}

void heap_statistic() noexcept {}

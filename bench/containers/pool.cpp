// SPDX-License-Identifier: MIT
// Pool heaps: pieces of mixed small sizes, then everything released at once.
#include <apr_general.h>
#include <apr_pools.h>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory_resource>
#include <random>
#include <talloc.h>

#include "kv.h"

namespace {

constexpr std::size_t kPieces = 100000;

// 8 to 128 bytes; small ones are more frequent.
const std::array<int32_t, 1024> &sizes() {
    static const std::array<int32_t, 1024> result = [] {
        std::array<int32_t, 1024> made{};
        std::mt19937 random(23);
        for (int32_t &size : made) size = static_cast<int32_t>(8 + random() % (8U << random() % 5));
        return made;
    }();
    return result;
}

template <typename Allocate>
void take_pieces(Allocate allocate) {
    const std::array<int32_t, 1024> &wanted = sizes();
    for (std::size_t i = 0; i < kPieces; ++i) {
        void *piece = allocate(wanted[i % wanted.size()]);
        benchmark::DoNotOptimize(piece);
    }
}

void count_items(benchmark::State &state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kPieces));
}

void kv_pool(benchmark::State &state) {
    for (auto _ : state) {
        HEAP *pool = heap_open(65536, 0);
        take_pieces([&](int32_t size) { return heap_allocate(pool, size); });
        heap_close(pool);
    }
    count_items(state);
}

// As its users have it, through the interface of all memory resources.
void monotonic(benchmark::State &state) {
    for (auto _ : state) {
        std::pmr::monotonic_buffer_resource pool(65536);
        std::pmr::memory_resource *resource = &pool;
        benchmark::DoNotOptimize(resource);
        take_pieces([&](int32_t size) { return resource->allocate(static_cast<std::size_t>(size), 8); });
    }
    count_items(state);
}

// Where the compiler sees which resource it is, and puts its code into the loop.
void monotonic_inlined(benchmark::State &state) {
    for (auto _ : state) {
        std::pmr::monotonic_buffer_resource pool(65536);
        take_pieces([&](int32_t size) { return pool.allocate(static_cast<std::size_t>(size), 8); });
    }
    count_items(state);
}

void apr(benchmark::State &state) {
    apr_initialize();
    for (auto _ : state) {
        apr_pool_t *pool = nullptr;
        apr_pool_create(&pool, nullptr);
        take_pieces([&](int32_t size) { return apr_palloc(pool, static_cast<apr_size_t>(size)); });
        apr_pool_destroy(pool);
    }
    count_items(state);
}

void talloc_pieces(benchmark::State &state) {
    for (auto _ : state) {
        void *pool = talloc_pool(nullptr, kPieces * 256);
        take_pieces([&](int32_t size) { return talloc_size(pool, static_cast<std::size_t>(size)); });
        talloc_free(pool);
    }
    count_items(state);
}

BENCHMARK(kv_pool)->Name("pool piece/kv");
BENCHMARK(monotonic)->Name("pool piece/monotonic_buffer_resource");
BENCHMARK(monotonic_inlined)->Name("pool piece/the same, inlined");
BENCHMARK(apr)->Name("pool piece/apr_palloc");
BENCHMARK(talloc_pieces)->Name("pool piece/talloc pool");

}  // namespace

// SPDX-License-Identifier: MIT
// The loops that the formats share, so that each is measured in the same way.
//
// Times are given per item: a leaf, a lookup, an element. What is parsed comes as an owning pointer.
#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <variant>

#include "bench/env/dataset.hpp"
#include "bench/env/heap.hpp"

namespace kvbench {

inline void set_items(benchmark::State &state, std::size_t items_per_iteration) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items_per_iteration));
}

inline void set_bytes(benchmark::State &state, std::size_t bytes_per_iteration) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes_per_iteration));
}

/// Times `parse()`, but not the release of what it gives.
template <typename Parse>
void measure_parse(benchmark::State &state, std::size_t text_size, std::size_t leaf_count, Parse parse) {
    for (auto _ : state) {
        auto parsed = parse();
        benchmark::DoNotOptimize(parsed.get());
        if (parsed == nullptr) {
            state.SkipWithError("the text was not parsed");
            return;
        }
        state.PauseTiming();
        parsed.reset();
        state.ResumeTiming();
    }
    set_bytes(state, text_size);
    set_items(state, leaf_count);
}

/// Times `write()`, which makes the text, releases it and gives its size.
template <typename Write>
void measure_write(benchmark::State &state, std::size_t text_size, std::size_t leaf_count, Write write) {
    for (auto _ : state) {
        if (write() != text_size) state.SkipWithError("the text has another size");
    }
    set_bytes(state, text_size);
    set_items(state, leaf_count);
}

/// Times `lookup(i)`, the i-th of random_doubles(), after a run that checks them all.
template <typename Lookup>
void measure_lookups(benchmark::State &state, Lookup lookup) {
    const std::vector<const Leaf *> &order = random_doubles();
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (lookup(i) != std::get<double>(order[i]->value)) {
            state.SkipWithError("a lookup gave another value");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookup(i));
        if (++i == order.size()) i = 0;
    }
    set_items(state, 1);
}

/// Times `visit()`, which visits `expected` items and gives their number.
template <typename Visit>
void measure_visits(benchmark::State &state, std::size_t expected, Visit visit) {
    for (auto _ : state) {
        if (visit() != expected) state.SkipWithError("another number of items was visited");
    }
    set_items(state, expected);
}

/// Reports the bytes of heap per leaf that the result of `parse()` occupies.
template <typename Parse>
void measure_heap(benchmark::State &state, std::size_t leaf_count, Parse parse) {
    parse().reset();  // what is made once, the text for one, does not count
    std::size_t bytes = 0;
    for (auto _ : state) {
        const EmptyThreadCache cache;
        const std::size_t before = heap_in_use();
        const auto parsed = parse();
        bytes = heap_in_use() - before;
        if (parsed == nullptr) state.SkipWithError("the text was not parsed");
    }
    state.counters["heap_per_leaf"] = static_cast<double>(bytes) / static_cast<double>(leaf_count);
}

}  // namespace kvbench

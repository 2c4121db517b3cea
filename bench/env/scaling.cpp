// SPDX-License-Identifier: MIT
// How the environment tree's operations grow with the number of elements in one block.
#include <array>
#include <charconv>
#include <cstring>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "kv/env.h"

#include "bench/env/kv_tree.hpp"
#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

constexpr char kSection[] = "machine";
constexpr char kBlock[] = "points";

std::string path_of(const std::string &name) {
    return std::string(kBlock) + '@' + name;
}

// The paths of a block's elements. Texts that follow each other in memory, so that fetching them costs the
// same whatever their number.
class Paths {
  public:
    void add(const std::string &path) {
        starts_.push_back(texts_.size());
        texts_.append(path).push_back('\0');
    }
    const char *operator[](std::size_t i) const { return texts_.data() + starts_[i]; }
    std::size_t size() const { return starts_.size(); }

  private:
    std::string texts_;
    std::vector<std::size_t> starts_;
};

// A block of so many elements, and the orders in which they are asked for.
struct Block {
    explicit Block(std::size_t element_count) : count(element_count) {
        std::vector<std::size_t> order(count);
        std::iota(order.begin(), order.end(), std::size_t{1});
        for (const std::size_t i : order) {
            paths.add(path_of("point_" + std::to_string(i)));
            env_put(unique.get(), kSection, paths[i - 1], number_text(static_cast<double>(i) / 8).c_str());
            env_put(repeated.get(), kSection, path_of("point@" + std::to_string(i)).c_str(), "120.5");
        }
        std::mt19937 random(20240229);
        for (std::size_t i = count; i > 1; --i) std::swap(order[i - 1], order[random() % i]);
        for (const std::size_t i : order) {
            random_paths.add(path_of("point_" + std::to_string(i)));
            random_indices.add(path_of("point@" + std::to_string(i)));
            random_positions.push_back(static_cast<std::int32_t>(i));
        }
        text = text_of(unique.get()).get();
        edited = env_of(text);
    }

    std::size_t count;
    EnvPointer unique = open_env();    // every name once
    EnvPointer repeated = open_env();  // one name
    EnvPointer edited;                 // as unique
    std::string text;
    Paths paths;  // in the order of the block
    Paths random_paths;
    Paths random_indices;
    std::vector<std::int32_t> random_positions;
};

const Block &block_of(const benchmark::State &state) {
    static std::map<std::int64_t, Block> blocks;
    const std::int64_t count = state.range(0);
    return blocks.try_emplace(count, static_cast<std::size_t>(count)).first->second;
}

// Times `act(i)` for i from 0 to below `count` and round again, after a round that checks the results.
template <typename Act>
void measure_each(benchmark::State &state, std::size_t count, Act act) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!act(i)) {
            state.SkipWithError("an operation failed");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(act(i));
        if (++i == count) i = 0;
    }
    set_items(state, 1);
}

void parse(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_parse(state, block.text.size(), block.count, [&] { return env_of(block.text); });
}

void write(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_write(state, block.text.size(), block.count,
                  [&] { return std::strlen(text_of(block.unique.get()).get()); });
}

bool get_double(ENV *env, const char *path) {
    double value = 0;
    return env_get_double(env, kSection, path, 1, &value) == 0;
}

void lookup(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_each(state, block.count,
                 [&](std::size_t i) { return get_double(block.unique.get(), block.random_paths[i]); });
}

void indexed_lookup(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_each(state, block.count,
                 [&](std::size_t i) { return get_double(block.repeated.get(), block.random_indices[i]); });
}

// The first lookup after parsing has to look at every element once.
void first_lookup(benchmark::State &state) {
    const Block &block = block_of(state);
    for (auto _ : state) {
        state.PauseTiming();
        EnvPointer env = env_of(block.text);
        state.ResumeTiming();
        benchmark::DoNotOptimize(get_double(env.get(), block.random_paths[0]));
        state.PauseTiming();
        env.reset();
        state.ResumeTiming();
    }
    set_items(state, block.count);
}

// What env_get_pos() and the iteration fill.
struct Element {
    char name[64];
    char value[64];
    int32_t id;
    void *external;
};

void iterate(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_visits(state, block.count, [&] {
        Element out;
        std::size_t count = 0;
        int32_t type = env_get_first(block.unique.get(), kSection, kBlock, 1, &out.id, sizeof out.name,
                                     out.name, sizeof out.value, out.value, &out.external);
        for (; type == ENV_DATA; ++count)
            type = env_get_next(sizeof out.name, out.name, sizeof out.value, out.value, &out.external);
        return count;
    });
}

void traverse_leafs(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_visits(state, block.count, [&] {
        std::size_t count = 0;
        env_traverse_leafs(block.unique.get(), count_leaf, &count);
        return count;
    });
}

void traverse_repeated_leafs(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_visits(state, block.count, [&] {
        std::size_t count = 0;
        env_traverse_leafs(block.repeated.get(), count_leaf, &count);
        return count;
    });
}

void get_pos(benchmark::State &state) {
    const Block &block = block_of(state);
    measure_each(state, block.count, [&](std::size_t i) {
        Element out;
        return env_get_pos(block.unique.get(), kSection, kBlock, 1, block.random_positions[i], &out.id,
                           sizeof out.name, out.name, sizeof out.value, out.value,
                           &out.external) == ENV_DATA;
    });
}

void insert_and_delete(benchmark::State &state) {
    const Block &block = block_of(state);
    const std::string inserted = path_of("inserted");
    measure_each(state, block.count, [&](std::size_t i) {
        return env_insert_before(block.edited.get(), kSection, block.random_paths[i], "inserted") ==
                   ENV_OK &&
               env_delete(block.edited.get(), kSection, inserted.c_str()) == ENV_OK;
    });
}

void append(benchmark::State &state) {
    const Block &block = block_of(state);
    for (auto _ : state) {
        EnvPointer env = open_env();
        for (std::size_t i = 0; i < block.count; ++i) env_put(env.get(), kSection, block.paths[i], "120.5");
        state.PauseTiming();
        env.reset();
        state.ResumeTiming();
    }
    set_items(state, block.count);
}

void sizes(benchmark::internal::Benchmark *benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000);
}

BENCHMARK(parse)->Name("scaling/parse")->Apply(sizes);
BENCHMARK(write)->Name("scaling/write")->Apply(sizes);
BENCHMARK(lookup)->Name("scaling/random lookup")->Apply(sizes);
BENCHMARK(indexed_lookup)->Name("scaling/random lookup by index")->Apply(sizes);
BENCHMARK(first_lookup)->Name("scaling/first lookup")->Apply(sizes);
BENCHMARK(iterate)->Name("scaling/iteration step")->Apply(sizes);
BENCHMARK(traverse_leafs)->Name("scaling/leaf visited")->Apply(sizes);
BENCHMARK(traverse_repeated_leafs)->Name("scaling/leaf visited, one name")->Apply(sizes);
BENCHMARK(get_pos)->Name("scaling/random get_pos")->Apply(sizes);
BENCHMARK(insert_and_delete)->Name("scaling/insert_before and delete")->Apply(sizes);
BENCHMARK(append)->Name("scaling/append by put")->Apply(sizes);

}  // namespace

}  // namespace kvbench

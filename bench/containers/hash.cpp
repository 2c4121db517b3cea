// SPDX-License-Identifier: MIT
// Hash tables: storing and finding keys, with the same hash function of the caller for all.
#include <benchmark/benchmark.h>
#include <cstring>
#include <glib.h>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "kv.h"

namespace {

// FNV-1a, 32 bits.
int32_t fnv(const char *key) {
    uint32_t hash = 2166136261U;
    for (; *key != '\0'; ++key) hash = (hash ^ static_cast<unsigned char>(*key)) * 16777619U;
    return static_cast<int32_t>(hash);
}

guint glib_hash(gconstpointer key) {
    return static_cast<guint>(fnv(static_cast<const char *>(key)));
}

struct StandardHash {
    std::size_t operator()(const std::string &key) const { return static_cast<uint32_t>(fnv(key.c_str())); }
};
using StandardMap = std::unordered_map<std::string, kv_value, StandardHash>;

// The same keys in two random orders.
struct Keys {
    explicit Keys(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            stored.push_back("section" + std::to_string(i % 97) + ".value" + std::to_string(i));
        std::mt19937 random(17);
        std::shuffle(stored.begin(), stored.end(), random);
        looked_up = stored;
        std::shuffle(looked_up.begin(), looked_up.end(), random);
    }
    std::vector<std::string> stored;
    std::vector<std::string> looked_up;
};

const Keys &keys_of(const benchmark::State &state) {
    static const Keys few(100);
    static const Keys many(100000);
    return state.range(0) == 100 ? few : many;
}

// Open addressing wants room: half of the slots stay empty, as in the other tables.
HASH *open_table(const benchmark::State &state, hash_function function) {
    return hash_open(1, static_cast<int32_t>(state.range(0) * 2), function, nullptr);
}

void fill(HASH *table, const Keys &keys) {
    kv_value value = 0;
    for (const std::string &key : keys.stored) hash_put(table, key.c_str(), ++value);
}

void count_items(benchmark::State &state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void put_kv(benchmark::State &state, hash_function function) {
    const Keys &keys = keys_of(state);
    for (auto _ : state) {
        HASH *table = open_table(state, function);
        fill(table, keys);
        hash_close(table);
    }
    count_items(state);
}

void put_glib(benchmark::State &state) {
    const Keys &keys = keys_of(state);
    for (auto _ : state) {
        GHashTable *table = g_hash_table_new_full(glib_hash, g_str_equal, g_free, nullptr);
        gintptr value = 0;
        for (const std::string &key : keys.stored)
            g_hash_table_insert(table, g_strdup(key.c_str()), GSIZE_TO_POINTER(++value));
        g_hash_table_destroy(table);
    }
    count_items(state);
}

void put_standard(benchmark::State &state) {
    const Keys &keys = keys_of(state);
    for (auto _ : state) {
        StandardMap table;
        kv_value value = 0;
        for (const std::string &key : keys.stored) table[key.c_str()] = ++value;
    }
    count_items(state);
}

template <typename Find>
void find_all(benchmark::State &state, Find find) {
    const Keys &keys = keys_of(state);
    kv_value sum = 0;
    for (auto _ : state) {
        for (const std::string &key : keys.looked_up) sum += find(key.c_str());
    }
    benchmark::DoNotOptimize(sum);
    if (sum == 0) state.SkipWithError("nothing was found");
    count_items(state);
}

void get_kv(benchmark::State &state, hash_function function) {
    HASH *table = open_table(state, function);
    fill(table, keys_of(state));
    find_all(state, [&](const char *key) {
        kv_value value = 0;
        hash_get(table, key, &value, nullptr);
        return value;
    });
    hash_close(table);
}

// Keys that are not there.
void miss_kv(benchmark::State &state) {
    HASH *table = open_table(state, fnv);
    fill(table, keys_of(state));
    int64_t missed = 0;
    for (auto _ : state) {
        for (const std::string &key : keys_of(state).looked_up)
            missed += hash_get(table, key.c_str() + 1, nullptr, nullptr) < 0;
    }
    if (missed == 0) state.SkipWithError("everything was found");
    count_items(state);
    hash_close(table);
}

void get_glib(benchmark::State &state) {
    GHashTable *table = g_hash_table_new_full(glib_hash, g_str_equal, g_free, nullptr);
    gintptr value = 0;
    for (const std::string &key : keys_of(state).stored)
        g_hash_table_insert(table, g_strdup(key.c_str()), GSIZE_TO_POINTER(++value));
    find_all(state, [&](const char *key) {
        return static_cast<kv_value>(GPOINTER_TO_SIZE(g_hash_table_lookup(table, key)));
    });
    g_hash_table_destroy(table);
}

void get_standard(benchmark::State &state) {
    StandardMap table;
    kv_value value = 0;
    for (const std::string &key : keys_of(state).stored) table[key] = ++value;
    find_all(state, [&](const char *key) { return table.find(key)->second; });
}

void sizes(benchmark::internal::Benchmark *benchmark) {
    benchmark->Arg(100)->Arg(100000);
}

BENCHMARK_CAPTURE(put_kv, fnv, fnv)->Name("hash put/kv")->Apply(sizes);
BENCHMARK(put_glib)->Name("hash put/GHashTable")->Apply(sizes);
BENCHMARK(put_standard)->Name("hash put/unordered_map")->Apply(sizes);
BENCHMARK_CAPTURE(put_kv, byte_sum, nullptr)->Name("hash put/kv, byte sum")->Arg(100);
BENCHMARK_CAPTURE(get_kv, fnv, fnv)->Name("hash get/kv")->Apply(sizes);
BENCHMARK(get_glib)->Name("hash get/GHashTable")->Apply(sizes);
BENCHMARK(get_standard)->Name("hash get/unordered_map")->Apply(sizes);
BENCHMARK_CAPTURE(get_kv, byte_sum, nullptr)->Name("hash get/kv, byte sum")->Arg(100);
BENCHMARK(miss_kv)->Name("hash miss/kv")->Apply(sizes);

}  // namespace

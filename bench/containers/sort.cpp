// SPDX-License-Identifier: MIT
// Sorting numbers and lists.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <glib.h>
#include <list>
#include <random>
#include <vector>

#include "kv.h"

namespace {

constexpr std::size_t kNumbers = 1000000;

template <typename Number>
const std::vector<Number> &numbers() {
    static const std::vector<Number> result = [] {
        std::vector<Number> made(kNumbers);
        std::mt19937 random(31);
        for (Number &number : made) {
            if constexpr (std::is_same_v<Number, double>) {
                number = std::normal_distribution<double>(0, 1000)(random);
            } else {
                number = static_cast<Number>(random());
            }
        }
        return made;
    }();
    return result;
}

template <typename Number, typename Sort>
void sort_numbers(benchmark::State &state, Sort sort) {
    std::vector<Number> values;
    for (auto _ : state) {
        state.PauseTiming();
        values = numbers<Number>();
        state.ResumeTiming();
        sort(values);
    }
    if (!std::is_sorted(values.begin(), values.end())) state.SkipWithError("not sorted");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kNumbers));
}

template <typename Number>
int compare_numbers(const void *a, const void *b) {
    const Number left = *static_cast<const Number *>(a);
    const Number right = *static_cast<const Number *>(b);
    return left < right ? -1 : static_cast<int>(left > right);
}

void doubles_kv(benchmark::State &state) {
    sort_numbers<double>(state, [](std::vector<double> &values) {
        sort_dvector(values.data(), static_cast<int32_t>(values.size()));
    });
}
void longs_kv(benchmark::State &state) {
    sort_numbers<int32_t>(state, [](std::vector<int32_t> &values) {
        sort_lvector(values.data(), static_cast<int32_t>(values.size()));
    });
}
template <typename Number>
void standard(benchmark::State &state) {
    sort_numbers<Number>(state,
                         [](std::vector<Number> &values) { std::sort(values.begin(), values.end()); });
}
template <typename Number>
void quick(benchmark::State &state) {
    sort_numbers<Number>(state, [](std::vector<Number> &values) {
        std::qsort(values.data(), values.size(), sizeof(Number), compare_numbers<Number>);
    });
}

struct Record {
    LIST_ELEM links;
    int32_t key;
    char payload[36];
};

struct Value {
    int32_t key;
    char payload[36];
};

std::vector<int32_t> random_keys(const benchmark::State &state) {
    std::vector<int32_t> keys(static_cast<std::size_t>(state.range(0)));
    std::mt19937 random(37);
    for (int32_t &key : keys) key = static_cast<int32_t>(random());
    return keys;
}

int32_t compare_records(LIST_ELEM *a, LIST_ELEM *b) {
    const int32_t left = reinterpret_cast<Record *>(a)->key;
    const int32_t right = reinterpret_cast<Record *>(b)->key;
    return left < right ? 1 : 2;
}

void count_records(benchmark::State &state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void list_kv(benchmark::State &state) {
    const std::vector<int32_t> keys = random_keys(state);
    std::vector<Record *> records;
    for (std::size_t i = 0; i < keys.size(); ++i) records.push_back(new Record{});
    for (auto _ : state) {
        state.PauseTiming();
        LIST list;
        list_init(&list);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            records[i]->key = keys[i];
            list_insert_after(&list, nullptr, &records[i]->links);
        }
        state.ResumeTiming();
        sort_list(&list, 1, compare_records);
    }
    for (Record *record : records) delete record;
    count_records(state);
}

void list_standard(benchmark::State &state) {
    const std::vector<int32_t> keys = random_keys(state);
    for (auto _ : state) {
        state.PauseTiming();
        {
            std::list<Value> list;
            for (const int32_t key : keys) list.push_back({key, {}});
            state.ResumeTiming();
            list.sort([](const Value &a, const Value &b) { return a.key < b.key; });
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    count_records(state);
}

gint compare_values(gconstpointer a, gconstpointer b) {
    const int32_t left = static_cast<const Value *>(a)->key;
    const int32_t right = static_cast<const Value *>(b)->key;
    return left < right ? -1 : static_cast<gint>(left > right);
}

void list_glib(benchmark::State &state) {
    const std::vector<int32_t> keys = random_keys(state);
    std::vector<Value> values(keys.size());
    for (auto _ : state) {
        state.PauseTiming();
        GList *list = nullptr;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            values[i].key = keys[i];
            list = g_list_prepend(list, &values[i]);
        }
        state.ResumeTiming();
        list = g_list_sort(list, compare_values);
        state.PauseTiming();
        g_list_free(list);
        state.ResumeTiming();
    }
    count_records(state);
}

BENCHMARK(doubles_kv)->Name("sort doubles/kv");
BENCHMARK(standard<double>)->Name("sort doubles/std::sort");
BENCHMARK(quick<double>)->Name("sort doubles/qsort");
BENCHMARK(longs_kv)->Name("sort integers/kv");
BENCHMARK(standard<int32_t>)->Name("sort integers/std::sort");
BENCHMARK(quick<int32_t>)->Name("sort integers/qsort");
BENCHMARK(list_kv)->Name("sort list/kv")->Arg(5000)->Arg(500000);
BENCHMARK(list_standard)->Name("sort list/std::list::sort")->Arg(5000)->Arg(500000);
BENCHMARK(list_glib)->Name("sort list/g_list_sort")->Arg(5000)->Arg(500000);

}  // namespace

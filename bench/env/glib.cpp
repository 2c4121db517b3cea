// SPDX-License-Identifier: MIT
// GLib's GKeyFile on the common data. It has no blocks: a leaf of a block is the key "block.name".
#include <glib.h>
#include <memory>
#include <string>
#include <vector>

#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

struct FreeKeyFile {
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
};
using KeyFilePointer = std::unique_ptr<GKeyFile, FreeKeyFile>;

struct FreeText {
    void operator()(char *text) const { g_free(text); }
};
using TextPointer = std::unique_ptr<char, FreeText>;

KeyFilePointer build() {
    KeyFilePointer file(g_key_file_new());
    for (const Leaf &leaf : leaves()) {
        const Address address = address_of(leaf, '.');
        g_key_file_set_value(file.get(), address.first.c_str(), address.second.c_str(),
                             value_text(leaf.value, ';').c_str());
    }
    return file;
}

const std::string &text() {
    static const std::string result =
        TextPointer(g_key_file_to_data(build().get(), nullptr, nullptr)).get();
    return result;
}

KeyFilePointer parse_text() {
    KeyFilePointer file(g_key_file_new());
    if (!g_key_file_load_from_data(file.get(), text().data(), text().size(), G_KEY_FILE_NONE, nullptr)) {
        file.reset();
    }
    return file;
}

GKeyFile *key_file() {
    static const KeyFilePointer file = parse_text();
    return file.get();
}

void parse(benchmark::State &state) {
    measure_parse(state, text().size(), leaves().size(), parse_text);
}

void write(benchmark::State &state) {
    measure_write(state, text().size(), leaves().size(), [] {
        gsize length = 0;
        const TextPointer written(g_key_file_to_data(key_file(), &length, nullptr));
        return length;
    });
}

void lookup(benchmark::State &state) {
    std::vector<Address> addresses;
    for (const Leaf *leaf : random_doubles()) addresses.push_back(address_of(*leaf, '.'));
    measure_lookups(state, [&](std::size_t i) {
        return g_key_file_get_double(key_file(), addresses[i].first.c_str(), addresses[i].second.c_str(),
                                     nullptr);
    });
}

// The keys of all groups with their values.
void iterate(benchmark::State &state) {
    measure_visits(state, leaves().size(), [] {
        std::size_t count = 0;
        char **groups = g_key_file_get_groups(key_file(), nullptr);
        for (char **group = groups; *group != nullptr; ++group) {
            char **keys = g_key_file_get_keys(key_file(), *group, nullptr, nullptr);
            for (char **key = keys; *key != nullptr; ++key) {
                const TextPointer value(g_key_file_get_value(key_file(), *group, *key, nullptr));
                benchmark::DoNotOptimize(value.get());
                ++count;
            }
            g_strfreev(keys);
        }
        g_strfreev(groups);
        return count;
    });
}

void heap(benchmark::State &state) {
    measure_heap(state, leaves().size(), parse_text);
}

BENCHMARK(parse)->Name("parse/GKeyFile");
BENCHMARK(write)->Name("write/GKeyFile");
BENCHMARK(lookup)->Name("lookup/GKeyFile");
BENCHMARK(iterate)->Name("iterate/GKeyFile");
BENCHMARK(heap)->Name("heap/GKeyFile")->Iterations(1);

}  // namespace

}  // namespace kvbench

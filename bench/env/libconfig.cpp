// SPDX-License-Identifier: MIT
// libconfig on the common data: sections and blocks are groups, lists are arrays of floats.
#include <cstdio>
#include <cstdlib>
#include <libconfig.h>
#include <memory>
#include <string>
#include <vector>

#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

struct DestroyConfig {
    void operator()(config_t *config) const {
        config_destroy(config);
        delete config;
    }
};
using ConfigPointer = std::unique_ptr<config_t, DestroyConfig>;

ConfigPointer open_config() {
    ConfigPointer config(new config_t);
    config_init(config.get());
    return config;
}

config_setting_t *group_in(config_setting_t *parent, const std::string &name) {
    config_setting_t *group = config_setting_get_member(parent, name.c_str());
    return group != nullptr ? group : config_setting_add(parent, name.c_str(), CONFIG_TYPE_GROUP);
}

void add(config_setting_t *group, const std::string &name, const Value &value) {
    const auto add_setting = [&](int type) { return config_setting_add(group, name.c_str(), type); };
    if (const auto *number = std::get_if<double>(&value)) {
        config_setting_set_float(add_setting(CONFIG_TYPE_FLOAT), *number);
    } else if (const auto *whole = std::get_if<std::int32_t>(&value)) {
        config_setting_set_int(add_setting(CONFIG_TYPE_INT), *whole);
    } else if (const auto *text = std::get_if<std::string>(&value)) {
        config_setting_set_string(add_setting(CONFIG_TYPE_STRING), text->c_str());
    } else {
        config_setting_t *array = add_setting(CONFIG_TYPE_ARRAY);
        for (const double entry : std::get<std::vector<double>>(value))
            config_setting_set_float_elem(array, -1, entry);
    }
}

ConfigPointer build() {
    ConfigPointer config = open_config();
    for (const Leaf &leaf : leaves()) {
        config_setting_t *group = group_in(config_root_setting(config.get()), leaf.section);
        if (!leaf.block.empty()) group = group_in(group, leaf.block);
        add(group, leaf.name, leaf.value);
    }
    return config;
}

// Writes to memory; the text is given to `use`.
template <typename Use>
auto write_to(config_t *config, Use use) {
    char *text = nullptr;
    std::size_t size = 0;
    std::FILE *stream = open_memstream(&text, &size);
    config_write(config, stream);
    std::fclose(stream);
    auto result = use(text, size);
    std::free(text);
    return result;
}

const std::string &text() {
    static const std::string result =
        write_to(build().get(), [](const char *at, std::size_t) { return std::string(at); });
    return result;
}

ConfigPointer parse_text() {
    ConfigPointer parsed = open_config();
    if (config_read_string(parsed.get(), text().c_str()) != CONFIG_TRUE) parsed.reset();
    return parsed;
}

config_t *config() {
    static const ConfigPointer parsed = parse_text();
    return parsed.get();
}

void parse(benchmark::State &state) {
    measure_parse(state, text().size(), leaves().size(), parse_text);
}

void write(benchmark::State &state) {
    measure_write(state, text().size(), leaves().size(),
                  [] { return write_to(config(), [](const char *, std::size_t size) { return size; }); });
}

void lookup(benchmark::State &state) {
    std::vector<std::string> paths;
    for (const Leaf *leaf : random_doubles())
        paths.push_back(leaf->section + '.' + path_in_section(*leaf, '.'));
    measure_lookups(state, [&](std::size_t i) {
        double value = 0;
        config_lookup_float(config(), paths[i].c_str(), &value);
        return value;
    });
}

std::size_t count_leaves(const config_setting_t *group) {
    std::size_t count = 0;
    const int length = config_setting_length(group);
    for (int i = 0; i < length; ++i) {
        const config_setting_t *setting = config_setting_get_elem(group, static_cast<unsigned>(i));
        count += config_setting_is_group(setting) ? count_leaves(setting) : 1;
        benchmark::DoNotOptimize(config_setting_name(setting));
    }
    return count;
}

void iterate(benchmark::State &state) {
    measure_visits(state, leaves().size(), [] { return count_leaves(config_root_setting(config())); });
}

void heap(benchmark::State &state) {
    measure_heap(state, leaves().size(), parse_text);
}

BENCHMARK(parse)->Name("parse/libconfig");
BENCHMARK(write)->Name("write/libconfig");
BENCHMARK(lookup)->Name("lookup/libconfig");
BENCHMARK(iterate)->Name("iterate/libconfig");
BENCHMARK(heap)->Name("heap/libconfig")->Iterations(1);

}  // namespace

}  // namespace kvbench

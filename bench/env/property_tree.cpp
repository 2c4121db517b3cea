// SPDX-License-Identifier: MIT
// Boost.PropertyTree and its INFO format on the common data.
#include <boost/property_tree/info_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

using boost::property_tree::ptree;

ptree build() {
    ptree built;
    for (const Leaf &leaf : leaves())
        built.put(leaf.section + '.' + path_in_section(leaf, '.'), value_text(leaf.value, ','));
    return built;
}

std::string write_text(const ptree &tree) {
    std::ostringstream stream;
    write_info(stream, tree);
    return stream.str();
}

const std::string &text() {
    static const std::string result = write_text(build());
    return result;
}

std::unique_ptr<ptree> parse_text() {
    auto parsed = std::make_unique<ptree>();
    std::istringstream stream(text());
    read_info(stream, *parsed);
    return parsed;
}

const ptree &tree() {
    static const std::unique_ptr<ptree> parsed = parse_text();
    return *parsed;
}

void parse(benchmark::State &state) {
    measure_parse(state, text().size(), leaves().size(), parse_text);
}

void write(benchmark::State &state) {
    measure_write(state, text().size(), leaves().size(), [] { return write_text(tree()).size(); });
}

void lookup(benchmark::State &state) {
    std::vector<ptree::path_type> paths;
    for (const Leaf *leaf : random_doubles())
        paths.emplace_back(leaf->section + '.' + path_in_section(*leaf, '.'));
    measure_lookups(state, [&](std::size_t i) { return tree().get<double>(paths[i]); });
}

std::size_t count_leaves(const ptree &block) {
    std::size_t count = 0;
    for (const auto &[name, child] : block) {
        count += child.empty() ? 1 : count_leaves(child);
        benchmark::DoNotOptimize(name.c_str());
    }
    return count;
}

void iterate(benchmark::State &state) {
    measure_visits(state, leaves().size(), [] { return count_leaves(tree()); });
}

void heap(benchmark::State &state) {
    measure_heap(state, leaves().size(), parse_text);
}

BENCHMARK(parse)->Name("parse/PropertyTree");
BENCHMARK(write)->Name("write/PropertyTree");
BENCHMARK(lookup)->Name("lookup/PropertyTree");
BENCHMARK(iterate)->Name("iterate/PropertyTree");
BENCHMARK(heap)->Name("heap/PropertyTree")->Iterations(1);

}  // namespace

}  // namespace kvbench

// SPDX-License-Identifier: MIT
// The models of the fuzz targets, which compare the library with plain code: over the inputs that fuzzing
// has kept, and over random variations of them, the same ones each time.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "tests/support/support.hpp"

using Model = int (*)(const std::uint8_t *, std::size_t);

// Declares the fuzz targets, and kModels: their names, corpora and functions.
#include "models.inc"

inline void PrintTo(const NamedModel &model, std::ostream *stream) {
    *stream << model.name;
}

namespace {

class Models : public testing::TestWithParam<NamedModel> {};

std::vector<std::string> inputs(const std::filesystem::path &corpus) {
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(corpus)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::vector<std::string> contents;
    for (const std::filesystem::path &file : files) contents.push_back(kvtest::read_file(file));
    return contents;
}

// An input with some bytes changed, taken out, put in, or taken from another input.
std::string variation(const std::vector<std::string> &inputs, std::mt19937 &random) {
    const auto below = [&](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
    std::string input = inputs[below(inputs.size())];
    for (std::size_t count = 1 + below(4); count > 0; --count) {
        const std::size_t at = below(input.size() + 1), size = below(8);
        const std::string &other = inputs[below(inputs.size())];
        switch (below(4)) {
            case 0:
                input.replace(at, 1, 1, static_cast<char>(random()));
                break;
            case 1:
                input.erase(at, size);
                break;
            case 2:
                input.insert(at, std::string(size * size * 11, static_cast<char>(32 + below(96))));
                break;
            default:
                input.insert(at, other, below(other.size()), 8 * size);
        }
    }
    return input;
}

TEST_P(Models, Agree) {
    const auto &[name, corpus, model] = GetParam();
    const std::vector<std::string> kept = inputs(corpus);
    ASSERT_FALSE(kept.empty());
    const auto run = [&, function = model](const std::string &input) {
        static_cast<void>(function(reinterpret_cast<const std::uint8_t *>(input.data()), input.size()));
    };
    for (const std::string &input : kept) run(input);
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) run(variation(kept, random));
}

INSTANTIATE_TEST_SUITE_P(, Models, testing::ValuesIn(kModels),
                         [](const auto &test) { return std::string(test.param.name); });

}  // namespace

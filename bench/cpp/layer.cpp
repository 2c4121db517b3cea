// SPDX-License-Identifier: MIT
// What include/kv.hpp costs beside the calls of the C interface that it stands for. Both sides of a pair do
// the same work and check the same result.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "kv.hpp"

namespace {

constexpr int kSections = 20;
constexpr int kElements = 500;
constexpr int kRows = 10'000;

void finish(benchmark::State &state, bool right, std::int64_t items) {
    if (!right) state.SkipWithError("the result is wrong");
    state.SetItemsProcessed(state.iterations() * items);
}

// ---- The environment

std::string name(const char *stem, int i) {
    return stem + std::to_string(i);
}

const kv::env &tree() {
    static const kv::env tree = [] {
        kv::env made(1);
        for (int section = 0; section < kSections; ++section) {
            for (int i = 0; i < kElements; ++i)
                made.put(name("section", section), "axis@" + name("limit", i), i + 0.25);
        }
        return made;
    }();
    return tree;
}

struct Place {
    std::string section;
    std::string path;
};

const std::vector<Place> &places() {
    static const std::vector<Place> places = [] {
        std::vector<Place> made;
        for (int i = 0; i < kSections * kElements; ++i)
            made.push_back({name("section", i / kElements), "axis@" + name("limit", i % kElements)});
        std::shuffle(made.begin(), made.end(), std::mt19937(7));
        return made;
    }();
    return places;
}

constexpr double kSum = kSections * (kElements * (kElements - 1) / 2.0 + kElements * 0.25);

void get_c(benchmark::State &state) {
    ENV *const env = tree().get();
    bool right = true;
    for (auto _ : state) {
        double sum = 0;
        for (const Place &place : places()) {
            double value = 0;
            if (env_get_double(env, place.section.c_str(), place.path.c_str(), 1, &value) >= 0)
                sum += value;
        }
        right = right && sum == kSum;
    }
    finish(state, right, kSections * kElements);
}

void get_cpp(benchmark::State &state) {
    const kv::env &env = tree();
    bool right = true;
    for (auto _ : state) {
        double sum = 0;
        for (const Place &place : places()) {
            if (const auto value = env.get<double>(place.section, place.path)) sum += *value;
        }
        right = right && sum == kSum;
    }
    finish(state, right, kSections * kElements);
}

// Of all names and values of one block.
std::size_t length_of_elements() {
    std::size_t length = 0;
    for (int i = 0; i < kElements; ++i) {
        const std::string element = name("limit", i);
        length += element.size() + tree().get<std::string>("section7", "axis@" + element)->size();
    }
    return length;
}

void elements_c(benchmark::State &state) {
    ENV *const env = tree().get();
    bool right = true;
    const std::size_t wanted = length_of_elements();
    for (auto _ : state) {
        std::size_t length = 0;
        std::int32_t origin = 0;
        const char *element = "";
        const char *value = "";
        void *external = nullptr;
        for (std::int32_t position = 1; env_get_core(env, "section7", "axis", 1, position, &origin,
                                                     &element, &value, &external) == ENV_DATA;
             ++position) {
            length += std::string_view(element).size() + std::string_view(value).size();
        }
        right = right && length == wanted;
    }
    finish(state, right, kElements);
}

void elements_cpp(benchmark::State &state) {
    const kv::env &env = tree();
    bool right = true;
    const std::size_t wanted = length_of_elements();
    for (auto _ : state) {
        std::size_t length = 0;
        for (const kv::element &element : env.elements("section7", "axis"))
            length += element.name.size() + element.value.size();
        right = right && length == wanted;
    }
    finish(state, right, kElements);
}

// ---- Tokens

const std::string &text() {
    static const std::string text = [] {
        std::string made;
        for (int i = 0; i < 10'000; ++i) made += name("axis_", i) + " = " + std::to_string(i * 0.5) + ";\n";
        return made;
    }();
    return text;
}

constexpr int kTokens = 40'000;

std::size_t g_position;

std::int32_t next_character() {
    return g_position != text().size() ? static_cast<unsigned char>(text()[g_position++]) : -1;
}

void tokens_c(benchmark::State &state) {
    bool right = true;
    for (auto _ : state) {
        g_position = 0;
        const char *keywords[] = {nullptr};
        SCANNER *scanner = scan_open(next_character, 0, keywords);
        int count = 0;
        std::int32_t kind = 0;
        SCAN_TOKEN token;
        while (scan_token(scanner, &kind, &token) == SCAN_OK && kind != SCAN_EOF) ++count;
        scan_close(scanner);
        right = right && count == kTokens;
    }
    finish(state, right, kTokens);
}

void tokens_cpp(benchmark::State &state) {
    bool right = true;
    for (auto _ : state) {
        kv::scanner scanner(text());
        int count = 0;
        for (const kv::token &token : scanner.tokens()) count += token.error == SCAN_OK;
        right = right && count == kTokens;
    }
    finish(state, right, kTokens);
}

// ---- Files

std::string g_directory;

std::string table_path() {
    return g_directory + "/table.pro";
}

std::string ini_path() {
    return g_directory + "/keys.ini";
}

void write_files() {
    std::string table = "Typ Groesse A Iy\r\n";
    std::string keys = "[Keys]\r\n";
    for (int i = 0; i < kRows; ++i)
        table += "IPE " + std::to_string(i) + " 20.1 " + std::to_string(i) + "\r\n";
    for (int i = 0; i < kElements; ++i) keys += name("key", i) + "=" + std::to_string(i) + "\r\n";
    for (const auto &[path, content] : {std::pair(table_path(), table), std::pair(ini_path(), keys)}) {
        std::FILE *file = std::fopen(path.c_str(), "wb");
        if (file == nullptr || std::fwrite(content.data(), 1, content.size(), file) != content.size())
            std::abort();
        std::fclose(file);
    }
}

void rows_c(benchmark::State &state) {
    bool right = true;
    for (auto _ : state) {
        const char *const columns[] = {"A", "Iy", nullptr};
        PROFIL *table = profil_open(table_path().c_str(), columns, nullptr);
        double values[2];
        char row[PROFIL_NAME_SIZE];
        double sum = 0;
        std::size_t length = 0;
        while (profil_next(table, values, row) == 0) {
            sum += values[1];
            length += std::strlen(row);
        }
        profil_close(table);
        right = right && sum == kRows * (kRows - 1) / 2.0 && length > kRows;
    }
    finish(state, right, kRows);
}

void rows_cpp(benchmark::State &state) {
    bool right = true;
    for (auto _ : state) {
        kv::table table(table_path(), {"A", "Iy"});
        double sum = 0;
        std::size_t length = 0;
        for (const kv::row &row : table.rows()) {
            sum += row.values[1];
            length += row.name.size();
        }
        right = right && sum == kRows * (kRows - 1) / 2.0 && length > kRows;
    }
    finish(state, right, kRows);
}

void keys_c(benchmark::State &state) {
    bool right = true;
    MINI *ini = mini_open(nullptr, ini_path().c_str(), MINI_READONLY);
    for (auto _ : state) {
        std::vector<char> buffer(8000);
        auto size = static_cast<std::int32_t>(buffer.size());
        std::vector<std::string> keys;
        if (mini_read_string(ini, "Keys", nullptr, buffer.data(), &size) == INI_OK) {
            for (const char *key = buffer.data(); key < buffer.data() + size; key += keys.back().size() + 1)
                keys.emplace_back(key);
        }
        right = right && keys.size() == kElements;
    }
    mini_close(&ini);
    finish(state, right, kElements);
}

void keys_cpp(benchmark::State &state) {
    bool right = true;
    const kv::ini ini(ini_path(), MINI_READONLY);
    for (auto _ : state) {
        const auto keys = ini.keys("Keys");
        right = right && keys && keys->size() == kElements;
    }
    finish(state, right, kElements);
}

void add(const char *group, void (*cpp)(benchmark::State &), void (*c)(benchmark::State &)) {
    benchmark::RegisterBenchmark((std::string(group) + "/kv").c_str(), cpp);
    benchmark::RegisterBenchmark((std::string(group) + "/C").c_str(), c);
}

}  // namespace

int main(int argc, char **argv) {
    char directory[] = "/tmp/kv-bench-XXXXXX";
    if (mkdtemp(directory) == nullptr) return 1;
    g_directory = directory;
    write_files();
    add("get", get_cpp, get_c);
    add("elements", elements_cpp, elements_c);
    add("tokens", tokens_cpp, tokens_c);
    add("rows", rows_cpp, rows_c);
    add("keys", keys_cpp, keys_c);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::remove(table_path().c_str());
    std::remove(ini_path().c_str());
    std::remove(directory);
    return 0;
}

// SPDX-License-Identifier: MIT
// The environment tree on the common data.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "kv/env.h"

#include "bench/env/kv_tree.hpp"
#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

EnvPointer build() {
    EnvPointer env = open_env();
    for (const Leaf &leaf : leaves()) {
        const Address address = address_of(leaf, '@');
        env_put(env.get(), address.first.c_str(), address.second.c_str(),
                value_text(leaf.value, ',').c_str());
    }
    return env;
}

// With CR LF.
const std::string &text() {
    static const std::string result = text_of(build().get()).get();
    return result;
}

ENV *tree() {
    static const EnvPointer env = env_of(text());
    return env.get();
}

// With LF.
const std::string &lf_text() {
    static const std::string result = [] {
        std::string written;
        env_write(
            [](int32_t c, void *to) { static_cast<std::string *>(to)->push_back(static_cast<char>(c)); },
            &written, tree());
        return written;
    }();
    return result;
}

const std::vector<Address> &addresses() {
    static const std::vector<Address> result = [] {
        std::vector<Address> made;
        for (const Leaf *leaf : random_doubles()) made.push_back(address_of(*leaf, '@'));
        return made;
    }();
    return result;
}

double look_up(ENV *env, std::size_t i) {
    const Address &address = addresses()[i];
    double value = 0;
    env_get_double(env, address.first.c_str(), address.second.c_str(), 1, &value);
    return value;
}

// A file with the text, removed at the end of the process.
class TextFile {
  public:
    TextFile() {
        path_ =
            (std::filesystem::temp_directory_path() / ("kv_bench_" + std::to_string(getpid()))).string();
        env_write_file(path_.c_str(), tree());
    }
    TextFile(const TextFile &) = delete;
    TextFile &operator=(const TextFile &) = delete;
    ~TextFile() { std::remove(path_.c_str()); }

    const char *path() const { return path_.c_str(); }

  private:
    std::string path_;
};

void parse_string(benchmark::State &state) {
    measure_parse(state, text().size(), leaves().size(), [] { return env_of(text()); });
}

void parse_callback(benchmark::State &state) {
    const auto next_character = [](void *stream) -> int32_t {
        const char *&at = *static_cast<const char **>(stream);
        return *at != '\0' ? static_cast<unsigned char>(*at++) : -1;
    };
    measure_parse(state, lf_text().size(), leaves().size(), [&] {
        const char *at = lf_text().c_str();
        EnvPointer env = open_env();
        if (env_read(next_character, &at, env.get()) != ENV_OK) env.reset();
        return env;
    });
}

void parse_file(benchmark::State &state) {
    static const TextFile file;
    measure_parse(state, text().size(), leaves().size(), [] {
        EnvPointer env = open_env();
        if (env_read_file(file.path(), env.get()) != ENV_OK) env.reset();
        return env;
    });
}

void write_string(benchmark::State &state) {
    measure_write(state, text().size(), leaves().size(), [] { return std::strlen(text_of(tree()).get()); });
}

void lookup(benchmark::State &state) {
    measure_lookups(state, [](std::size_t i) { return look_up(tree(), i); });
}

// The elements of a block, or of the root, by env_get_first() and env_get_next().
template <typename Visit>
void for_each(ENV *env, const char *section, Visit visit) {
    char name[64];
    char value[256];
    int32_t id;
    void *external;
    int32_t type =
        env_get_first(env, section, nullptr, 1, &id, sizeof name, name, sizeof value, value, &external);
    while (type == ENV_DATA || type == ENV_BLOCK) {
        visit(name);
        type = env_get_next(sizeof name, name, sizeof value, value, &external);
    }
}

// The names of the sections first, since there is one iteration per process.
void iterate_elements(benchmark::State &state) {
    std::size_t count = 0;
    std::vector<std::string> sections;
    const auto visit = [&] {
        count = 0;
        sections.clear();
        for_each(tree(), nullptr, [&](const char *name) { sections.emplace_back(name); });
        for (const std::string &section : sections)
            for_each(tree(), section.c_str(), [&](const char *) { ++count; });
        return count + sections.size();
    };
    measure_visits(state, visit(), visit);
}

void iterate_sections(benchmark::State &state) {
    std::size_t count = 0;
    const auto visit = [&] {
        count = 0;
        for_each(tree(), nullptr, [&](const char *) { ++count; });
        return count;
    };
    measure_visits(state, 100, visit);
}

void iterate_leafs(benchmark::State &state) {
    measure_visits(state, leaves().size(), [] {
        std::size_t count = 0;
        env_traverse_leafs(tree(), count_leaf, &count);
        return count;
    });
}

void heap(benchmark::State &state) {
    measure_heap(state, leaves().size(), [] { return env_of(text()); });
}

void heap_after_lookups(benchmark::State &state) {
    measure_heap(state, leaves().size(), [] {
        EnvPointer env = env_of(text());
        for (std::size_t i = 0; i < addresses().size(); ++i)
            benchmark::DoNotOptimize(look_up(env.get(), i));
        return env;
    });
}

BENCHMARK(parse_string)->Name("parse/kv");
BENCHMARK(parse_callback)->Name("parse/kv callback");
BENCHMARK(parse_file)->Name("parse/kv file");
BENCHMARK(write_string)->Name("write/kv");
BENCHMARK(lookup)->Name("lookup/kv");
BENCHMARK(iterate_elements)->Name("iterate/kv");
BENCHMARK(iterate_sections)->Name("iterate/kv sections");
BENCHMARK(iterate_leafs)->Name("iterate/kv leafs");
BENCHMARK(heap)->Name("heap/kv")->Iterations(1);
BENCHMARK(heap_after_lookups)->Name("heap/kv after lookups")->Iterations(1);

}  // namespace

}  // namespace kvbench

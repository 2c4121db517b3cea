// SPDX-License-Identifier: MIT
// Values got from a file that is in memory, in random order; how that grows with the file; and loading it.
#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <glib.h>
#include <iniparser.h>
#include <random>
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <string>
#include <vector>

#include "kv/mini.h"

#include "bench/config/files.hpp"

namespace kvbench {

namespace {

struct Place {
    std::string section;
    std::string key;
    std::string both;  // as iniparser names it
};

std::vector<Place> places(int sections, int entries) {
    std::vector<Place> result;
    for (int section = 0; section < sections; ++section) {
        for (int entry = 0; entry < entries; ++entry) {
            result.push_back({section_name(section), key_name(entry), ""});
            result.back().both = result.back().section + ":" + result.back().key;
        }
    }
    std::shuffle(result.begin(), result.end(), std::mt19937(1));
    return result;
}

// Times `get(place)`, which gives the length of the value, over all places in turn.
template <typename Where, typename Get>
void measure(benchmark::State &state, const std::vector<Where> &all, Get get) {
    for (const Where &place : all) {
        if (get(place) > 0) continue;
        state.SkipWithError("a value is missing");
        return;
    }
    std::size_t at = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(get(all[at]));
        if (++at == all.size()) at = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

// A cache, and reading a value from it.
class KvFile {
  public:
    explicit KvFile(const std::string &path)
        : cache_(mini_open(nullptr, path.c_str(), MINI_LOADALL | MINI_READONLY)) {}
    KvFile(const KvFile &) = delete;
    KvFile &operator=(const KvFile &) = delete;
    ~KvFile() { mini_close(&cache_); }

    int32_t get(const char *section, const char *key) const {
        char buffer[512];
        int32_t size = sizeof buffer - 1;
        mini_read_string(cache_, section, key, buffer, &size);
        benchmark::DoNotOptimize(buffer[0]);
        return size < 511 ? size : 0;
    }

  private:
    MINI *cache_;
};

void kv(benchmark::State &state) {
    const KvFile file(make_usual_file("get.ini"));
    measure(state, places(kSections, kEntries),
            [&](const Place &place) { return file.get(place.section.c_str(), place.key.c_str()); });
}

// The names are packed, so that it is the library's memory that fills the processor's caches.
void kv_in_one_section(benchmark::State &state, int entries) {
    const std::string path = path_in_directory("one" + std::to_string(entries) + ".ini");
    write_file(path, ini_text(1, entries));
    const KvFile file(path);
    const std::string section = section_name(0);
    std::vector<std::array<char, 12>> keys;
    for (const Place &place : places(1, entries)) {
        keys.push_back({});
        place.key.copy(keys.back().data(), keys.back().size() - 1);
    }
    measure(state, keys, [&](const auto &key) { return file.get(section.c_str(), key.data()); });
}

void glib(benchmark::State &state) {
    GKeyFile *file = g_key_file_new();
    g_key_file_load_from_file(file, make_usual_file("get.ini").c_str(), G_KEY_FILE_NONE, nullptr);
    measure(state, places(kSections, kEntries), [&](const Place &place) {
        char *value = g_key_file_get_value(file, place.section.c_str(), place.key.c_str(), nullptr);
        const int length = value != nullptr ? value[0] : 0;
        g_free(value);
        return length;
    });
    g_key_file_free(file);
}

void iniparser(benchmark::State &state) {
    dictionary *file = iniparser_load(make_usual_file("get.ini").c_str());
    measure(state, places(kSections, kEntries), [&](const Place &place) {
        return static_cast<int>(*iniparser_getstring(file, place.both.c_str(), ""));
    });
    iniparser_freedict(file);
}

void simpleini(benchmark::State &state) {
    CSimpleIniA file;
    file.LoadFile(make_usual_file("get.ini").c_str());
    measure(state, places(kSections, kEntries), [&](const Place &place) {
        return static_cast<int>(*file.GetValue(place.section.c_str(), place.key.c_str(), ""));
    });
}

// A megabyte: loaded, one value got, freed.
constexpr int kLargeSections = 900;
constexpr int kLargeEntries = 60;

template <typename Load>
void measure_load(benchmark::State &state, Load load) {
    const std::string path = path_in_directory("large.ini");
    const std::string bytes = ini_text(kLargeSections, kLargeEntries);
    write_file(path, bytes);
    const std::string section = section_name(kLargeSections / 2);
    const std::string key = key_name(kLargeEntries / 2);
    const Place place{section, key, section + ":" + key};
    for (auto _ : state) {
        if (load(path, place) != 0) continue;
        state.SkipWithError("a value is missing");
        return;
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void kv_load(benchmark::State &state) {
    measure_load(state, [](const std::string &path, const Place &place) {
        MINI *cache = mini_open(nullptr, path.c_str(), MINI_LOADALL | MINI_READONLY);
        const char first =
            *mini_get_string(cache, place.section.c_str(), place.key.c_str(), nullptr, nullptr);
        mini_close(&cache);
        return first;
    });
}

void glib_load(benchmark::State &state) {
    measure_load(state, [](const std::string &path, const Place &place) {
        GKeyFile *file = g_key_file_new();
        g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr);
        char *value = g_key_file_get_value(file, place.section.c_str(), place.key.c_str(), nullptr);
        const char first = value != nullptr ? *value : '\0';
        g_free(value);
        g_key_file_free(file);
        return first;
    });
}

void simpleini_load(benchmark::State &state) {
    measure_load(state, [](const std::string &path, const Place &place) {
        CSimpleIniA file;
        file.LoadFile(path.c_str());
        return *file.GetValue(place.section.c_str(), place.key.c_str(), "");
    });
}

void iniparser_load_large(benchmark::State &state) {
    measure_load(state, [](const std::string &path, const Place &place) {
        dictionary *file = iniparser_load(path.c_str());
        const char first = *iniparser_getstring(file, place.both.c_str(), "");
        iniparser_freedict(file);
        return first;
    });
}

BENCHMARK(kv)->Name("get/kv");
BENCHMARK(glib)->Name("get/GKeyFile");
BENCHMARK(iniparser)->Name("get/iniparser");
BENCHMARK(simpleini)->Name("get/SimpleIni");
BENCHMARK_CAPTURE(kv_in_one_section, large, 100'000)->Name("growth/kv 100000");
BENCHMARK_CAPTURE(kv_in_one_section, small, 100)->Name("growth/100 entries");
BENCHMARK(kv_load)->Name("load/kv");
BENCHMARK(glib_load)->Name("load/GKeyFile");
BENCHMARK(iniparser_load_large)->Name("load/iniparser");
BENCHMARK(simpleini_load)->Name("load/SimpleIni");

}  // namespace

}  // namespace kvbench

// SPDX-License-Identifier: MIT
// One value read from a file that is opened for it: 50 sections of 20 entries, the value in the middle.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <glib.h>
#include <ini.h>
#include <iniparser.h>
#include <memory>
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <string>

#include "kv/ini.h"

#include "bench/config/files.hpp"

namespace kvbench {

namespace {

struct Place {
    std::string path = make_usual_file("read.ini");
    std::string section = section_name(kMiddleSection);
    std::string key = key_name(kMiddleEntry);
    std::string value = value_text(kMiddleSection, kMiddleEntry);
};

// Times `read(place, buffer)`, which stores the value.
template <typename Read>
void measure(benchmark::State &state, Read read) {
    const Place place;
    char buffer[512] = "";
    read(place, buffer);
    if (place.value != buffer) {
        state.SkipWithError("another value was read");
        return;
    }
    for (auto _ : state) {
        read(place, buffer);
        benchmark::DoNotOptimize(buffer[0]);
    }
    state.SetItemsProcessed(state.iterations());
}

void kv(benchmark::State &state) {
    measure(state, [](const Place &place, char *buffer) {
        int32_t size = 511;
        ini_read_string(place.path.c_str(), place.section.c_str(), place.key.c_str(), buffer, &size);
    });
}

void kv_double(benchmark::State &state) {
    const Place place;
    double value = 0;
    for (auto _ : state) {
        ini_read_double(place.path.c_str(), place.section.c_str(), place.key.c_str(), &value);
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations());
}

// The least that reading a value by lines can do: no trimming, no comments, lines as they are expected.
void plain_fgets(benchmark::State &state) {
    measure(state, [](const Place &place, char *buffer) {
        std::FILE *file = std::fopen(place.path.c_str(), "r");
        if (file == nullptr) return;
        char line[512];
        bool inside = false;
        while (std::fgets(line, sizeof line, file) != nullptr) {
            if (line[0] == '[') {
                inside = std::strncmp(line + 1, place.section.c_str(), place.section.size()) == 0;
            } else if (inside && std::strncmp(line, place.key.c_str(), place.key.size()) == 0 &&
                       line[place.key.size()] == '=') {
                line[std::strcspn(line, "\r\n")] = '\0';
                std::strcpy(buffer, line + place.key.size() + 1);
                break;
            }
        }
        std::fclose(file);
    });
}

void glib(benchmark::State &state) {
    measure(state, [](const Place &place, char *buffer) {
        GKeyFile *file = g_key_file_new();
        g_key_file_load_from_file(file, place.path.c_str(), G_KEY_FILE_NONE, nullptr);
        char *value = g_key_file_get_string(file, place.section.c_str(), place.key.c_str(), nullptr);
        if (value != nullptr) std::strcpy(buffer, value);
        g_free(value);
        g_key_file_free(file);
    });
}

void iniparser(benchmark::State &state) {
    measure(state, [](const Place &place, char *buffer) {
        dictionary *file = iniparser_load(place.path.c_str());
        std::strcpy(buffer, iniparser_getstring(file, (place.section + ":" + place.key).c_str(), ""));
        iniparser_freedict(file);
    });
}

void inih(benchmark::State &state) {
    struct Wanted {
        const Place &place;
        char *buffer;
    };
    measure(state, [](const Place &place, char *buffer) {
        Wanted wanted{place, buffer};
        ini_parse(
            place.path.c_str(),
            [](void *user, const char *section, const char *name, const char *value) {
                const auto *searched = static_cast<Wanted *>(user);
                if (searched->place.section == section && searched->place.key == name) {
                    std::strcpy(searched->buffer, value);
                }
                return 1;
            },
            &wanted);
    });
}

void simpleini(benchmark::State &state) {
    measure(state, [](const Place &place, char *buffer) {
        CSimpleIniA file;
        file.LoadFile(place.path.c_str());
        std::strcpy(buffer, file.GetValue(place.section.c_str(), place.key.c_str(), ""));
    });
}

BENCHMARK(kv)->Name("read/kv");
BENCHMARK(kv_double)->Name("read/kv double");
BENCHMARK(plain_fgets)->Name("read/fgets");
BENCHMARK(glib)->Name("read/GKeyFile");
BENCHMARK(iniparser)->Name("read/iniparser");
BENCHMARK(inih)->Name("read/inih");
BENCHMARK(simpleini)->Name("read/SimpleIni");

}  // namespace

}  // namespace kvbench

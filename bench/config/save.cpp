// SPDX-License-Identifier: MIT
// One value changed in a file and saved, the file flushed to the disk. What the disk takes is most of it.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <fcntl.h>
#include <glib.h>
#include <iniparser.h>
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <string>
#include <unistd.h>

#include "kv/ini.h"

#include "bench/config/files.hpp"

namespace kvbench {

namespace {

struct Target {
    explicit Target(const char *name) : path(make_usual_file(name)) {}

    std::string path;
    std::string section = section_name(kMiddleSection);
    std::string key = key_name(kMiddleEntry);
};

// Times `save(target, value)` with a value that is another one each time. In time of the clock.
template <typename Save>
void measure(benchmark::State &state, const char *name, Save save) {
    const Target target(name);
    int count = 0;
    std::string value;
    for (auto _ : state) {
        value = std::to_string(1000 + count++ % 9000);
        save(target, value.c_str());
    }
    char read[64] = "";
    int32_t size = sizeof read - 1;
    ini_read_string(target.path.c_str(), target.section.c_str(), target.key.c_str(), read, &size);
    if (std::string(read).find(value) == std::string::npos) state.SkipWithError("the value is not there");
    state.SetItemsProcessed(state.iterations());
}

// For the libraries that leave it to the caller.
void flush(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY);
    fsync(descriptor);
    close(descriptor);
}

void kv(benchmark::State &state) {
    measure(state, "kv.ini", [](const Target &target, const char *value) {
        ini_write_string(target.path.c_str(), target.section.c_str(), target.key.c_str(), value);
    });
}

void glib(benchmark::State &state) {
    measure(state, "glib.ini", [](const Target &target, const char *value) {
        GKeyFile *file = g_key_file_new();
        g_key_file_load_from_file(file, target.path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
        g_key_file_set_value(file, target.section.c_str(), target.key.c_str(), value);
        g_key_file_save_to_file(file, target.path.c_str(), nullptr);
        g_key_file_free(file);
    });
}

// The file stays loaded: only the saving.
void glib_save(benchmark::State &state) {
    GKeyFile *file = g_key_file_new();
    const std::string text = ini_text(kSections, kEntries);
    g_key_file_load_from_data(file, text.data(), text.size(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    measure(state, "glib-save.ini", [file](const Target &target, const char *value) {
        g_key_file_set_value(file, target.section.c_str(), target.key.c_str(), value);
        g_key_file_save_to_file(file, target.path.c_str(), nullptr);
    });
    g_key_file_free(file);
}

void iniparser(benchmark::State &state) {
    measure(state, "iniparser.ini", [](const Target &target, const char *value) {
        dictionary *file = iniparser_load(target.path.c_str());
        iniparser_set(file, (target.section + ":" + target.key).c_str(), value);
        std::FILE *out = std::fopen(target.path.c_str(), "w");
        iniparser_dump_ini(file, out);
        std::fclose(out);
        iniparser_freedict(file);
        flush(target.path);
    });
}

void simpleini(benchmark::State &state) {
    measure(state, "simpleini.ini", [](const Target &target, const char *value) {
        CSimpleIniA file;
        file.LoadFile(target.path.c_str());
        file.SetValue(target.section.c_str(), target.key.c_str(), value);
        file.SaveFile(target.path.c_str());
        flush(target.path);
    });
}

BENCHMARK(kv)->Name("save/kv")->UseRealTime();
BENCHMARK(glib)->Name("save/GKeyFile")->UseRealTime();
BENCHMARK(glib_save)->Name("save/GKeyFile save")->UseRealTime();
BENCHMARK(iniparser)->Name("save/iniparser")->UseRealTime();
BENCHMARK(simpleini)->Name("save/SimpleIni")->UseRealTime();

}  // namespace

}  // namespace kvbench

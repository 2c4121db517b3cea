// SPDX-License-Identifier: MIT
// One value changed in a file of 1 MB and saved: loaded, changed, written, flushed to the disk. In time of
// the clock.
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <glib.h>
#include <libconfig.h>
#include <string>
#include <unistd.h>

#include "kv/env.h"

#include "bench/env/measure.hpp"

namespace kvbench {

namespace {

constexpr std::size_t kSize = 1'000'000;
constexpr int kNames = 60;  // of a section

// A file as each library writes its own, of the same names and values, and the address of one in the
// middle.
struct Target {
    std::string path;
    std::string section = "section 0";
    std::string name = "name 31";

    Target(const char *format, const char *open, const char *assign, const char *close) {
        path = (std::filesystem::temp_directory_path() /
                ("kv_bench_edit_" + std::to_string(getpid()) + format))
                   .string();
        std::string text;
        int sections = 0;
        while (text.size() < kSize) {
            char line[80];
            std::snprintf(line, sizeof line, open, sections++);
            text += line;
            for (int i = 0; i < kNames; ++i) {
                std::snprintf(line, sizeof line, assign, i, 1000 + i);
                text += line;
            }
            text += close;
        }
        const bool words = text.find("section ") != text.npos;
        section = (words ? "section " : "section_") + std::to_string(sections / 2);
        if (!words) name = "name_31";
        std::ofstream(path, std::ios::binary) << text;
    }
    Target(const Target &) = delete;
    Target &operator=(const Target &) = delete;
    ~Target() { std::filesystem::remove(path); }
};

// For the libraries that leave it to the caller.
void flush(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY);
    fsync(descriptor);
    close(descriptor);
}

// Times `save(value)`, each time another value, which makes the file hold it.
template <typename Save>
void measure(benchmark::State &state, const Target &target, Save save) {
    int count = 0;
    std::string value;
    for (auto _ : state) {
        value = std::to_string(10000 + count++ % 90000);
        if (!save(value)) state.SkipWithError("not saved");
    }
    std::ifstream stream(target.path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (text.find(value) == text.npos || text.size() < kSize) state.SkipWithError("the value is not there");
    set_items(state, 1);
}

void kv(benchmark::State &state) {
    const Target target(".env", "[section %d]\r\n", "  name %d =%d\r\n", "");
    measure(state, target, [&](const std::string &value) {
        const ENV_EDIT edit = {
            ENV_EDIT_PUT, target.section.c_str(), target.name.c_str(), value.c_str(), nullptr, nullptr, 0};
        return env_edit_file(target.path.c_str(), &edit, 1, nullptr) == ENV_OK;
    });
}

// Without its comments.
void kv_tree(benchmark::State &state) {
    const Target target(".tree.env", "[section %d]\r\n", "  name %d =%d\r\n", "");
    measure(state, target, [&](const std::string &value) {
        ENV *env = env_open(0, nullptr);
        env_read_file(target.path.c_str(), env);
        env_put(env, target.section.c_str(), target.name.c_str(), value.c_str());
        env_write_file(target.path.c_str(), env);
        return env_close(env, 0) == ENV_OK;
    });
}

void glib(benchmark::State &state) {
    const Target target(".ini", "[section %d]\n", "name %d=%d\n", "");
    measure(state, target, [&](const std::string &value) {
        GKeyFile *file = g_key_file_new();
        bool saved =
            g_key_file_load_from_file(file, target.path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
        g_key_file_set_value(file, target.section.c_str(), target.name.c_str(), value.c_str());
        saved = saved && g_key_file_save_to_file(file, target.path.c_str(), nullptr);
        g_key_file_free(file);
        flush(target.path);
        return saved;
    });
}

void libconfig(benchmark::State &state) {
    const Target target(".cfg", "section_%d : {\n", "  name_%d = %d;\n", "};\n");
    measure(state, target, [&](const std::string &value) {
        config_t config;
        config_init(&config);
        bool saved = config_read_file(&config, target.path.c_str()) == CONFIG_TRUE;
        config_setting_t *setting = config_lookup(&config, (target.section + "." + target.name).c_str());
        saved =
            saved && setting != nullptr && config_setting_set_int(setting, std::atoi(value.c_str())) != 0;
        saved = saved && config_write_file(&config, target.path.c_str()) == CONFIG_TRUE;
        config_destroy(&config);
        flush(target.path);
        return saved;
    });
}

BENCHMARK(kv)->Name("edit/kv")->UseRealTime();
BENCHMARK(kv_tree)->Name("edit/kv tree")->UseRealTime();
BENCHMARK(glib)->Name("edit/GKeyFile")->UseRealTime();
BENCHMARK(libconfig)->Name("edit/libconfig")->UseRealTime();

}  // namespace

}  // namespace kvbench

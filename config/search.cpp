// SPDX-License-Identifier: MIT
#include "config/search.hpp"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "kv/fio.h"
#include "kv/frame.h"
#include "kv/ini.h"
#include "kv/strings.h"

#include "config/search_state.hpp"
#include "platform/platform.hpp"

namespace kv::config {

constinit SearchState search_state{};

namespace {

constexpr char kMainFile[] = "kv3.ini";
constexpr std::int32_t kValueLength = 256;

bool is_given(const char *text) {
    return text != nullptr && *text != '\0';
}

const char *or_empty(const char *text) {
    return text != nullptr ? text : "";
}

template <typename... Texts>
void report(int line, const char *format, Texts... texts) {
    char text[1024];
    std::snprintf(text, sizeof text, format, texts...);
    kv_error(text, nullptr, nullptr, "Kv", line);
}

// A value of at most 256 characters. Without an entry there is none: reading would give a list of keys.
bool read_value(const char *path, const char *section, const char *entry, char (&value)[kValueLength + 1]) {
    std::int32_t size = kValueLength;
    return entry != nullptr && ini_read_string(path, section, entry, value, &size) == INI_OK;
}

bool is_rooted(const char *path) {
    return *path == '\\' || *path == '/';
}

}  // namespace

bool Search::tell(int place, const char *path, bool exists) {
    if (visit_ != nullptr) visit_(place, path, exists ? 1 : 0, user_);
    return exists;
}

bool Search::look(int place, const char *directory, const char *filename, Path &found) {
    Path path;
    fio_makepath(path.text, "", directory, filename);
    // Without a name the directory is left, which is not what is searched.
    const bool exists = *filename != '\0' && path.text[0] != '\0' && fio_exist(nullptr, path.text) == 1;
    if (exists) found = path;
    return tell(place, path.text, exists);
}

bool Search::look_in_current(const char *filename, Path &found) {
    char directory[kPathSize] = "";
    // Below the root nothing of the current directory belongs into the path but its drive or share.
    if (is_rooted(filename)) {
        fio_make_fullpath(directory, nullptr, nullptr, filename);
        return look(KV_PLACE_CURRENT, nullptr, directory, found);
    }
    if (fio_getcwd(directory, kPathSize) == nullptr) directory[0] = '\0';
    return look(KV_PLACE_CURRENT, directory, filename, found);
}

bool Search::look_in_variable(const char *filename, Path &found) {
    const char *directory = kv_getenv("KV", nullptr);
    if (!is_given(directory)) return tell(KV_PLACE_VARIABLE, nullptr, false);
    return look(KV_PLACE_VARIABLE, directory, filename, found);
}

// The directories between the semicolons; taken apart by hand, since the application may be in the midst
// of a str_tok() of its own.
bool Search::look_in_list(const char *list, const char *filename, Path &found) {
    while (*list != '\0') {
        const std::size_t size = std::strcspn(list, ";");
        char directory[kValueLength + 1];
        std::memcpy(directory, list, size);
        directory[size] = '\0';
        if (size > 0 && look(KV_PLACE_LIST, directory, filename, found)) return true;
        list += size + (list[size] == ';' ? 1 : 0);
    }
    return false;
}

bool Search::look_in_registry(const char *filename, Path &found) {
    char key[1024];
    const int length = std::snprintf(key, sizeof key, "Software\\%s\\%s", "kv Software AG", filename);
    Path path;
    if (length >= static_cast<int>(sizeof key) ||
        !platform::registry_text(key, path.text, sizeof path.text) || path.text[0] == '\0') {
        return tell(KV_PLACE_REGISTRY, nullptr, false);
    }
    const bool exists = fio_exist(nullptr, path.text) == 1;
    if (exists) found = path;
    return tell(KV_PLACE_REGISTRY, path.text, exists);
}

bool Search::find_main(Path &found) {
    if (look_in_current(kMainFile, found) || look_in_variable(kMainFile, found) ||
        look(KV_PLACE_DRIVE_C, "C:\\", kMainFile, found) || look_in_registry(kMainFile, found)) {
        return true;
    }
    report(__LINE__, "File C:\\%s not found", kMainFile);
    return false;
}

bool Search::find(const char *section, const char *entry, const char *filename, Path &found) {
    if (filename == nullptr) return find_main(found);
    if (look_in_current(filename, found) || look_in_variable(filename, found)) return true;
    Path main_file;
    if (find_main(main_file)) {
        if (!is_given(section) || !is_given(entry)) {
            found = main_file;
            return tell(KV_PLACE_MAIN, found.text, true);
        }
        char list[kValueLength + 1];
        if (read_value(main_file.text, section, entry, list)) {
            if (look_in_list(list, filename, found)) return true;
            report(__LINE__, "File %.400s in %s not found", filename, list);
            return false;
        }
    }
    return look_in_registry(filename, found);
}

}  // namespace kv::config

using namespace kv::config;

int32_t kv_suche_datei(const char *section, const char *entry, const char *filename, char *out) noexcept {
    Path found;
    if (!Search().find(section, entry, filename, found)) return -1;
    str_cpy(out, found.text);
    return 0;
}

int32_t kv_suche_orte(const char *section, const char *entry, const char *filename, kv_place_function visit,
                      void *user) noexcept {
    Path found;
    return Search(visit, user).find(section, entry, filename, found) ? 0 : -1;
}

int32_t kv_suche_pfad(const char *section, const char *entry, char *out) noexcept {
    Path main_file;
    if (!Search().find(nullptr, nullptr, kMainFile, main_file)) {
        report(__LINE__, "File %s  not found", kMainFile);
        return -1;
    }
    char value[kValueLength + 1];
    Path path;
    const bool known = read_value(main_file.text, section, entry, value);
    if (known) fio_makepath(path.text, "", "", value);
    if (!known || (value[0] != '\0' && path.text[0] == '\0')) {  // a path that is too long is empty
        report(__LINE__, "Section %.300s or Entry %.300s in %s not found", or_empty(section),
               or_empty(entry), main_file.text);
        return -1;
    }
    str_cpy(out, path.text);
    return 0;
}

const char *kv_getinipath(const char *name) noexcept {
    const char *main_file = kv_getenv("kv", nullptr);
    if (!is_given(main_file)) main_file = "c:\\kv3.ini";
    if (std::strcmp(name, "kv") == 0) return main_file;
    char(&buffer)[kPathSize] = search_state.ini_path;
    std::int32_t size = kPathSize - 1;
    if (ini_read_string(main_file, "Pfade", name, buffer, &size) == INI_OK) return buffer;
    // A path that would be too long is not cut, so that it cannot come to name another file.
    if (std::snprintf(buffer, sizeof buffer, "c:\\%s.ini", name) >= kPathSize) buffer[0] = '\0';
    return buffer;
}

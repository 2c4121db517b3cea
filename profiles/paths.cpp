// SPDX-License-Identifier: MIT
#include "profiles/paths.hpp"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "kv/fio.h"
#include "kv/ini.h"
#include "kv/profiles.h"
#include "kv/strings.h"

#include "platform/platform.hpp"
#include "profiles/state.hpp"

namespace kv::profiles {

namespace {

constexpr std::int32_t kLongestPath = kPathSize - 1;

void read_setting(const char *entry, char (&directory)[kPathSize]) {
    std::int32_t size = kLongestPath;
    if (ini_read_string(nullptr, "System", entry, directory, &size) != INI_OK) directory[0] = '\0';
}

void cut_last_component(char *path) {
    char *rest = path + platform::share_length(path);
    if (char *last = std::strrchr(rest, '\\'); last != nullptr) *last = '\0';
}

// What is left of a path that begins with a point, when the points that lead it have been applied to the
// directory `base`.
const char *apply_points(const char *path, char *base) {
    if (std::strcmp(path, ".") == 0) return path + 1;
    if (path[1] == '\\') path += 2;
    while (std::strncmp(path, "..", 2) == 0 && (path[2] == '\0' || path[2] == '\\')) {
        path += path[2] == '\0' ? 2 : 3;
        cut_last_component(base);
    }
    return path;
}

bool has_place(const char *name) {
    char trimmed[kPathSize];
    char drive[3];
    char directory[kPathSize];
    char file[kPathSize];
    str_trim(str_cpy(trimmed, name));
    fio_divide(trimmed, drive, directory, file);
    return drive[0] != '\0' || directory[0] != '\0';
}

bool has_extension(std::string_view path) {
    const std::size_t last = path.find_last_of(".\\/");
    return last != path.npos && last > 0 && path[last] == '.';
}

}  // namespace

void table_directory(Family family, char (&directory)[kPathSize]) {
    if (family == Family::profile && state.directory[0] != '\0') {
        str_cpy(directory, state.directory);
    } else {
        read_setting(family == Family::profile ? "Profile" : "Matten", directory);
    }
}

void normalize(char (&path)[kPathSize]) {
    char base[kPathSize + 1] = "";
    const char *rest = path;
    if (path[0] == '.') {
        if (fio_getcwd(base, kPathSize) == nullptr) base[0] = '\0';
        rest = apply_points(path, base);
    } else if (path[0] == '\\') {
        fio_make_fullpath(path, nullptr, nullptr, path);
    }
    if (std::string_view(base).ends_with(':')) str_cat(base, "\\");
    fio_makepath(path, base, rest, "");
}

void resolve_path(Family family, const char *name, TablePath &path) {
    char given[kPathSize];
    char resolved[kPathSize];
    str_low(str_ncpy(given, name, kLongestPath));
    if (has_place(given)) {
        str_cpy(resolved, given);
    } else {
        char directory[kPathSize];
        table_directory(family, directory);
        fio_makepath(resolved, nullptr, directory, given);
    }
    normalize(resolved);
    str_cpy(path.text, resolved);
    if (given[0] != '\0' && resolved[0] == '\0') return;  // too long
    if (!has_extension(resolved)) str_cat(path.text, family == Family::profile ? ".pro" : ".mtt");
}

}  // namespace kv::profiles

void profil_path(const char *path) noexcept {
    using namespace kv::profiles;
    state.directory[0] = '\0';
    if (path != nullptr) {
        while (*path == ' ') ++path;
        str_rtrim(str_ncpy(state.directory, path, kLongestPath));
    }
    if (state.directory[0] == '\0') read_setting("Profile", state.directory);
}

// SPDX-License-Identifier: MIT
// Existence, counting, and lists of names.
#include <cstring>
#include <string_view>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/own_text.hpp"
#include "env/state.hpp"

using kv::env::Element;
using kv::env::enter;
using kv::env::List;
using kv::env::Lookup;

namespace {

int32_t check_root(ENV *env, const char *section) {
    if (section == nullptr) return env->sections.count > 0 ? ENV_BLOCK : ENV_NOT_FOUND;
    return kv::env::find_section(env, section) != nullptr ? ENV_BLOCK : ENV_NOT_FOUND;
}

int32_t check_subenv(const Element &element) {
    const List *list = element.list();
    const bool empty_block = element.type == ENV_TYPE_BLOCK && (list == nullptr || list->count == 0);
    return empty_block ? std::int32_t{ENV_NOT_FOUND} : element.status();
}

bool names_all_sections(const ENV *env, const char *section) {
    return !env->is_subenv() && section == nullptr;
}

int32_t list_names(ENV *env, const char *section, const char *path, int32_t exact, char separator,
                   int32_t size, char *names) {
    const auto room = static_cast<std::size_t>(size);
    std::size_t length = 0;
    names[0] = separator;
    names[1] = '\0';
    for (int32_t pos = 1;; ++pos) {
        ENV *holder = env;
        const Lookup lookup = kv::env::look_up(holder, section, path, exact != 0, pos);
        if (!lookup.found()) return lookup.status == ENV_NOT_FOUND ? std::int32_t{ENV_OK} : lookup.status;
        const std::string_view name = lookup.element->name();
        if (name.size() + length + 2 >= room) return ENV_TOO_SMALL;
        std::memcpy(names + length, name.data(), name.size());
        length += name.size();
        names[length++] = separator;
        names[length] = '\0';
    }
}

}  // namespace

int32_t env_check(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return enter(env, [&]() -> int32_t {
        if (names_all_sections(env, section)) return check_root(env, nullptr);
        if (path == nullptr)
            return env->is_subenv() ? check_subenv(*env->root_element) : check_root(env, section);
        const Lookup lookup = kv::env::locate(env, section, path, exact != 0);
        return lookup.found() ? lookup.status : std::int32_t{ENV_NOT_FOUND};
    });
}

int32_t env_exist(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    const int32_t status = env_check(env, section, path, exact);
    return status == ENV_DATA || status == ENV_BLOCK || status == ENV_EXTERNAL ? 1 : 0;
}

int32_t env_exist_data(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return env_check(env, section, path, exact) == ENV_DATA ? 1 : 0;
}

int32_t env_exist_block(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return env_check(env, section, path, exact) == ENV_BLOCK ? 1 : 0;
}

int32_t env_exist_external(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return env_check(env, section, path, exact) == ENV_EXTERNAL ? 1 : 0;
}

int32_t env_count_elements(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return enter(env, [&]() -> int32_t {
        if (names_all_sections(env, section)) return env->sections.count;
        const Lookup lookup = kv::env::locate(env, section, path, exact != 0);
        const List *list = lookup.found() ? lookup.element->list() : nullptr;
        return list != nullptr ? list->count : 0;
    });
}

int32_t env_count_path(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return enter(env, [&]() -> int32_t {
        if (path == nullptr) {
            kv::env::report("bypass Nil path");
            return ENV_ERROR;
        }
        const Lookup lookup = kv::env::locate(env, section, path, exact != 0);
        if (lookup.status == ENV_NOT_FOUND) return 0;
        if (!lookup.found()) return lookup.status;
        const char *delimiter = std::strrchr(path, *env_get_delimiter());
        return kv::env::count_named(*lookup.element->parent, delimiter != nullptr ? delimiter + 1 : path);
    });
}

int32_t env_list_elem_names(ENV *env, const char *section, const char *path, int32_t exact, char separator,
                            int32_t size, char *names) noexcept {
    const auto list = [&]() -> int32_t {
        const kv::env::OwnText own_section(section), own_path(path);  // they may stand in `names`
        if (env_exist_block(env, section, path, exact) == 0) return ENV_BLOCK;
        if (size < 2) return ENV_TOO_SMALL;
        return list_names(env, own_section.get(), own_path.get(), exact, separator, size, names);
    };
    const int32_t result = enter(env, list);
    if (result != ENV_OK && size > 0) *names = '\0';
    return result;
}

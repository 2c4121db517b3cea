// SPDX-License-Identifier: MIT
// Inserting and deleting elements and sections.
#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/writer.hpp"

namespace kv::env {

namespace {

std::int32_t delete_all(ENV *env) {
    if (has_pinned_elements(env) || being_written(env)) return ENV_IN_USE;
    clear_list(env->sections);
    return ENV_OK;
}

std::int32_t delete_element(Element &element) {
    if (pinned(element) || being_written(element)) return ENV_IN_USE;
    unlink(element);
    return ENV_OK;
}

}  // namespace

bool has_pinned_elements(const ENV *env) {
    if (env->users == 0) return false;
    for (const Element *section = env->sections.first; section != nullptr; section = section->next) {
        if (pinned(*section)) return true;
    }
    return false;
}

}  // namespace kv::env

using kv::env::ElementPointer;
using kv::env::enter;
using kv::env::Lookup;

int32_t env_insert_before(ENV *env, const char *section, const char *path, const char *name) noexcept {
    return enter(env, [&]() -> int32_t {
        if (name == nullptr) {
            kv::env::report("bypass Nil name");
            return ENV_ERROR;
        }
        const bool section_wanted = !env->is_subenv() && path == nullptr;
        const Lookup lookup = kv::env::locate(env, section, path, true);
        if (lookup.status == ENV_NOT_FOUND) return ENV_NOT_FOUND;
        if (!lookup.found()) return ENV_ERROR;
        if (lookup.element->is_section() && !section_wanted) {
            kv::env::report("env_insert_before (subenv, NIL, NIL) called with a section");
            return ENV_ERROR;
        }
        ElementPointer made =
            section_wanted ? kv::env::make_block(name) : kv::env::make_external(name, nullptr);
        kv::env::insert_before(*lookup.element, std::move(made));
        return ENV_OK;
    });
}

int32_t env_delete(ENV *env, const char *section, const char *path) noexcept {
    return enter(env, [&]() -> int32_t {
        if (path == nullptr && env->is_subenv()) {
            if (section == nullptr) kv::env::report("env_delete (env, NIL, NIL) called with subenv");
            return ENV_ERROR;
        }
        if (path == nullptr && section == nullptr) return kv::env::delete_all(env);
        const Lookup lookup = kv::env::locate(env, section, path, true);
        return lookup.found() ? kv::env::delete_element(*lookup.element) : lookup.status;
    });
}

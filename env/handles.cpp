// SPDX-License-Identifier: MIT
// Opening and closing environments and sub-environments.
#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/own_text.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

ENV *new_handle() {
    ENV *env = memory::make_owned<ENV>().release();
    if (env == nullptr) throw std::bad_alloc();
    env->mtime = kNoTime;
    env->next_handle = state.first_handle;
    if (state.first_handle != nullptr) state.first_handle->previous_handle = env;
    state.first_handle = env;
    return env;
}

void free_handle(ENV *env) {
    (env->previous_handle != nullptr ? env->previous_handle->next_handle : state.first_handle) =
        env->next_handle;
    if (env->next_handle != nullptr) env->next_handle->previous_handle = env->previous_handle;
    memory::Owned<ENV>{env}.reset();
}

}  // namespace

void set_default(ENV *env, ENV *default_env, bool counts_as_user) {
    if (env->default_env != nullptr)
        --(env->counts_as_user ? env->default_env->users : env->default_env->copies);
    env->default_env = default_env;
    env->counts_as_user = counts_as_user;
    if (default_env != nullptr) ++(counts_as_user ? default_env->users : default_env->copies);
}

ENV *open_on(ENV *env, Element &element) {
    ENV *subenv = new_handle();
    subenv->root_element = &element;
    subenv->parent = env;
    subenv->id = env->id;
    subenv->mtime = env->mtime;
    set_default(subenv, env->default_env, false);
    ++element.pins;
    ++env->users;
    return subenv;
}

void close(ENV *env) {
    if (env->is_subenv()) {
        --env->root_element->pins;
        --env->parent->users;
    } else {
        clear_list(env->sections);
    }
    set_default(env, nullptr, false);
    // Sub-environments that only have a copy of the link lose it.
    for (ENV *other = state.first_handle; env->copies > 0 && other != nullptr; other = other->next_handle) {
        if (other->default_env == env) set_default(other, nullptr, false);
    }
    if (state.iteration.env == env) end_iteration();
    free_handle(env);
}

}  // namespace kv::env

using kv::env::enter;

ENV *env_open(int32_t id, ENV *default_env) noexcept {
    const kv::env::Lock lock;
    try {
        ENV *env = kv::env::new_handle();
        env->id = id;
        kv::env::set_default(env, default_env, true);
        return env;
    } catch (const std::bad_alloc &) {
        kv::env::report("out of space");
        return nullptr;
    }
}

int32_t env_close(ENV *env, int32_t close_defaults) noexcept {
    return enter(env, [&]() -> int32_t {
        for (ENV *each = env; each != nullptr;) {
            if (each->users != 0) return ENV_IN_USE;
            ENV *next = close_defaults != 0 && !each->is_subenv() ? each->default_env : nullptr;
            kv::env::close(each);
            each = next;
        }
        return ENV_OK;
    });
}

ENV *env_open_subenv(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    return enter(env, static_cast<ENV *>(nullptr), [&]() -> ENV * {
        const kv::env::Lookup lookup = kv::env::locate(env, section, path, exact != 0);
        return lookup.found() ? kv::env::open_on(env, *lookup.element) : nullptr;
    });
}

ENV *env_create_subenv(ENV *env, const char *section, const char *path) noexcept {
    const kv::env::Lock lock;
    ENV *subenv = env_open_subenv(env, section, path, 1);
    if (subenv != nullptr || env == nullptr) return subenv;
    return enter(env, static_cast<ENV *>(nullptr), [&]() -> ENV * {
        // Storing may free them, if they are the tree's.
        const kv::env::OwnText own_section(section), own_path(path);
        if (env_put_core(env, own_section.get(), own_path.get(), nullptr, nullptr) != ENV_OK)
            return nullptr;
        return env_open_subenv(env, own_section.get(), own_path.get(), 1);
    });
}

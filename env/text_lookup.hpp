// SPDX-License-Identifier: MIT
// The getters of texts, numbers and arrays have this in common.
#pragma once

#include "env/handle.hpp"
#include "env/lookup.hpp"

namespace kv::env {

/// Looks a data element up, the default chain included, and hands its text and the id of the environment
/// that has it to `use`, whose result is returned; the tree is locked meanwhile. Gives ENV_DATA for an
/// element of another type, and the failure codes of env_get_core().
template <typename Use>
std::int32_t with_text(ENV *env, const char *section, const char *path, std::int32_t exact, Use use) {
    return enter(env, [&]() -> std::int32_t {
        ENV *holder = env;
        const Lookup lookup = look_up(holder, section, path, exact != 0, 0);
        if (!lookup.found()) return lookup.status;
        if (lookup.element->type != ENV_TYPE_DATA || lookup.status != ENV_DATA) return ENV_DATA;
        return use(static_cast<const char *>(lookup.element->text), holder->id);
    });
}

}  // namespace kv::env

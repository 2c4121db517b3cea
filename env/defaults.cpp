// SPDX-License-Identifier: MIT
// Default chains.
#include "kv/env.h"

#include "env/handle.hpp"

namespace {

ENV *last_of_chain(ENV *env) {
    while (env->default_env != nullptr) env = env->default_env;
    return env;
}

}  // namespace

void env_attach_as_last_default(ENV *env, ENV *new_default) noexcept {
    if (new_default == nullptr) {
        kv_message("Attempt to attach NIL as new_default.\nIgnored.", nullptr, nullptr, kv::env::kCore,
                   __LINE__);
        return;
    }
    kv::env::enter(env, [&] {
        ENV *last = last_of_chain(env);
        // A chain that ends where this one does has an environment in common with it.
        if (last_of_chain(new_default) == last) {
            kv::env::report("env_attach_as_last_default: the chain would become a ring");
            return std::int32_t{ENV_ERROR};
        }
        kv::env::set_default(last, new_default, true);
        return std::int32_t{ENV_OK};
    });
}

void env_detach_default_chain(ENV *env) noexcept {
    kv::env::enter(env, [&] {
        kv::env::set_default(env, nullptr, false);
        return std::int32_t{ENV_OK};
    });
}

// SPDX-License-Identifier: MIT
// Environments for the measurements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "kv/env.h"
#include "kv/memory.h"

namespace kvbench {

struct CloseEnv {
    void operator()(ENV *env) const { env_close(env, 0); }
};
using EnvPointer = std::unique_ptr<ENV, CloseEnv>;

inline EnvPointer open_env() {
    return EnvPointer(env_open(0, nullptr));
}

/// The environment of a text; null if it does not follow the format.
inline EnvPointer env_of(const std::string &text) {
    EnvPointer env = open_env();
    if (env_read_from_string(text.c_str(), env.get()) != ENV_OK) env.reset();
    return env;
}

struct FreeText {
    void operator()(char *text) const { heap_free(text); }
};
using TextPointer = std::unique_ptr<char, FreeText>;

inline TextPointer text_of(ENV *env) {
    return TextPointer(env_write_to_string(env));
}

inline void count_leaf(ENV *, const char *, const char *, void *count) {
    ++*static_cast<std::size_t *>(count);
}

}  // namespace kvbench

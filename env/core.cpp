// SPDX-License-Identifier: MIT
// The two operations that storing and getting are made of, and the delimiter.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/store.hpp"

using kv::env::enter;
using kv::env::state;

int32_t env_put_core(ENV *env, const char *section, const char *path, const char *value,
                     void *external) noexcept {
    return enter(env, [&] { return kv::env::store(env, section, path, {value, external}); });
}

int32_t env_get_core(ENV *env, const char *section, const char *path, int32_t exact, int32_t pos,
                     int32_t *id_out, const char **name_out, const char **value_out,
                     void **external_out) noexcept {
    return enter(env, [&] {
        ENV *holder = env;
        const kv::env::Lookup lookup = kv::env::look_up(holder, section, path, exact != 0, pos);
        if (!lookup.found()) return lookup.status;
        const kv::env::Element &element = *lookup.element;
        if (name_out != nullptr) *name_out = element.name();
        if (value_out != nullptr && element.type == ENV_TYPE_DATA) *value_out = element.text;
        if (external_out != nullptr && element.type == ENV_TYPE_EXTERNAL) *external_out = element.external;
        if (id_out != nullptr) *id_out = holder->id;
        return lookup.status;
    });
}

char *env_set_delimiter(const char *delimiter) noexcept {
    const kv::env::Lock lock;
    // The argument may be one of the two fields that change here.
    char wanted[sizeof state.delimiter] = "";
    if (delimiter != nullptr)
        std::snprintf(wanted, sizeof wanted, "%.*s", kv::env::kDelimiterLength, delimiter);
    std::memcpy(state.previous_delimiter, state.delimiter, sizeof state.delimiter);
    if (delimiter == nullptr) return state.previous_delimiter;
    if (*wanted == '\0') {
        kv::env::report("Bad delimiter: ", wanted);
        return state.previous_delimiter;
    }
    std::memcpy(state.delimiter, wanted, sizeof wanted);
    ++state.changes;
    state.is_delimiter.fill(false);
    for (const char *at = state.delimiter; *at != '\0'; ++at)
        state.is_delimiter[static_cast<unsigned char>(*at)] = true;
    return state.previous_delimiter;
}

const char *env_get_delimiter() noexcept {
    return state.delimiter;
}

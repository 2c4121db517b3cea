// SPDX-License-Identifier: MIT
// Single values: texts, numbers, externals, by path.
#include <cstdio>
#include <cstring>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/lookup.hpp"
#include "env/numbers.hpp"
#include "env/report.hpp"
#include "env/text_lookup.hpp"
#include "platform/platform.hpp"

using kv::env::enter;
using kv::env::NumberText;
using kv::env::with_text;

int32_t env_put(ENV *env, const char *section, const char *path, const char *value) noexcept {
    return value != nullptr ? env_put_core(env, section, path, value, nullptr) : std::int32_t{ENV_ERROR};
}

int32_t env_put_string(ENV *env, const char *section, const char *path, const char *value) noexcept {
    return env_put(env, section, path, value);
}

int32_t env_put_long(ENV *env, const char *section, const char *path, int32_t value) noexcept {
    return env_put(env, section, path, NumberText(value).c_str());
}

int32_t env_put_double(ENV *env, const char *section, const char *path, double value) noexcept {
    return env_put(env, section, path, NumberText(value).c_str());
}

int32_t env_put_format(ENV *env, const char *section, const char *path, const char *format, ...) noexcept {
    char text[1024];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = kv::platform::format(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof text) return ENV_ERROR;
    return env_put(env, section, path, text);
}

int32_t env_put_external(ENV *env, const char *section, const char *path, void *external) noexcept {
    return env_put_core(env, section, path, nullptr, external);
}

int32_t env_get(ENV *env, const char *section, const char *path, int32_t exact, int32_t size,
                char *buffer) noexcept {
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) -> int32_t {
        const std::size_t length = std::strlen(text);
        if (size < 0 || length >= static_cast<std::size_t>(size)) return ENV_TOO_SMALL;
        std::memcpy(buffer, text, length + 1);
        return id;
    });
}

int32_t env_get_string(ENV *env, const char *section, const char *path, int32_t exact, int32_t size,
                       char *buffer) noexcept {
    return env_get(env, section, path, exact, size, buffer);
}

int32_t env_get_reference(ENV *env, const char *section, const char *path, int32_t exact,
                          const char **ref) noexcept {
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        *ref = text;
        return id;
    });
}

int32_t env_data_length(ENV *env, const char *section, const char *path, int32_t exact) noexcept {
    int32_t length = 0;
    with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        length = static_cast<int32_t>(std::strlen(text));
        return id;
    });
    return length;
}

int32_t env_get_long(ENV *env, const char *section, const char *path, int32_t exact,
                     int32_t *value) noexcept {
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        return kv::env::parse_single(text, *value) ? id : std::int32_t{ENV_SYNTAX};
    });
}

int32_t env_get_double(ENV *env, const char *section, const char *path, int32_t exact,
                       double *value) noexcept {
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        return kv::env::parse_single(text, *value) ? id : std::int32_t{ENV_SYNTAX};
    });
}

int32_t env_get_external(ENV *env, const char *section, const char *path, int32_t exact,
                         void **external) noexcept {
    return enter(env, [&]() -> int32_t {
        ENV *holder = env;
        const kv::env::Lookup lookup = kv::env::look_up(holder, section, path, exact != 0, 0);
        if (!lookup.found()) return lookup.status;
        if (lookup.status != ENV_EXTERNAL) return ENV_EXTERNAL;
        *external = lookup.element->external;
        return holder->id;
    });
}

// SPDX-License-Identifier: MIT
// Paths made of names.
#include <cstdarg>
#include <cstring>

#include "kv/env.h"

#include "env/state.hpp"

int32_t env_create_path(int32_t size, char *out, ...) noexcept {
    if (size < 1) return ENV_TOO_SMALL;
    std::va_list texts;
    va_start(texts, out);
    const auto room = static_cast<std::size_t>(size);
    const char delimiter = *env_get_delimiter();
    std::size_t length = 0;
    int32_t result = ENV_OK;
    bool first = true;
    for (const char *text = va_arg(texts, const char *); text != nullptr;
         text = va_arg(texts, const char *)) {
        const std::size_t added = std::strlen(text);
        if (length + (first ? 0 : 1) + added + 1 > room) {
            if (!first) *out = '\0';
            result = ENV_TOO_SMALL;
            break;
        }
        if (!first) out[length++] = delimiter;
        std::memcpy(out + length, text, added + 1);
        length += added;
        first = false;
    }
    va_end(texts);
    return result;
}

int32_t env_create_array_path(int32_t size, char *out, const char *const *names) noexcept {
    if (size < 1 || out == nullptr) return ENV_TOO_SMALL;
    const auto room = static_cast<std::size_t>(size);
    const char delimiter = *env_get_delimiter();
    std::size_t length = 0;
    *out = '\0';
    for (const char *const *name = names; *name != nullptr; ++name) {
        const std::size_t added = std::strlen(*name);
        const bool joined = name != names;
        if (length + (joined ? 1 : 0) + added + 1 > room) {
            *out = '\0';
            return ENV_TOO_SMALL;
        }
        if (joined) out[length++] = delimiter;
        std::memcpy(out + length, *name, added + 1);
        length += added;
    }
    return ENV_OK;
}

// SPDX-License-Identifier: MIT
// Arrays: one text with commas between the items.
#include <algorithm>
#include <new>
#include <string_view>

#include "kv/env.h"

#include "env/numbers.hpp"
#include "env/text_lookup.hpp"
#include "memory/owned.hpp"

using kv::env::NumberText;
using kv::env::Parsed;
using kv::env::with_text;

namespace {

// Stores `count` texts, which `add(joined, i)` appends, with commas between them.
template <typename Add>
int32_t put_joined(ENV *env, const char *section, const char *path, int32_t count, Add add) {
    try {
        kv::memory::String joined;
        for (int32_t i = 0; i < count; ++i) {
            if (i > 0) joined += ',';
            add(joined, i);
        }
        return env_put(env, section, path, joined.c_str());
    } catch (const std::bad_alloc &) {
        kv::env::report("heap_malloc", nullptr, kv::env::kValues);
        return ENV_ERROR;
    }
}

template <typename Number>
int32_t put_numbers(ENV *env, const char *section, const char *path, int32_t count, const Number *values) {
    if (count < 1 || values == nullptr) return ENV_ERROR;
    return put_joined(env, section, path, count, [&](kv::memory::String &joined, int32_t i) {
        joined += NumberText(values[i]).c_str();
    });
}

template <typename Number>
int32_t get_numbers(ENV *env, const char *section, const char *path, int32_t exact, int32_t *count,
                    Number *values) {
    if (count == nullptr) return ENV_ERROR;
    const std::size_t room = values != nullptr && *count > 0 ? static_cast<std::size_t>(*count) : 0;
    *count = 0;
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) -> int32_t {
        const Parsed parsed = kv::env::parse_list(text, {values, room});
        *count = parsed.count;
        switch (parsed.outcome) {
            case Parsed::matched:
                return id;
            case Parsed::too_many:
                return ENV_TOO_SMALL;
            default:
                return ENV_SYNTAX;
        }
    });
}

// Calls `take(item)` for every text between commas, as long as it returns true.
template <typename Take>
void for_each_item(std::string_view text, Take take) {
    for (;;) {
        const std::size_t comma = text.find(',');
        if (!take(text.substr(0, comma)) || comma == std::string_view::npos) return;
        text.remove_prefix(comma + 1);
    }
}

int32_t split_into(std::string_view text, int32_t *count, int32_t size, char *const *values, int32_t id) {
    int32_t result = id;
    int32_t stored = 0;
    for_each_item(text, [&](std::string_view item) {
        if (stored == *count ||
            (values[stored] != nullptr && item.size() >= static_cast<std::size_t>(size))) {
            result = ENV_TOO_SMALL;
        } else if (values[stored] == nullptr) {
            result = ENV_ERROR;
        } else {
            *std::copy(item.begin(), item.end(), values[stored++]) = '\0';
        }
        return result == id;
    });
    if (result == id) *count = stored;
    return result;
}

}  // namespace

int32_t env_put_longs(ENV *env, const char *section, const char *path, int32_t count,
                      const int32_t *values) noexcept {
    return put_numbers(env, section, path, count, values);
}

int32_t env_put_doubles(ENV *env, const char *section, const char *path, int32_t count,
                        const double *values) noexcept {
    return put_numbers(env, section, path, count, values);
}

int32_t env_put_strings(ENV *env, const char *section, const char *path, int32_t count,
                        const char *const *values) noexcept {
    if (count < 1 || values == nullptr) return ENV_ERROR;
    if (std::any_of(values, values + count, [](const char *value) { return value == nullptr; }))
        return ENV_ERROR;
    return put_joined(env, section, path, count,
                      [&](kv::memory::String &joined, int32_t i) { joined += values[i]; });
}

int32_t env_get_longs(ENV *env, const char *section, const char *path, int32_t exact, int32_t *count,
                      int32_t *values) noexcept {
    return get_numbers(env, section, path, exact, count, values);
}

int32_t env_get_doubles(ENV *env, const char *section, const char *path, int32_t exact, int32_t *count,
                        double *values) noexcept {
    return get_numbers(env, section, path, exact, count, values);
}

int32_t env_get_strings(ENV *env, const char *section, const char *path, int32_t exact, int32_t *count,
                        int32_t size, char *const *values) noexcept {
    if (count == nullptr || *count < 1 || size < 1 || values == nullptr) return ENV_ERROR;
    return with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        return split_into(text, count, size, values, id);
    });
}

int32_t env_get_array_size(ENV *env, const char *section, const char *path, int32_t exact, int32_t *count,
                           int32_t *longest) noexcept {
    int32_t items = 0;
    std::size_t most = 0;
    const int32_t result = with_text(env, section, path, exact, [&](const char *text, int32_t id) {
        for_each_item(text, [&](std::string_view item) {
            ++items;
            most = std::max(most, item.size());
            return true;
        });
        return id;
    });
    if (count != nullptr) *count = items;
    if (longest != nullptr) *longest = static_cast<int32_t>(most);
    return result;
}

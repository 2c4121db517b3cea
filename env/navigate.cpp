// SPDX-License-Identifier: MIT
// Elements by position, and the iteration over a block.
#include <cstring>

#include "kv/env.h"
#include "kv/strings.h"

#include "env/handle.hpp"
#include "env/lookup.hpp"
#include "env/state.hpp"

using kv::env::enter;
using kv::env::Iteration;
using kv::env::state;

namespace {

// A caller's buffer for a text.
struct Buffer {
    int32_t size;
    char *text;

    bool copy(const char *from) const {
        const std::size_t length = std::strlen(from);
        if (size < 0 || length >= static_cast<std::size_t>(size)) return false;
        std::memcpy(text, from, length + 1);
        return true;
    }
};

// What env_get_pos() fills.
struct Outputs {
    int32_t *id;
    Buffer name;
    Buffer value;
    void **external;
};

int32_t get_at(ENV *env, const char *section, const char *path, int32_t exact, int32_t pos,
               const Outputs &out) {
    ENV *holder = env;
    const kv::env::Lookup lookup = kv::env::look_up(holder, section, path, exact != 0, pos);
    if (lookup.found()) {
        if (out.id != nullptr) *out.id = holder->id;
        if (lookup.element->type == ENV_TYPE_EXTERNAL && out.external != nullptr) {
            *out.external = lookup.element->external;
        }
    }
    if (pos < 1) return ENV_NOT_FOUND;
    if (!lookup.found()) return lookup.status;
    bool fits = out.name.copy(lookup.element->name());
    if (lookup.status == ENV_DATA) fits = out.value.copy(lookup.element->text) && fits;
    return fits ? lookup.status : std::int32_t{ENV_TOO_SMALL};
}

bool is_type(int32_t result) {
    return result <= ENV_DATA && result >= ENV_EXTERNAL;
}

// A copy that may be of nothing; false when the heap is exhausted.
bool copy_optional(const char *text, char *&copy) {
    copy = str_alloc(text);
    return copy != nullptr || text == nullptr;
}

int32_t begin_iteration(ENV *env, const char *section, const char *path, int32_t exact,
                        const Outputs &out) {
    Iteration next{nullptr, 0, nullptr, nullptr, 2, exact};
    const bool copied = copy_optional(section, next.section) && copy_optional(path, next.path);
    kv::env::end_iteration();
    state.iteration = next;  // without an environment it is not active yet
    if (!copied) throw std::bad_alloc();
    const int32_t result = get_at(env, next.section, next.path, exact, 1, out);
    if (is_type(result)) {
        state.iteration.env = env;
        state.iteration.id = *out.id;
    }
    return result;
}

int32_t continue_iteration(const Buffer &name, const Buffer &value, void **external) {
    Iteration &iteration = state.iteration;
    int32_t id = 0;
    const int32_t result = get_at(iteration.env, iteration.section, iteration.path, iteration.exact,
                                  iteration.next_position, {&id, name, value, external});
    if (!is_type(result)) {
        kv::env::end_iteration();
        return result;
    }
    if (id != iteration.id) return ENV_NOT_FOUND;
    ++iteration.next_position;
    return result;
}

}  // namespace

int32_t env_get_pos(ENV *env, const char *section, const char *path, int32_t exact, int32_t pos,
                    int32_t *id, int32_t name_size, char *name, int32_t value_size, char *value,
                    void **external) noexcept {
    return enter(env, [&] {
        return get_at(env, section, path, exact, pos,
                      {id, {name_size, name}, {value_size, value}, external});
    });
}

int32_t env_get_first(ENV *env, const char *section, const char *path, int32_t exact, int32_t *id,
                      int32_t name_size, char *name, int32_t value_size, char *value,
                      void **external) noexcept {
    return enter(env, [&] {
        int32_t found_id = 0;
        const int32_t result = begin_iteration(
            env, section, path, exact, {&found_id, {name_size, name}, {value_size, value}, external});
        if (id != nullptr && (is_type(result) || result == ENV_TOO_SMALL)) *id = found_id;
        return result;
    });
}

int32_t env_get_next(int32_t name_size, char *name, int32_t value_size, char *value,
                     void **external) noexcept {
    const kv::env::Lock lock;
    if (state.iteration.env == nullptr) return ENV_NOT_FOUND;
    const int32_t result = enter(state.iteration.env, [&] {
        return continue_iteration({name_size, name}, {value_size, value}, external);
    });
    if (result == ENV_ERROR) kv::env::end_iteration();
    return result;
}

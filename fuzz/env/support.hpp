// SPDX-License-Identifier: MIT
// What the fuzz targets of the environment tree share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "kv.h"

#include "env/handle.hpp"
#include "fuzz/support.hpp"

namespace kvfuzz {

class Environment {
  public:
    explicit Environment(int32_t id = 0) : env_(env_open(id, nullptr)) {}
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;
    ~Environment() { KV_REQUIRE(env_close(env_, 0) == ENV_OK); }
    operator ENV *() const { return env_; }  // NOLINT(google-explicit-constructor)

  private:
    ENV *env_;
};

inline void append_character(int32_t c, void *text) {
    static_cast<std::string *>(text)->push_back(static_cast<char>(c));
}

inline std::string written(ENV *env) {
    std::string text;
    env_write(append_character, &text, env);
    return text;
}

struct Stream {
    const std::string &text;
    std::size_t position = 0;
};

inline int32_t next_character(void *stream) {
    auto *at = static_cast<Stream *>(stream);
    return at->position < at->text.size() ? static_cast<unsigned char>(at->text[at->position++]) : -1;
}

inline int32_t read(const std::string &text, ENV *env) {
    Stream stream{text};
    return env_read(next_character, &stream, env);
}

// True if both lists have the same elements in the same order, all the way down.
inline bool same_elements(const kv::env::List &a, const kv::env::List &b) {
    const kv::env::Element *in_a = a.first;
    const kv::env::Element *in_b = b.first;
    while (in_a != nullptr && in_b != nullptr) {
        if (in_a->type != in_b->type || std::strcmp(in_a->name(), in_b->name()) != 0) return false;
        if (in_a->type == ENV_TYPE_DATA && std::strcmp(in_a->text, in_b->text) != 0) return false;
        const bool full_a = in_a->list() != nullptr && in_a->list()->first != nullptr;
        const bool full_b = in_b->list() != nullptr && in_b->list()->first != nullptr;
        if (full_a != full_b) return false;
        if (full_a) {
            in_a = in_a->list()->first;
            in_b = in_b->list()->first;
            continue;
        }
        while (in_a->next == nullptr && in_b->next == nullptr && in_a->parent != &a) {
            in_a = in_a->parent->owner;
            in_b = in_b->parent->owner;
        }
        in_a = in_a->next;
        in_b = in_b->next;
    }
    return in_a == in_b;
}

}  // namespace kvfuzz

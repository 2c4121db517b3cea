// SPDX-License-Identifier: MIT
// What the tests of the environment tree share: handles that close themselves, trees from texts and back.
#pragma once

#include <concepts>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kv.h"

#include "tests/support/small_stack.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

struct CloseEnv {
    void operator()(ENV *env) const { EXPECT_EQ(env_close(env, 0), ENV_OK); }
};
using Env = std::unique_ptr<ENV, CloseEnv>;

inline Env open_env(int32_t id = 0, ENV *default_env = nullptr) {
    return Env(env_open(id, default_env));
}

inline Env open_sub(ENV *env, const char *section, const char *path, int32_t exact = 1) {
    return Env(env_open_subenv(env, section, path, exact));
}

/// Reads a text without carriage returns as env_read() does.
inline int32_t read_text(ENV *env, std::string_view text) {
    const auto get = [](void *stream) -> int32_t {
        auto &rest = *static_cast<std::string_view *>(stream);
        if (rest.empty()) return -1;
        const auto c = static_cast<unsigned char>(rest.front());
        rest.remove_prefix(1);
        return c;
    };
    return env_read(get, &text, env);
}

/// A new environment with the content of a text.
inline Env tree(std::string_view text, int32_t id = 0, ENV *default_env = nullptr) {
    Env env = open_env(id, default_env);
    EXPECT_EQ(read_text(env.get(), text), ENV_OK) << text;
    return env;
}

/// What env_write() writes.
inline std::string text_of(ENV *env) {
    std::string text;
    env_write([](int32_t c, void *stream) { *static_cast<std::string *>(stream) += static_cast<char>(c); },
              &text, env);
    return text;
}

/// A text and a number: "n" and 7 give "n7".
inline std::string numbered(std::string text, std::integral auto number) {
    return text.append(std::to_string(number));
}

inline void dump_elements(ENV *env, const char *section, const std::string &path, std::string &out) {
    const char *const address = path.empty() ? nullptr : path.c_str();
    const int32_t count = env_count_elements(env, section, address, 1);
    std::map<std::string, int> seen;
    for (int32_t pos = 1; pos <= count; ++pos) {
        const char *name = "?", *value = "";
        void *external = nullptr;
        const int32_t type = env_get_core(env, section, address, 1, pos, nullptr, &name, &value, &external);
        out += pos == 1 ? "" : " ";
        out += name;
        const std::string index = std::to_string(++seen[name]);
        if (type == ENV_DATA) {
            out += std::string("=") + (value != nullptr ? value : "");
        } else if (type == ENV_EXTERNAL) {
            out += numbered("*", reinterpret_cast<intptr_t>(external));
        } else if (type == ENV_BLOCK) {
            out += "{";
            dump_elements(env, section, path + (path.empty() ? "" : "@") + name + "@" + index, out);
            out += "}";
        } else {
            out += numbered("?", type);
        }
    }
}

/// The tree in one line, externals included: "[s] a=1 b{c=2} e*0". Of several sections with the same name
/// only the first is seen from inside, and stands for all.
inline std::string dump(ENV *env) {
    std::string out;
    const int32_t sections = env_count_elements(env, nullptr, nullptr, 1);
    for (int32_t pos = 1; pos <= sections; ++pos) {
        const char *name = "?";
        env_get_core(env, nullptr, nullptr, 1, pos, nullptr, &name, nullptr, nullptr);
        out += (pos == 1 ? "[" : " [") + std::string(name) + "]";
        std::string elements;
        dump_elements(env, name, "", elements);
        if (!elements.empty()) out += " " + elements;
    }
    return out;
}

/// How often `call` reports `text`.
template <class Call>
int reports(std::string_view text, Call call) {
    clear_log();
    call();
    return count_in_log(text);
}

/// Reads an element's text; the code for everything else.
inline std::string get(ENV *env, const char *section, const char *path, int32_t exact = 1) {
    const char *text = nullptr;
    const int32_t code = env_get_reference(env, section, path, exact, &text);
    return code >= 0 && text != nullptr ? text : testing::PrintToString(code);
}

}  // namespace kvtest

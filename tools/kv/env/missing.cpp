// SPDX-License-Identifier: MIT
#include "tools/kv/env/missing.hpp"

#include "tools/kv/env/address.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/suggestion.hpp"

namespace kvtool {

namespace {

// The nearest name to the first one of the path that is not there.
std::string nearest(ENV *env, const char *section, const char *path) {
    if (env_exist(env, section, nullptr, 1) == 0)
        return suggestion(section, names_in(env, nullptr, nullptr, 1));
    if (path == nullptr) return "";
    const Path steps(path);
    const std::vector<std::string> names = steps.names();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string block = steps.block_of(i);
        const std::vector<std::string> others =
            names_in(env, section, block.empty() ? nullptr : block.c_str(), 1);
        bool is_there = false;
        for (const std::string &other : others) is_there = is_there || other == names[i];
        if (!is_there) return suggestion(names[i], others);
    }
    return "";
}

}  // namespace

std::vector<std::string> names_in(ENV *env, const char *section, const char *path, int32_t exact) {
    std::vector<std::string> names;
    const char *name = "";
    for (int32_t position = 1; env_get_core(env, section, path, exact, position, nullptr, &name, nullptr,
                                            nullptr) != ENV_NOT_FOUND;
         ++position) {
        names.emplace_back(name);
    }
    return names;
}

void fail_missing(const std::string &file, ENV *env, const char *section, const char *path) {
    throw Failure{kNotFound, input_name(file) + ": " + describe(section, path) + " not found" +
                                 nearest(env, section, path)};
}

}  // namespace kvtool

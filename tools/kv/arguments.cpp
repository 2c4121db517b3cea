// SPDX-License-Identifier: MIT
#include "tools/kv/arguments.hpp"

#include <algorithm>

#include "tools/kv/failure.hpp"

namespace kvtool {

void fail_usage(std::string_view command, const std::string &text) {
    const std::string name(command);
    throw Failure{kUsage,
                  name + ": " + text + (text.ends_with('?') ? "" : ".") + " See '" + name + " --help'."};
}

bool Arguments::has(std::string_view option) const {
    return std::any_of(options_.begin(), options_.end(),
                       [&](const auto &given) { return given.first == option; });
}

std::string Arguments::value(std::string_view option, std::string_view fallback) const {
    const auto given = std::find_if(options_.rbegin(), options_.rend(),
                                    [&](const auto &candidate) { return candidate.first == option; });
    return given != options_.rend() ? given->second : std::string(fallback);
}

std::vector<std::string> Arguments::values(std::string_view option) const {
    std::vector<std::string> values;
    for (const auto &[name, value] : options_) {
        if (name == option) values.push_back(value);
    }
    return values;
}

Arguments Arguments::only(const Arguments &arguments, std::string_view option) {
    Arguments one;
    for (const auto &[name, value] : arguments.options_) {
        if (name == option) one.add_option(name, value);
    }
    return one;
}

}  // namespace kvtool

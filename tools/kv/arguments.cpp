#include "tools/kv/arguments.hpp"

#include <algorithm>

#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

bool is_option(std::string_view word) {
    if (word.size() < 2 || word[0] != '-') return false;
    return word[1] != '.' && (word[1] < '0' || word[1] > '9');  // "-5" and "-.5" are values
}

}  // namespace

void fail_usage(std::string_view command, const std::string &text) {
    const std::string name(command);
    throw Failure{kUsage, name + ": " + text + ", see '" + name + " --help'"};
}

Arguments Arguments::parse(std::string_view command, std::span<const char *const> words,
                           std::span<const Option> options) {
    Arguments arguments;
    bool only_operands = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (only_operands || !is_option(word)) {
            arguments.operands_.emplace_back(word);
            continue;
        }
        if (word == "--") {
            only_operands = true;
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const auto option = std::find_if(options.begin(), options.end(),
                                         [&](const Option &known) { return known.name == name; });
        if (option == options.end()) fail_usage(command, "unknown option '" + std::string(name) + "'");
        std::string value;
        if (option->value.empty()) {
            if (equals != word.npos) fail_usage(command, std::string(name) + " takes no value");
        } else if (equals != word.npos) {
            value = word.substr(equals + 1);
        } else {
            if (++i == words.size()) {
                fail_usage(command, std::string(name) + " needs " + std::string(option->value));
            }
            value = words[i];
        }
        arguments.options_.emplace_back(option->name, std::move(value));
    }
    return arguments;
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

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/actions.hpp"

#include <algorithm>

#include "tools/kv/subcommands.hpp"

namespace kvtool {

const Action *ActionTable::find(std::string_view action) const {
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&](const Action *candidate) { return candidate->name == action; });
    return found != actions.end() ? *found : nullptr;
}

std::string ActionTable::command_of(const Action &action) const {
    return std::string(command) + (action.name.empty() ? "" : " ") + std::string(action.name);
}

std::span<const ActionTable *const> subcommands() {
    static const ActionTable *const tables[] = {
        &calc_table(),    &env_table(),    &ini_table(),  &ls_table(),    &mat_table(),   &plot_table(),
        &profile_table(), &record_table(), &scan_table(), &timer_table(), &where_table(),
    };
    return tables;
}

const ActionTable *find_subcommand(std::string_view name) {
    const auto tables = subcommands();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const ActionTable *table) { return table->name() == name; });
    return found != tables.end() ? *found : nullptr;
}

std::span<const Option> common_options() {
    static constexpr Option kOptions[] = {
        {"--help", "", "print this text", 'h'},
        {"--version", "", "print the version of the program", 'V'},
        {"--quiet", "", "print no messages but those about the command line", 'q'},
        {"--color", "WHEN", "colours: auto (at a terminal, unless NO_COLOR is set), always, never", '\0',
         "auto always never"},
    };
    return kOptions;
}

std::vector<std::string_view> words_of(std::string_view list) {
    std::vector<std::string_view> words;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(' '), list.size());
        if (end > 0) words.push_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return words;
}

std::vector<std::string> operand_names(std::string_view operands, bool only_required) {
    std::vector<std::string> names;
    int depth = 0;
    for (const std::string_view word : words_of(operands)) {
        std::string name;
        bool required = depth == 0;
        for (const char c : word) {
            if (c == '[') ++depth;
            if (c == ']') --depth;
            if (c == '[') required = false;
            if (c != '[' && c != ']' && c != '.') name += c;
        }
        if (required || !only_required) names.push_back(std::move(name));
    }
    return names;
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// The words of a command line, told apart by the tables.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kv/actions.hpp"

namespace kvtool {

/// A command line as far as it goes; what is wrong in it is still there.
struct CommandLine {
    struct Given {
        const Option *option;  ///< null for an unknown one
        std::string word;      ///< as it was typed, without the value
        std::string value;
        bool has_value;
    };
    std::vector<std::string> names;      ///< the subcommand and the action, as they were typed
    const ActionTable *table = nullptr;  ///< null if there is no such subcommand
    const Action *action = nullptr;
    std::vector<Given> options;
    std::vector<std::string> operands;
    bool value_missing = false;  ///< of the last option
    bool ended = false;          ///< after "--"

    bool has(std::string_view option) const;
    /// What was given, for those who need not have it complete.
    Arguments arguments() const;
};

/// Tells the words apart. Options stand anywhere. An option's value is the next word, or stands after "=",
/// or right after the option's letter; letters of options without values can be joined. A word that begins
/// with "-" and is no number and not "-" alone is an option; after "--" there are only operands.
CommandLine take_apart(std::span<const char *const> words);

/// What the action can be run with. Throws Failure (kUsage) at what is wrong, with the nearest right word.
Arguments complete_arguments(const CommandLine &line);

/// The options of an action, of its subcommand and of all.
std::vector<const Option *> options_of(const ActionTable &table, const Action &action);

}  // namespace kvtool

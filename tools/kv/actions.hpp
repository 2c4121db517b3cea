// SPDX-License-Identifier: MIT
// The tables that the program is made of: subcommands, their actions, the options of these. The parser, the
// help, the completion and the manual page all read them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kv/arguments.hpp"

namespace kvtool {

struct Action {
    std::string_view name;      ///< empty for the one action of a subcommand such as `kv ls`
    std::string_view operands;  ///< "FILE SECTION [PATH VALUE]", "FILE...": completion goes by these names
    std::string_view summary;   ///< one line
    std::string_view details;   ///< the rest of the help
    std::span<const Option> options;
    std::size_t least;  ///< operands
    std::size_t most;
    int (*run)(std::string_view command, const Arguments &arguments);  ///< the exit code, or throws Failure
};

/// A subcommand with its actions.
struct ActionTable {
    std::string_view command;  ///< "kv env"
    std::string_view summary;  ///< one line
    std::span<const Action *const> actions;
    std::span<const Option> options = {};  ///< that every action knows
    std::string_view overview = {};        ///< its help after the list of the actions
    std::string_view more_details = {};    ///< of every action, after its own
    void (*prepare)(std::string_view command, const Arguments &arguments) = nullptr;  ///< before an action
    /// What an operand or a value that the tables call `kind` ("SECTION") and that begins with `word` could
    /// be, for the completion; others in the result do no harm. `arguments` is what else has been typed.
    std::vector<std::string> (*offer)(std::string_view kind, const std::string &word,
                                      const Arguments &arguments) = nullptr;

    /// "env"
    std::string_view name() const { return command.substr(command.find(' ') + 1); }
    /// The one action of a subcommand whose actions have no names, or null.
    const Action *only() const { return actions.front()->name.empty() ? actions.front() : nullptr; }
    const Action *find(std::string_view action) const;
    /// "kv env get"
    std::string command_of(const Action &action) const;
};

/// All subcommands.
std::span<const ActionTable *const> subcommands();
const ActionTable *find_subcommand(std::string_view name);

/// Options that every action knows.
std::span<const Option> common_options();

/// The names of operands: "FILE SECTION [PATH VALUE]" gives FILE, SECTION, PATH and VALUE, the required
/// ones FILE and SECTION.
std::vector<std::string> operand_names(std::string_view operands, bool only_required = false);
/// The words of a list with blanks between them.
std::vector<std::string_view> words_of(std::string_view list);

/// Options that several subcommands have.
inline constexpr Option kJsonOption = {"--json", "", "print JSON", 'j'};
inline constexpr Option kOutputOption = {"--output", "FILE", "write there instead; - is standard output",
                                         'o'};

}  // namespace kvtool

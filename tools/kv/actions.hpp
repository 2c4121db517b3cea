// Subcommands that consist of actions, such as `kv env get`: what an action is, and how the words find it.
#pragma once

#include <span>
#include <string_view>

#include "tools/kv/arguments.hpp"

namespace kvtool {

struct Action {
    std::string_view name;
    std::string_view operands;  ///< as the usage line shows them
    std::string_view summary;   ///< one line
    std::string_view details;   ///< the rest of the help
    std::span<const Option> options;
    std::size_t least;  ///< operands
    std::size_t most;
    int (*run)(std::string_view command, const Arguments &arguments);
};

/// A subcommand with its actions.
struct ActionTable {
    std::string_view command;   ///< "kv env"
    std::string_view operands;  ///< as its usage line shows them
    std::span<const Action *const> actions;
    std::span<const Option> options;  ///< that every action knows, beside --help
    std::string_view overview;        ///< its help behind the list of the actions
    std::string_view more_details;    ///< of every action, behind its own
    void (*prepare)(std::string_view command, const Arguments &arguments);  ///< before an action; or null
};

/// Prints the help, or runs the action that the words name with the rest of them; the exit code.
int run_action(const ActionTable &table, std::span<const char *const> words);

}  // namespace kvtool

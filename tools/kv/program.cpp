// SPDX-License-Identifier: MIT
#include "tools/kv/program.hpp"

#include <iostream>
#include <new>
#include <string_view>
#include <vector>

#include "kv/frame.h"
#include "kv/version.h"

#include "tools/kv/command_line.hpp"
#include "tools/kv/completion.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/help.hpp"
#include "tools/kv/manual.hpp"
#include "tools/kv/suggestion.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

std::vector<std::string> names_of_subcommands() {
    std::vector<std::string> names{"help"};
    for (const ActionTable *table : subcommands()) names.emplace_back(table->name());
    return names;
}

std::vector<std::string> names_of_actions(const ActionTable &table) {
    std::vector<std::string> names;
    for (const Action *action : table.actions) names.emplace_back(action->name);
    return names;
}

[[noreturn]] void fail_subcommand(const std::string &name) {
    fail_usage("kv", "there is no subcommand '" + name + "'" + suggestion(name, names_of_subcommands()));
}

[[noreturn]] void fail_action(const ActionTable &table, const std::string &name) {
    fail_usage(table.command,
               "there is no action '" + name + "'" + suggestion(name, names_of_actions(table)));
}

// `kv help`, `kv help env`, `kv help env get`.
int run_help(const std::vector<std::string> &names) {
    if (names.empty()) {
        print_help();
        return kDone;
    }
    const ActionTable *table = find_subcommand(names[0]);
    if (table == nullptr) fail_subcommand(names[0]);
    if (names.size() == 1 || table->only() != nullptr) {
        print_help(*table);
        return kDone;
    }
    const Action *action = table->find(names[1]);
    if (action == nullptr) fail_action(*table, names[1]);
    print_help(*table, *action);
    return kDone;
}

void apply_common_options(const CommandLine &line) {
    const Arguments given = line.arguments();
    const std::string when = given.value("--color", "auto");
    if (when == "always") set_colors(Colors::always);
    if (when == "never") set_colors(Colors::never);
    if (given.has("--quiet")) set_quiet(true);
}

int run(std::span<const char *const> words) {
    const std::string_view first = words.empty() ? "" : words.front();
    if (first == "complete") return run_completion(words.subspan(1));
    if (first == "manual") return print_manual();

    const CommandLine line = take_apart(words);
    apply_common_options(line);
    if (line.has("--version")) {
        std::cout << "kv " << kv_version() << '\n';
        return kDone;
    }
    const std::string name = line.names.empty() ? "" : line.names[0];
    if (name == "help") return run_help(line.operands);
    if (line.table == nullptr) {
        if (!name.empty()) fail_subcommand(name);
        if (line.has("--help")) return run_help({});
        if (!line.options.empty())
            fail_usage("kv", "which subcommand is '" + line.options[0].word + "' for?");
        fail_usage("kv", "which subcommand?");
    }
    if (line.action == nullptr) {
        const std::string action = line.names.size() > 1 ? line.names[1] : "";
        if (action == "help") {
            std::vector<std::string> names{name};
            names.insert(names.end(), line.operands.begin(), line.operands.end());
            return run_help(names);
        }
        if (!action.empty()) fail_action(*line.table, action);
        if (line.has("--help")) return run_help({name});
        fail_usage(line.table->command, "which action?");
    }
    if (line.has("--help")) {
        print_help(*line.table, *line.action);
        return kDone;
    }
    const Arguments arguments = complete_arguments(line);
    const std::string command = line.table->command_of(*line.action);
    if (line.table->prepare != nullptr) line.table->prepare(command, arguments);
    return line.action->run(command, arguments);
}

// What is wrong in the command line is told to those, too, who want no messages.
int tell(int code, std::string_view text) {
    std::cout.flush();
    if (quiet() && code != kUsage) return code;
    std::cerr.clear();
    const std::size_t command = text.starts_with("kv") ? text.find(": ") : text.npos;
    const std::size_t name = command != text.npos ? command + 1 : 0;
    std::cerr << styled(std::cerr, Style::error, text.substr(0, name)) << text.substr(name) << '\n';
    return code;
}

int run_reporting(std::span<const char *const> words) {
    try {
        return run(words);
    } catch (const Failure &failure) {
        return tell(failure.code, failure.text);
    } catch (const std::bad_alloc &) {
        return tell(kFile, "kv: there is not enough memory");
    } catch (const std::exception &exception) {
        return tell(kFile, std::string("kv: ") + exception.what());
    }
}

}  // namespace

int run_program(std::span<const char *const> words) {
    kv_error_onoff(0);  // the user reads standard error, not the log
    set_colors(Colors::automatic);
    set_quiet(false);
    release_standard_input();
    const int code = run_reporting(words);
    if (std::cout.flush()) return code;
    std::cerr << "kv: standard output cannot be written\n";
    return kFile;
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/help.hpp"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

std::string heading(std::string_view text) {
    return styled(std::cout, Style::heading, text);
}

void print_options(std::string_view title, std::span<const Option> options) {
    if (options.empty()) return;
    std::cout << '\n' << heading(title) << '\n';
    for (const Option &option : options) {
        std::cout << "  " << std::left << std::setw(22) << forms_of(option) << ' ' << option.help;
        std::cout << '\n';
    }
}

void print_list(std::string_view title,
                const std::vector<std::pair<std::string_view, std::string_view>> &rows) {
    std::size_t width = 0;
    for (const auto &[name, summary] : rows) width = std::max(width, name.size());
    std::cout << heading(title) << '\n';
    for (const auto &[name, summary] : rows) {
        std::cout << "  " << std::left << std::setw(static_cast<int>(width)) << name << "  " << summary
                  << '\n';
    }
}

void print_usage(const std::string &command, std::string_view operands) {
    std::cout << heading("Usage:") << ' ' << command << (operands.empty() ? "" : " ") << operands;
}

}  // namespace

std::string forms_of(const Option &option) {
    std::string forms = option.letter != '\0' ? std::string("-") + option.letter + ", " : "    ";
    forms += option.name;
    if (!option.value.empty()) forms.append(" ").append(option.value);
    return forms;
}

void print_help() {
    print_usage("kv", "SUBCOMMAND [ACTION] [OPERAND]... [OPTION]...\n");
    std::cout << "       kv help [SUBCOMMAND [ACTION]]\n       kv --version\n\n";
    std::vector<std::pair<std::string_view, std::string_view>> rows;
    for (const ActionTable *table : subcommands()) rows.emplace_back(table->name(), table->summary);
    print_list("Subcommands:", rows);
    print_options("Options of all:", common_options());
    std::cout << R"(
Options stand anywhere; behind -- there are none. The file - is standard input or output. Data goes
to standard output, messages to standard error. Exit codes: 0 done; 1 not found, or a check failed;
2 wrong usage; 3 a file cannot be read or written, or breaks its format.
)";
}

void print_help(const ActionTable &table, const Action &action) {
    print_usage(table.command_of(action), action.operands);
    std::cout << " [OPTION]...\n\n" << action.details << table.more_details;
    print_options("Options:", action.options);
    print_options(action.options.empty() ? "Options:" : "Options of every action:", table.options);
    print_options("Options of all:", common_options());
}

void print_help(const ActionTable &table) {
    if (const Action *only = table.only(); only != nullptr) {
        print_help(table, *only);
        return;
    }
    print_usage(std::string(table.command), "ACTION [OPERAND]... [OPTION]...\n\n");
    std::vector<std::pair<std::string_view, std::string_view>> rows;
    for (const Action *action : table.actions) rows.emplace_back(action->name, action->summary);
    print_list("Actions:", rows);
    print_options("Options of every action:", table.options);
    std::cout << "\n'" << table.command << " ACTION --help' describes one.\n" << table.overview;
}

}  // namespace kvtool

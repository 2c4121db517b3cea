#include "tools/kv/actions.hpp"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

constexpr Option kHelpOptions[] = {{"--help", "", "this text"}, {"-h", "", ""}};

void print_options(std::span<const Option> options) {
    for (const Option &option : options) {
        if (option.help.empty()) continue;
        const std::string left =
            std::string(option.name) + (option.value.empty() ? "" : " ") + std::string(option.value);
        std::cout << "  " << std::left << std::setw(20) << left << ' ' << option.help << '\n';
    }
}

void print_help(const ActionTable &table) {
    std::cout << "Usage: " << table.command << ' ' << table.operands << "\n\nActions:\n";
    for (const Action *action : table.actions) {
        std::cout << "  " << std::left << std::setw(8) << action->name << ' ' << action->summary << '\n';
    }
    std::cout << table.overview;
}

void print_help(const ActionTable &table, const Action &action) {
    std::cout << "Usage: " << table.command << ' ' << action.name << (action.operands.empty() ? "" : " ")
              << action.operands << "\n\n"
              << action.details << table.more_details << "\nOptions:\n";
    print_options(action.options);
    print_options(table.options);
    print_options(kHelpOptions);
}

}  // namespace

int run_action(const ActionTable &table, std::span<const char *const> words) {
    const std::string_view name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        print_help(table);
        return kDone;
    }
    if (name.empty()) fail_usage(table.command, "which action?");
    const auto found = std::find_if(table.actions.begin(), table.actions.end(),
                                    [&](const Action *action) { return action->name == name; });
    if (found == table.actions.end()) fail_usage(table.command, "no action '" + std::string(name) + "'");
    const Action &action = **found;

    const std::string command = std::string(table.command) + " " + std::string(name);
    std::vector<Option> options(action.options.begin(), action.options.end());
    options.insert(options.end(), table.options.begin(), table.options.end());
    options.insert(options.end(), std::begin(kHelpOptions), std::end(kHelpOptions));
    const Arguments arguments = Arguments::parse(command, words.subspan(1), options);
    if (arguments.has("--help") || arguments.has("-h")) {
        print_help(table, action);
        return kDone;
    }
    const std::size_t count = arguments.operands().size();
    if (count < action.least || count > action.most) {
        fail_usage(command,
                   action.operands.empty() ? "wants no operand" : "wants " + std::string(action.operands));
    }
    if (table.prepare != nullptr) table.prepare(command, arguments);
    return action.run(command, arguments);
}

}  // namespace kvtool

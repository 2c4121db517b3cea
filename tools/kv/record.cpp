// `kv record`: record files. The table of actions, and their help.
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "failure.hpp"
#include "record_action.hpp"
#include "record_format.hpp"
#include "subcommands.hpp"

namespace kvtool {

namespace {

const RecordAction *const kActions[] = {&kRecordDump, &kRecordWrite};

constexpr Option kHelpOption = {"--help", "", "this text"};

void print_help() {
    std::cout << "Usage: kv record ACTION FILE FORMAT ...\n\nActions:\n";
    for (const RecordAction *action : kActions) {
        std::cout << "  " << std::left << std::setw(6) << action->name << ' ' << action->summary << '\n';
    }
    std::cout << '\n'
              << kFormatHelp << R"(
A record file begins with a header of 16 bytes that tells the byte order of its values; in files
without one (--no-header) it is that of this library, little-endian. 'kv record ACTION --help'
describes an action.

Exit codes: 0 done; 2 wrong usage, or a value that does not fit its field; 3 a file cannot be
read or written, or is not made of such records.
)";
}

void print_help(const RecordAction &action) {
    std::cout << "Usage: kv record " << action.name << ' ' << action.operands << "\n\n"
              << action.details << '\n'
              << kFormatHelp << "\nOptions:\n";
    for (const Option &option : action.options) {
        std::cout << "  " << std::left << std::setw(12) << option.name << ' ' << option.help << '\n';
    }
    std::cout << "  " << std::left << std::setw(12) << kHelpOption.name << ' ' << kHelpOption.help << '\n';
}

}  // namespace

int run_record(std::span<const char *const> words) {
    const std::string_view name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        print_help();
        return kDone;
    }
    if (name.empty()) fail_usage("kv record", "which action?");
    const auto found = std::find_if(std::begin(kActions), std::end(kActions),
                                    [&](const RecordAction *action) { return action->name == name; });
    if (found == std::end(kActions)) fail_usage("kv record", "no action '" + std::string(name) + "'");
    const RecordAction &action = **found;

    const std::string command = "kv record " + std::string(name);
    std::vector<Option> options(action.options.begin(), action.options.end());
    options.push_back(kHelpOption);
    const Arguments arguments = Arguments::parse(command, words.subspan(1), options);
    if (arguments.has("--help")) {
        print_help(action);
        return kDone;
    }
    const std::size_t count = arguments.operands().size();
    if (count < 2 || (count > 2 && !action.takes_values)) {
        fail_usage(command, "wants " + std::string(action.operands));
    }
    return action.run(command, arguments);
}

}  // namespace kvtool

// `kv env`: the table of actions, and their help.
#include "kv/env.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <limits>

#include "env_action.hpp"
#include "failure.hpp"
#include "subcommands.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kEnvShow,   &kEnvGet,    &kEnvNames, &kEnvCount, &kEnvSet,
                                  &kEnvDelete, &kEnvInsert, &kEnvEdit,  &kEnvMerge, &kEnvCheck};

constexpr Option kCommonOptions[] = {
    {"--delimiter", "TEXT", "the characters that separate the names of a PATH (default @)"},
    {"--help", "", "this text"},
};

void print_options(std::span<const Option> options) {
    for (const Option &option : options) {
        const std::string left =
            std::string(option.name) + (option.value.empty() ? "" : " ") + std::string(option.value);
        std::cout << "  " << std::left << std::setw(20) << left << ' ' << option.help << '\n';
    }
}

void print_help() {
    std::cout << "Usage: kv env ACTION FILE ...\n"
                 "\n"
                 "Actions:\n";
    for (const Action *action : kActions) {
        std::cout << "  " << std::left << std::setw(8) << action->name << ' ' << action->summary << '\n';
    }
    std::cout << R"(
'kv env ACTION --help' describes one. Every action knows --delimiter TEXT.

Addresses. SECTION is the name in brackets. PATH is the names from the section down to the
element, separated by @. A name followed by digits is the so many-th element of that name:
axis@2@limits is "limits" in the second "axis"; without digits it is the first. 0 is the first
element of the block, whatever its name. Digits behind a name are always an index: an element
that is itself named 7, in the block slot, is slot@1@7. Where a name has an @, choose another
delimiter: --delimiter / users/jane@plant. A PATH has at most 1023 characters and 97 delimiters.

Files are named as usual (x.env, ./x.env, /home/me/x.env); C:\x.env is on the library's drive C.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise. Options may stand anywhere; behind -- there are none. -5 is a value.

Exit codes: 0 done; 1 not found, or a check failed; 2 wrong usage; 3 a file cannot be read or
written, or breaks the format.
)";
}

void print_help(const Action &action) {
    std::cout << "Usage: kv env " << action.name << ' ' << action.operands << "\n\n" << action.details;
    std::cout << "\nOptions:\n";
    print_options(action.options);
    print_options(kCommonOptions);
}

// The library splits paths at 254 characters at most.
void set_delimiter(std::string_view command, const std::string &delimiter) {
    if (delimiter.empty() || delimiter.size() > 254) {
        fail_usage(command, "--delimiter needs 1 to 254 characters");
    }
    env_set_delimiter(delimiter.c_str());
}

}  // namespace

int run_env(std::span<const char *const> words) {
    const std::string_view name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        print_help();
        return kDone;
    }
    if (name.empty()) fail_usage("kv env", "which action?");
    const auto found = std::find_if(std::begin(kActions), std::end(kActions),
                                    [&](const Action *action) { return action->name == name; });
    if (found == std::end(kActions)) fail_usage("kv env", "no action '" + std::string(name) + "'");
    const Action &action = **found;

    const std::string command = "kv env " + std::string(name);
    std::vector<Option> options(action.options.begin(), action.options.end());
    options.insert(options.end(), std::begin(kCommonOptions), std::end(kCommonOptions));
    const Arguments arguments = Arguments::parse(command, words.subspan(1), options);
    if (arguments.has("--help")) {
        print_help(action);
        return kDone;
    }
    const std::size_t count = arguments.operands().size();
    if (count < action.least || count > action.most) {
        fail_usage(command, "wants " + std::string(action.operands));
    }
    if (arguments.has("--delimiter")) set_delimiter(command, arguments.value("--delimiter", ""));
    return action.run(command, arguments);
}

}  // namespace kvtool

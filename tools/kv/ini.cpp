// `kv ini`: the table of actions, and their help.
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "kv/config.h"

#include "failure.hpp"
#include "ini_action.hpp"
#include "subcommands.hpp"
#include "unreadable.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kIniGet, &kIniSections, &kIniKeys,   &kIniList,
                                  &kIniSet, &kIniDelete,   &kIniRename, &kIniEdit};

constexpr Option kCommonOptions[] = {
    {"--file", "FILE", "the INI file; without it the main configuration file"},
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
    std::cout << "Usage: kv ini ACTION ... [--file FILE]\n"
                 "\n"
                 "Actions:\n";
    for (const Action *action : kActions) {
        std::cout << "  " << std::left << std::setw(8) << action->name << ' ' << action->summary << '\n';
    }
    std::cout << R"(
'kv ini ACTION --help' describes one. Every action knows --file FILE; without it the main
configuration file, kv3.ini, is meant: the one in the current directory, in the directory that
the environment variable KV names, or in C:\.

SECTION is the name in brackets; '' is the unnamed section, the entries before the first header.
Names are compared byte for byte. Where a section or a key is there twice, the first one counts.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise. Behind -- there are no options.

Exit codes: 0 done; 1 not found; 2 wrong usage, or a request for what a file cannot hold; 3 a
file cannot be read or written.
)";
}

void print_help(const Action &action) {
    std::cout << "Usage: kv ini " << action.name << (action.operands.empty() ? "" : " ") << action.operands
              << "\n\n"
              << action.details;
    std::cout << "\nOptions:\n";
    print_options(action.options);
    print_options(kCommonOptions);
}

}  // namespace

std::string ini_file(const Arguments &arguments) {
    std::string file = arguments.value("--file", "");
    if (!file.empty()) return file;
    if (arguments.has("--file")) throw Failure{kUsage, "kv ini: --file needs a name"};
    char found[256];
    if (kv_suche_datei(nullptr, nullptr, nullptr, found) != 0) {
        throw Failure{kFile, "kv ini: there is no main configuration file kv3.ini; name one with --file"};
    }
    return found;
}

std::string describe_ini(const std::string &section, const char *key) {
    std::string text = section.empty() ? "the unnamed section" : "[" + section + "]";
    if (key != nullptr) text.append(section.empty() ? ": " : " ").append(key);
    return text;
}

void require_readable(const std::string &file) {
    int32_t size = 0;
    if (ini_read_sections(file.c_str(), nullptr, &size) != INI_FAILED) return;
    throw Failure{kFile, why_unreadable(file).text};
}

void require_ini(int32_t status, const std::string &file, const std::string &section, const char *key) {
    switch (status) {
        case INI_OK:
            return;
        case INI_NO_SECTION:
            throw Failure{kNotFound, file + ": " + describe_ini(section, nullptr) + " not found"};
        case INI_NO_ENTRY:
            throw Failure{kNotFound, file + ": " + describe_ini(section, key) + " not found"};
        default:
            require_readable(file);
            throw Failure{kFile, file + ": cannot be read"};
    }
}

int run_ini(std::span<const char *const> words) {
    const std::string_view name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        print_help();
        return kDone;
    }
    if (name.empty()) fail_usage("kv ini", "which action?");
    const auto *const found = std::find_if(std::begin(kActions), std::end(kActions),
                                           [&](const Action *action) { return action->name == name; });
    if (found == std::end(kActions)) fail_usage("kv ini", "no action '" + std::string(name) + "'");
    const Action &action = **found;

    const std::string command = "kv ini " + std::string(name);
    std::vector<Option> options(action.options.begin(), action.options.end());
    options.insert(options.end(), std::begin(kCommonOptions), std::end(kCommonOptions));
    const Arguments arguments = Arguments::parse(command, words.subspan(1), options);
    if (arguments.has("--help")) {
        print_help(action);
        return kDone;
    }
    const std::size_t count = arguments.operands().size();
    if (count < action.least || count > action.most) {
        fail_usage(command,
                   action.operands.empty() ? "wants no operand" : "wants " + std::string(action.operands));
    }
    return action.run(command, arguments);
}

}  // namespace kvtool

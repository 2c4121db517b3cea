// `kv profile` and `kv mat`: the tables of actions, and their help.
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "failure.hpp"
#include "profile_action.hpp"
#include "subcommands.hpp"

namespace kvtool {

namespace {

constexpr TableFamily kProfiles = {"kv profile", "profiles", ".pro", "Profile", profil_open};
constexpr TableFamily kMats = {
    "kv mat", "mats", ".mtt", "Matten",
    [](const char *path, const char *const *names, const double *) { return matte_open(path, names); }};

const TableAction *const kProfileActions[] = {&kTableList, &kTableGet, &kTableFind, &kProfileDraw};
const TableAction *const kMatActions[] = {&kTableList, &kTableGet, &kTableFind};

constexpr Option kCommonOptions[] = {
    {"--dir", "DIR", "the directory of the tables"},
    {"--table", "TABLE", "this table alone: its name in the directory, or its path"},
    {"--help", "", "this text"},
    {"-h", "", ""},
};

void print_options(std::span<const Option> options) {
    for (const Option &option : options) {
        if (option.help.empty()) continue;
        const std::string left =
            std::string(option.name) + (option.value.empty() ? "" : " ") + std::string(option.value);
        std::cout << "  " << std::left << std::setw(18) << left << ' ' << option.help << '\n';
    }
}

void print_help(const TableFamily &family, std::span<const TableAction *const> actions) {
    std::cout << "Usage: " << family.command << " ACTION ... [--dir DIR] [--table TABLE]\n\nActions:\n";
    for (const TableAction *action : actions) {
        std::cout << "  " << std::left << std::setw(5) << action->name << ' ' << action->summary << '\n';
    }
    std::cout << "\n'" << family.command << R"( ACTION --help' describes one. The tables are the files *)"
              << family.extension << " of\nthe directory that --dir names, else the entry "
              << family.setting << R"( in section System of
the main configuration file, else the current directory.

Values have the units of the tables: mm for dimensions, cm and its powers for what is derived
from them. With --si they are in metres and their powers.

Exit codes: 0 done; 1 not found; 2 wrong usage; 3 a table cannot be read or a file not be written.
)";
}

void print_help(const TableFamily &family, const TableAction &action) {
    std::cout << "Usage: " << family.command << ' ' << action.name << ' ' << action.operands << "\n\n"
              << action.details << "\nOptions:\n";
    print_options(action.options);
    print_options(kCommonOptions);
}

int run(const TableFamily &family, std::span<const TableAction *const> actions,
        std::span<const char *const> words) {
    const std::string_view name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h") {
        print_help(family, actions);
        return kDone;
    }
    if (name.empty()) fail_usage(family.command, "which action?");
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&](const TableAction *action) { return action->name == name; });
    if (found == actions.end()) fail_usage(family.command, "no action '" + std::string(name) + "'");
    const TableAction &action = **found;

    const std::string command = std::string(family.command) + " " + std::string(name);
    std::vector<Option> options(action.options.begin(), action.options.end());
    options.insert(options.end(), std::begin(kCommonOptions), std::end(kCommonOptions));
    const Arguments arguments = Arguments::parse(command, words.subspan(1), options);
    if (arguments.has("--help") || arguments.has("-h")) {
        print_help(family, action);
        return kDone;
    }
    const std::size_t count = arguments.operands().size();
    if (count < action.least || count > action.most) {
        fail_usage(command, "wants " + std::string(action.operands));
    }
    return action.run(family, arguments);
}

}  // namespace

int run_profile(std::span<const char *const> words) {
    return run(kProfiles, kProfileActions, words);
}

int run_mat(std::span<const char *const> words) {
    return run(kMats, kMatActions, words);
}

}  // namespace kvtool

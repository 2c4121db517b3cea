// `kv profile` and `kv mat`: the tables of actions, and their help.
#include <string>

#include "tools/kv/profile/action.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr TableFamily kProfiles = {"kv profile", "profiles", ".pro", "Profile", profil_open};
constexpr TableFamily kMats = {
    "kv mat", "mats", ".mtt", "Matten",
    [](const char *path, const char *const *names, const double *) { return matte_open(path, names); }};

const Action *const kProfileActions[] = {&kTableList, &kTableGet, &kTableFind, &kProfileDraw};
const Action *const kMatActions[] = {&kTableList, &kTableGet, &kTableFind};

constexpr Option kOptions[] = {
    {"--dir", "DIR", "the directory of the tables"},
    {"--table", "TABLE", "this table alone: its name in the directory, or its path"},
};

// What a script passes on from a variable that is not set would ask for everything.
void refuse_empty(std::string_view command, const Arguments &arguments) {
    for (const std::string_view option :
         {"--dir", "--table", "--columns", "--type", "--sort", "--output"}) {
        for (const std::string &value : arguments.values(option)) {
            if (without_blanks(value).empty()) fail_usage(command, std::string(option) + " is empty");
        }
    }
    for (const std::string &operand : arguments.operands()) {
        if (without_blanks(operand).empty()) fail_usage(command, "a name or a condition is empty");
    }
}

int run(const TableFamily &family, std::span<const Action *const> actions,
        std::span<const char *const> words) {
    const std::string overview =
        "\n'" + std::string(family.command) + " ACTION --help' describes one. The tables are the files *" +
        family.extension + " of\nthe directory that --dir names, else the entry " + family.setting +
        R"( in section System of
the main configuration file, else the current directory.

Values have the units of the tables: mm for dimensions, cm and its powers for what is derived
from them. With --si they are in metres and their powers.

Exit codes: 0 done; 1 not found; 2 wrong usage; 3 a table cannot be read or a file not be written.
)";
    return run_action({family.command, "ACTION ... [--dir DIR] [--table TABLE]", actions, kOptions,
                       overview, "", refuse_empty},
                      words);
}

}  // namespace

const TableFamily &family_of(std::string_view command) {
    return command.starts_with(kMats.command) ? kMats : kProfiles;
}

int run_profile(std::span<const char *const> words) {
    return run(kProfiles, kProfileActions, words);
}

int run_mat(std::span<const char *const> words) {
    return run(kMats, kMatActions, words);
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// `kv profile` and `kv mat`: the tables of actions, and their help.
#include <string>

#include "tools/kv/profile/action.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr TableFamily kProfiles = {"kv profile", "profiles", ".pro", "Profile", profil_open, "kg/m", true};
constexpr TableFamily kMats = {
    "kv mat",
    "mats",
    ".mtt",
    "Matten",
    [](const char *path, const char *const *names, const double *) { return matte_open(path, names); },
    "kg/m2",
    false};

const Action *const kProfileActions[] = {&kTableList, &kTableGet, &kTableFind, &kProfileDraw,
                                         &kProfileCompare};
const Action *const kMatActions[] = {&kTableList, &kTableGet, &kTableFind};

constexpr Option kOptions[] = {
    {"--dir", "DIR", "the directory of the tables"},
    {"--table", "TABLE", "this table alone: its name in the directory, or its path"},
};

// What a script passes on from a variable that is not set would ask for everything.
void refuse_empty(std::string_view command, const Arguments &arguments) {
    for (const std::string_view option :
         {"--dir", "--table", "--columns", "--type", "--sort", "--output", "--units"}) {
        for (const std::string &value : arguments.values(option)) {
            if (without_blanks(value).empty()) fail_usage(command, std::string(option) + " is empty");
        }
    }
    for (const std::string &operand : arguments.operands()) {
        if (without_blanks(operand).empty()) fail_usage(command, "a name or a condition is empty");
    }
}

std::vector<std::string> offer_profiles(std::string_view kind, const std::string &word,
                                        const Arguments &arguments) {
    return offer_of_tables(kProfiles, kind, word, arguments);
}

std::vector<std::string> offer_mats(std::string_view kind, const std::string &word,
                                    const Arguments &arguments) {
    return offer_of_tables(kMats, kind, word, arguments);
}

std::string overview_of(const TableFamily &family) {
    return std::string("\nThe tables are the files *") + family.extension +
           " of the directory that --dir names, else the entry\n" + family.setting +
           R"( in section System of the main configuration file, else the current directory.

Values have the units of the tables: mm for dimensions, cm and its powers for what is derived
from them. With --units all of them are in mm, cm or m and their powers. The mass m is in kg/m; where
a table of profiles has none it is that of steel, 0.785 A.

Exit codes: 0 done; 1 not found; 2 wrong usage; 3 a table cannot be read or a file not be written.
)";
}

}  // namespace

const TableFamily &family_of(std::string_view command) {
    return command.starts_with(kMats.command) ? kMats : kProfiles;
}

const ActionTable &profile_table() {
    static const std::string overview = overview_of(kProfiles);
    static const ActionTable table{
        kProfiles.command, "look into tables of profiles, and draw cross-sections",
        kProfileActions,   kOptions,
        overview,          "",
        refuse_empty,      offer_profiles};
    return table;
}

const ActionTable &mat_table() {
    static const std::string overview = overview_of(kMats);
    static const ActionTable table{
        kMats.command, "look into tables of mats", kMatActions, kOptions, overview, "", refuse_empty,
        offer_mats};
    return table;
}

}  // namespace kvtool

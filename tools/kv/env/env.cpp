// `kv env`: the table of actions, and their help.
#include "kv/env.h"

#include "tools/kv/env/action.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kEnvShow,   &kEnvGet,    &kEnvNames, &kEnvCount, &kEnvSet,
                                  &kEnvDelete, &kEnvInsert, &kEnvEdit,  &kEnvMerge, &kEnvCheck};

constexpr Option kOptions[] = {
    {"--delimiter", "TEXT", "the characters that separate the names of a PATH (default @)"},
};

constexpr std::string_view kOverview = R"(
Addresses. SECTION is the name in brackets. PATH is the names from the section down to the
element, separated by @. A name followed by digits is the so many-th element of that name:
axis@2@limits is "limits" in the second "axis"; without digits it is the first. 0 is the first
element of the block, whatever its name. Digits behind a name are always an index: an element
that is itself named 7, in the block slot, is slot@1@7. Where a name has an @, choose another
delimiter: --delimiter / users/jane@plant. A PATH has at most 1023 characters and 97 delimiters.

Files are named as usual (x.env, ./x.env, /home/me/x.env); C:\x.env is on the library's drive C.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise.

Exit codes: 0 done; 1 not found, or a check failed; 2 wrong usage; 3 a file cannot be read or
written, or breaks the format.
)";

// The library splits paths at 254 characters at most.
void set_delimiter(std::string_view command, const Arguments &arguments) {
    if (!arguments.has("--delimiter")) return;
    const std::string delimiter = arguments.value("--delimiter", "");
    if (delimiter.empty() || delimiter.size() > 254) {
        fail_usage(command, "--delimiter needs 1 to 254 characters");
    }
    env_set_delimiter(delimiter.c_str());
}

}  // namespace

const ActionTable &env_table() {
    static const ActionTable table{
        "kv env",     "read, edit, merge and check environment files", kActions, kOptions, kOverview, "",
        set_delimiter};
    return table;
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// `kv env`: the table of actions, and their help.
#include "kv/env.h"

#include <map>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/missing.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kEnvShow,   &kEnvGet,  &kEnvNames, &kEnvCount, &kEnvSet,  &kEnvDelete,
                                  &kEnvInsert, &kEnvEdit, &kEnvMerge, &kEnvCheck, &kEnvDiff, &kEnvFormat};

constexpr Option kOptions[] = {
    {"--delimiter", "TEXT", "the characters that separate the names of a PATH (default @)"},
};

constexpr std::string_view kOverview = R"(
Addresses. SECTION is the name in brackets. PATH is the names from the section down to the
element, separated by @. Digits after a name count the elements of that name:
axis@2@limits is "limits" in the second "axis"; without digits it is the first. 0 is the first
element of the block, whatever its name. Digits behind a name are always an index: an element
that is itself named 7, in the block slot, is slot@1@7. Where a name has an @, choose another
delimiter: --delimiter / users/jane@plant. A PATH has at most 1023 characters and 97 delimiters.

Files are named as usual (x.env, ./x.env, /home/me/x.env); C:\x.env is on the library's drive C.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise.

Exit codes: 0 done; 1 not found, or a check failed; 2 wrong usage; 3 a file cannot be read or
written, or breaks the format. FILE may be -: a change of it goes to standard output.
)";

// The library splits paths at 254 characters at most.
void set_delimiter(std::string_view command, const Arguments &arguments) {
    const std::string delimiter = arguments.value("--delimiter", "@");
    if (delimiter.empty() || delimiter.size() > 254) {
        fail_usage(command, "--delimiter needs 1 to 254 characters");
    }
    env_set_delimiter(delimiter.c_str());
}

// The elements of the block that the path leads into, as paths; of those of one name each one.
std::vector<std::string> paths_from(ENV *env, const std::string &section, const std::string &word) {
    const std::string delimiters = env_get_delimiter();
    const std::size_t end = word.find_last_of(delimiters);
    const std::string block = end != word.npos ? word.substr(0, end) : "";
    const std::string before = end != word.npos ? word.substr(0, end + 1) : "";
    const std::vector<std::string> names =
        names_in(env, section.c_str(), block.empty() ? nullptr : block.c_str(), 1);
    std::map<std::string, int> counts;
    for (const std::string &name : names) ++counts[name];
    std::vector<std::string> paths;
    std::map<std::string, int> met;
    for (const std::string &name : names) {
        const int occurrence = ++met[name];
        const std::string index = delimiters.substr(0, 1) + std::to_string(occurrence);
        if (occurrence == 1) paths.push_back(before + name);
        if (counts[name] > 1) paths.push_back((before + name).append(index));
    }
    return paths;
}

// What the completion offers of the file that is named first; the section stands right before its path.
std::vector<std::string> offer(std::string_view kind, const std::string &word, const Arguments &arguments) {
    const std::vector<std::string> &operands = arguments.operands();
    if (operands.empty() || is_standard(operands[0])) return {};
    const Tree tree = new_tree();
    std::string problem;
    if (try_load(operands[0], tree.get(), problem) != LoadResult::done) return {};
    if (kind == "SECTION") return names_in(tree.get(), nullptr, nullptr, 1);
    if (kind == "PATH") return paths_from(tree.get(), operands.back(), word);
    return {};
}

}  // namespace

const ActionTable &env_table() {
    static const ActionTable table{"kv env",      "read, edit, merge and check environment files",
                                   kActions,      kOptions,
                                   kOverview,     "",
                                   set_delimiter, offer};
    return table;
}

}  // namespace kvtool

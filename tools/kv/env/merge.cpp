// SPDX-License-Identifier: MIT
// `kv env merge`: the texts of one file into another.
#include "tools/kv/env/action.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/in_place.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace {

struct Mode {
    std::string_view name;
    int32_t value;
};

constexpr Mode kModes[] = {
    {"add", ENV_SINK_ADD},
    {"append", ENV_SINK_APPEND},
    {"replace", ENV_SINK_REPLACE},
    {"update", ENV_SINK_UPDATE},
};

void merge(const std::string &file, const std::string &shown, const ENV_EDIT &edit) {
    int32_t reached = 0;
    const int32_t status = env_edit_file(file.c_str(), &edit, 1, &reached);
    if (status == ENV_OK) return;
    if (status == ENV_SYNTAX) throw Failure{kFile, syntax_problem(shown)};
    if (status == ENV_DATA) {
        throw Failure{kNotFound, shown +
                                     ": a text would have to become a block, which only --mode replace "
                                     "does; nothing was saved"};
    }
    if (reached == 1) throw Failure{kFile, shown + ": could not be saved: " + save_failure_reason(file)};
    throw Failure{kFile, shown + ": not merged, and nothing saved"};
}

int run_merge(std::string_view, const Arguments &arguments) {
    const std::string mode_name = arguments.value("--mode", "add");
    const Mode *mode = std::begin(kModes);
    while (mode->name != mode_name) ++mode;  // one of them, as the table of options says

    const std::string &destination_file = arguments.operands()[1];
    const char *section = operand(arguments, 2);
    const char *path = operand(arguments, 3);
    if (path != nullptr) Path{path};
    const Tree source = new_tree();
    load(arguments.operands()[0], source.get());
    if (section != nullptr && env_count_elements(source.get(), section, path, 1) == 0) {
        throw Failure{kNotFound, arguments.operands()[0] + ": " + describe(section, path) +
                                     " is no block with elements"};
    }
    const ENV_EDIT edit = {ENV_EDIT_MERGE, section, path, nullptr, nullptr, source.get(), mode->value};
    change(destination_file, arguments,
           [&](const std::string &file, const std::string &shown) { merge(file, shown, edit); });
    return kDone;
}

constexpr Option kOptions[] = {
    {"--mode", "MODE", "add, append, replace or update (default add)", '\0', "add append replace update"},
    kOutputOption,
};

}  // namespace

const Action kEnvMerge = {
    "merge",
    "SOURCE DESTINATION [SECTION [PATH]]",
    "merge the texts of a file, or of one block, into another file",
    R"(Brings the texts of SOURCE, or of one of its blocks, into DESTINATION, at the addresses that
they have in SOURCE (the second axis goes to the second axis), and saves DESTINATION. The modes:
  add      only what DESTINATION does not have
  append   everything, behind the elements of the same name
  replace  everything, over what DESTINATION has or new
  update   only what DESTINATION has already
Blocks without a text in them are not merged. A text of DESTINATION becomes a block only with
replace: where SOURCE has a text below it, the other modes give exit code 1, and nothing is
saved. What does not change in DESTINATION stays as it is, byte for byte.
)",
    kOptions,
    2,
    4,
    run_merge,
};

}  // namespace kvtool

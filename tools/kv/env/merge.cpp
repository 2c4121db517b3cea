// `kv env merge`: the texts of one file into another.
#include "tools/kv/env/action.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"

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

int run_merge(std::string_view, const Arguments &arguments) {
    const std::string mode_name = arguments.value("--mode", "add");
    const Mode *mode = std::begin(kModes);
    while (mode->name != mode_name) ++mode;  // one of them, as the table of options says

    const std::string &destination_file = arguments.operands()[1];
    const char *section = operand(arguments, 2);
    const char *path = operand(arguments, 3);
    if (path != nullptr) Path{path};
    const Tree source = new_tree();
    const Tree destination = new_tree();
    load(arguments.operands()[0], source.get());
    load(destination_file, destination.get());

    int32_t result;
    if (section == nullptr) {
        result = env_sink(destination.get(), source.get(), mode->value);
    } else {
        if (env_count_elements(source.get(), section, path, 1) == 0) {
            throw Failure{kNotFound, arguments.operands()[0] + ": " + describe(section, path) +
                                         " is no block with elements"};
        }
        result = env_copy_block(destination.get(), source.get(), section, path, mode->value);
    }
    if (result != ENV_OK) throw Failure{kFile, destination_file + ": not merged, and nothing saved"};
    save(destination.get(), arguments.value("--output", destination_file));
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
Blocks without a text in them are not merged.
)",
    kOptions,
    2,
    4,
    run_merge,
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// `kv env names` and `kv env count`: what a block holds.
#include <iostream>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/missing.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

// The block that the operands after FILE address, in the tree of FILE.
class AddressedBlock {
  public:
    explicit AddressedBlock(const Arguments &arguments)
        : exact_(arguments.has("--any-depth") ? 0 : 1),
          section_(operand(arguments, 1)),
          path_(operand(arguments, 2)),
          file_(arguments.operands()[0]),
          where_(input_name(file_) + ": " + describe(section_, path_)),
          tree_(new_tree()) {
        if (path_ != nullptr) Path{path_};
        load(file_, tree_.get());
    }

    int32_t exact() const { return exact_; }
    const char *section() const { return section_; }
    const char *path() const { return path_; }
    ENV *env() const { return tree_.get(); }

    /// Throws Failure (kNotFound) if there is no such block.
    void require() const {
        if (section_ == nullptr) return;  // a file without sections is as good as any other
        const int32_t type = env_check(env(), section_, path_, exact_);
        if (type == ENV_NOT_FOUND) not_found();
        if (type != ENV_BLOCK) throw Failure{kNotFound, where_ + " is not a block"};
    }
    [[noreturn]] void not_found() const { fail_missing(file_, env(), section_, path_); }

  private:
    int32_t exact_;
    const char *section_;
    const char *path_;
    std::string file_;
    std::string where_;
    Tree tree_;
};

int run_names(std::string_view, const Arguments &arguments) {
    const AddressedBlock block(arguments);
    block.require();
    const std::vector<std::string> names =
        names_in(block.env(), block.section(), block.path(), block.exact());
    if (arguments.has("--json")) {
        JsonArray array(std::cout);
        for (const std::string &name : names) array.add(json_string(name));
    } else {
        for (const std::string &name : names) std::cout << for_terminal(name) << '\n';
    }
    return kDone;
}

// The number of elements named as the addressed one beside it. The library wants the path without an
// index after the last name, and with the delimiter's first character before it.
int32_t count_same_name(const AddressedBlock &block) {
    const std::string path = Path(block.path()).without_last_index();
    if (env_exist(block.env(), block.section(), path.c_str(), block.exact()) == 0) block.not_found();
    return env_count_path(block.env(), block.section(), path.c_str(), block.exact());
}

int run_count(std::string_view command, const Arguments &arguments) {
    const bool same_name = arguments.has("--same-name");
    if (same_name && operand(arguments, 2) == nullptr) fail_usage(command, "--same-name needs PATH");
    const AddressedBlock block(arguments);
    if (same_name) {
        std::cout << count_same_name(block) << '\n';
        return kDone;
    }
    block.require();
    std::cout << env_count_elements(block.env(), block.section(), block.path(), block.exact()) << '\n';
    return kDone;
}

constexpr Option kNamesOptions[] = {kAnyDepthOption, kJsonOption};
constexpr Option kCountOptions[] = {
    {"--same-name", "", "count the elements of PATH's last name beside it instead"},
    kAnyDepthOption,
};

}  // namespace

const Action kEnvNames = {
    "names",
    "FILE [SECTION [PATH]]",
    "list the names of a block's elements, or of the sections",
    R"(Prints the names of the elements of a block, in order, one a line; without SECTION those of the
sections.
)",
    kNamesOptions,
    1,
    3,
    run_names,
};

const Action kEnvCount = {
    "count",
    "FILE [SECTION [PATH]]",
    "count the elements of a block, or of one name",
    R"(Prints how many elements a block has, without SECTION how many sections the file has. With
--same-name: how many elements of the last name of PATH there are in the block that PATH leads
into, as in 'kv env count press.env machine axis --same-name'.
)",
    kCountOptions,
    1,
    3,
    run_count,
};

}  // namespace kvtool

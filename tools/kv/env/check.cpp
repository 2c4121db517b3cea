// `kv env check`: whether files follow the format.
#include <algorithm>
#include <iostream>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

int run_check(std::string_view, const Arguments &arguments) {
    int code = kDone;
    for (const std::string &file : arguments.operands()) {
        const Tree tree = new_tree();
        std::string problem;
        const LoadResult result = try_load(file, tree.get(), problem);
        if (problem.empty()) continue;
        std::cerr << problem << '\n';
        const bool readable = result == LoadResult::syntax || result == LoadResult::done;
        code = std::max<int>(code, readable ? kNotFound : kFile);
    }
    return code;
}

}  // namespace

const Action kEnvCheck = {
    "check",
    "FILE...",
    "check the syntax of files",
    R"(Reads files and prints nothing if they follow the format. A file that does not is told on
standard error as FILE:LINE:COLUMN: MESSAGE, with exit code 1, and so is one that is not read as it
stands there, for a zero byte or a Ctrl-Z in it; one that cannot be read gives 3.
All files are checked.
)",
    {},
    1,
    100000,
    run_check,
};

}  // namespace kvtool

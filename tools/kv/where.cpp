// `kv where`: which file the configuration search finds, and every place it looks at.
#include <iomanip>
#include <iostream>
#include <string>

#include "kv/config.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kCommand = "kv where";

struct Places {
    bool print;
    std::string result;
};

const char *place_name(int32_t place) {
    switch (place) {
        case KV_PLACE_CURRENT:
            return "current directory";
        case KV_PLACE_VARIABLE:
            return "KV";
        case KV_PLACE_DRIVE_C:
            return "drive C";
        case KV_PLACE_REGISTRY:
            return "registry";
        case KV_PLACE_LIST:
            return "listed directory";
        default:
            return "main file instead";
    }
}

void tell_place(int32_t place, const char *path, int32_t found, void *user) {
    auto *places = static_cast<Places *>(user);
    if (found == 1) places->result = path;
    if (!places->print) return;
    std::cout << (found == 1 ? "found      " : "not found  ") << std::left << std::setw(18)
              << place_name(place) << ' ';
    if (path == nullptr) {
        std::cout << (place == KV_PLACE_VARIABLE ? "(not set)" : "(no entry)");
    } else {
        std::cout << (*path != '\0' ? path : "(too long)");
    }
    std::cout << '\n';
}

int run_where(std::string_view, const Arguments &arguments) {
    if (arguments.has("--section") != arguments.has("--entry")) {
        fail_usage(kCommand, "--section and --entry belong together");
    }
    if (arguments.operands().empty() && arguments.has("--section"))
        fail_usage(kCommand, "--section needs a NAME");
    const std::string section = arguments.value("--section", "");
    const std::string entry = arguments.value("--entry", "");
    const char *name = operand(arguments, 0);

    const bool only_path = arguments.has("--path");
    Places places{!only_path, {}};
    if (kv_suche_orte(section.c_str(), entry.c_str(), name, tell_place, &places) != 0) {
        const std::string what = name != nullptr ? name : "kv3.ini";
        throw Failure{kNotFound, std::string(kCommand) + ": '" + what + "' is not found"};
    }
    if (only_path) std::cout << places.result << '\n';
    return kDone;
}

constexpr Option kOptions[] = {
    {"--section", "SECTION", "the section of the main configuration file"},
    {"--entry", "KEY", "the entry that lists the directories"},
    {"--path", "", "print the path of the result only"},
};

constexpr Action kWhere = {
    "",
    "[NAME]",
    "find the main configuration file and others, and tell where it was looked",
    R"(Searches a file as applications do: the main configuration file kv3.ini without a NAME, else the
file NAME. Prints every place that is looked at, in order, and whether the file is there; the
last one that is found is the result.

The main configuration file is looked for in the current directory, in the directory that the
environment variable KV names, in C:\, and where the registry says. Another file is looked for in
the current directory and in KV's; then the main configuration file is searched, and the file in
each of the directories that its entry KEY in SECTION lists, separated by ";". Without such an
entry the registry is asked. Without --section and --entry the main configuration file itself is
the result for a file that is not in the first two places.

Exit codes: 0 found; 1 not found; 2 wrong usage.
)",
    kOptions,
    0,
    1,
    run_where,
};

}  // namespace

const ActionTable &where_table() {
    static const Action *const actions[] = {&kWhere};
    static const ActionTable table{"kv where", kWhere.summary, actions};
    return table;
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// `kv where`: which file the configuration search finds, and every place it looks at.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "kv/config.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/subcommands.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kCommand = "kv where";

struct Place {
    std::int32_t place;
    bool named;  // the registry or the variable says a path
    std::string path;
    bool found;
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

void take_place(std::int32_t place, const char *path, std::int32_t found, void *user) {
    auto *places = static_cast<std::vector<Place> *>(user);
    places->push_back({place, path != nullptr, path != nullptr ? path : "", found == 1});
}

void print(const Place &place) {
    std::cout << (place.found ? "found      " : "not found  ") << std::left << std::setw(18)
              << place_name(place.place) << ' ';
    if (place.named) {
        std::cout << (place.path.empty() ? "(too long)" : for_terminal(place.path)) << '\n';
    } else {
        std::cout << (place.place == KV_PLACE_VARIABLE ? "(not set)\n" : "(no entry)\n");
    }
}

void print_json(const std::vector<Place> &places) {
    JsonArray array(std::cout);
    for (const Place &place : places) {
        JsonObject object;
        object.add("place", json_string(place_name(place.place)));
        object.add("path", place.named && !place.path.empty() ? json_utf8(place.path) : "null");
        array.add(object.add("found", place.found ? "true" : "false").text());
    }
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

    std::vector<Place> places;
    const bool found = kv_suche_orte(section.c_str(), entry.c_str(), name, take_place, &places) == 0;
    if (arguments.has("--json")) {
        print_json(places);
    } else if (!arguments.has("--path")) {
        for (const Place &place : places) print(place);
    } else if (found) {
        const auto last =
            std::find_if(places.rbegin(), places.rend(), [](const Place &p) { return p.found; });
        std::cout << last->path << '\n';
    }
    if (found) return kDone;
    const std::string what = name != nullptr ? name : "kv3.ini";
    throw Failure{kNotFound, std::string(kCommand) + ": '" + what + "' is not found"};
}

constexpr Option kOptions[] = {
    {"--section", "SECTION", "the section of the main configuration file"},
    {"--entry", "KEY", "the entry that lists the directories"},
    {"--path", "", "print the path of the result only"},
    kJsonOption,
};

constexpr Action kWhere = {
    "",
    "[NAME]",
    "find the main configuration file and others, and tell where it was looked",
    R"(Searches a file as applications do: the main configuration file kv3.ini without a NAME, else the
file NAME. Prints every place that is looked at, in order, and whether the file is there; the
last one that is found is the result. With --json an array of objects with "place", "path", which
is null where nothing names one, and "found".

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

// What the completion offers: what the main configuration file has.
std::vector<std::string> offer_main_file(std::string_view kind, const std::string &word,
                                         const Arguments &arguments) {
    const std::string section = arguments.value("--section", "");
    if (kind == "KEY" && section.empty()) return {};
    Arguments operands;
    if (kind == "KEY") operands.add_operand(section);
    return ini_table().offer(kind, word, operands);
}

}  // namespace

const ActionTable &where_table() {
    static const Action *const actions[] = {&kWhere};
    static const ActionTable table{"kv where", kWhere.summary, actions,        {}, "",
                                   "",         nullptr,        offer_main_file};
    return table;
}

}  // namespace kvtool

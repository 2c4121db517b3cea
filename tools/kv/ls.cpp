// SPDX-License-Identifier: MIT
// `kv ls`: directories as the library lists them.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "kv/clock.h"
#include "kv/fio.h"
#include "kv/memory.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/subcommands.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv ls";

struct Attribute {
    std::uint32_t flag;
    char letter;
    const char *name;
};

constexpr Attribute kAttributes[] = {{FIO_ATTR_DIR, 'd', "directory"},
                                     {FIO_ATTR_RDONLY, 'r', "read-only"},
                                     {FIO_ATTR_HIDDEN, 'h', "hidden"},
                                     {FIO_ATTR_SYSTEM, 's', "system"},
                                     {FIO_ATTR_ARCHIVE, 'a', "archive"}};

std::string time_text(std::int32_t time, char separator) {
    CLOCK_RECORD fields;
    clock_makestruct(time != 0 ? time : 1, &fields);  // 0 would be now
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d%c%02d:%02d:%02d", fields.year + 1900, fields.mon + 1,
                  fields.mday, separator, fields.hour, fields.min, fields.sec);
    return text;
}

void print(const FIO_DIRENTRY &entry) {
    for (const Attribute &attribute : kAttributes) {
        std::cout << ((entry.attrib & attribute.flag) != 0 ? attribute.letter : '-');
    }
    std::cout << ' ' << std::right << std::setw(10) << entry.size << ' ' << time_text(entry.time, ' ')
              << ' ' << for_terminal(entry.name) << '\n';
}

std::string as_json(const FIO_DIRENTRY &entry) {
    std::string attributes;
    for (const Attribute &attribute : kAttributes) {
        if ((entry.attrib & attribute.flag) == 0) continue;
        attributes.append(attributes.empty() ? "" : ", ").append(json_string(attribute.name));
    }
    JsonObject object;
    object.add("name", json_utf8(entry.name)).add("attributes", '[' + attributes + ']');
    object.add("size", std::to_string(entry.size));
    return object.add("time", json_string(time_text(entry.time, 'T'))).text();
}

std::vector<FIO_DIRENTRY> list(const std::string &directory, const std::string &pattern) {
    FIO_DIRENTRY *records = nullptr;
    std::int32_t count = 0;
    if (fio_listdir(directory.c_str(), pattern.c_str(), 0, &records, &count) != 0) return {};
    if (records == nullptr) throw std::bad_alloc();
    const std::unique_ptr<FIO_DIRENTRY, decltype(&heap_free)> owner(records, heap_free);
    std::vector<FIO_DIRENTRY> entries;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string_view name = records[i].name;
        if (name != "." && name != "..") entries.push_back(records[i]);
    }
    std::sort(entries.begin(), entries.end(), [](const FIO_DIRENTRY &a, const FIO_DIRENTRY &b) {
        return std::string_view(a.name) < std::string_view(b.name);
    });
    return entries;
}

int run_ls(std::string_view, const Arguments &arguments) {
    const std::vector<std::string> &operands = arguments.operands();
    std::string directory = operands.empty() ? "." : operands[0];
    std::string pattern = operands.size() < 2 ? "" : operands[1];
    require_path(directory, pattern);
    if (operands.size() == 1 && fio_ispath(directory.c_str()) == 0) {
        pattern.swap(directory);  // the library takes a pattern with a directory before it
        char drive[3];
        char above[256];
        char name[256];
        fio_divide(pattern.c_str(), drive, above, name);
        const std::string place = std::string(drive) + above;
        if (!place.empty() && fio_ispath(place.c_str()) == 0) directory = place;  // not there
    }
    if (!directory.empty()) require_directory(kCommand, directory);
    const std::vector<FIO_DIRENTRY> entries = list(directory, pattern);
    if (entries.empty() && !pattern.empty()) {
        throw Failure{kNotFound, std::string(kCommand) + ": nothing matches '" + pattern + "'"};
    }
    if (arguments.has("--json")) {
        JsonArray array(std::cout);
        for (const FIO_DIRENTRY &entry : entries) array.add(as_json(entry));
    } else {
        for (const FIO_DIRENTRY &entry : entries) print(entry);
    }
    return kDone;
}

constexpr Option kOptions[] = {kJsonOption};

constexpr Action kLs = {
    "",
    "[DIR] [PATTERN]",
    "list a directory",
    R"(Lists a directory (the current one without DIR), or the names in it that match PATTERN: * is any
characters, ? any one, *.* every name, and case does not matter. DIR alone may also end in a
pattern or name a file. Quote patterns, so that the shell leaves them alone.

A line has the attributes (d directory, r read-only, h hidden, s system, a archive: not saved since
it was changed), the size in bytes, the local time of the last change, and the name. Names are
sorted; . and .. are left out. The library gives the first 79 characters of a name, 4294967295 for
larger sizes, and 1980-01-01 in Germany for times that 32 bits do not hold.

Exit codes: 0 done; 1 nothing matches; 2 wrong usage; 3 the directory cannot be read.
)",
    kOptions,
    0,
    2,
    run_ls,
};

}  // namespace

const ActionTable &ls_table() {
    static const Action *const actions[] = {&kLs};
    static const ActionTable table{"kv ls", kLs.summary, actions};
    return table;
}

}  // namespace kvtool

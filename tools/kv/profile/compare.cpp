// SPDX-License-Identifier: MIT
// The action compare: entries side by side.
#include <algorithm>
#include <iterator>

#include "tools/kv/failure.hpp"
#include "tools/kv/profile/action.hpp"
#include "tools/kv/profile/sections.hpp"

namespace kvtool {

namespace {

// All that the tables of the entries have, in their order.
std::vector<std::string> columns_of(std::string_view command, std::vector<TableFile> &tables,
                                    const std::vector<std::string> &names) {
    std::vector<std::string> columns;
    for (const std::string &name : names) {
        std::vector<std::string> own;
        get_entry(
            command, tables, name, [&](const TableFile &table) { return own = table.columns(); },
            Units::table);
        std::copy_if(own.begin(), own.end(), std::back_inserter(columns), [&](const std::string &column) {
            return std::find(columns.begin(), columns.end(), column) == columns.end();
        });
    }
    return columns;
}

int run_compare(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    const std::vector<std::string> &names = arguments.operands();
    const Units units = units_of(command, arguments);
    std::vector<TableFile> tables = open_tables(family, arguments);
    const std::vector<std::string> columns = arguments.has("--columns")
                                                 ? chosen_columns(family, arguments, tables)
                                                 : columns_of(command, tables, names);
    const auto get = [&](const std::string &name, const std::vector<std::string> &wanted, Units in) {
        return get_entry(
            command, tables, name, [&](const TableFile &) { return wanted; }, in);
    };
    std::vector<TableEntry> entries;
    entries.reserve(names.size());
    for (const std::string &name : names) entries.push_back(get(name, columns, units));
    if (arguments.has("--output")) {
        std::vector<SectionPage> pages;
        pages.reserve(names.size());
        for (const std::string &name : names) {
            pages.push_back(page_of(command, get(name, kDrawnColumns, Units::table)));
        }
        write_drawing(pages, arguments);
        if (arguments.value("--output", "") == "-") return kDone;
    }
    if (arguments.has("--json")) {
        print_entries_json(entries, columns);
    } else {
        print_side_by_side(family, entries, columns, units);
    }
    return kDone;
}

constexpr Option kOptions[] = {
    {"--output", "FILE", "draw them there, too; - is standard output, without the table", 'o'},
    kHpglOption,
    kColumnsOption,
    kUnitsOption,
    kSiOption,
    kJsonOption,
};

}  // namespace

const Action kProfileCompare = {
    "compare",
    "NAME NAME...",
    "print entries side by side, and draw them",
    R"(Prints the values of entries, found as by get, in a column for each; what none of them has is left
out. With --output they are drawn side by side to one scale, as draw does it.
)",
    kOptions,
    2,
    20,
    run_compare,
};

}  // namespace kvtool

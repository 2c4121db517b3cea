// SPDX-License-Identifier: MIT
// The actions list and get: the tables, their entries, one entry.
#include <iostream>

#include "tools/kv/failure.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/profile/action.hpp"

namespace kvtool {

namespace {

int count_entries(TableFile &table) {
    int count = 0;
    table.select({}, Units::table);
    while (table.next()) ++count;
    return count;
}

// One line for each table: its name, the number of its entries, its columns.
void list_tables(std::vector<TableFile> &tables, bool json) {
    const char *separator = "[\n";
    for (TableFile &table : tables) {
        const int count = count_entries(table);
        if (json) {
            std::cout << separator << "{\"table\": " << json_string(table.name())
                      << ", \"entries\": " << count << ", \"columns\": [";
        } else {
            std::cout << table.name() << ": " << count << " entries;";
        }
        const char *comma = "";
        for (const std::string &column : table.own_columns()) {
            std::cout << (json ? comma : " ") << (json ? json_string(column) : column);
            comma = ", ";
        }
        std::cout << (json ? "]}" : "\n");
        separator = ",\n";
    }
    if (json) std::cout << "\n]\n";
}

int run_list(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    std::vector<TableFile> tables = open_tables(family, arguments);
    const std::vector<std::string> columns = chosen_columns(family, arguments, tables);
    const bool json = arguments.has("--json");
    if (!arguments.has("--table") && !arguments.has("--all")) {
        list_tables(tables, json);
        return kDone;
    }
    const Units units = units_of(command, arguments);
    std::vector<TableEntry> entries;
    for (TableFile &table : tables) {
        table.select(columns, units);
        while (std::optional<TableEntry> entry = table.next()) entries.push_back(std::move(*entry));
    }
    if (json) {
        print_entries_json(entries, columns);
    } else {
        print_entries(family, entries, columns, units, tables.size() > 1);
    }
    return kDone;
}

int run_get(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    const std::string &name = arguments.operands()[0];
    std::vector<TableFile> tables = open_tables(family, arguments);
    std::vector<std::string> columns = chosen_columns(family, arguments, tables);
    const Units units = units_of(command, arguments);
    const bool all = !arguments.has("--columns");
    const TableEntry entry = get_entry(
        command, tables, name,
        [&](const TableFile &table) { return all ? columns = table.columns() : columns; }, units);
    if (arguments.has("--json")) {
        print_entries_json({entry}, columns);
        return kDone;
    }
    std::cout << entry.name << '\n';
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string unit = unit_of(family, columns[i], units);
        std::cout << columns[i] << " = " << text_of_value(entry.values[i]) << (unit.empty() ? "" : " ")
                  << unit << '\n';
    }
    return kDone;
}

constexpr Option kListOptions[] = {
    {"--all", "", "the entries of all tables"}, kColumnsOption, kUnitsOption, kSiOption, kJsonOption};
constexpr Option kGetOptions[] = {kColumnsOption, kUnitsOption, kSiOption, kJsonOption};

}  // namespace

const Action kTableList = {
    "list",
    "",
    "list the tables, or the entries of one",
    R"(Lists the tables of the directory with the number of their entries and their columns; with
--table the entries of one table, with --all those of all. A value that a table has not is nil.
)",
    kListOptions,
    0,
    0,
    run_list,
};

const Action kTableGet = {
    "get",
    "NAME",
    "print the values of an entry",
    R"(Prints the values of the entry with this name, whatever its blanks and its case, in any of the
tables: 'HEB 200', heb200, L100x10. Where there is none, those of the first one with exactly the
numbers of NAME, and its type if it says one; the tables are asked in the order of their names.
)",
    kGetOptions,
    1,
    1,
    run_get,
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Entries of tables as text and as JSON.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "tools/kv/json.hpp"
#include "tools/kv/profile/tables.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

std::string text_of_value(const std::optional<double> &value) {
    char text[32];
    if (!value) return "nil";
    std::snprintf(text, sizeof text, "%.12g", *value);  // more digits are those of the factor's rounding
    return text;
}

std::string unit_of(const TableFamily &family, const std::string &column, Units units) {
    return column == kMass ? family.mass_unit : unit_of(column, units);
}

namespace {

using Row = std::vector<std::string>;

Row header_row(const std::vector<std::string> &columns, bool several_tables) {
    Row row = {"name"};
    if (several_tables) row.emplace_back("table");
    row.insert(row.end(), columns.begin(), columns.end());
    return row;
}

Row unit_row(const TableFamily &family, const std::vector<std::string> &columns, Units units,
             bool several_tables) {
    Row row(several_tables ? 2 : 1);
    for (const std::string &column : columns) row.push_back(unit_of(family, column, units));
    return row;
}

Row entry_row(const TableEntry &entry, bool several_tables) {
    Row row = {entry.name};
    if (several_tables) row.push_back(entry.table);
    for (const std::optional<double> &value : entry.values) row.push_back(text_of_value(value));
    return row;
}

// The first rows are headings.
void print_aligned(const std::vector<Row> &rows, std::size_t left_columns, std::size_t headings) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (std::size_t n = 0; n < rows.size(); ++n) {
        const Row &row = rows[n];
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - row[i].size(), ' ');
            if (i > 0) line += "  ";
            line += i < left_columns ? row[i] + padding : padding + row[i];
        }
        line.resize(line.find_last_not_of(' ') + 1);
        std::cout << (n < headings ? styled(std::cout, Style::heading, line) : line) << '\n';
    }
}

}  // namespace

void print_entries(const TableFamily &family, const std::vector<TableEntry> &entries,
                   const std::vector<std::string> &columns, Units units, bool several_tables) {
    std::vector<Row> rows = {header_row(columns, several_tables),
                             unit_row(family, columns, units, several_tables)};
    for (const TableEntry &entry : entries) rows.push_back(entry_row(entry, several_tables));
    print_aligned(rows, several_tables ? 2 : 1, 2);
}

void print_side_by_side(const TableFamily &family, const std::vector<TableEntry> &entries,
                        const std::vector<std::string> &columns, Units units) {
    std::vector<Row> rows = {{"", ""}};
    for (const TableEntry &entry : entries) rows.front().push_back(entry.name);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto has = [&](const TableEntry &entry) { return entry.values[i].has_value(); };
        if (std::none_of(entries.begin(), entries.end(), has)) continue;
        Row row = {columns[i], unit_of(family, columns[i], units)};
        for (const TableEntry &entry : entries) row.push_back(text_of_value(entry.values[i]));
        rows.push_back(std::move(row));
    }
    print_aligned(rows, 2, 1);
}

void print_entries_json(const std::vector<TableEntry> &entries, const std::vector<std::string> &columns) {
    const char *separator = "[\n";
    for (const TableEntry &entry : entries) {
        std::cout << separator << "{\"name\": " << json_string(entry.name)
                  << ", \"table\": " << json_string(entry.table) << ", \"values\": {";
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const std::optional<double> &value = entry.values[i];
            const std::string text = text_of_value(value);
            std::cout << (i > 0 ? ", " : "") << json_string(columns[i]) << ": "
                      << (value ? std::isfinite(*value) ? text : json_number(*value) : "null");
        }
        std::cout << "}}";
        separator = ",\n";
    }
    std::cout << (entries.empty() ? "[\n]\n" : "\n]\n");
}

}  // namespace kvtool

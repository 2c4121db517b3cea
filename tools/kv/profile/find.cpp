// SPDX-License-Identifier: MIT
// The action find: entries that meet conditions.
#include <algorithm>
#include <charconv>
#include <limits>

#include "tools/kv/failure.hpp"
#include "tools/kv/profile/action.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kOperators[] = {">", "<", ">=", "<=", "=", "==", "!=", "<>"};

// "A>50", "Iy <= 6000".
TableCondition parse_condition(std::string_view command, const std::string &word) {
    const std::string text = without_blanks(word);
    const std::size_t start = text.find_first_of("<>=!");
    const std::size_t end = text.find_first_not_of("<>=!", start);
    TableCondition condition{text.substr(0, start), "", 0};
    if (start != text.npos && end != text.npos) {
        condition.op = text.substr(start, end - start);
        const char *first = text.data() + end;
        const char *last = text.data() + text.size();
        const auto [stop, error] = std::from_chars(first, last, condition.value);
        const bool known =
            std::find(std::begin(kOperators), std::end(kOperators), condition.op) != std::end(kOperators);
        if (known && !condition.column.empty() && error == std::errc() && stop == last) return condition;
    }
    fail_usage(command, "'" + word + "' is no condition");
}

int parse_limit(std::string_view command, const Arguments &arguments) {
    const std::string text = arguments.value("--limit", "");
    int limit = std::numeric_limits<int>::max();
    if (!arguments.has("--limit")) return limit;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), limit);
    if (error != std::errc() || stop != text.data() + text.size() || limit < 1) {
        fail_usage(command, "--limit needs a number from 1");
    }
    return limit;
}

// Those that say something about all of the columns.
std::vector<TableFile> with_columns(const TableFamily &family, std::vector<TableFile> tables,
                                    const std::vector<TableCondition> &conditions) {
    for (const TableCondition &condition : conditions) require_column(family, tables, condition.column);
    for (const TableCondition &condition : conditions) {
        std::erase_if(tables, [&](const TableFile &table) { return !table.has_column(condition.column); });
    }
    if (tables.empty()) {
        throw Failure{kNotFound,
                      std::string(family.command) + ": no table has the columns of all conditions"};
    }
    return tables;
}

// The letters that a pattern begins with, in lower case.
std::string type_of(const std::string &pattern) {
    const std::string text = comparable(pattern);
    const auto other = [](char c) { return c < 'a' || c > 'z'; };
    return {text.begin(), std::find_if(text.begin(), text.end(), other)};
}

bool has_type(TableFile &table, const std::string &type) {
    table.select({}, Units::table);
    while (const std::optional<TableEntry> entry = table.next()) {
        if (comparable(entry->name.substr(0, entry->name.find(' '))) == type) return true;
    }
    return false;
}

// The tables of --table or of all files, else the one that is named after the type, else those that have
// it.
std::vector<TableFile> searched_tables(const TableFamily &family, const Arguments &arguments,
                                       std::string_view command) {
    std::vector<TableFile> tables = open_tables(family, arguments);
    if (arguments.has("--all-files") || arguments.has("--table") || tables.size() == 1) return tables;
    const std::string type = type_of(arguments.value("--type", ""));
    if (type.empty()) fail_usage(command, "wants a type with --type, or --table or --all-files");
    const auto named = [&](const TableFile &table) { return comparable(table.name()) == type; };
    const bool one = std::any_of(tables.begin(), tables.end(), named);
    std::erase_if(tables, [&](TableFile &table) { return one ? !named(table) : !has_type(table, type); });
    if (tables.empty())
        throw Failure{kNotFound, std::string(command) + ": nothing is of the type '" + type + "'"};
    return tables;
}

void sort_entries(std::vector<TableEntry> &entries, std::size_t column) {
    const auto key = [&](const TableEntry &entry) {
        return entry.values[column].value_or(std::numeric_limits<double>::infinity());
    };
    std::stable_sort(entries.begin(), entries.end(),
                     [&](const TableEntry &a, const TableEntry &b) { return key(a) < key(b); });
}

int run_find(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    const std::string pattern = arguments.value("--type", "");
    const auto limit = static_cast<std::size_t>(parse_limit(command, arguments));
    std::vector<TableCondition> conditions;
    for (const std::string &word : arguments.operands()) {
        conditions.push_back(parse_condition(command, word));
    }
    std::vector<TableFile> tables =
        with_columns(family, searched_tables(family, arguments, command), conditions);
    const std::vector<std::string> shown = chosen_columns(family, arguments, tables);
    std::vector<std::string> columns = shown;
    const std::string sort_column = arguments.value("--sort", "");
    if (!sort_column.empty()) require_column(family, tables, sort_column);
    const auto sorted_by = std::find(columns.begin(), columns.end(), sort_column);
    const auto key = static_cast<std::size_t>(sorted_by - columns.begin());
    if (!sort_column.empty() && sorted_by == columns.end()) columns.push_back(sort_column);

    // The library knows the factors of what is selected, and of no other column of a condition.
    for (const TableCondition &condition : conditions) {
        if (std::find(columns.begin(), columns.end(), condition.column) == columns.end()) {
            columns.push_back(condition.column);
        }
    }
    const Units units = units_of(command, arguments);
    std::vector<TableEntry> entries;
    for (TableFile &table : tables) {
        table.select(columns, units);
        for (TableEntry &entry : table.search(pattern, conditions)) entries.push_back(std::move(entry));
    }
    if (!sort_column.empty()) sort_entries(entries, key);
    if (entries.size() > limit) entries.resize(limit);
    for (TableEntry &entry : entries) entry.values.resize(shown.size());
    if (entries.empty()) throw Failure{kNotFound, std::string(command) + ": nothing found"};
    if (arguments.has("--json")) {
        print_entries_json(entries, shown);
    } else {
        print_entries(family, entries, shown, units, tables.size() > 1);
    }
    return kDone;
}

constexpr Option kOptions[] = {
    {"--type", "PATTERN", "of the names: a type, HEB, or with sizes, HEB200, L100x10", 't'},
    {"--all-files", "", "search all tables of the directory"},
    {"--sort", "COLUMN", "the smallest value first"},
    {"--limit", "N", "print the first N"},
    kColumnsOption,
    kUnitsOption,
    kSiOption,
    kJsonOption,
};

}  // namespace

const Action kTableFind = {
    "find",
    "[CONDITION]...",
    "find the entries that meet conditions",
    R"(Prints the entries that meet all conditions, such as 'A>50' or 'Iy<=6000': a column, one of
> < >= <= = == != <>, and a number in the units that are shown. In PATTERN a number
is a lower bound, and exact in parentheses. Without --table and --all-files the table is the one
named after the type, or those that have it if there is none of its name. Tables without a column
of the conditions are left out.
)",
    kOptions,
    0,
    1000,
    run_find,
};

}  // namespace kvtool

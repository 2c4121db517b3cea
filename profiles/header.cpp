// SPDX-License-Identifier: MIT
// The columns of a table, and those that the application wants.
#include <algorithm>
#include <cstring>
#include <new>

#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

struct NamedColumn {
    std::string_view name;
    std::int32_t column;
};

// The columns of a long header by their names, those of one name from the left. Empty for a short header,
// and when the heap is exhausted: then the header itself has to be searched.
memory::Vector<NamedColumn> sorted_columns(const PROFIL &table) {
    constexpr std::int32_t kShort = 64;
    memory::Vector<NamedColumn> columns;
    if (table.columns <= kShort) return columns;
    try {
        columns.reserve(static_cast<std::size_t>(table.columns));
    } catch (const std::bad_alloc &) {
        return columns;
    }
    const char *name = table.header.c_str();
    for (std::int32_t column = 0; column < table.columns; ++column) {
        columns.push_back({name, column});
        name += columns.back().name.size() + 1;
    }
    std::sort(columns.begin(), columns.end(), [](const NamedColumn &a, const NamedColumn &b) {
        return a.name != b.name ? a.name < b.name : a.column < b.column;
    });
    return columns;
}

std::int32_t find_sorted(const memory::Vector<NamedColumn> &columns, std::string_view name) {
    const auto found = std::lower_bound(
        columns.begin(), columns.end(), name,
        [](const NamedColumn &column, std::string_view wanted) { return column.name < wanted; });
    return found != columns.end() && found->name == name ? found->column : kNoColumn;
}

}  // namespace

bool read_header(PROFIL &table) {
    bool in_name = false;
    table.columns = 0;
    table.file.move(0);
    for (int c = ' '; c != '\n';) {
        c = table.file.get();
        if (c == kEnd) return false;
        const bool separates = c == ' ' || c == '\t' || c == '\n';
        if (!separates) table.header.push_back(static_cast<char>(c));
        if (separates && in_name) {
            table.header.push_back('\0');
            ++table.columns;
        }
        in_name = !separates;
    }
    if (table.columns == 0) return false;
    table.header.push_back('\0');
    table.data_start = table.file.position();
    const auto count = static_cast<std::size_t>(table.columns);
    table.column_slot.resize(count);
    table.column_factor.resize(count);
    table.column_has_condition.resize(count);
    return true;
}

std::int32_t find_column(const PROFIL &table, const char *name) {
    const char *candidate = table.header.c_str();
    for (std::int32_t column = 0; column < table.columns; ++column) {
        if (std::strcmp(candidate, name) == 0) return column;
        candidate += std::strlen(candidate) + 1;
    }
    return kNoColumn;
}

void select_columns(PROFIL &table, const char *const *names, const double *factors) {
    std::fill(table.column_slot.begin(), table.column_slot.end(), kNoColumn);
    std::fill(table.column_factor.begin(), table.column_factor.end(), 1.0);
    std::fill(table.column_has_condition.begin(), table.column_has_condition.end(), 0);
    table.conditions.clear();
    table.requested = 0;
    const memory::Vector<NamedColumn> sorted = sorted_columns(table);
    for (; names != nullptr && *names != nullptr; ++names) {
        const std::int32_t slot = table.requested++;
        const std::int32_t found =
            sorted.empty() ? find_column(table, *names) : find_sorted(sorted, *names);
        if (found == kNoColumn) continue;
        const auto column = static_cast<std::size_t>(found);
        table.column_slot[column] = slot;
        if (factors != nullptr) table.column_factor[column] = factors[slot];
    }
}

}  // namespace kv::profiles

// SPDX-License-Identifier: MIT
// The searches in one table.
#include <new>

#include "profiles/conditions.hpp"
#include "profiles/pattern.hpp"
#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

// Finds the next entry that the pattern matches and `accept` wants, which is called after the name.
template <typename Accept>
std::int32_t find(PROFIL &table, const Pattern &pattern, char *full_name, Accept accept) {
    EntryName name;
    while (read_name(table, name)) {
        if (!pattern.matches(name)) {
            skip_line(table);
        } else if (accept()) {
            write_name(name, full_name);
            return 0;
        }
    }
    return -1;
}

// Runs a search; -1 when the heap is exhausted.
template <typename Search>
std::int32_t guarded(const PROFIL *table, Search search) {
    if (table == nullptr) return -1;
    try {
        return search();
    } catch (const std::bad_alloc &) {
        return -1;
    }
}

std::int32_t get_values(PROFIL &table, const char *text, double *values, char *full_name) {
    clear_values(table, values);
    const Pattern pattern(text);
    rewind(table);
    return find(table, pattern, full_name, [&] {
        read_values(table, values);
        return true;
    });
}

void read_texts(PROFIL &table, char (*texts)[PROFIL_FIELD_SIZE]) {
    for (std::size_t column = kFirstValue; column < table.column_slot.size(); ++column) {
        const std::string_view field = read_field(table);
        const std::int32_t slot = table.column_slot[column];
        if (slot != kNoColumn) texts[slot][field.copy(texts[slot], kLongestField)] = '\0';
    }
}

// Reads the values of an entry until a condition does not hold; then the rest is passed over.
bool read_if_met(PROFIL &table, double *values) {
    const std::size_t columns = table.column_slot.size();
    for (std::size_t column = kFirstValue; column < columns; ++column) {
        const std::string_view field = read_field(table);
        const std::int32_t slot = table.column_slot[column];
        if (slot == kNoColumn && table.column_has_condition[column] == 0) continue;
        const double value = value_of(table, column, field);
        if (!meets_conditions(table, column, value)) {
            drop_fields(table, columns - column - 1);
            return false;
        }
        if (slot != kNoColumn) values[slot] = value;
    }
    return true;
}

std::int32_t search_on(PROFIL &table, const char *text, double *values, char *full_name) {
    const Pattern pattern(text);
    return find(table, pattern, full_name, [&] { return read_if_met(table, values); });
}

}  // namespace

}  // namespace kv::profiles

using namespace kv::profiles;

int32_t profil_get(PROFIL *table, const char *pattern, double *values, char *name) noexcept {
    return guarded(table, [&] { return get_values(*table, pattern, values, name); });
}

int32_t profil_get_exact(PROFIL *table, const char *pattern, double *values, char *name) noexcept {
    return guarded(table, [&] {
        clear_values(*table, values);
        return get_values(*table, exact_pattern(pattern).c_str(), values, name);
    });
}

int32_t profil_get_strings(PROFIL *table, const char *pattern, char (*texts)[PROFIL_FIELD_SIZE],
                           char *name) noexcept {
    return guarded(table, [&] {
        for (std::int32_t slot = 0; slot < table->requested; ++slot) texts[slot][0] = '\0';
        const Pattern wanted(pattern);
        rewind(*table);
        return find(*table, wanted, name, [&] {
            read_texts(*table, texts);
            return true;
        });
    });
}

int32_t profil_search(PROFIL *table, const PROFIL_CONDITION *conditions, int32_t count, const char *pattern,
                      double *values, char *name) noexcept {
    return guarded(table, [&] {
        clear_values(*table, values);
        store_conditions(*table, conditions, count);
        rewind(*table);
        return search_on(*table, pattern, values, name);
    });
}

int32_t profil_search_next(PROFIL *table, const PROFIL_CONDITION *conditions, int32_t count,
                           const char *pattern, double *values, char *name) noexcept {
    return guarded(table, [&] {
        clear_values(*table, values);
        if (conditions != nullptr) store_conditions(*table, conditions, count);
        return search_on(*table, pattern, values, name);
    });
}

int32_t profil_search_f(PROFIL *table, profil_filter_function filter, const char *pattern, double *values,
                        char *name) noexcept {
    return guarded(table, [&] {
        clear_values(*table, values);
        const Pattern wanted(pattern);
        return find(*table, wanted, name, [&] {
            read_values(*table, values);
            return filter == nullptr || filter(values) != 0;
        });
    });
}

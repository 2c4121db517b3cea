// SPDX-License-Identifier: MIT
#include "profiles/conditions.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kv::profiles {

namespace {

constexpr double kTolerance = 1e-15;

struct Operator {
    std::string_view text;
    Comparison comparison;
};

constexpr Operator kOperators[] = {
    {">", Comparison::greater},        {"<", Comparison::less},       {">=", Comparison::greater_or_equal},
    {"<=", Comparison::less_or_equal}, {"=", Comparison::equal},      {"==", Comparison::equal},
    {"!=", Comparison::different},     {"<>", Comparison::different},
};

// Only a text that has blanks is written to: others may be constants.
void remove_blanks(char *text) {
    text += std::strcspn(text, " \t");
    if (*text == '\0') return;
    char *end = text;
    for (; *text != '\0'; ++text) {
        if (*text != ' ' && *text != '\t') *end++ = *text;
    }
    *end = '\0';
}

Comparison comparison_of(char *text) {
    if (text == nullptr) return Comparison::any;
    remove_blanks(text);
    for (const Operator &known : kOperators) {
        if (known.text == text) return known.comparison;
    }
    return Comparison::any;
}

bool holds(const Check &check, double value) {
    switch (check.comparison) {
        case Comparison::greater:
            return value > check.value;
        case Comparison::less:
            return value < check.value;
        case Comparison::greater_or_equal:
            return value >= check.value;
        case Comparison::less_or_equal:
            return value <= check.value;
        case Comparison::equal:
            return std::fabs(value - check.value) < kTolerance;
        case Comparison::different:
            return !(std::fabs(value - check.value) < kTolerance);
        default:
            return true;
    }
}

}  // namespace

void store_conditions(PROFIL &table, const PROFIL_CONDITION *conditions, std::int32_t count) {
    table.conditions.clear();
    if (conditions == nullptr) count = 0;
    table.conditions.reserve(static_cast<std::size_t>(std::max(count, 0)));
    std::fill(table.column_has_condition.begin(), table.column_has_condition.end(), 0);
    for (std::int32_t i = 0; i < count; ++i) {
        const PROFIL_CONDITION &given = conditions[i];
        const std::int32_t column = given.name != nullptr ? find_column(table, given.name) : kNoColumn;
        if (column != kNoColumn) table.column_has_condition[static_cast<std::size_t>(column)] = 1;
        table.conditions.push_back({column, comparison_of(given.op), given.value});
    }
}

bool meets_conditions(const PROFIL &table, std::size_t column, double value) {
    if (table.column_has_condition[column] == 0) return true;
    return std::all_of(table.conditions.begin(), table.conditions.end(), [&](const Check &check) {
        return check.column != static_cast<std::int32_t>(column) || holds(check, value);
    });
}

}  // namespace kv::profiles

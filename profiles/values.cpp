// SPDX-License-Identifier: MIT
// The values of fields.
#include <algorithm>
#include <cfloat>
#include <cstring>

#include "kv/strings.h"

#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

constexpr double kMissing = -1;

// A plain decimal number whose digits make a whole number that a double holds exactly: divided by a power
// of ten that is exact too, it is rounded once, as strtod() rounds it. False for any other text.
bool read_plain_number(std::string_view text, double &value) {
    constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr std::size_t kMostDigits = 15;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) text.remove_prefix(1);
    std::uint64_t digits = 0;
    std::size_t point = text.size();
    if (text.empty() || text.size() > kMostDigits) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto digit = static_cast<unsigned char>(text[i] - '0');
        if (digit <= 9) {
            digits = digits * 10 + digit;
        } else if (text[i] == '.' && point == text.size() && text.size() > 1) {
            point = i;
        } else {
            return false;
        }
    }
    const std::size_t decimals = point < text.size() ? text.size() - point - 1 : 0;
    value = static_cast<double>(digits) / kPowers[decimals];
    if (negative) value = -value;
    return true;
}

double number_of(std::string_view text) {
    double value;
    if (FLT_EVAL_METHOD == 0 && read_plain_number(text, value)) return value;
    char copy[PROFIL_FIELD_SIZE];
    copy[text.copy(copy, kLongestField)] = '\0';
    return convert_stod(copy);
}

}  // namespace

double value_of(const PROFIL &table, std::size_t column, std::string_view field) {
    const double value = field == "nil" ? kMissing : number_of(field);
    return value * table.column_factor[column];
}

void read_values(PROFIL &table, double *values) {
    const std::int32_t *slots = table.column_slot.data();
    const std::size_t columns = table.column_slot.size();
    for (std::size_t column = kFirstValue; column < columns; ++column) {
        const std::string_view field = read_field(table);
        if (slots[column] != kNoColumn) values[slots[column]] = value_of(table, column, field);
    }
}

void clear_values(const PROFIL &table, double *values) {
    std::fill_n(values, table.requested, kMissing);
}

}  // namespace kv::profiles

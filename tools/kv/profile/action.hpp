// SPDX-License-Identifier: MIT
// What the actions of `kv profile` and `kv mat` share. Each has a file of its own.
#pragma once

#include "tools/kv/actions.hpp"
#include "tools/kv/profile/tables.hpp"

namespace kvtool {

/// What the tables of a command are, "kv profile find" or "kv mat find".
const TableFamily &family_of(std::string_view command);

/// What a value or an operand of an action can be, as ActionTable::offer says.
std::vector<std::string> offer_of_tables(const TableFamily &family, std::string_view kind,
                                         const std::string &word, const Arguments &arguments);

extern const Action kTableList;
extern const Action kTableGet;
extern const Action kTableFind;
extern const Action kProfileDraw;
extern const Action kProfileCompare;

inline constexpr Option kColumnsOption = {"--columns", "LIST", "these columns, with commas between them"};
inline constexpr Option kUnitsOption = {
    "--units", "UNIT", "mm, cm or m, with their powers, instead of the tables' units", '\0', kUnitNames};
inline constexpr Option kSiOption = {"--si", "", "the same as --units m"};
inline constexpr Option kHpglOption = {"--hpgl", "", "a plot file in HP-GL instead of an SVG picture"};

}  // namespace kvtool

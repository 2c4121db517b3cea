// SPDX-License-Identifier: MIT
// Units of the columns of tables.
#pragma once

#include <string>
#include <string_view>

#include "tools/kv/arguments.hpp"

namespace kvtool {

/// Those of the tables, or for all lengths and their powers millimetres, centimetres or metres.
enum class Units { table, mm, cm, m };

/// Their names, in this order.
inline constexpr std::string_view kUnitNames = "table mm cm m";

/// The column of the mass, in kg/m or kg/m2 whatever the other units are.
inline constexpr std::string_view kMass = "m";
/// That of steel, for each cm2 of the area.
inline constexpr double kMassOfArea = 0.785;

/// What --units or --si ask for. Throws Failure (kUsage).
Units units_of(std::string_view command, const Arguments &arguments);

/// What a value of the table is multiplied by.
double factor_of(const std::string &column, Units units);

/// "cm4" or "m4"; empty if the column has none that is known, as the mass.
std::string unit_of(const std::string &column, Units units);

}  // namespace kvtool

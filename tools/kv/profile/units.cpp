// SPDX-License-Identifier: MIT
#include "tools/kv/profile/units.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "kv/profiles.h"

#include "tools/kv/actions.hpp"

namespace kvtool {

namespace {

struct ColumnUnit {
    Units unit;  // Units::table if none is known
    int power;
};

// The library's factors to metres tell it.
ColumnUnit column_unit(const std::string &column) {
    const char *const names[] = {column.c_str(), nullptr};
    double factor = 1;
    profil_get_factors(names, &factor);
    if (factor == 0.001) return {Units::mm, 1};
    for (const int power : {1, 2, 3, 4, 6}) {
        if (std::abs(factor / std::pow(0.01, power) - 1) < 1e-9) return {Units::cm, power};
    }
    return {Units::table, 0};
}

double per_metre(Units unit) {
    return unit == Units::mm ? 1000 : unit == Units::cm ? 100 : 1;
}

}  // namespace

Units units_of(std::string_view command, const Arguments &arguments) {
    if (!arguments.has("--units")) return arguments.has("--si") ? Units::m : Units::table;
    const std::vector<std::string_view> names = words_of(kUnitNames);
    const auto found = std::find(names.begin(), names.end(), arguments.value("--units", ""));
    const auto units = static_cast<Units>(found - names.begin());
    if (arguments.has("--si") && units != Units::m) fail_usage(command, "--si means --units m");
    return units;
}

double factor_of(const std::string &column, Units units) {
    const ColumnUnit own = column_unit(column);
    if (units == Units::table || own.unit == Units::table) return 1;
    // Powers of ten are exact one way, and as near as can be the other.
    const double finer = per_metre(units) / per_metre(own.unit);
    return finer >= 1 ? std::pow(finer, own.power)
                      : 1 / std::pow(per_metre(own.unit) / per_metre(units), own.power);
}

std::string unit_of(const std::string &column, Units units) {
    const ColumnUnit own = column_unit(column);
    if (own.unit == Units::table) return "";
    const Units shown = units == Units::table ? own.unit : units;
    const std::string name(words_of(kUnitNames)[static_cast<std::size_t>(shown)]);
    return own.power > 1 ? name + std::to_string(own.power) : name;
}

}  // namespace kvtool

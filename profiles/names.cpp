// Parts of full names, and the units of the usual columns.
#include <cmath>
#include <cstring>
#include <string_view>

#include "kv/profiles.h"
#include "kv/strings.h"

namespace {

constexpr std::int32_t kLongestPart = PROFIL_PART_SIZE - 1;

struct Unit {
    std::string_view name;
    double base;
    int exponent;
};

constexpr Unit kUnits[] = {
    {"b", 0.001, 1},  {"D", 0.001, 1}, {"a", 0.001, 1}, {"h", 0.001, 1},  {"A", 0.01, 2},
    {"Iy", 0.01, 4},  {"Wy", 0.01, 3}, {"Sy", 0.01, 3}, {"Iz", 0.01, 4},  {"Wz", 0.01, 3},
    {"iy", 0.01, 1},  {"iz", 0.01, 1}, {"It", 0.01, 4}, {"Wt", 0.01, 3},  {"ys", 0.01, 1},
    {"ym", 0.01, 1},  {"zs", 0.01, 1}, {"zm", 0.01, 1}, {"s", 0.001, 1},  {"t", 0.001, 1},
    {"r", 0.001, 1},  {"e", 0.001, 1}, {"ip", 0.01, 1}, {"im", 0.01, 1},  {"Cm", 0.01, 6},
    {"izg", 0.01, 1}, {"ez", 0.01, 1}, {"ey", 0.01, 1}, {"r1", 0.001, 1}, {"Styp", 1.0, 1},
    {"Ktyp", 1.0, 1}, {"n", 1.0, 1},   {"AQ", 0.01, 2},
};

double factor_of(std::string_view name) {
    for (const Unit &unit : kUnits) {
        if (unit.name == name) return std::pow(unit.base, unit.exponent);
    }
    return 1.0;
}

}  // namespace

void profil_convert_result(const char *name, char *type, char *size) noexcept {
    char copy[PROFIL_PART_SIZE];
    str_ncpy(copy, name, kLongestPart);
    char *blank = str_chr(copy, ' ');
    str_cpy(size, blank != nullptr ? blank + 1 : "");
    if (blank != nullptr) *blank = '\0';
    str_cpy(type, copy);
}

void profil_get_factors(const char *const *names, double *factors) noexcept {
    for (; *names != nullptr; ++names) *factors++ = factor_of(*names);
}

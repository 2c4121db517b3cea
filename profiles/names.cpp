// SPDX-License-Identifier: MIT
// Parts of full names, and the units of the usual columns.
#include <cstring>
#include <string_view>

#include "kv/profiles.h"
#include "kv/strings.h"

namespace {

constexpr std::int32_t kLongestPart = PROFIL_PART_SIZE - 1;

struct Unit {
    std::string_view name;
    double factor;
};

// The powers of 0.01 as std::pow() gives them where it rounds right; not every C library's does.
constexpr double kNone = 1;
constexpr double kMillimetre = 0.001;
constexpr double kCentimetre = 0.01;
constexpr double kCentimetre2 = 0.0001;
constexpr double kCentimetre3 = 1.0000000000000002e-06;
constexpr double kCentimetre4 = 1e-08;
constexpr double kCentimetre6 = 1.0000000000000002e-12;

constexpr Unit kUnits[] = {
    {"b", kMillimetre},   {"D", kMillimetre},   {"a", kMillimetre},   {"h", kMillimetre},
    {"A", kCentimetre2},  {"Iy", kCentimetre4}, {"Wy", kCentimetre3}, {"Sy", kCentimetre3},
    {"Iz", kCentimetre4}, {"Wz", kCentimetre3}, {"iy", kCentimetre},  {"iz", kCentimetre},
    {"It", kCentimetre4}, {"Wt", kCentimetre3}, {"ys", kCentimetre},  {"ym", kCentimetre},
    {"zs", kCentimetre},  {"zm", kCentimetre},  {"s", kMillimetre},   {"t", kMillimetre},
    {"r", kMillimetre},   {"e", kMillimetre},   {"ip", kCentimetre},  {"im", kCentimetre},
    {"Cm", kCentimetre6}, {"izg", kCentimetre}, {"ez", kCentimetre},  {"ey", kCentimetre},
    {"r1", kMillimetre},  {"Styp", kNone},      {"Ktyp", kNone},      {"n", kNone},
    {"AQ", kCentimetre2},
};

double factor_of(std::string_view name) {
    for (const Unit &unit : kUnits) {
        if (unit.name == name) return unit.factor;
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

// SPDX-License-Identifier: MIT
// Numbers: as text, the same in every locale; rounding, signs, and trigonometry in degrees.
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdint>

#include "kv/numeric.h"
#include "kv/strings.h"

#include "platform/platform.hpp"

namespace {

KV_PRINTF(2, 3)
void print(char *dst, const char *format_text, ...) {
    std::va_list arguments;
    va_start(arguments, format_text);
    // Only the caller knows the size of the buffer.
    if (kv::platform::format(dst, INT32_MAX, format_text, arguments) < 0) *dst = '\0';
    va_end(arguments);
}

// A width whose sign can be changed.
std::int32_t printable(std::int32_t width) {
    return std::max(width, -INT32_MAX);
}

bool is_white_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

constexpr double kFullCircle = 360.0;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

// The angle in radians, in the full circle.
//
// Up to 2^56 subtracting 360 is exact, because 360 is a multiple of the value of the angle's last bit, so
// that the remainder is what repeated subtraction gives. Adding 360 to a negative angle is exact in the
// same way but for the last addition. Beyond 2^56 repeated subtraction would not end; the remainder is
// taken instead.
double to_radians(double angle) {
    if (angle >= kFullCircle) {
        angle = std::fmod(angle, kFullCircle);
    } else if (angle < 0) {
        // An exact multiple gives a zero without a sign.
        if (angle <= -kFullCircle) angle = std::fmod(angle, kFullCircle) + 0.0;
        if (angle < 0) angle += kFullCircle;
    }
    return angle * kRadiansPerDegree;
}

}  // namespace

void convert_dtos(double value, int32_t width, int32_t decimals, char *dst) noexcept {
    print(dst, "%*.*f", printable(width), std::max(decimals, 0), value);
}

void convert_ltos(int32_t value, int32_t width, char *dst) noexcept {
    print(dst, "%*d", printable(width), value);
}

double convert_stod(const char *s) noexcept {
    return kv::platform::parse_double(s);
}

int32_t convert_stol(const char *s) noexcept {
    while (is_white_space(*s)) ++s;
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+') ++s;
    const std::int64_t limit = negative ? -std::int64_t{INT32_MIN} : INT32_MAX;
    std::int64_t magnitude = 0;
    for (; is_digit(*s) && magnitude < limit; ++s) magnitude = std::min(magnitude * 10 + (*s - '0'), limit);
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

double pround(double x, int32_t n) noexcept {
    const double factor = kv::platform::power(10.0, n);
    return std::floor(x / factor + 0.5) * factor;
}

int32_t lsgn(int32_t v) noexcept {
    return v < 0 ? -1 : static_cast<int32_t>(v > 0);
}

double fsgn(double x) noexcept {
    if (x == 0) return 0.0;
    return x > 0 ? 1.0 : -1.0;
}

double sin_deg(double angle) noexcept {
    return std::sin(to_radians(angle));
}

double cos_deg(double angle) noexcept {
    return std::cos(to_radians(angle));
}

double tan_deg(double angle) noexcept {
    return std::tan(to_radians(angle));
}

double asin_deg(double x) noexcept {
    return std::asin(x) * kDegreesPerRadian;
}

double acos_deg(double x) noexcept {
    return std::acos(x) * kDegreesPerRadian;
}

double atan_deg(double x) noexcept {
    return atan2_deg(x, 1.0);
}

double atan2_deg(double y, double x) noexcept {
    return std::atan2(y, x) * kDegreesPerRadian;
}

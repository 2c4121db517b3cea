// Rounding to powers of ten, signs, and trigonometry in degrees.
#include "kv/numeric.h"

#include <cmath>

#include "platform/platform.hpp"

namespace {

constexpr double kFullCircle = 360.0;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

// The angle in radians, in the full circle.
//
// Up to 2^56 taking 360 off is exact, because 360 is a multiple of what the last bit of the angle stands
// for, so that the remainder is what repeated subtraction gives. Adding 360 to a negative angle is exact
// in the same way but for the last addition. Beyond, the remainder stands for a subtraction that would
// not end.
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

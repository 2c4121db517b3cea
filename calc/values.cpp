// SPDX-License-Identifier: MIT
#include "calc/values.hpp"

#include <cmath>
#include <cstdint>

#include "kv/calc.h"
#include "kv/scan.h"

#include "platform/platform.hpp"

namespace kv::calc {

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

bool is_whole(double value) {
    return value >= INT32_MIN && value <= INT32_MAX && value == std::trunc(value);
}

std::int32_t raise(double base, double &value) {
    std::int32_t error = CALC_OK;
    if (base < 0 && !is_whole(value)) {
        error = CALC_FRACTIONAL_POWER;
    } else {
        value = platform::power(base, value);
        if (!std::isfinite(value)) error = CALC_INFINITE_POWER;
    }
    if (error != CALC_OK) value = 0;
    return error;
}

std::int32_t divide(double left, double &value) {
    if (value == 0.0) return CALC_DIVISION_BY_ZERO;  // and the value is 0
    value = left / value;
    return CALC_OK;
}

double truth(bool is_true) {
    return is_true ? 1.0 : 0.0;
}

}  // namespace

std::int32_t apply_operator(std::int32_t kind, double left, double &value) {
    switch (kind) {
        case SCAN_CARET:
            return raise(left, value);
        case SCAN_SLASH:
            return divide(left, value);
        case SCAN_STAR:
            value = left * value;
            break;
        case SCAN_PLUS:
            value = left + value;
            break;
        case SCAN_MINUS:
            value = left - value;
            break;
        case SCAN_EQ:
            value = truth(left == value);
            break;
        case SCAN_NE:
            value = truth(left != value);
            break;
        case SCAN_LT:
            value = truth(left < value);
            break;
        case SCAN_GT:
            value = truth(left > value);
            break;
        case SCAN_LE:
            value = truth(left <= value);
            break;
        default:  // SCAN_GE: the evaluator passes nothing else
            value = truth(left >= value);
            break;
    }
    return CALC_OK;
}

void apply_logical(Keyword keyword, double left, double &value) {
    const bool a = left != 0.0;
    const bool b = value != 0.0;
    value = truth(keyword == kAnd ? a && b : a || b);
}

std::int32_t apply_function(Keyword keyword, double &value) {
    const double x = value;
    switch (keyword) {
        case kSin:
            value = std::sin(x * kRadiansPerDegree);
            break;
        case kCos:
            value = std::cos(x * kRadiansPerDegree);
            break;
        case kTan:
            value = std::tan(x * kRadiansPerDegree);
            break;
        case kCot:
            value = 1 / std::tan(x * kRadiansPerDegree);
            break;
        case kAsn:
            value = std::asin(x) * kDegreesPerRadian;
            break;
        case kAcs:
            value = std::acos(x) * kDegreesPerRadian;
            break;
        case kAtn:
            value = std::atan(x) * kDegreesPerRadian;
            break;
        case kAct:
            value = x == 0.0 ? 90.0 : std::atan(1 / x) * kDegreesPerRadian;
            break;
        case kAbs:
            value = std::fabs(x);
            break;
        case kExp:
            value = std::exp(x);
            break;
        case kLgt:
            value = std::log(x);
            break;
        case kLog:
            value = std::log10(x);
            break;
        case kSqrt:
            value = x < 0 ? 0.0 : std::sqrt(x);
            return x < 0 ? CALC_NEGATIVE_ROOT : CALC_OK;
        default:
            break;  // MIN and MAX: the argument that was kept
    }
    return CALC_OK;
}

}  // namespace kv::calc

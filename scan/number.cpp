#include "scan/number.hpp"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cstring>
#include <limits>

#include "platform/platform.hpp"

namespace kv::scan {

double Number::real() const {
    // Both a whole number below 2^53 and the powers of ten up to 10^22 are doubles, so that one operation
    // rounds correctly. Where intermediate results have more bits than a double, it would be rounded twice.
    static constexpr double kPowers[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr std::int64_t kMostPower = std::size(kPowers) - 1;
    constexpr bool kRoundsOnce = FLT_EVAL_METHOD == 0;
    if (!kRoundsOnce || significant_ > kExact || exponent_ > kMostPower || exponent_ < -kMostPower)
        return significant_ != 0 ? convert_slowly() : (negative_ ? -0.0 : 0.0);
    double value = static_cast<double>(mantissa_);
    value = exponent_ < 0 ? value / kPowers[-exponent_] : value * kPowers[exponent_];
    return negative_ ? -value : value;
}

double Number::convert_slowly() const {
    char text[kKept + 40];
    char *end = text;
    if (negative_) *end++ = '-';
    const auto kept = static_cast<std::size_t>(std::min(significant_, std::int64_t{kKept}));
    std::memcpy(end, digits_, kept);
    end += kept;
    std::int64_t exponent = exponent_;
    if (rest_) {
        *end++ = '1';  // stands for all that follows
        --exponent;
    }
    *end++ = 'e';
    // With at most 801 digits before it, an exponent of five digits is already beyond every double.
    end = std::to_chars(end, text + sizeof text - 1, std::clamp<std::int64_t>(exponent, -99999, 99999)).ptr;
    *end = '\0';
    double value = 0;
    if (std::from_chars(text, end, value).ec == std::errc{}) return value;
    return platform::parse_double(text);
}

std::int32_t Number::whole() const {
    using Limits = std::numeric_limits<std::int32_t>;
    if (significant_ > Limits::digits10 + 1) return negative_ ? Limits::min() : Limits::max();
    const auto magnitude = static_cast<std::int64_t>(mantissa_);
    const std::int64_t value = negative_ ? -magnitude : magnitude;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace kv::scan

#include "scan/number.hpp"

#include <charconv>
#include <cstring>

#include "platform/platform.hpp"

namespace kv::scan {

double Number::convert_slowly(Number number) {
    if (number.significant_ == 0) return number.negative_ ? -0.0 : 0.0;
    constexpr std::int64_t kMostExponent = 99999;  // with at most 801 digits before it, beyond every double
    char text[kKept + 40];
    char *end = text;
    if (number.negative_) *end++ = '-';
    const auto kept = static_cast<std::size_t>(std::min(number.significant_, std::int64_t{kKept}));
    std::memcpy(end, number.digits_, kept);
    end += kept;
    std::int64_t exponent = number.exponent_;
    if (number.rest_) {
        *end++ = '1';  // stands for all that follows
        --exponent;
    }
    *end++ = 'e';
    exponent = std::clamp(exponent, -kMostExponent, kMostExponent);
    end = std::to_chars(end, text + sizeof text - 1, exponent).ptr;
    *end = '\0';
    double value = 0;
    if (std::from_chars(text, end, value).ec == std::errc{}) return value;
    return platform::parse_double(text);
}

}  // namespace kv::scan

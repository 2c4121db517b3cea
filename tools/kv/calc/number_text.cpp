// SPDX-License-Identifier: MIT
#include "tools/kv/calc/number_text.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "kv/numeric.h"

#include "platform/platform.hpp"

namespace kvtool {

namespace {

constexpr double kSmallestFixed = 1e-5;
constexpr double kLargestFixed = 1e15;
constexpr double kExact = 9007199254740992;  // 2^53: up to here doubles hold every whole number

template <typename... Format>
std::string text_of(double value, Format... format) {
    std::array<char, 700> text;  // 309 digits before the point, and 300 after it
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, format...).ptr};
}

std::size_t decimals_of(const std::string &text) {
    const std::size_t point = text.find('.');
    return point == text.npos ? 0 : text.size() - point - 1;
}

// Of a value so large that its last digits stand before the last place.
std::string filled_text(double value, std::size_t places) {
    std::string text = text_of(value, std::chars_format::fixed);
    const std::size_t decimals = decimals_of(text);
    if (decimals > places) return text_of(value, std::chars_format::fixed, static_cast<int>(places));
    if (decimals == 0) text += '.';
    return text.append(places - decimals, '0');
}

}  // namespace

std::string shortest_text(double value) {
    const double size = std::fabs(value);
    if (size == 0) return "0";
    if (size >= kSmallestFixed && size <= kLargestFixed) return text_of(value, std::chars_format::fixed);
    return text_of(value, std::chars_format::scientific);
}

std::string rounded_text(double value, int places) {
    if (places < 0) value = pround(value, -places);
    if (places < 0 || !(std::fabs(value) <= kLargestFixed)) return shortest_text(value);
    // What pround() multiplies with the unit of the last place.
    const double whole = pround(value / kv::platform::power(10.0, -places), 0);
    if (!(std::fabs(whole) < kExact)) return filled_text(value, static_cast<std::size_t>(places));
    std::string digits = text_of(std::fabs(whole), std::chars_format::fixed);
    if (places > 0) {
        const auto behind = static_cast<std::size_t>(places);
        if (digits.size() <= behind) digits.insert(0, behind + 1 - digits.size(), '0');
        digits.insert(digits.size() - behind, 1, '.');
    }
    return whole < 0 ? "-" + digits : digits;
}

}  // namespace kvtool

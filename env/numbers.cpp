// SPDX-License-Identifier: MIT
#include "env/numbers.hpp"

#include <cfloat>
#include <charconv>
#include <limits>

#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::env {

namespace {

const char *skip_blanks(const char *at) {
    while (*at == ' ' || *at == '\t') ++at;
    return at;
}

const char *skip_digits(const char *at) {
    while (*at >= '0' && *at <= '9') ++at;
    return at;
}

const char *skip_sign(const char *at) {
    return *at == '+' || *at == '-' ? at + 1 : at;
}

bool at_end(const char *at) {
    return *at == '\0' || *at == '\r' || *at == '\n';
}

// Reads the number that begins at `at`. Returns its end; null, with the value untouched, if there is none.
const char *read_number(const char *at, std::int32_t &value) {
    constexpr std::ptrdiff_t kMostDigits = 9;  // that many fit whatever they are
    const char *digits = skip_sign(at);
    std::uint32_t magnitude = 0;
    const char *end = digits;
    for (; *end >= '0' && *end <= '9'; ++end)
        magnitude = magnitude * 10 + static_cast<std::uint32_t>(*end - '0');
    if (end == digits) return nullptr;
    if (end - digits <= kMostDigits) {
        value = static_cast<std::int32_t>(magnitude);
        if (*at == '-') value = -value;
    } else if (std::from_chars(*at == '+' ? digits : at, end, value).ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<std::int32_t>;
        value = *at == '-' ? Limits::min() : Limits::max();
    }
    return end;
}

// An exponent written with D, and values beyond the range of a double, which become infinite or zero as
// strtod has it.
void convert_slowly(const char *begin, const char *end, double &value) {
    memory::String text(begin, end);
    for (char &c : text) {
        if (c == 'D' || c == 'd') c = 'e';
    }
    value = platform::parse_double(text.c_str());
}

void convert(const char *begin, const char *end, double &value) {
    if (*begin == '+') ++begin;
    const auto [behind, error] = std::from_chars(begin, end, value);
    const bool exponent_left = behind != end && (*behind == 'D' || *behind == 'd');
    if (error != std::errc{} || exponent_left) convert_slowly(begin, end, value);
}

const char *read_number(const char *at, double &value) {
    // Up to fifteen digits make a whole number below 2^53, which a double holds exactly, as it does the
    // powers of ten up to 10^22: one division rounds correctly then.
    constexpr std::ptrdiff_t kExactDigits = 15;
    static constexpr double kPowers[kExactDigits + 1] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char *mantissa = skip_sign(at);
    const char *end = mantissa;
    std::uint64_t digits = 0;
    const auto take_digits = [&] {
        const char *start = end;
        for (; *end >= '0' && *end <= '9'; ++end)
            digits = digits * 10 + static_cast<std::uint64_t>(*end - '0');
        return end - start;
    };
    std::ptrdiff_t count = take_digits();
    std::ptrdiff_t decimals = 0;
    if (*end == '.') {
        ++end;
        decimals = take_digits();
        count += decimals;
    }
    if (count == 0) return nullptr;
    // Where intermediate results have more bits than a double, the division would be rounded twice.
    constexpr bool kRoundsOnce = FLT_EVAL_METHOD == 0;
    const bool has_exponent = *end == 'E' || *end == 'e' || *end == 'D' || *end == 'd';
    if (kRoundsOnce && !has_exponent && count <= kExactDigits) {
        value = static_cast<double>(digits) / kPowers[decimals];
        if (*at == '-') value = -value;
        return end;
    }
    if (has_exponent) {
        const char *exponent = skip_sign(++end);
        if (const char *behind = skip_digits(exponent); behind != exponent) end = behind;
    }
    convert(at, end, value);
    return end;
}

template <typename Number>
Parsed parse(const char *text, std::span<Number> room) {
    std::size_t count = 0;
    Number surplus{};
    for (const char *at = text;; ++at) {
        at = skip_blanks(at);
        const char *end = read_number(at, count < room.size() ? room[count] : surplus);
        if (end == nullptr) return {Parsed::mismatched, 0};
        ++count;
        at = skip_blanks(end);
        if (*at != ',') {
            if (!at_end(at)) return {Parsed::mismatched, 0};
            break;
        }
    }
    if (count > room.size()) return {Parsed::too_many, 0};
    return {Parsed::matched, static_cast<std::int32_t>(count)};
}

template <typename Number>
bool parse_one(const char *text, Number &value) {
    Number number{};
    const char *end = read_number(skip_blanks(text), number);
    if (end == nullptr || !at_end(skip_blanks(end))) return false;
    value = number;
    return true;
}

}  // namespace

Parsed parse_list(const char *text, std::span<std::int32_t> room) {
    return parse(text, room);
}
Parsed parse_list(const char *text, std::span<double> room) {
    return parse(text, room);
}
bool parse_single(const char *text, std::int32_t &value) {
    return parse_one(text, value);
}
bool parse_single(const char *text, double &value) {
    return parse_one(text, value);
}

NumberText::NumberText(std::int32_t value) {
    *std::to_chars(text_, text_ + sizeof text_ - 1, value).ptr = '\0';
}

NumberText::NumberText(double value) {
    constexpr int kSignificantDigits = 6;
    *std::to_chars(text_, text_ + sizeof text_ - 1, value, std::chars_format::general, kSignificantDigits)
         .ptr = '\0';
}

}  // namespace kv::env

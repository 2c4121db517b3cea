#include "env/numbers.hpp"

#include <charconv>
#include <cstring>
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

// The end of the number that begins at `at`; null if there is none.
const char *number_end(const char *at, const std::int32_t *) {
    const char *digits = skip_sign(at);
    const char *end = skip_digits(digits);
    return end != digits ? end : nullptr;
}

const char *number_end(const char *at, const double *) {
    const char *mantissa = skip_sign(at);
    const char *end = skip_digits(mantissa);
    bool has_digits = end != mantissa;
    if (*end == '.') {
        const char *fraction = end + 1;
        end = skip_digits(fraction);
        has_digits = has_digits || end != fraction;
    }
    if (!has_digits) return nullptr;
    if (*end == 'E' || *end == 'e' || *end == 'D' || *end == 'd') {
        const char *exponent = skip_sign(++end);
        if (const char *behind = skip_digits(exponent); behind != exponent) end = behind;
    }
    return end;
}

void convert(const char *begin, const char *end, std::int32_t &value) {
    if (*begin == '+') ++begin;
    if (std::from_chars(begin, end, value).ec == std::errc::result_out_of_range) {
        value = *begin == '-' ? std::numeric_limits<std::int32_t>::min()
                              : std::numeric_limits<std::int32_t>::max();
    }
}

// Numbers that the quick conversion does not take: an exponent written with D, and values beyond the range
// of a double, which become infinite or zero as strtod has it.
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

template <typename Number>
Parsed parse(const char *text, std::span<Number> room) {
    std::size_t count = 0;
    for (const char *at = text;; ++at) {
        at = skip_blanks(at);
        const char *end = number_end(at, static_cast<const Number *>(nullptr));
        if (end == nullptr) return {Parsed::mismatched, 0};
        if (count < room.size()) convert(at, end, room[count]);
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
    const char *at = skip_blanks(text);
    const char *end = number_end(at, static_cast<const Number *>(nullptr));
    if (end == nullptr || !at_end(skip_blanks(end))) return false;
    convert(at, end, value);
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

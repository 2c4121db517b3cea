// SPDX-License-Identifier: MIT
// Literals: the value of long numbers, and tokens in quotes.
#include <charconv>
#include <cstring>

#include "platform/platform.hpp"
#include "scan/number.hpp"
#include "scan/reader.hpp"

namespace kv::scan {

namespace {

// The escape characters with a meaning of their own, and their codes.
constexpr struct {
    char escape;
    std::int32_t code;
} kEscapes[] = {{'a', 7}, {'b', 8},  {'f', 12},  {'n', 10}, {'r', 13},
                {'t', 9}, {'v', 11}, {'\'', 39}, {'"', 34}, {'\\', 92}};

constexpr int kMostCodeDigits = 3;

std::int32_t hexadecimal_value(std::int32_t c) {
    if (c <= '9') return c - '0';
    return (c <= 'F' ? c - 'A' : c - 'a') + 10;
}

// Reads what follows the backslash. The code it means.
std::int32_t read_escape(Reader &reader, Text &text, std::int32_t &error) {
    std::int32_t code = 0;
    if (reader.is_digit()) {
        for (int i = 0; i < kMostCodeDigits && reader.is_digit(); ++i, reader.advance()) {
            text.add(reader.current());
            code = code * 8 + (reader.current() - '0');
        }
        return code;
    }
    const std::int32_t escape = reader.current();
    text.add(escape);
    reader.advance();
    if (escape == 'x' || escape == 'X') {
        for (int i = 0; i < kMostCodeDigits && reader.is_of(kDigit | kHexLetter); ++i, reader.advance()) {
            text.add(reader.current());
            code = code * 16 + hexadecimal_value(reader.current());
        }
        return code;
    }
    for (const auto &each : kEscapes) {
        if (escape == each.escape) return each.code;
    }
    error = SCAN_UNKNOWN_ESCAPE;
    return ' ';
}

}  // namespace

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
        *end++ = '1';  // in place of all further digits
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

Quoted read_character_literal(Reader reader, SCAN_TOKEN &token) {
    std::int32_t error = SCAN_OK;
    Text text(token);
    reader.advance();
    const std::int32_t first = reader.current();
    text.add(first);
    token.lval = first & 0xFF;
    reader.advance();
    if (first == '\\') token.lval = read_escape(reader, text, error);
    text.end();
    if (!reader.take('\'')) error = SCAN_OPEN_CHAR;
    return {reader, error};
}

Quoted read_quoted(Reader reader, char closing, SCAN_TOKEN &token) {
    std::int32_t error = SCAN_OK;
    Text text(token);
    reader.advance();
    bool escaped = false;
    while (!reader.at_end() && !reader.is('\n') && (escaped || !reader.is(closing))) {
        escaped = !escaped && reader.is('\\');
        if (!text.add(reader.current())) error = SCAN_LONG_STRING;
        reader.advance();
    }
    text.end();
    token.lval = text.length();
    if (!reader.take(closing)) error = SCAN_OPEN_STRING;
    return {reader, error};
}

}  // namespace kv::scan

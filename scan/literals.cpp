#include "scan/literals.hpp"

#include <algorithm>

#include "scan/number.hpp"

namespace kv::scan {

namespace {

// The escape characters with a meaning of their own, and their codes.
constexpr struct {
    char escape;
    std::int32_t code;
} kEscapes[] = {{'a', 7}, {'b', 8},  {'f', 12},  {'n', 10}, {'r', 13},
                {'t', 9}, {'v', 11}, {'\'', 39}, {'"', 34}, {'\\', 92}};

constexpr int kMostCodeDigits = 3;

// The digits of an exponent with its sign; false if there is no digit.
bool read_exponent(Reader &reader, Text &text, Number &number) {
    text.add('e');
    reader.advance();
    const bool negative = reader.is('-');
    if (reader.is('+') || negative) {
        text.add(reader.current());
        reader.advance();
    }
    if (!reader.is_digit()) return false;
    std::int64_t exponent = 0;
    for (; reader.is_digit(); reader.advance()) {
        text.add(reader.current());
        exponent = std::min(exponent * 10 + (reader.current() - '0'), Number::kFar);
    }
    number.add_exponent(negative ? -exponent : exponent);
    return true;
}

std::int32_t hexadecimal_value(std::int32_t c) {
    if (c <= '9') return c - '0';
    return (c <= 'F' ? c - 'A' : c - 'a') + 10;
}

// Behind the backslash. The code it means.
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

Outcome read_identifier(Reader &reader, const SCANNER &scanner, SCAN_TOKEN &token) {
    Outcome outcome{SCAN_IDENTIFIER};
    Text text(token);
    do {
        if (!text.add(reader.current())) outcome.error = SCAN_LONG_IDENTIFIER;
        reader.advance();
    } while (reader.continues_identifier());
    text.end();
    token.lval = text.length();
    if (scanner.keywords == nullptr) return outcome;
    const std::int32_t keyword = find_keyword(scanner, token.text);
    if (keyword < 0) return outcome;
    token.lval = keyword;
    outcome.kind = SCAN_KEYWORD;
    return outcome;
}

Outcome read_number(Reader &reader, Prefix prefix, SCAN_TOKEN &token) {
    Outcome outcome{prefix.point ? SCAN_DOUBLE : SCAN_LONG};
    Text text(token);
    Number number(prefix.minus);
    if (prefix.minus) text.add('-');
    if (prefix.point) text.add('.');
    const auto take_digits = [&](bool behind_point) {
        for (; reader.is_digit(); reader.advance()) {
            text.add(reader.current());
            number.add_digit(reader.current(), behind_point);
        }
    };
    if (prefix.point && !reader.is_digit()) outcome.error = SCAN_NO_FRACTION;
    take_digits(prefix.point);
    if (!prefix.point && reader.is('.')) {
        outcome.kind = SCAN_DOUBLE;
        text.add('.');
        reader.advance();
        take_digits(true);
    }
    if (reader.is('e') || reader.is('E')) {
        outcome.kind = SCAN_DOUBLE;
        if (!read_exponent(reader, text, number)) outcome.error = SCAN_NO_EXPONENT;
    }
    text.end();
    if (outcome.kind == SCAN_DOUBLE) {
        token.dval = number.real();
    } else {
        token.lval = number.whole();
    }
    return outcome;
}

Outcome read_character_literal(Reader &reader, SCAN_TOKEN &token) {
    Outcome outcome{SCAN_CHAR};
    Text text(token);
    reader.advance();
    const std::int32_t first = reader.current();
    text.add(first);
    token.lval = first & 0xFF;
    reader.advance();
    if (first == '\\') token.lval = read_escape(reader, text, outcome.error);
    text.end();
    if (!reader.take('\'')) outcome.error = SCAN_OPEN_CHAR;
    return outcome;
}

Outcome read_quoted(Reader &reader, char closing, std::int32_t kind, SCAN_TOKEN &token) {
    Outcome outcome{kind};
    Text text(token);
    reader.advance();
    bool escaped = false;
    while (!reader.at_end() && !reader.is('\n') && (escaped || !reader.is(closing))) {
        escaped = !escaped && reader.is('\\');
        if (!text.add(reader.current())) outcome.error = SCAN_LONG_STRING;
        reader.advance();
    }
    text.end();
    token.lval = text.length();
    if (!reader.take(closing)) outcome.error = SCAN_OPEN_STRING;
    return outcome;
}

}  // namespace kv::scan

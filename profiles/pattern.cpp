// SPDX-License-Identifier: MIT
// Patterns:
//
//     pattern    = letters rest
//     rest       = ( group | number ) tail
//     group      = "(" number { separator number } ")"
//     tail       = end | "(" anything | separator rest
//     separator  = "x" | "X" | "/" | "," | "-"
//
// where a number may be missing. The letters are a type, "x" being none.
#include "profiles/pattern.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/platform.hpp"

namespace kv::profiles {

namespace {

constexpr double kTolerance = 1e-15;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool begins_number(char c) {
    return is_digit(c) || c == '.' || c == 'e' || c == 'E';
}

bool is_dimension_separator(char c) {
    return c != '\0' && std::strchr("xX/,-", c) != nullptr;
}

// A whole number of 32 bits, which overflows as one.
double parse_digits(const char *&text) {
    std::uint32_t digits = 0;
    for (; is_digit(*text); ++text) digits = digits * 10 + static_cast<std::uint32_t>(*text - '0');
    return static_cast<std::int32_t>(digits);
}

double parse_decimals(const char *&text) {
    double value = 0;
    double unit = 1;
    for (; is_digit(*text); ++text) value += (*text - '0') / (unit *= 10);
    return value;
}

double parse_exponent(const char *&text) {
    constexpr int kBeyondEveryNumber = 10'000;
    const bool negative = *text == '-';
    int exponent = 0;
    if (*text == '-' || *text == '+') ++text;
    for (; is_digit(*text); ++text) exponent = std::min(exponent * 10 + (*text - '0'), kBeyondEveryNumber);
    return platform::power(10.0, negative ? -exponent : exponent);
}

double parse_number(const char *&text) {
    double value = is_digit(*text) || *text == '.' ? 0 : 1;
    if (is_digit(*text)) value = parse_digits(text);
    if (*text == '.') value += parse_decimals(++text);
    if (*text == 'e' || *text == 'E') value *= parse_exponent(++text);
    return value;
}

// A pattern and the text that it is compared with, each from where the comparison has come to.
struct Comparer {
    const char *pattern;
    const char *field;

    bool type();
    bool number(bool exact);
    bool separator();
    bool group();
    bool dimensions();
};

char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool is_type_letter(char c) {
    const char lower = to_lower(c);
    return lower >= 'a' && lower <= 'z' && lower != 'x';
}

bool Comparer::type() {
    const char *start = pattern;
    while (is_type_letter(*pattern) && to_lower(*pattern) == to_lower(*field)) {
        ++pattern;
        ++field;
    }
    return !is_type_letter(*pattern) && (pattern == start || *field == '\0');
}

bool Comparer::number(bool exact) {
    if (!begins_number(*field)) return false;
    const double actual = parse_number(field);
    if (!begins_number(*pattern)) return true;
    const double wanted = parse_number(pattern);
    return exact ? std::fabs(actual - wanted) <= kTolerance : actual >= wanted;
}

bool Comparer::separator() {
    if (!is_dimension_separator(*pattern) || *field != *pattern) return false;
    ++pattern;
    ++field;
    return true;
}

bool Comparer::group() {
    do {
        ++pattern;  // the parenthesis, later the separator
        if (!number(true)) return false;
        if (*pattern == ')') {
            ++pattern;
            return true;
        }
        if (!is_dimension_separator(*pattern) || *field != *pattern) return false;
        ++field;
    } while (true);
}

bool Comparer::dimensions() {
    do {
        if (*pattern == '(' ? !group() : !number(false)) return false;
        if (*pattern == '\0' || *pattern == '(') return true;
    } while (separator());
    return false;
}

}  // namespace

memory::String without_blanks(const char *text) {
    memory::String result;
    for (; text != nullptr && *text != '\0'; ++text) {
        if (*text != ' ' && *text != '\t') result.push_back(*text);
    }
    return result;
}

Pattern::Pattern(const char *text) : text_(without_blanks(text)) {}

bool Pattern::matches(const EntryName &name) const {
    Comparer comparer{text_.c_str(), name.type};
    if (!comparer.type()) return false;
    comparer.field = name.size;
    return comparer.dimensions();
}

memory::String exact_pattern(const char *text) {
    constexpr std::size_t kLongest = 255;
    memory::String plain;
    memory::String exact;
    for (std::size_t i = 0; text != nullptr && i < kLongest && text[i] != '\0'; ++i) {
        if (text[i] != '(' && text[i] != ')') plain.push_back(text[i]);
    }
    for (const char *p = plain.c_str(); *p != '\0';) {
        if (!is_digit(*p) && *p != '.') {
            exact.push_back(*p++);
            continue;
        }
        const char *start = p;
        parse_number(p);
        exact.push_back('(');
        exact.append(start, p);
        exact.push_back(')');
    }
    return exact;
}

}  // namespace kv::profiles

// SPDX-License-Identifier: MIT
// Patterns, beside a matcher that follows their grammar by recursion.
#include <cmath>
#include <cstring>

#include "fuzz/profiles/support.hpp"
#include "profiles/pattern.hpp"

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool begins_number(char c) {
    return is_digit(c) || (c != '\0' && std::strchr(".eE", c) != nullptr);
}

bool is_separator(char c) {
    return c != '\0' && std::strchr("xX/,-", c) != nullptr;
}

double read_number(const char *&p) {
    double value = 0;
    bool mantissa = false;
    std::int64_t whole = 0;
    for (; is_digit(*p); ++p, mantissa = true) whole = (whole * 10 + (*p - '0')) & 0xffffffff;
    value = whole > 0x7fffffff ? static_cast<double>(whole - 0x100000000) : static_cast<double>(whole);
    if (*p == '.') {
        mantissa = true;
        double unit = 10;
        for (++p; is_digit(*p); ++p, unit *= 10) value += (*p - '0') / unit;
    }
    if (!mantissa) value = 1;
    if (*p != 'e' && *p != 'E') return value;
    ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    double exponent = 0;
    for (; is_digit(*p); ++p) exponent = std::fmin(exponent * 10 + (*p - '0'), 10000);
    return value * std::pow(10.0, negative ? -exponent : exponent);
}

bool number(const char *&p, const char *&f, bool exact) {
    if (!begins_number(*f)) return false;
    const double actual = read_number(f);
    if (!begins_number(*p)) return true;
    const double wanted = read_number(p);
    return exact ? std::fabs(actual - wanted) <= 1e-15 : actual >= wanted;
}

bool group(const char *&p, const char *&f) {
    if (!number(p, f, true)) return false;
    if (*p == ')') return ++p, true;
    if (!is_separator(*p) || *p != *f) return false;
    return group(++p, ++f);
}

bool rest(const char *p, const char *f) {
    if (*p == '(' ? !group(++p, f) : !number(p, f, false)) return false;
    if (*p == '\0' || *p == '(') return true;
    return is_separator(*p) && *p == *f && rest(p + 1, f + 1);
}

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool matches(const std::string &text, const char *type, const char *size) {
    std::string pattern;
    for (const char c : text) {
        if (c != ' ' && c != '\t') pattern += c;
    }
    std::string letters;
    for (const char c : pattern) {
        if (!is_letter(c) || c == 'x' || c == 'X') break;
        letters += c;
    }
    if (!letters.empty() && strcasecmp(letters.c_str(), type) != 0) return false;
    return rest(pattern.c_str() + letters.size(), size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    kvfuzz::Input input(data, size);
    std::string text = input.rest();
    for (char &c : text) c = c != '\0' ? c : ' ';
    const std::size_t first = text.find('\n');
    const std::size_t second = first != text.npos ? text.find('\n', first + 1) : text.npos;
    if (second == text.npos) return 0;
    kv::profiles::EntryName name{};
    text.substr(0, first).copy(name.type, kv::profiles::kLongestField);
    text.substr(first + 1, second - first - 1).copy(name.size, kv::profiles::kLongestField);
    const std::string pattern = text.substr(second + 1);
    KV_REQUIRE(kv::profiles::Pattern(pattern.c_str()).matches(name) ==
               matches(pattern, name.type, name.size));
    const kv::memory::String exact = kv::profiles::exact_pattern(pattern.c_str());
    KV_REQUIRE(exact.size() <= 3 * 255);
    KV_REQUIRE(kv::profiles::Pattern(exact.c_str()).matches(name) ==
               matches(std::string(exact.data(), exact.size()), name.type, name.size));
    return 0;
}

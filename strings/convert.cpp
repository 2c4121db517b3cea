// Conversions between numbers and text, the same in every locale.
#include <algorithm>
#include <cstdarg>
#include <cstdint>

#include "kv/strings.h"

#include "platform/platform.hpp"

namespace {

KV_PRINTF(2, 3)
void print(char *dst, const char *format_text, ...) {
    std::va_list arguments;
    va_start(arguments, format_text);
    // How much room there is, only the caller knows.
    if (kv::platform::format(dst, INT32_MAX, format_text, arguments) < 0) *dst = '\0';
    va_end(arguments);
}

// A width whose sign can be changed.
std::int32_t printable(std::int32_t width) {
    return std::max(width, -INT32_MAX);
}

bool is_white_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

void convert_dtos(double value, int32_t width, int32_t decimals, char *dst) noexcept {
    print(dst, "%*.*f", printable(width), std::max(decimals, 0), value);
}

void convert_ltos(int32_t value, int32_t width, char *dst) noexcept {
    print(dst, "%*d", printable(width), value);
}

double convert_stod(const char *s) noexcept {
    return kv::platform::parse_double(s);
}

int32_t convert_stol(const char *s) noexcept {
    while (is_white_space(*s)) ++s;
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+') ++s;
    const std::int64_t limit = negative ? -std::int64_t{INT32_MIN} : INT32_MAX;
    std::int64_t magnitude = 0;
    for (; is_digit(*s) && magnitude < limit; ++s) magnitude = std::min(magnitude * 10 + (*s - '0'), limit);
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

// SPDX-License-Identifier: MIT
// Numbers as text in the "C" locale, whatever the application's locale is; powers.
#include <cmath>
#include <cstdio>
#include <locale.h>
#include <stdlib.h>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {

// Null if the system has no room for it; then the application's own locale has to do.
locale_t c_locale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

int format(char *buffer, std::size_t size, const char *format_text, std::va_list arguments) {
    const locale_t locale = c_locale();
    const locale_t before = locale != nullptr ? uselocale(locale) : nullptr;
    const int length = std::vsnprintf(buffer, size, format_text, arguments);
    if (before != nullptr) uselocale(before);
    return length;
}

double parse_double(const char *text) {
    const locale_t locale = c_locale();
    return locale != nullptr ? strtod_l(text, nullptr, locale) : strtod(text, nullptr);
}

double power(double base, double exponent) {
    return std::pow(base, exponent);
}

}  // namespace kv::platform

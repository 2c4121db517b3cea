// SPDX-License-Identifier: MIT
// Numbers as text in the "C" locale, whatever the application's locale is; powers.
//
// The formatting is that of the compiler's library, which follows the standard ("1e+10", where the
// system's writes "1e+010"), but it takes the decimal point of the locale.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/platform.hpp"

// The system library's pow(), by the name under which it is imported. The compiler's own multiplies for
// whole exponents, and is off in the last places of every second result.
#ifdef _WIN64
extern double (*system_pow)(double, double) __asm__("__imp_pow");
#else
extern double (*system_pow)(double, double) __asm__("__imp__pow");
#endif

namespace kv::platform {

namespace {

// This thread has the "C" locale for numbers while this exists.
class CNumbers {
  public:
    CNumbers() {
        if (std::strcmp(std::localeconv()->decimal_point, ".") == 0) return;
        before_ = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
        const char *name = std::setlocale(LC_NUMERIC, nullptr);
        if (name == nullptr || std::strlen(name) >= sizeof name_) return;
        std::memcpy(name_, name, std::strlen(name) + 1);
        std::setlocale(LC_NUMERIC, "C");
    }
    CNumbers(const CNumbers &) = delete;
    CNumbers &operator=(const CNumbers &) = delete;
    ~CNumbers() {
        if (name_[0] != '\0') std::setlocale(LC_NUMERIC, name_);
        if (before_ > 0) _configthreadlocale(before_);
    }

  private:
    int before_ = 0;
    char name_[256] = "";
};

}  // namespace

int format(char *buffer, std::size_t size, const char *format_text, std::va_list arguments) {
    const CNumbers numbers;
    return std::vsnprintf(buffer, size, format_text, arguments);
}

double parse_double(const char *text) {
    const CNumbers numbers;
    char *end = nullptr;
    const double value = std::strtod(text, &end);
    return end != text ? value : 0;  // the compiler's library makes -0 of "-"
}

double power(double base, double exponent) {
    return system_pow(base, exponent);
}

}  // namespace kv::platform

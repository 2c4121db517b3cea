// Numbers as text in the "C" locale, whatever the application's locale is.
//
// The formatting is that of the compiler's library, which follows the standard ("1e+10", where the
// system's writes "1e+010"), but it takes the decimal point of the locale.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/platform.hpp"

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

}  // namespace kv::platform

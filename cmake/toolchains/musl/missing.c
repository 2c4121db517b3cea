/* SPDX-License-Identifier: MIT */
/* What LLVM's C++ library wants of glibc and musl does not have. The locale is always "C". */
#define _GNU_SOURCE
#include <locale.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

int __vfprintf_chk(FILE *file, int flag, const char *format, va_list arguments) {
    (void)flag;
    return vfprintf(file, format, arguments);
}

int __fprintf_chk(FILE *file, int flag, const char *format, ...) {
    int result;
    va_list arguments;
    (void)flag;
    va_start(arguments, format);
    result = vfprintf(file, format, arguments);
    va_end(arguments);
    return result;
}

int __vsnprintf_chk(char *out, size_t size, int flag, size_t room, const char *format, va_list arguments) {
    (void)flag;
    (void)room;
    return vsnprintf(out, size, format, arguments);
}

int __vasprintf_chk(char **out, int flag, const char *format, va_list arguments) {
    (void)flag;
    return vasprintf(out, format, arguments);
}

long long strtoll_l(const char *text, char **end, int base, locale_t locale) {
    (void)locale;
    return strtoll(text, end, base);
}

unsigned long long strtoull_l(const char *text, char **end, int base, locale_t locale) {
    (void)locale;
    return strtoull(text, end, base);
}

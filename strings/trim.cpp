// Removing blanks. A text that has none is only read.
#include <cstring>

#include "kv/strings.h"

char *str_trim(char *s) noexcept {
    return str_rtrim(str_ltrim(s));
}

char *str_ltrim(char *s) noexcept {
    const char *start = s;
    while (*start == ' ') ++start;
    if (start != s) std::memmove(s, start, std::strlen(start) + 1);
    return s;
}

char *str_rtrim(char *s) noexcept {
    char *end = s + std::strlen(s);
    while (end != s && end[-1] == ' ') --end;
    if (*end != '\0') *end = '\0';
    return s;
}

// Capitals and small letters.
#include "kv/strings.h"

#include "strings/ascii.hpp"

char *str_cap(char *s) noexcept {
    for (char *at = s; *at != '\0'; ++at) *at = kv::strings::to_upper(*at);
    return s;
}

char *str_low(char *s) noexcept {
    for (char *at = s; *at != '\0'; ++at) *at = kv::strings::to_lower(*at);
    return s;
}

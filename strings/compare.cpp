// Comparisons.
#include <cstring>

#include "kv/strings.h"

#include "strings/ascii.hpp"

int32_t str_eq(const char *a, const char *b) noexcept {
    return std::strcmp(a, b) == 0 ? 1 : 0;
}

int32_t str_ieq(const char *a, const char *b) noexcept {
    return str_icmp(a, b) == 0 ? 1 : 0;
}

int32_t str_cmp(const char *a, const char *b) noexcept {
    const int order = std::strcmp(a, b);
    return (order > 0 ? 1 : 0) - (order < 0 ? 1 : 0);
}

int32_t str_icmp(const char *a, const char *b) noexcept {
    for (;; ++a, ++b) {
        const auto left = static_cast<unsigned char>(kv::strings::to_lower(*a));
        const auto right = static_cast<unsigned char>(kv::strings::to_lower(*b));
        if (left != right || left == 0) return left - right;
    }
}

int32_t str_ncmp(const char *a, const char *b, uint32_t n) noexcept {
    return std::strncmp(a, b, n);
}

// Lengths and searches.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kv/strings.h"

namespace {

std::int32_t to_index(std::ptrdiff_t distance) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(distance, INT32_MAX));
}

std::int32_t index_of(const char *s, const char *found) {
    return found != nullptr ? to_index(found - s) : -1;
}

}  // namespace

int32_t str_len(const char *s) noexcept {
    return to_index(static_cast<std::ptrdiff_t>(std::strlen(s)));
}

char *str_chr(const char *s, char c) noexcept {
    return const_cast<char *>(std::strchr(s, c));
}

char *str_rchr(const char *s, char c) noexcept {
    return const_cast<char *>(std::strrchr(s, c));
}

int32_t str_ichr(const char *s, char c) noexcept {
    return index_of(s, std::strchr(s, c));
}

int32_t str_irchr(const char *s, char c) noexcept {
    return index_of(s, std::strrchr(s, c));
}

char *str_pos(const char *s, const char *sub) noexcept {
    return const_cast<char *>(std::strstr(s, sub));
}

int32_t str_ipos(const char *s, const char *sub) noexcept {
    return index_of(s, std::strstr(s, sub));
}

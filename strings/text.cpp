// SPDX-License-Identifier: MIT
// Texts: comparing, searching, changing in place, taking apart. Only the ASCII letters have case, in every
// locale.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kv/frame.h"
#include "kv/strings.h"

#include "strings/state.hpp"

using kv::strings::state;

namespace {

char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::int32_t to_index(std::ptrdiff_t distance) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(distance, INT32_MAX));
}

std::int32_t index_of(const char *s, const char *found) {
    return found != nullptr ? to_index(found - s) : -1;
}

struct Letter {
    unsigned char dos, ansi;
};

// Small u and a umlaut, capital A, small o, capital O and U umlaut, sharp s.
constexpr Letter kLetters[] = {{0x81, 0xFC}, {0x84, 0xE4}, {0x8E, 0xC4}, {0x94, 0xF6},
                               {0x99, 0xD6}, {0x9A, 0xDC}, {0xE1, 0xDF}};

char ansi_letter(char c) {
    for (const Letter &letter : kLetters) {
        if (static_cast<unsigned char>(c) == letter.dos) return static_cast<char>(letter.ansi);
    }
    return c;
}

char *next_in_list(char *list) {
    char *current = list != nullptr ? list : state.list_position;
    if (current == nullptr) {
        kv_error("The str_tok was called with wrong parameter <source>.", nullptr, nullptr, "Str",
                 __LINE__);
        return nullptr;
    }
    // The position stays on the empty text that ends the list, so that later calls end there too.
    const bool at_end = *current == '\0';
    state.list_position = at_end ? current : current + std::strlen(current) + 1;
    return at_end ? nullptr : current;
}

}  // namespace

// ---- Comparing

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
        const auto left = static_cast<unsigned char>(to_lower(*a));
        const auto right = static_cast<unsigned char>(to_lower(*b));
        if (left != right || left == 0) return left - right;
    }
}

int32_t str_ncmp(const char *a, const char *b, uint32_t n) noexcept {
    return std::strncmp(a, b, n);
}

// ---- Searching

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

// ---- Changing in place. A text without blanks to remove is only read.

char *str_cap(char *s) noexcept {
    for (char *at = s; *at != '\0'; ++at) *at = to_upper(*at);
    return s;
}

char *str_low(char *s) noexcept {
    for (char *at = s; *at != '\0'; ++at) *at = to_lower(*at);
    return s;
}

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

char *dos_to_win(char *s, int32_t mode) noexcept {
    if (mode != 0) return s;
    for (char *at = s; *at != '\0'; ++at) *at = ansi_letter(*at);
    return s;
}

// ---- Taking apart, repeating

char *str_tok(char *s, const char *delims) noexcept {
    return delims != nullptr ? std::strtok(s, delims) : next_in_list(s);
}

char *str_rpt(char c, int32_t n) noexcept {
    char *end = std::fill_n(state.repeated, std::clamp(n, 0, kv::strings::kMostRepeated), c);
    *end = '\0';
    return state.repeated;
}

// SPDX-License-Identifier: MIT
#include "platform/wildcards.hpp"

#include <bitset>
#include <cstring>
#include <string_view>

namespace kv::platform {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The places in the pattern that the name read so far can have led to; the last one is the end.
constexpr std::size_t kLongest = 255;  // as file systems have it
using Places = std::bitset<kLongest + 1>;

bool is_wildcard(char c) {
    return c == '*' || c == '?';
}

// A point that may stand for no point at the end of the name.
bool is_soft_point(std::string_view pattern, std::size_t at) {
    return pattern[at] == '.' && (at + 1 == pattern.size() || is_wildcard(pattern[at + 1]));
}

// A "*" before a soft point ends before the name's last point.
bool may_take(std::string_view pattern, std::size_t at, char c, bool last_point) {
    const bool before_soft_point = at + 1 < pattern.size() && is_soft_point(pattern, at + 1);
    return !before_soft_point || c != '.' || !last_point;
}

// Adds the places that are reached without a character of the name.
void pass_empty(std::string_view pattern, Places &places, bool at_point, bool at_end) {
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (!places[at]) continue;
        if (pattern[at] == '*' || (pattern[at] == '?' && (at_point || at_end)) ||
            (at_end && is_soft_point(pattern, at))) {
            places.set(at + 1);
        }
    }
}

Places advance(std::string_view pattern, const Places &places, char c, bool last_point) {
    Places next;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (!places[at]) continue;
        if (pattern[at] == '*') {
            if (may_take(pattern, at, c, last_point)) next.set(at);
        } else if ((pattern[at] == '?' && c != '.') || lower(pattern[at]) == lower(c)) {
            next.set(at + 1);
        }
    }
    return next;
}

}  // namespace

bool has_wildcards(const char *name) {
    return std::strpbrk(name, "*?") != nullptr;
}

bool matches_pattern(const char *pattern_text, const char *name) {
    const std::string_view pattern = std::strcmp(pattern_text, "*.*") == 0 ? "*" : pattern_text;
    if (pattern.size() > kLongest) return false;
    const char *last_point = std::strrchr(name, '.');
    Places places;
    places.set(0);
    for (; *name != '\0'; ++name) {
        pass_empty(pattern, places, *name == '.', false);
        places = advance(pattern, places, *name, name == last_point);
        if (places.none()) return false;
    }
    pass_empty(pattern, places, false, true);
    return places[pattern.size()];
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Copying and joining. Lengths are known before anything is written, so texts may overlap.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "kv/memory.h"
#include "kv/strings.h"

namespace {

// The first `most` characters of a text; no byte after them is read.
std::string_view beginning(const char *text, std::size_t most) {
    const void *end = std::memchr(text, '\0', most);
    if (end == nullptr) return {text, most};
    return {text, static_cast<std::size_t>(static_cast<const char *>(end) - text)};
}

std::string_view first_characters(const char *text, std::int32_t n) {
    return n > 0 ? beginning(text, static_cast<std::size_t>(n)) : std::string_view();
}

std::string_view range(const char *text, std::int32_t from, std::int32_t to) {
    if (from < 0 || to < from) return {};
    const auto start = static_cast<std::size_t>(from);
    const std::string_view up_to = beginning(text, static_cast<std::size_t>(to) + 1);
    return start < up_to.size() ? up_to.substr(start) : std::string_view();
}

void put(char *dst, std::string_view text) {
    if (!text.empty()) std::memmove(dst, text.data(), text.size());
    dst[text.size()] = '\0';
}

void append(char *dst, std::string_view text) {
    if (!text.empty()) put(dst + std::strlen(dst), text);
}

}  // namespace

char *str_cpy(char *dst, const char *src) noexcept {
    put(dst, src);
    return dst;
}

char *str_alloc(const char *src) noexcept {
    if (src == nullptr) return nullptr;
    const std::size_t size = std::strlen(src) + 1;
    if (size > UINT32_MAX) return nullptr;
    void *copy = heap_calloc(static_cast<std::uint32_t>(size), 1);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, src, size)) : nullptr;
}

char *str_ncpy(char *dst, const char *src, int32_t n) noexcept {
    put(dst, first_characters(src, n));
    return dst;
}

char *str_pcpy(char *dst, const char *src, int32_t from, int32_t to) noexcept {
    put(dst, range(src, from, to));
    return dst;
}

char *str_cat(char *dst, const char *src) noexcept {
    append(dst, src);
    return dst;
}

char *str_ncat(char *dst, const char *src, int16_t n) noexcept {
    append(dst, first_characters(src, n));
    return dst;
}

char *str_pcat(char *dst, const char *src, int32_t from, int32_t to) noexcept {
    append(dst, range(src, from, to));
    return dst;
}

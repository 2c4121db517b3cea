// SPDX-License-Identifier: MIT
// Characters, string fields, lines.
#include <algorithm>
#include <cstring>

#include "fio/handle.hpp"
#include "platform/stream_characters.hpp"

using kv::platform::get_character;
using kv::platform::put_character;

namespace {

// The characters of a field that come from the text.
std::size_t taken_characters(const char *text, std::int32_t width) {
    if (width <= 0) return std::strlen(text);
    const auto most = static_cast<std::size_t>(width);
    const void *end = std::memchr(text, '\0', most);
    return end != nullptr ? static_cast<std::size_t>(static_cast<const char *>(end) - text) : most;
}

bool write_characters(std::FILE *fp, const char *characters, std::size_t count) {
    return std::fwrite(characters, 1, count, fp) == count;
}

bool is_in(const char *characters, int c) {
    return characters != nullptr && std::strchr(characters, c) != nullptr;
}

// Up to the end of the line, or after the first of `delims`.
std::int32_t read_line(const FIO *handle, std::int32_t max, const char *delims, char *buf) {
    std::FILE *const fp = handle->fp;
    int c = handle->reads() ? get_character(fp) : EOF;
    if (c == EOF) {
        *buf = '\0';
        return -1;
    }
    std::int32_t length = 0;
    while (c != EOF && c != '\0' && c != '\n') {
        buf[length++] = static_cast<char>(c);
        if (length == max || is_in(delims, c)) break;
        c = get_character(fp);
    }
    buf[length] = '\0';
    return 0;
}

}  // namespace

int32_t fio_putchar(FIO *handle, char c) noexcept {
    return handle != nullptr && handle->writes() && put_character(c, handle->fp) != EOF ? 0 : -1;
}

int32_t fio_putstring(FIO *handle, const char *text, int32_t width) noexcept {
    constexpr char kBlanks[] = "                                ";
    constexpr std::size_t kMostBlanks = sizeof kBlanks - 1;
    if (handle == nullptr) return -1;
    if (text == nullptr) text = "";
    const std::size_t taken = taken_characters(text, width);
    std::size_t left = width > 0 ? static_cast<std::size_t>(width) - taken : 0;
    if (taken + left == 0) return 0;
    if (!handle->writes() || !write_characters(handle->fp, text, taken)) return -1;
    while (left > 0) {
        const std::size_t count = std::min(left, kMostBlanks);
        if (!write_characters(handle->fp, kBlanks, count)) return -1;
        left -= count;
    }
    return 0;
}

int32_t fio_getchar(FIO *handle, char *out) noexcept {
    const int c = handle != nullptr && handle->reads() ? get_character(handle->fp) : EOF;
    if (c == EOF) return -1;
    if (out == nullptr) return c;
    *out = static_cast<char>(c);
    return 0;
}

int32_t fio_getstring(FIO *handle, int32_t max, char *buf) noexcept {
    return handle != nullptr && max > 0 ? read_line(handle, max, nullptr, buf) : -1;
}

int32_t fio_getstringdel(FIO *handle, int32_t max, const char *delims, char *buf) noexcept {
    if (handle == nullptr) return -1;
    if (max > 0) return read_line(handle, max, delims, buf);
    *buf = '\0';
    return -1;
}

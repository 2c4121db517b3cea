// Characters, string fields, lines.
#include <cstring>

#include "fio/handle.hpp"

namespace {

bool write_character(std::FILE *fp, char c) {
    return std::putc(static_cast<unsigned char>(c), fp) != EOF;
}

bool is_in(const char *characters, int c) {
    return characters != nullptr && std::strchr(characters, c) != nullptr;
}

// Up to the end of the line, or behind the first of `delims`.
std::int32_t read_line(std::FILE *fp, std::int32_t max, const char *delims, char *buf) {
    int c = std::getc(fp);
    if (c == EOF) {
        *buf = '\0';
        return -1;
    }
    std::int32_t length = 0;
    while (c != EOF && c != '\0' && c != '\n') {
        buf[length++] = static_cast<char>(c);
        if (length == max || is_in(delims, c)) break;
        c = std::getc(fp);
    }
    buf[length] = '\0';
    return 0;
}

}  // namespace

int32_t fio_putchar(FIO *handle, char c) noexcept {
    return handle != nullptr && write_character(handle->fp, c) ? 0 : -1;
}

int32_t fio_putstring(FIO *handle, const char *text, int32_t width) noexcept {
    if (handle == nullptr) return -1;
    if (text == nullptr) text = "";
    // Without a width, or with a negative one, the text ends the field.
    const bool whole = width <= 0;
    std::int32_t written = 0;
    for (; *text != '\0' && (whole || written < width); ++text) {
        if (!write_character(handle->fp, *text)) return -1;
        if (!whole) ++written;
    }
    for (; written < width; ++written) {
        if (!write_character(handle->fp, ' ')) return -1;
    }
    return 0;
}

int32_t fio_getchar(FIO *handle, char *out) noexcept {
    const int c = handle != nullptr ? std::getc(handle->fp) : EOF;
    if (c == EOF) return -1;
    if (out == nullptr) return c;
    *out = static_cast<char>(c);
    return 0;
}

int32_t fio_getstring(FIO *handle, int32_t max, char *buf) noexcept {
    return handle != nullptr && max > 0 ? read_line(handle->fp, max, nullptr, buf) : -1;
}

int32_t fio_getstringdel(FIO *handle, int32_t max, const char *delims, char *buf) noexcept {
    if (handle == nullptr) return -1;
    if (max > 0) return read_line(handle->fp, max, delims, buf);
    *buf = '\0';
    return -1;
}

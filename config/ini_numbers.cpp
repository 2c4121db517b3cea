// Numbers and lists of numbers in INI files.
#include <cstdarg>
#include <cstdint>
#include <cstring>

#include "kv/ini.h"
#include "kv/strings.h"

#include "platform/platform.hpp"

namespace {

constexpr std::int32_t kValueLength = 512;

class ValueText {
  public:
    ValueText(const char *path, const char *section, const char *entry) {
        std::int32_t size = kValueLength;
        status_ = ini_read_string(path, section, entry, text_, &size);
    }

    std::int32_t status() const { return status_; }
    char *text() { return text_; }

  private:
    std::int32_t status_;
    char text_[kValueLength + 1];
};

// The pieces up to each comma; a comma at the end is followed by no piece.
template <typename Number, typename Convert>
std::int32_t read_list(ValueText value, Number *items, std::int32_t *count, Convert convert) {
    if (value.status() != INI_OK) {
        *count = 0;
        return value.status();
    }
    std::int32_t stored = 0;
    for (char *piece = value.text(); *piece != '\0';) {
        if (stored >= *count) return INI_NO_ROOM;
        char *comma = std::strchr(piece, ',');
        if (comma != nullptr) *comma = '\0';
        items[stored++] = convert(piece);
        if (comma == nullptr) break;
        piece = comma + 1;
    }
    *count = stored;
    return INI_OK;
}

// A number as text.
class Printed {
  public:
    KV_PRINTF(2, 3)
    explicit Printed(const char *format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        length_ = kv::platform::format(text_, sizeof text_, format, arguments);
        va_end(arguments);
    }

    const char *text() const { return text_; }
    std::int32_t length() const { return length_; }

  private:
    int length_;
    char text_[400];  // the largest real number has 309 digits before the point
};

template <typename Number>
std::int32_t write_list(const char *path, const char *section, const char *entry, const char *format,
                        const Number *items, std::int32_t count) {
    char text[kValueLength + 1] = "";
    std::int32_t length = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const Printed item(format, items[i]);
        if (length + item.length() > kValueLength) return INI_NO_ROOM;
        std::memcpy(text + length, item.text(), static_cast<std::size_t>(item.length()) + 1);
        length += item.length();
    }
    if (length > 0) text[length - 1] = '\0';  // the last comma
    return ini_write_string(path, section, entry, text);
}

}  // namespace

int32_t ini_read_long(const char *path, const char *section, const char *entry, int32_t *value) noexcept {
    ValueText text(path, section, entry);
    if (text.status() == INI_OK) *value = convert_stol(text.text());
    return text.status();
}

int32_t ini_read_double(const char *path, const char *section, const char *entry, double *value) noexcept {
    ValueText text(path, section, entry);
    if (text.status() == INI_OK) *value = convert_stod(text.text());
    return text.status();
}

int32_t ini_read_longs(const char *path, const char *section, const char *entry, int32_t *items,
                       int32_t *count) noexcept {
    return read_list(ValueText(path, section, entry), items, count, convert_stol);
}

int32_t ini_read_doubles(const char *path, const char *section, const char *entry, double *items,
                         int32_t *count) noexcept {
    return read_list(ValueText(path, section, entry), items, count, convert_stod);
}

int32_t ini_write_long(const char *path, const char *section, const char *entry, int32_t value) noexcept {
    return ini_write_string(path, section, entry, Printed("%d", value).text());
}

int32_t ini_write_double(const char *path, const char *section, const char *entry, double value) noexcept {
    return ini_write_string(path, section, entry, Printed("%f", value).text());
}

int32_t ini_write_longs(const char *path, const char *section, const char *entry, const int32_t *items,
                        int32_t count) noexcept {
    return write_list(path, section, entry, "%d,", items, count);
}

int32_t ini_write_doubles(const char *path, const char *section, const char *entry, const double *items,
                          int32_t count) noexcept {
    return write_list(path, section, entry, "%g,", items, count);
}

int32_t ini_rw_string(int32_t write, const char *path, const char *section, const char *entry, char *buf,
                      int32_t *size) noexcept {
    if (write != 0) return ini_write_string(path, section, entry, buf);
    return ini_read_string(path, section, entry, buf, size);
}

int32_t ini_rw_long(int32_t write, const char *path, const char *section, const char *entry,
                    int32_t *value) noexcept {
    if (value == nullptr) return INI_NO_ROOM;
    if (write != 0) return ini_write_long(path, section, entry, *value);
    return ini_read_long(path, section, entry, value);
}

int32_t ini_rw_double(int32_t write, const char *path, const char *section, const char *entry,
                      double *value) noexcept {
    if (value == nullptr) return INI_NO_ROOM;
    if (write != 0) return ini_write_double(path, section, entry, *value);
    return ini_read_double(path, section, entry, value);
}

int32_t ini_rw_longs(int32_t write, const char *path, const char *section, const char *entry,
                     int32_t *items, int32_t *count) noexcept {
    if (items == nullptr || count == nullptr) return INI_NO_ROOM;
    if (write != 0) return ini_write_longs(path, section, entry, items, *count);
    return ini_read_longs(path, section, entry, items, count);
}

int32_t ini_rw_doubles(int32_t write, const char *path, const char *section, const char *entry,
                       double *items, int32_t *count) noexcept {
    if (items == nullptr || count == nullptr) return INI_NO_ROOM;
    if (write != 0) return ini_write_doubles(path, section, entry, items, *count);
    return ini_read_doubles(path, section, entry, items, count);
}

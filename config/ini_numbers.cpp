// SPDX-License-Identifier: MIT
// Numbers and lists of numbers in INI files.
#include <cstdint>

#include "kv/ini.h"
#include "kv/strings.h"

#include "config/number_text.hpp"

using namespace kv::config;

namespace {

constexpr std::int32_t kValueLength = 512;

class ValueText {
  public:
    ValueText(const char *path, const char *section, const char *entry) {
        std::int32_t size = kValueLength;
        status_ = ini_read_string(path, section, entry, text_, &size);
    }

    std::int32_t status() const { return status_; }
    const char *text() const { return text_; }

  private:
    std::int32_t status_;
    char text_[kValueLength + 1];
};

template <typename Number>
std::int32_t read_list(const ValueText &value, Number (*convert)(const char *) noexcept, Number *items,
                       std::int32_t *count) {
    if (value.status() == INI_OK) return read_numbers(value.text(), convert, items, count);
    *count = 0;
    return value.status();
}

template <typename Number>
std::int32_t write_list(const char *path, const char *section, const char *entry, const char *format,
                        const Number *items, std::int32_t count) {
    const ListText list(format, items, count);
    return list.fits() ? ini_write_string(path, section, entry, list.text()) : std::int32_t{INI_NO_ROOM};
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
    return read_list(ValueText(path, section, entry), convert_stol, items, count);
}

int32_t ini_read_doubles(const char *path, const char *section, const char *entry, double *items,
                         int32_t *count) noexcept {
    return read_list(ValueText(path, section, entry), convert_stod, items, count);
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

// SPDX-License-Identifier: MIT
// Numbers and lists of numbers in a cache.
#include "kv/strings.h"

#include "config/mini_cache.hpp"
#include "config/mini_values.hpp"
#include "config/number_text.hpp"

using namespace kv::mini;
using kv::config::ListText;
using kv::config::Printed;

namespace {

std::int32_t find(MINI *cache, const char *section, const char *entry, const void *out, const char *&text) {
    if (out == nullptr) return INI_NO_ROOM;
    if (entry == nullptr) return INI_NO_ENTRY;
    return find_value(cache, section_name(section), entry, text);
}

template <typename Number>
std::int32_t read(MINI *cache, const char *section, const char *entry,
                  Number (*convert)(const char *) noexcept, Number *value) {
    const char *text = nullptr;
    const std::int32_t status = find(cache, section, entry, value, text);
    if (status == INI_OK) *value = convert(text);
    return status;
}

template <typename Number>
std::int32_t read_list(MINI *cache, const char *section, const char *entry,
                       Number (*convert)(const char *) noexcept, Number *items, std::int32_t *count) {
    const char *text = nullptr;
    const std::int32_t status = find(cache, section, entry, items != nullptr ? count : nullptr, text);
    return status == INI_OK ? kv::config::read_numbers(text, convert, items, count) : status;
}

template <typename Number>
std::int32_t write_list(MINI *cache, const char *section, const char *entry, const char *format,
                        const Number *items, std::int32_t count) {
    if (items == nullptr && count > 0) return INI_NO_ROOM;
    const ListText list(format, items, count);
    return list.fits() ? mini_write_string(cache, section, entry, list.text()) : std::int32_t{INI_NO_ROOM};
}

}  // namespace

int32_t mini_read_long(MINI *cache, const char *section, const char *entry, int32_t *value) noexcept {
    return read(cache, section, entry, convert_stol, value);
}

int32_t mini_read_double(MINI *cache, const char *section, const char *entry, double *value) noexcept {
    return read(cache, section, entry, convert_stod, value);
}

int32_t mini_read_longs(MINI *cache, const char *section, const char *entry, int32_t *items,
                        int32_t *count) noexcept {
    return read_list(cache, section, entry, convert_stol, items, count);
}

int32_t mini_read_doubles(MINI *cache, const char *section, const char *entry, double *items,
                          int32_t *count) noexcept {
    return read_list(cache, section, entry, convert_stod, items, count);
}

int32_t mini_write_long(MINI *cache, const char *section, const char *entry, int32_t value) noexcept {
    return mini_write_string(cache, section, entry, Printed("%d", value).text());
}

int32_t mini_write_double(MINI *cache, const char *section, const char *entry, double value) noexcept {
    return mini_write_string(cache, section, entry, Printed("%g", value).text());
}

int32_t mini_write_longs(MINI *cache, const char *section, const char *entry, const int32_t *items,
                         int32_t count) noexcept {
    return write_list(cache, section, entry, "%d,", items, count);
}

int32_t mini_write_doubles(MINI *cache, const char *section, const char *entry, const double *items,
                           int32_t count) noexcept {
    return write_list(cache, section, entry, "%g,", items, count);
}

int32_t mini_rw_long(int32_t write, MINI *cache, const char *section, const char *entry,
                     int32_t *value) noexcept {
    if (value == nullptr) return INI_NO_ROOM;
    if (write != 0) return mini_write_long(cache, section, entry, *value);
    return mini_read_long(cache, section, entry, value);
}

int32_t mini_rw_double(int32_t write, MINI *cache, const char *section, const char *entry,
                       double *value) noexcept {
    if (value == nullptr) return INI_NO_ROOM;
    if (write != 0) return mini_write_double(cache, section, entry, *value);
    return mini_read_double(cache, section, entry, value);
}

int32_t mini_rw_longs(int32_t write, MINI *cache, const char *section, const char *entry, int32_t *items,
                      int32_t *count) noexcept {
    if (items == nullptr || count == nullptr) return INI_NO_ROOM;
    if (write != 0) return mini_write_longs(cache, section, entry, items, *count);
    return mini_read_longs(cache, section, entry, items, count);
}

int32_t mini_rw_doubles(int32_t write, MINI *cache, const char *section, const char *entry, double *items,
                        int32_t *count) noexcept {
    if (items == nullptr || count == nullptr) return INI_NO_ROOM;
    if (write != 0) return mini_write_doubles(cache, section, entry, items, *count);
    return mini_read_doubles(cache, section, entry, items, count);
}

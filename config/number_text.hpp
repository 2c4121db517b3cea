// SPDX-License-Identifier: MIT
// Numbers and lists of numbers as the texts of values.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstring>

#include "kv/ini.h"

#include "platform/platform.hpp"

namespace kv::config {

/// The longest text of a list, with a comma after each number.
inline constexpr std::int32_t kLongestList = 512;

/// The numbers of a list: the pieces up to each comma; a comma at the end is followed by no piece.
/// INI_NO_ROOM, and `count` unchanged, if there are more than `count`.
template <typename Number>
std::int32_t read_numbers(const char *text, Number (*convert)(const char *) noexcept, Number *items,
                          std::int32_t *count) {
    std::int32_t stored = 0;
    for (const char *piece = text; *piece != '\0';) {
        if (stored >= *count) return INI_NO_ROOM;
        items[stored++] = convert(piece);  // no number goes beyond a comma
        const char *comma = std::strchr(piece, ',');
        if (comma == nullptr) break;
        piece = comma + 1;
    }
    *count = stored;
    return INI_OK;
}

/// A number as text.
class Printed {
  public:
    KV_PRINTF(2, 3)
    explicit Printed(const char *format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        length_ = platform::format(text_, sizeof text_, format, arguments);
        va_end(arguments);
    }

    const char *text() const { return text_; }
    std::int32_t length() const { return length_; }

  private:
    int length_;
    char text_[400];  // the largest real number has 309 digits before the point
};

/// Numbers as the text of a list; the format is that of one of them, with its comma.
class ListText {
  public:
    template <typename Number>
    ListText(const char *format, const Number *items, std::int32_t count) {
        std::int32_t length = 0;
        for (std::int32_t i = 0; i < count; ++i) {
            const Printed item(format, items[i]);
            if (length + item.length() > kLongestList) {
                fits_ = false;
                return;
            }
            std::memcpy(text_ + length, item.text(), static_cast<std::size_t>(item.length()) + 1);
            length += item.length();
        }
        if (length > 0) text_[length - 1] = '\0';  // the last comma
    }

    /// False if the text would be longer than kLongestList.
    bool fits() const { return fits_; }
    const char *text() const { return text_; }

  private:
    bool fits_ = true;
    char text_[kLongestList + 1] = "";
};

}  // namespace kv::config

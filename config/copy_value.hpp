// SPDX-License-Identifier: MIT
// A value into the caller's buffer.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "kv/ini.h"

namespace kv::config {

/// Copies at most `size` characters and a terminator. INI_NO_ROOM if the value is longer.
inline std::int32_t copy_value(std::string_view value, char *buf, std::int32_t size) {
    if (size < 0) return INI_NO_ROOM;
    const std::size_t count = std::min(value.size(), static_cast<std::size_t>(size));
    std::memcpy(buf, value.data(), count);
    buf[count] = '\0';
    return count == value.size() ? INI_OK : INI_NO_ROOM;
}

}  // namespace kv::config

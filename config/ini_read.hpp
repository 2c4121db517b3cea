// SPDX-License-Identifier: MIT
// Reading in an INI file whose lines are given.
#pragma once

#include <cstdint>
#include <string_view>

#include "kv/ini.h"

#include "platform/text_lines.hpp"

namespace kv::config {

/// INI_OK, INI_NO_SECTION or INI_NO_ENTRY. The value stays valid until the next line is read.
std::int32_t find_value(platform::TextLines &lines, std::string_view section, std::string_view entry,
                        std::string_view &value);

/// INI_OK, INI_NO_SECTION or INI_NO_ROOM; `size` as ini_read_string() has it.
std::int32_t list_keys(platform::TextLines &lines, std::string_view section, char *buf, std::int32_t &size);

/// INI_OK or INI_NO_ROOM; `size` as ini_read_sections() has it.
std::int32_t list_sections(platform::TextLines &lines, char *buf, std::int32_t &size);

}  // namespace kv::config

// SPDX-License-Identifier: MIT
// Texts of bytes whose code page nobody tells.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvtool {

/// The length of the UTF-8 character that the text begins with, 0 if it begins with none.
std::size_t utf8_length(std::string_view text);
/// True if all of the text is UTF-8.
bool is_utf8(std::string_view text);

/// For people: UTF-8 as it is, other bytes from A0 on as Latin-1, and control characters, which could
/// do something to a terminal, as \xNN.
std::string readable(std::string_view text);

}  // namespace kvtool

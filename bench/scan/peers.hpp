// SPDX-License-Identifier: MIT
// The generated scanners: the same tokens, the same record filled.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kv/scan.h"

namespace kvbench {

/// The number of tokens of a text, each of which was put into the record.
std::size_t scan_with_flex(const char *text, std::size_t size, SCAN_TOKEN &token);
/// The text ends with a zero byte.
std::size_t scan_with_re2c(const char *text, SCAN_TOKEN &token);

/// Fills the record of a token.
inline void fill(SCAN_TOKEN &token, const char *text, std::size_t length, std::int32_t line,
                 std::int32_t column) {
    if (length > sizeof token.text - 1) length = sizeof token.text - 1;
    std::memcpy(token.text, text, length);
    token.text[length] = '\0';
    token.dval = 0;
    token.lval = 0;
    token.line = line;
    token.column = column;
}

}  // namespace kvbench

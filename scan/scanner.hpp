// SPDX-License-Identifier: MIT
// The handle of a scanner, and its keywords: an index of the caller's table, in the order of the texts.
#pragma once

#include <cstdint>

#include "kv/scan.h"

#include "scan/characters.hpp"

struct SCANNER {
    scan_source source = nullptr;
    std::int32_t lookahead = ' ';  // the character after the last token
    bool pending_dot = false;      // a "." has been read and is the next token
    std::int32_t flags = 0;
    const char *const *keywords = nullptr;  // the caller's; null: none
    std::int32_t line = 0;
    std::int32_t column = -1;
    std::int32_t trace_number = 0;  // 0: this one does not trace
    std::int32_t keyword_count = 0;
    std::int32_t *keyword_order = nullptr;  // indexes of `keywords`, their texts ascending; owned

    // By the flags.
    const kv::scan::Folding *folding = nullptr;
    const kv::scan::Classes *classes = nullptr;

    bool has(std::int32_t option) const { return (flags & option) != 0; }
};

namespace kv::scan {

/// Sorts the keywords into scanner.keyword_order. False when the heap is exhausted.
bool order_keywords(SCANNER &scanner);
/// The index of a text in the caller's table, which has entries; -1 if it is no keyword.
std::int32_t find_keyword(const SCANNER &scanner, const char *text);

}  // namespace kv::scan

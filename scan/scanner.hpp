// The handle of a scanner.
#pragma once

#include <cstdint>

#include "kv/scan.h"

#include "scan/characters.hpp"

struct SCANNER {
    scan_source source = nullptr;
    std::int32_t lookahead = ' ';  // the character behind the last token
    bool pending_dot = false;      // a "." has been read and is owed as the next token
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

// Tokens in quotes.
//
// The reader is given and taken back by value, so that its owner can keep it in registers.
#pragma once

#include <cstdint>

#include "scan/reader.hpp"

namespace kv::scan {

struct Quoted {
    Reader reader;  // behind the token
    std::int32_t error = SCAN_OK;
};

/// At the opening quote.
Quoted read_character_literal(Reader reader, SCAN_TOKEN &token);

/// A string or a quoted text, at its opening quote.
Quoted read_quoted(Reader reader, char closing, SCAN_TOKEN &token);

}  // namespace kv::scan

// Tokens that take more than a character or two. Each begins at the current character, fills text and
// values of the token and leaves the reader at the character behind it.
#pragma once

#include <cstdint>

#include "scan/reader.hpp"

namespace kv::scan {

/// A token's kind and its error.
struct Outcome {
    std::int32_t kind;
    std::int32_t error = SCAN_OK;
};

Outcome read_identifier(Reader &reader, const SCANNER &scanner, SCAN_TOKEN &token);

/// What stood before the digits.
struct Prefix {
    bool minus = false;
    bool point = false;
};
/// At the first digit.
Outcome read_number(Reader &reader, Prefix prefix, SCAN_TOKEN &token);

/// At the opening quote.
Outcome read_character_literal(Reader &reader, SCAN_TOKEN &token);

/// A string or a quoted text, at its opening quote.
Outcome read_quoted(Reader &reader, char closing, std::int32_t kind, SCAN_TOKEN &token);

/// The index of a text in the keyword table, -1 if it is no keyword.
std::int32_t find_keyword(const SCANNER &scanner, const char *text);
/// Sorts the keywords into scanner.keyword_order. False when the heap is exhausted.
bool order_keywords(SCANNER &scanner);

}  // namespace kv::scan

// Keywords: an index of the caller's table, in the order of the texts.
#pragma once

#include <cstdint>

#include "scan/scanner.hpp"

namespace kv::scan {

/// Sorts the keywords into scanner.keyword_order. False when the heap is exhausted.
bool order_keywords(SCANNER &scanner);
/// The index of a text in the caller's table, which has entries; -1 if it is no keyword.
std::int32_t find_keyword(const SCANNER &scanner, const char *text);

}  // namespace kv::scan

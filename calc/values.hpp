// What operators and functions compute. Each gives an error, or CALC_OK.
#pragma once

#include <cstdint>

#include "calc/keywords.hpp"

namespace kv::calc {

/// `value` becomes what the binary operator of a token kind (SCAN_STAR, ...) gives for `left` and `value`.
std::int32_t apply_operator(std::int32_t kind, double left, double &value);
/// `value` becomes 1 or 0.
void apply_logical(Keyword keyword, double left, double &value);
/// `value` becomes what a function of one argument gives for it.
std::int32_t apply_function(Keyword keyword, double &value);

}  // namespace kv::calc

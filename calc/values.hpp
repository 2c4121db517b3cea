// SPDX-License-Identifier: MIT
// The words of the calculator, and what its operators and functions compute.
#pragma once

#include <cstdint>
#include <iterator>

namespace kv::calc {

/// In the order of kKeywords.
enum Keyword : std::int32_t {
    kSin,
    kCos,
    kTan,
    kCot,
    kAsn,
    kAcs,
    kAtn,
    kAct,
    kAbs,
    kSqrt,
    kExp,
    kLgt,
    kLog,
    kAnd,
    kOr,
    kNot,
    kPi,
    kMin,
    kMax
};

inline constexpr const char *kKeywords[] = {"SIN", "COS", "TAN",  "COT", "ASN", "ACS",  "ATN",
                                            "ACT", "ABS", "SQRT", "EXP", "LGT", "LOG",  "AND",
                                            "OR",  "NOT", "PI",   "MIN", "MAX", nullptr};

static_assert(std::size(kKeywords) == kMax + 2);

// Each computes `value` and gives an error, or CALC_OK.

/// `value` becomes what the binary operator of a token kind (SCAN_STAR, ...) gives for `left` and `value`.
std::int32_t apply_operator(std::int32_t kind, double left, double &value);
/// `value` becomes 1 or 0.
void apply_logical(Keyword keyword, double left, double &value);
/// `value` becomes what a function of one argument gives for it.
std::int32_t apply_function(Keyword keyword, double &value);

}  // namespace kv::calc

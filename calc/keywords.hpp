// The words of the calculator.
#pragma once

#include <cstdint>
#include <iterator>

namespace kv::calc {

/// In the order of kKeywords.
enum class Keyword : std::int32_t {
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

static_assert(std::size(kKeywords) == static_cast<std::size_t>(Keyword::kMax) + 2);

}  // namespace kv::calc

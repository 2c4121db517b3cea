// SPDX-License-Identifier: MIT
// The value of a decimal number that is read digit by digit, of any length in constant memory.
#pragma once

#include <algorithm>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

namespace kv::scan {

class Number {
  public:
    // No double needs more than 767 digits to be told from its neighbours and the points between them.
    static constexpr std::size_t kKept = 800;
    using Digits = char[kKept];

    /// `digits` is a buffer for the digits; it need not be initialised.
    Number(bool negative, Digits &digits) : negative_(negative), digits_(digits) {}

    void add_digit(std::int32_t c, bool after_point) {
        if (after_point) --exponent_;
        if (c == '0' && significant_ == 0) return;
        ++significant_;
        if (significant_ <= kExact) mantissa_ = mantissa_ * 10 + static_cast<std::uint64_t>(c - '0');
        if (significant_ <= static_cast<std::int64_t>(kKept)) {
            digits_[significant_ - 1] = static_cast<char>(c);
        } else {
            ++exponent_;
            rest_ |= c != '0';
        }
    }
    /// An exponent as written; one beyond `kFar` counts as that.
    void add_exponent(std::int64_t exponent) { exponent_ += exponent; }

    static constexpr std::int64_t kFar = 1'000'000'000'000;

    /// The nearest double; infinite beyond the range.
    double real() const {
        // Both a whole number below 2^53 and the powers of ten up to 10^22 are doubles, so that one
        // operation rounds correctly. Where intermediate results have more bits than a double, it would be
        // rounded twice.
        static constexpr double kPowers[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
        constexpr std::int64_t kMostPower = std::size(kPowers) - 1;
        constexpr bool kRoundsOnce = FLT_EVAL_METHOD == 0;
        if (!kRoundsOnce || significant_ > kExact || exponent_ > kMostPower || exponent_ < -kMostPower)
            return convert_slowly(*this);
        auto value = static_cast<double>(mantissa_);
        value = exponent_ < 0 ? value / kPowers[-exponent_] : value * kPowers[exponent_];
        return negative_ ? -value : value;
    }

    /// The nearest 32-bit number; only of digits.
    std::int32_t whole() const {
        using Limits = std::numeric_limits<std::int32_t>;
        if (significant_ > Limits::digits10 + 1) return negative_ ? Limits::min() : Limits::max();
        const auto magnitude = static_cast<std::int64_t>(mantissa_);
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(negative_ ? -magnitude : magnitude, Limits::min(), Limits::max()));
    }

  private:
    static double convert_slowly(Number number);  // by value, so that no number has its address taken

    static constexpr std::int64_t kExact = 15;  // digits that make a whole number that a double holds

    bool negative_;
    bool rest_ = false;  // there were further digits that are not all zero
    std::int64_t significant_ = 0;
    std::int64_t exponent_ = 0;
    std::uint64_t mantissa_ = 0;
    char *digits_;  // those counted in significant_ are valid
};

}  // namespace kv::scan

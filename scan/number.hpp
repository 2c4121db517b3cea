// The value of a decimal number that is read digit by digit, of any length in constant memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kv::scan {

class Number {
  public:
    explicit Number(bool negative) : negative_(negative) {}

    void add_digit(std::int32_t c, bool behind_point) {
        if (behind_point) --exponent_;
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
    double real() const;
    /// The nearest 32-bit number; only of digits.
    std::int32_t whole() const;

  private:
    double convert_slowly() const;

    // No double needs more than 767 digits to be told from its neighbours and the points between them.
    static constexpr std::size_t kKept = 800;
    static constexpr std::int64_t kExact = 15;  // digits that make a whole number that a double holds

    bool negative_;
    bool rest_ = false;  // there were further digits that are not all zero
    std::int64_t significant_ = 0;
    std::int64_t exponent_ = 0;
    std::uint64_t mantissa_ = 0;
    char digits_[kKept];  // those counted in significant_ are valid
};

}  // namespace kv::scan

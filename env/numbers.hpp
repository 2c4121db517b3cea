// SPDX-License-Identifier: MIT
// The grammar of numbers in stored texts, and numbers as stored.
//
//   blank    space or tab
//   whole    [+-] digit+
//   real     [+-] ( digit+ [ "." digit* ] | "." digit+ ) [ (E|e|D|d) [ [+-] digit+ ] ]
//   list     blank* number blank* ( "," blank* number blank* )* end
//   end      the end of the text, a carriage return or a line feed
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kv::env {

/// What reading a text gave.
struct Parsed {
    enum Outcome { matched, mismatched, too_many } outcome;
    std::int32_t count;  // numbers stored, when matched
};

/// Reads a list of numbers into `room`. Beyond its end the text is still checked.
Parsed parse_list(const char *text, std::span<std::int32_t> room);
Parsed parse_list(const char *text, std::span<double> room);

/// Reads exactly one number; false if the text is none, and then `value` is untouched.
bool parse_single(const char *text, std::int32_t &value);
bool parse_single(const char *text, double &value);

/// A number as it is stored.
class NumberText {
  public:
    explicit NumberText(std::int32_t value);
    explicit NumberText(double value);  // as "%g" writes it
    const char *c_str() const { return text_; }

  private:
    char text_[32];
};

}  // namespace kv::env

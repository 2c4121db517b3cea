// SPDX-License-Identifier: MIT
// Values as decimal texts.
#pragma once

#include <string>

namespace kvtool {

/// The fewest digits that tell the value from every other number; without an exponent from 1e-5 to 1e15.
std::string shortest_text(double value);

/// The value rounded as pround() does, with that many digits after the point; below 0 to tens, hundreds,
/// ... Beyond 1e15 it is as shortest_text() gives it.
std::string rounded_text(double value, int places);

}  // namespace kvtool

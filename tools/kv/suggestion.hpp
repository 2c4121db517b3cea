// SPDX-License-Identifier: MIT
// "Did you mean ...?"
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvtool {

/// "; did you mean 'get'?" with the candidate that is nearest to a mistyped word; empty if none is near.
/// A difference in case alone is the nearest.
std::string suggestion(std::string_view word, const std::vector<std::string> &candidates);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Texts of single bytes as they stand in the program's output.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvtool {

/// A text in double quotes on one line, as split_words() reads it: \" \\ \n \r \t, and \xHH for other
/// control characters.
std::string quote(std::string_view text);

/// The words of a line, with blanks or tabs between them; those in double quotes as quote() makes them.
/// None if a quote is not closed, an escape is wrong, or something stands right after a quote.
std::optional<std::vector<std::string>> split_words(std::string_view line);

}  // namespace kvtool

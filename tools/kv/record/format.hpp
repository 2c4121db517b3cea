// SPDX-License-Identifier: MIT
// The FORMAT of the records of a file: which values follow one another.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvtool {

struct Field {
    enum class Kind : char {
        real = 'd',
        whole = 'l',
        single = 'f',
        small = 'h',
        character = 'c',
        text = 's'
    };
    Kind kind;
    std::size_t width;  ///< bytes in the file
};

/// Reads "d l s12 f h c". Throws Failure (kUsage) where it is no format.
std::vector<Field> parse_format(std::string_view command, std::string_view text);

/// The help's table of fields.
extern const std::string_view kFormatHelp;

}  // namespace kvtool

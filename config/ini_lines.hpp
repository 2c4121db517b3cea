// SPDX-License-Identifier: MIT
// The lines of an INI file and what they mean. Readers and rewriters see a file through this.
#pragma once

#include <string_view>

#include "platform/text_lines.hpp"

namespace kv::config {

enum class LineKind {
    end,      ///< no further line
    comment,  ///< begins with ";", or is empty
    header,   ///< "[name]"
    entry     ///< anything else, with or without "="
};

struct Line {
    LineKind kind = LineKind::end;
    /// The name of a header, without the blanks around it; else the line without the white space around
    /// it. A zero byte ends it.
    std::string_view text = {};
    /// The line with what stands after a zero byte in it: what a rewrite keeps.
    std::string_view whole = {};
};

/// What a line means. An empty one is a comment without text.
Line meaning(std::string_view line);
/// The next line that is not empty.
Line next_line(platform::TextLines &lines);
/// The next header, or the end; what lies before it is skipped.
Line next_header(platform::TextLines &lines);

/// An entry taken apart at its first "=".
struct Entry {
    std::string_view key;    ///< without the blanks around it
    std::string_view value;  ///< as it stands
    std::string_view whole;  ///< the value with what stands after a zero byte in it
};

/// False if the text has no "=". It has no zero byte.
bool take_apart(std::string_view text, Entry &entry);
/// False, after a report, if the line has no "=".
bool split(const Line &line, Entry &entry);

/// The text without the blanks (no other white space) around it.
std::string_view without_blanks(std::string_view text);

/// A section argument; NIL counts as empty.
inline std::string_view section_text(const char *section) {
    return section != nullptr ? std::string_view(section) : std::string_view();
}

/// True if the argument names a section; the entries before the first header have no name.
inline bool is_named(std::string_view section) {
    return section.find_first_not_of(' ') != std::string_view::npos;
}

}  // namespace kv::config

// SPDX-License-Identifier: MIT
// Lines of the text format, broken before their 90th column.
#pragma once

#include <initializer_list>
#include <string_view>

#include "env/writer.hpp"

namespace kv::env {

class LineWriter {
  public:
    explicit LineWriter(Sink &sink) : sink_(sink) {}

    /// Writes one line, made of pieces, after `level` - 1 spaces.
    void write(int level, std::initializer_list<std::string_view> pieces);
    /// Writes the rest of a line that holds `column` bytes already.
    void write_behind(std::size_t column, std::initializer_list<std::string_view> pieces);
    /// The same without the line end. True if one has to follow, lest the text read as another.
    bool write_unended(std::size_t column, std::string_view text);

  private:
    // What the reader has in hand when it comes to the next character. Behind one or two backslashes, and
    // spaces after them, it takes the next character as it is, so that no line can be broken there.
    enum class Pending { nothing, backslash, two_backslashes, spaces };

    void indent(int level);
    bool write_plain(int level, std::initializer_list<std::string_view> pieces);
    void write_broken(int level, std::initializer_list<std::string_view> pieces);
    void write_carefully(std::size_t column, std::initializer_list<std::string_view> pieces);
    void put(char c);
    bool protect_line_end();
    void end_line();

    Sink &sink_;
    Pending pending_ = Pending::nothing;
    bool at_line_start_ = false;
};

}  // namespace kv::env

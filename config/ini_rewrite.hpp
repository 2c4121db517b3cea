// SPDX-License-Identifier: MIT
// Changing an INI file: from the bytes of the old file to those of the new one.
//
// Up to the place of the change a file comes out in normal form: lines without the white space around
// them, no empty lines but one before each header (the first header has none unless entries precede it),
// the entries of the section that is changed as "key=value", its lines without "=" left out. Behind the
// change it stays as it was. The last line that is written gets a line end only with what follows it.
//
// A line of more than 511 characters is read as several pieces. They become lines of their own, unless such
// lines are kept: then they come out byte for byte where the change is not in them.
#pragma once

#include <string_view>

#include "kv/ini.h"

#include "config/ini_lines.hpp"
#include "memory/owned.hpp"
#include "platform/text_lines.hpp"

namespace kv::config {

/// What becomes of lines of more than TextLines::kUsualLength characters.
enum class LongLines { in_pieces, kept };

/// The one scanner and writer of all changes: what is read with it and passed over is written.
class Rewriter {
  public:
    /// `bytes` is the old file; it has to outlive the object.
    Rewriter(std::string_view bytes, LongLines long_lines);

    /// The next header or entry, which is not written; the comments before it are.
    Line next();
    /// The next header, or the end; the entries and comments before it are written.
    Line skip_section();
    /// The first entry of the section with this key, or what ends the section; the entries before it are
    /// written.
    Line find_entry(std::string_view key, Entry &entry);
    /// Passes over what is left of a long line that is kept, whose first piece was read last.
    void drop_line();
    /// Passes over what is left of the section: writes its comments, if they are to be kept, and nothing
    /// else.
    Line drop_section(bool keep_comments);

    /// Begins a line.
    void line_feed() { write_if_not_empty("\n"); }
    /// Begins a line after an empty one.
    void blank_line() { write_if_not_empty("\n\n"); }
    /// Begins the line of a header.
    void separate_header();
    void header(std::string_view name);
    /// The header that was read last.
    void copy_header(const Line &line);
    /// Begins its line and writes it.
    void pass_header(const Line &line);
    void pair(std::string_view key, std::string_view value);
    /// The entry that was read last, with another key.
    void copy_value(std::string_view key, const Entry &entry);
    /// Begins the line of an entry or a comment and writes it.
    void copy_line(const Line &line);
    void write(std::string_view text) { platform::append_text(written_, text); }
    void copy_rest();

    /// The bytes of the new file.
    memory::String finish();

  private:
    Line read();
    void write_if_not_empty(std::string_view text);
    void write_piece(std::string_view piece);

    platform::TextLines lines_;
    std::string_view behind_;  // what no reader sees
    memory::String written_;
    bool first_header_ = true;  // no header and no entry has been written yet

    // What was read last, where long lines are kept.
    LongLines long_lines_;
    std::string_view piece_;  // its bytes, without the line end
    bool begins_ = true;      // its line
    bool continues_ = false;  // there is more of its line
    bool is_piece_ = false;   // of a long line
    bool copied_ = false;     // as it is
    bool joins_ = false;      // what has been written last is the piece before it
};

/// Makes one change. The statuses are those of the function that the edit stands for, as far as the
/// content decides about them. INI_BAD_NAME writes nothing.
std::int32_t rewrite(const INI_EDIT &edit, std::string_view bytes, memory::String &changed,
                     LongLines long_lines = LongLines::in_pieces);

/// INI_OK if the edit can be made; else INI_BAD_NAME.
std::int32_t check(const INI_EDIT &edit);

}  // namespace kv::config

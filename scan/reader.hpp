// SPDX-License-Identifier: MIT
// The characters of one call, one at a time; what carries over to the next call is written back to the
// handle.
#pragma once

#include <cstdint>

#include "scan/characters.hpp"
#include "scan/scanner.hpp"

namespace kv::scan {

/// A plain value: a local variable whose address is not taken stays in registers over the calls of the
/// source.
class Reader {
  public:
    explicit Reader(const SCANNER &scanner)
        : line_(static_cast<std::uint32_t>(scanner.line)),
          current_(scanner.lookahead),
          column_(static_cast<std::uint32_t>(scanner.column)),
          source_(scanner.source),
          folding_(scanner.folding),
          classes_(scanner.classes) {}

    void store(SCANNER &scanner) const {
        scanner.lookahead = current_;
        scanner.line = line();
        scanner.column = column();
    }

    std::int32_t current() const { return current_; }
    std::int32_t line() const { return static_cast<std::int32_t>(line_); }
    std::int32_t column() const { return static_cast<std::int32_t>(column_); }

    bool is(char c) const { return current_ == c; }
    bool at_end() const { return current_ == kEnd; }
    bool is_letter() const { return is_of(kLetter); }
    bool is_digit() const { return is_of(kDigit); }
    bool begins_identifier() const { return is_of(kLetter | kUnderscore); }
    bool continues_identifier() const { return is_of(kLetter | kUnderscore | kDigit); }
    bool is_of(int classes) const {
        return is_byte(current_) && ((*classes_)[index(current_)] & classes) != 0;
    }

    /// Reads one further. The end is the end for good.
    void advance() {
        if (current_ == kEnd) return;
        const std::int32_t next = source_();
        if (current_ == '\n') {
            column_ = 0;
            ++line_;
        } else {
            ++column_;
        }
        if (is_byte(next)) {
            current_ = (*folding_)[index(next)];
        } else {
            current_ = next == -1 ? kEnd : next;
        }
    }

    /// Advances if the current character is `c`.
    bool take(char c) {
        if (!is(c)) return false;
        advance();
        return true;
    }

  private:
    static bool is_byte(std::int32_t c) { return static_cast<std::uint32_t>(c) < 256; }
    static std::size_t index(std::int32_t c) { return static_cast<std::size_t>(c); }

    // Line and column are apart, so that they are not read as one word: they are written one by one, and a
    // processor waits for its memory then.
    std::uint32_t line_;
    std::int32_t current_;
    std::uint32_t column_;
    scan_source source_;
    const Folding *folding_;
    const Classes *classes_;
};

/// A token's text as it grows; what it cannot hold is dropped.
class Text {
  public:
    static constexpr std::int32_t kMost = 255;

    explicit Text(SCAN_TOKEN &token) : text_(token.text) { *text_ = '\0'; }

    std::int32_t length() const { return length_; }
    /// False if the character was dropped.
    bool add(std::int32_t c) {
        if (length_ == kMost) return false;
        text_[length_++] = static_cast<char>(c);
        return true;
    }
    void end() { text_[length_] = '\0'; }

  private:
    char *text_;
    std::int32_t length_ = 0;
};

// ---- Tokens in quotes. The reader is passed and returned by value, so that its owner can keep it in
// registers.

struct Quoted {
    Reader reader;  // after the token
    std::int32_t error = SCAN_OK;
};

/// At the opening quote.
Quoted read_character_literal(Reader reader, SCAN_TOKEN &token);

/// A string or a quoted text, at its opening quote.
Quoted read_quoted(Reader reader, char closing, SCAN_TOKEN &token);

}  // namespace kv::scan

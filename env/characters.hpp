// SPDX-License-Identifier: MIT
// The characters of a text as its grammar sees them: without comments, with continued lines joined.
#pragma once

#include <array>
#include <cstdint>

#include "env/reader.hpp"
#include "memory/owned.hpp"

namespace kv::env {

/// A place in a text, both counted from 1.
struct Place {
    std::int64_t line;
    std::int64_t column;
};

class Characters {
  public:
    static constexpr int kEnd = -1;

    explicit Characters(Source &source) : source_(source), start_(source.position) {}

    /// The next character, 0 to 255, or kEnd.
    int next() {
        if (is_plain_ahead() && source_.position != source_.end && !stops(*source_.position)) {
            ++column_;
            queued_place_.line = 0;
            return static_cast<unsigned char>(*source_.position++);
        }
        return next_slowly();
    }
    /// The character is the next one once more.
    void push_back(int character) { pushed_back_ = character; }
    /// The place of the character that next() gave last.
    Place place() const { return queued_place_.line != 0 ? queued_place_ : Place{line_, column_}; }

    // Places as offsets, where the source's window is the whole text: of the character that next() gave
    // last, and of the start of the line that it is on.
    std::uint32_t offset() const { return queued_place_.line != 0 ? queued_offset_ : last_offset(); }
    std::uint32_t line_offset() const { return static_cast<std::uint32_t>(line_start_ - start_); }

    int skip_blanks();
    /// Collects a run up to `terminator` or the end, beginning with `first`, and removes the blanks at its
    /// end. Zero bytes are left out. Returns the character that ended the run.
    int collect(int first, char terminator, memory::String &run);

    bool has_zero_bytes() const { return has_zero_bytes_; }

  private:
    static constexpr int kNone = -2;

    // The characters that need a decision.
    static const std::array<bool, 256> kStops;
    static bool stops(char c) { return kStops[static_cast<unsigned char>(c)]; }

    // True if the next character comes from the source, and not at the start of a line.
    bool is_plain_ahead() const {
        return pushed_back_ == kNone && queued_last_ == kNone && !at_line_start_;
    }
    int next_slowly();
    std::uint32_t last_offset() const {
        return static_cast<std::uint32_t>(source_.position - start_) - (ended_ ? 0 : 1);
    }
    bool skips_carriage_return() const;
    int source_character();
    int raw();
    int after_backslash();
    int queued();
    void collect_plain(char terminator, memory::String &run);

    Source &source_;
    const char *start_;
    const char *line_start_ = nullptr;
    int pushed_back_ = kNone;
    bool ended_ = false;
    bool at_line_start_ = true;  // the next raw character is the first of its line
    bool has_zero_bytes_ = false;
    std::int64_t line_ = 1;  // of the last raw character
    std::int64_t column_ = 0;
    Place queued_place_{0, 0};  // of a character that was queued; line 0: the last one was not
    std::uint32_t queued_offset_ = 0;

    // Characters that were read to decide about a continuation and turned out to be ordinary: so many
    // backslashes, then so many spaces, then one more.
    std::int64_t queued_backslashes_ = 0;
    std::int64_t queued_spaces_ = 0;
    int queued_last_ = kNone;
    std::uint32_t queued_last_offset_ = 0;
};

}  // namespace kv::env

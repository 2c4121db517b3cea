// SPDX-License-Identifier: MIT
// Lines of a text file where they stand in memory: no byte is copied but those at the end of a block.
#pragma once

#include <cstddef>
#include <string_view>

#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::platform {

/// Gives the lines of a text one by one, as fgets() does for a file in text mode: a carriage return
/// directly before a line feed is dropped, the text ends at the first Ctrl-Z (26), and a line that is too
/// long comes as several ones. The line feed, which counts for the length, is not given.
class TextLines {
  public:
    static constexpr std::size_t kUsualLength = 511;
    /// What ends a line: a line feed, or a zero byte too.
    enum class Ends { feed, feed_or_zero };

    /// The lines of a text in memory.
    explicit TextLines(std::string_view text, std::size_t longest = kUsualLength, Ends ends = Ends::feed);
    /// The lines of a file, read in blocks of `size` bytes, at least twice the longest line.
    TextLines(InputFile &file, char *buffer, std::size_t size, std::size_t longest = kUsualLength,
              Ends ends = Ends::feed);

    /// False at the end, or after a read error. The line stays valid until the next call.
    bool next(std::string_view &line);
    /// True if the reading ended at a read error.
    bool failed() const { return failed_; }
    /// What has not been given yet of a text in memory, with its line ends as they are.
    std::string_view rest() const { return {position_, static_cast<std::size_t>(end_ - position_)}; }

  private:
    bool take(std::size_t length, const char *next, std::string_view &line);
    void refill();

    const char *position_;
    const char *end_;
    std::size_t longest_;
    Ends ends_;
    InputFile *file_ = nullptr;
    char *buffer_ = nullptr;
    std::size_t size_ = 0;
    bool ended_;
    bool failed_ = false;
};

/// The part of a text file that text mode reads: all before the first Ctrl-Z.
std::string_view before_ctrl_z(std::string_view bytes);
/// What a rewrite has to keep after the text of a file: the Ctrl-Z and the rest, if there is a rest.
std::string_view behind_text(std::string_view bytes);

/// Appends a text to the bytes of a text file: each line feed becomes CR LF.
void append_text(memory::String &bytes, std::string_view text);
/// Appends a part of a text file, read in text mode and written again: CR LF and a lone line feed become
/// CR LF.
void append_part(memory::String &bytes, std::string_view part);

}  // namespace kv::platform

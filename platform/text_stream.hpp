// SPDX-License-Identifier: MIT
// Text files as they travel between machines: CR LF on disk, a line feed in memory, and the end at a
// Ctrl-Z.
#pragma once

#include "platform/platform.hpp"

namespace kv::platform {

/// Reads a text file: a carriage return directly before a line feed is dropped, and the text ends at
/// the first Ctrl-Z (26).
class TextReader {
  public:
    bool open(const char *path) { return file_.open(path, InputFile::Content::consistent); }
    /// Reads up to `size` (at least 1) characters; the number read, 0 at the end or after a read error.
    std::size_t read(char *buffer, std::size_t size);
    /// True if the reading ended at a read error.
    bool failed() const { return failed_; }
    bool modification_time(std::int64_t &seconds) const { return file_.modification_time(seconds); }

  private:
    bool refill();

    InputFile file_;
    std::size_t length_ = 0;    // raw bytes in the buffer
    std::size_t position_ = 0;  // the next one
    bool ended_ = false;
    bool failed_ = false;
    char raw_[16384];
};

/// Writes a text file in place of an old one: each line feed becomes CR LF.
class TextWriter {
  public:
    bool open(const char *path) { return file_.open(path); }
    /// False after a write error; sticky.
    bool write(const char *text, std::size_t size);
    /// As ReplacementFile::commit().
    bool commit();

  private:
    bool flush();

    ReplacementFile file_;
    std::size_t held_ = 0;
    char raw_[16384];
};

}  // namespace kv::platform

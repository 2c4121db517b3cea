// SPDX-License-Identifier: MIT
// The characters of a text file with their positions on disk, in a large buffer that moves over the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/platform.hpp"

namespace kv::platform {

/// Reads a text file from any position: a carriage return directly before a line feed is dropped, and the
/// text ends at the first Ctrl-Z (26). Moving back and forth within the buffer costs nothing. A read error
/// is the end.
class TextWindow {
  public:
#ifdef KV_SMALL_BUFFERS
    static constexpr std::size_t kSize = 64;
#else
    static constexpr std::size_t kSize = 32768;
#endif

    TextWindow() {}  // NOLINT(modernize-use-equals-default): which would clear the buffer

    bool open(const char *path) {
        return file_.open(path);
    }

    /// The offset in the file of the next character.
    std::int64_t position() const {
        return start_ + (next_ - buffer_);
    }
    /// Moves to an offset that position() has given.
    void move(std::int64_t position);

    /// The next character, 0 to 255; -1 at the end.
    int get() {
        if (next_ == end_ && !refill()) return -1;
        const char c = *next_++;
        if (c != '\r' || next_ == end_ || *next_ != '\n') return static_cast<unsigned char>(c);
        ++next_;
        return '\n';
    }

    /// The bytes from the position to the end of the buffer; none at the end of the text. A carriage return
    /// that is the last of them belongs to no line feed.
    std::string_view bytes() {
        if (next_ == end_) refill();
        return buffered();
    }
    std::string_view buffered() const {
        return {next_, static_cast<std::size_t>(end_ - next_)};
    }
    /// Moves on by some of bytes(), not to between a carriage return and its line feed.
    void skip(std::size_t count) {
        next_ += count;
    }

  private:
    bool refill() {
        return load(position());
    }
    bool load(std::int64_t position);

    InputFile file_;
    std::int64_t start_ = 0;  // offset of the buffer's first byte
    const char *next_ = buffer_;
    const char *end_ = buffer_;
    char buffer_[kSize];
};

}  // namespace kv::platform

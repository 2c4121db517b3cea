// SPDX-License-Identifier: MIT
// Joining and splitting paths without writing beyond the 256 bytes of the family's buffers.
#pragma once

#include <cstddef>
#include <string_view>

namespace kv::fio {

inline constexpr std::size_t kPathSize = 256;  // of every path buffer, the terminator included
inline constexpr std::size_t kLongestPath = kPathSize - 1;

inline bool is_separator(char c) {
    return c == '\\' || c == '/';
}

/// A drive's letter as platform/ has it, a capital.
inline char drive_letter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// A path in its three pieces, which stand one behind the other in the text.
struct Pieces {
    std::string_view drive;      // a letter and a colon, or empty
    std::string_view directory;  // with its final separator
    std::string_view name;       // with its extension
};

Pieces split(std::string_view path);

/// A path that parts are put in front of, the last part first.
class PathJoiner {
  public:
    /// Puts a part in front. Nothing happens once a part had a drive, since that made the path absolute.
    void put_in_front(std::string_view part);
    /// Puts a text in front as it stands, drive or not.
    void prepend(std::string_view piece);
    /// Writes the joined path with backslashes and without a separator at its end, except that of a root.
    /// False if it has more than 255 characters; then `out` (256 bytes) becomes the empty text.
    bool finish(char *out);

  private:
    // Room for a path that a separator too many at either end makes too long.
    static constexpr std::size_t kRoom = kPathSize + 4;

    std::size_t start_ = kRoom;  // where the path begins; it ends at the end of the buffer
    std::size_t drive_ = 0;      // characters of its drive
    bool too_long_ = false;
    char text_[kRoom];
};

/// A path in a buffer of its own.
struct Path {
    char text[kPathSize];

    /// As fio_makepath(); false if the path is too long, and the text is empty then.
    bool join(const char *base, const char *directory, const char *name);
    bool empty() const { return text[0] == '\0'; }
};

}  // namespace kv::fio

// SPDX-License-Identifier: MIT
// A path of the file system, and its growth piece by piece.
#pragma once

#include <climits>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace kv::platform::posix {

/// A path of the file system.
struct HostPath {
    char text[PATH_MAX];
};

/// Writes a HostPath piece by piece; the text is terminated at any time.
class PathBuilder {
  public:
    explicit PathBuilder(HostPath &host) : text_(host.text) { text_[0] = '\0'; }

    std::size_t length() const { return length_; }
    const char *text() const { return text_; }
    char *at(std::size_t position) { return text_ + position; }

    /// False, and nothing is appended, if the path becomes too long.
    bool append(std::string_view piece) {
        if (piece.size() >= PATH_MAX - length_) return false;
        std::memcpy(text_ + length_, piece.data(), piece.size());
        cut(length_ + piece.size());
        return true;
    }

    void cut(std::size_t length) {
        length_ = length;
        text_[length_] = '\0';
    }

  private:
    char *text_;
    std::size_t length_ = 0;
};

}  // namespace kv::platform::posix

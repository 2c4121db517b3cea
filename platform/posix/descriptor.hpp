// SPDX-License-Identifier: MIT
// File descriptors: calls that a signal interrupted are repeated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unistd.h>
#include <utility>

namespace kv::platform::posix {

/// What a new file is to be for its owner, its group and others, less the umask.
inline constexpr unsigned kForAll = 0666;
inline constexpr unsigned kForOwner = 0600;

/// As open(), closed in child programs.
int open_descriptor(const char *host_path, int flags, unsigned mode = kForAll);
/// Negative descriptors are ignored.
void close_descriptor(std::intptr_t descriptor);
/// False, with errno, after a write error.
bool write_all(int descriptor, const char *bytes, std::size_t size);
/// Reads a file from its beginning; the bytes read, which are fewer at its end, or -1.
std::int64_t read_from_start(int descriptor, char *bytes, std::size_t size);

/// Closes the descriptor, unless that is negative, at the end of its life.
class Descriptor {
  public:
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close_descriptor(value_); }

    int value() const { return value_; }
    void reset(int value) {
        close_descriptor(value_);
        value_ = value;
    }
    /// Leaves the closing to somebody else.
    int release() { return std::exchange(value_, -1); }
    /// Closes it now. False if the system could not write what it had taken.
    bool close() { return ::close(release()) == 0; }

  private:
    int value_;
};

}  // namespace kv::platform::posix

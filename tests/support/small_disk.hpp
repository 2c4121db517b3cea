// SPDX-License-Identifier: MIT
// A disk with little room, for the tests of what happens when it is full.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace kvtest {

/// A file system in memory of 64 KiB, seen only by the function that is run on it.
class SmallDisk {
  public:
    explicit SmallDisk(std::filesystem::path directory) : directory_(std::move(directory)) {}

    const std::filesystem::path &directory() const { return directory_; }
    /// Leaves no room.
    void fill() const;
    /// The room is there again.
    void empty() const { std::filesystem::remove(filler()); }
    /// The number of files on it that fill() has not made.
    std::ptrdiff_t files() const;

  private:
    std::filesystem::path filler() const { return directory_ / "filler"; }

    std::filesystem::path directory_;
};

/// Runs the function in a process of its own with such a disk. It says what is wrong, and nothing if all is
/// well; that is the result. The test is to be skipped if the result is kNoSmallDisk: the system lets this
/// user mount nothing.
std::string on_small_disk(const std::function<std::string(const SmallDisk &)> &function);

inline constexpr char kNoSmallDisk[] = "no file system can be mounted here";

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// Paths: names and occurrence indices between delimiters.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kv::env {

inline constexpr std::size_t kMaxPathLength = 1024;  // with the terminating zero
inline constexpr int kMaxPathElements = 100;         // with room after the last name and index

/// One name of a path with its occurrence index.
struct Step {
    const char *text;
    std::uint32_t length;
    std::int32_t index;

    std::string_view name() const { return {text, length}; }
};

/// A path's steps. They refer to the text that was split.
class Path {
  public:
    /// False if the path is rejected, which has been reported then; there are no steps.
    bool split(const char *path);
    std::span<const Step> steps() const { return {steps_.data(), count_}; }

  private:
    void add(std::string_view element);

    std::array<Step, kMaxPathElements> steps_;  // those counted are valid
    std::size_t count_ = 0;
    bool index_may_follow_ = false;
};

}  // namespace kv::env

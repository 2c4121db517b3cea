// SPDX-License-Identifier: MIT
// Addresses on the command line, and addresses of elements that are met on the way through a tree.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kv/env.h"

namespace kvtool {

// What the library takes as a path.
inline constexpr std::size_t kLongestPath = 1023;
inline constexpr std::size_t kMostDelimiters = 97;

/// A path taken apart at the delimiter. Throws Failure (kUsage) if the library would reject it.
class Path {
  public:
    explicit Path(std::string_view path);

    /// The names, without the occurrence indices.
    std::vector<std::string> names() const;
    /// The path of the block that holds the element; empty if that is the section.
    std::string parent() const;
    /// The path of the block that holds the n-th name, from 0; empty if that is the section.
    std::string block_of(std::size_t n) const { return join(names_[n]); }
    /// The path without the last name's occurrence index.
    std::string without_last_index() const;

  private:
    std::string join(std::size_t count) const;

    std::vector<std::string> parts_;
    std::vector<std::size_t> names_;  // which of the parts are names
};

/// How messages call an address; without a section: "the file".
std::string describe(const char *section, const char *path);

/// The path of an element from the block that holds it, whatever its name is made of: with a delimiter that
/// the name has not. The delimiter is in force as long as the object lives. Throws Failure (kFile) at a
/// name that is empty or too long for a path.
class ChildPath {
  public:
    ChildPath(std::string_view name, int32_t occurrence);
    ~ChildPath() { env_set_delimiter(previous_.c_str()); }
    ChildPath(const ChildPath &) = delete;
    ChildPath &operator=(const ChildPath &) = delete;

    const char *text() const { return text_.c_str(); }

  private:
    std::string previous_;
    std::string text_;
};

/// Checks of what is to be stored: texts and names that a file cannot carry. They throw Failure (kUsage).
void check_text(std::string_view text);
void check_element_name(std::string_view name);
void check_section_name(std::string_view name);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Walks through environments.
#pragma once

#include <cstdint>
#include <string_view>

#include "env/element.hpp"
#include "memory/owned.hpp"

namespace kv::env {

/// A path text that grows and shrinks with a walk. Throws std::bad_alloc.
class PathText {
  public:
    /// Appends a name with its occurrence index, after delimiters.
    void push(const Element &element);
    void push(std::string_view part);
    std::size_t length() const { return text_.size(); }
    void cut(std::size_t length) { text_.resize(length); }
    const char *c_str() const { return text_.c_str(); }

  private:
    memory::String text_;
};

/// The list whose elements a traversal visits: the sections of a root environment or the elements of a
/// sub-environment; null if there are none.
List *top_list(ENV *env);

}  // namespace kv::env

// SPDX-License-Identifier: MIT
// Patterns for the names of entries.
#pragma once

#include "memory/owned.hpp"
#include "profiles/table.hpp"

namespace kv::profiles {

/// A copy without blanks and tabs; empty for NIL. Throws std::bad_alloc.
memory::String without_blanks(const char *text);

/// A pattern that was prepared for being compared.
class Pattern {
  public:
    /// Throws std::bad_alloc.
    explicit Pattern(const char *text);
    bool matches(const EntryName &name) const;

  private:
    memory::String text_;
};

/// The pattern with its numbers in parentheses, and no other parentheses. Throws std::bad_alloc.
memory::String exact_pattern(const char *text);

}  // namespace kv::profiles

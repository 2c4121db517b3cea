// SPDX-License-Identifier: MIT
// Copies of text arguments.
#pragma once

#include "memory/owned.hpp"

namespace kv::env {

/// A copy of a text that may be NIL, for a function that changes what the caller's pointer may lead into:
/// the tree's own texts, a buffer for results. Throws std::bad_alloc.
class OwnText {
  public:
    explicit OwnText(const char *text) : is_nil_(text == nullptr), text_(is_nil_ ? "" : text) {}
    const char *get() const { return is_nil_ ? nullptr : text_.c_str(); }

  private:
    bool is_nil_;
    memory::String text_;
};

}  // namespace kv::env

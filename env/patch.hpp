// SPDX-License-Identifier: MIT
// The text of a tree that was read from a text and then changed: the old text, with what has changed
// replaced, left out or added, and every other byte as it was.
#pragma once

#include <string_view>

#include "env/element.hpp"
#include "env/spans.hpp"
#include "memory/owned.hpp"

namespace kv::env {

/// What may stand around an element in its line.
inline bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// `sections` are those that were read from `text` with `spans`, changed since; elements without a span are
/// new. Throws std::bad_alloc.
memory::String patch(std::string_view text, Spans spans, const List &sections);

}  // namespace kv::env

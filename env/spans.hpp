// SPDX-License-Identifier: MIT
// Where the elements of a text stand in it: what the reader notes when the text is going to be edited.
#pragma once

#include <cstdint>

#include "memory/owned.hpp"

namespace kv::env {

/// The place of one element, as offsets in the text.
struct Span {
    std::uint32_t line;   // the start of its line, comments and continued lines taken into account
    std::uint32_t begin;  // its name, or the "[" of a section
    std::uint32_t value;  // the text of a data element (its line end, if that is empty), the "{" of a
                          // block, what follows the "]" of a section
    std::uint32_t tail;   // the line end that belongs to it, which a data element has; else as `end`
    std::uint32_t end;    // after it; of a section, after its last element
    std::uint32_t next;   // the number of the first element that is not in it

    bool ends_line() const { return tail < end; }
};

/// The places of all elements in the order of the text, blocks before what they hold.
struct Spans {
    memory::Vector<Span> elements;
    std::uint32_t last_line = 0;  // the start of the text's last line
    std::uint32_t unclosed =
        kClosed;  // where the last section lacks its "]", which the end of a text allows

    static constexpr std::uint32_t kClosed = 0xFFFFFFFF;
};

}  // namespace kv::env

// SPDX-License-Identifier: MIT
// A way through a tree, in file order, that needs no more stack for a deep tree than for a flat one.
#pragma once

#include <string_view>

#include "tools/kv/env/file.hpp"

namespace kvtool {

/// An element as a walk meets it.
struct Item {
    std::string_view name;
    int32_t occurrence;  ///< among the elements of its name in its block, from 1
    bool last;           ///< in its block
    bool section;
};

class Visitor {
  public:
    virtual ~Visitor() = default;
    virtual void text(const Item &item, std::string_view value) = 0;
    virtual void open_block(const Item &item) = 0;
    virtual void close_block() = 0;
};

/// Visits an element, given as a sub-environment on it, and all that lies below. `section` and
/// `last` are what the visitor is told about the element itself. Throws Failure (kFile) at a block whose
/// name no path can have.
void walk(Tree element, bool section, bool last, Visitor &visitor);

/// Visits all sections. The tree has no sections then: of several sections with one name only the first
/// can be addressed, so each one goes when it is done.
void walk_sections(ENV *env, Visitor &visitor);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// What differs between the trees of two files, and the edits that make one of the other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/kv/env/document.hpp"
#include "tools/kv/env/edits.hpp"

namespace kvtool {

/// An element that is in one of the files, or another one in each.
struct Difference {
    std::uint32_t before;  ///< its node in the first file, or EnvDocument::kNone
    std::uint32_t after;
};

class TreeComparison {
  public:
    TreeComparison(const EnvDocument &before, const EnvDocument &after);

    const std::vector<Difference> &differences() const { return differences_; }
    /// Made in their order, they make the second tree of the first, but for what the problems tell.
    const std::vector<Edit> &edits() const { return edits_; }
    /// "NAME: [SECTION] PATH ..." for each element that an edit would have to name and no path can.
    const std::vector<std::string> &problems() const { return problems_; }

  private:
    class Comparer;

    std::vector<Difference> differences_;
    std::vector<Edit> edits_;
    std::vector<std::string> problems_;
};

}  // namespace kvtool

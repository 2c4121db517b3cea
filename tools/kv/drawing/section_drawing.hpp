// SPDX-License-Identifier: MIT
// A page with cross-sections, their axes and their dimensions.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/kv/drawing/pen.hpp"

namespace kvtool {

struct SectionPage {
    Section section;
    std::string title;
    std::vector<std::string> notes;  ///< lines below
};

/// Draws the sections side by side, to one scale, with a pen that is made for the size of the page. The
/// scale is the largest usual one at which each of them fits on A4 across. All of them have an outline.
std::string draw(const std::vector<SectionPage> &sections,
                 std::unique_ptr<Pen> (*make_pen)(double width, double height));

}  // namespace kvtool

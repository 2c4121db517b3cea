// A page with a cross-section, its axes and its dimensions.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/kv/drawing/pen.hpp"

namespace kvtool {

struct SectionPage {
    Section section;
    Point centroid;
    std::string title;
    std::vector<std::string> notes;  ///< lines below
};

/// Draws the page with a pen that is made for its size. The scale is the largest usual one at which the
/// page fits on A4 across.
std::string draw(const SectionPage &page, std::unique_ptr<Pen> (*make_pen)(double width, double height));

}  // namespace kvtool

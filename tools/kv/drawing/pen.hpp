// SPDX-License-Identifier: MIT
// What draws on a page: as an SVG picture, or as a plot file. Points are millimetres from the lower left
// corner of the page.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kv/drawing/section_outline.hpp"

namespace kvtool {

class Pen {
  public:
    enum class Line { thin, axis };

    virtual ~Pen() = default;
    /// The area inside the first outline and outside of the others, with thick edges.
    virtual void area(const std::vector<Outline> &outlines) = 0;
    virtual void line(Point from, Point to, Line kind) = 0;
    /// A filled arrowhead.
    virtual void arrowhead(Point tip, Point left, Point right) = 0;
    /// A text on one line, its middle above a point; upright texts read from the right.
    virtual void text(Point middle, double height, bool upright, std::string_view text) = 0;
    /// The whole picture.
    virtual std::string finish() = 0;
};

std::unique_ptr<Pen> svg_pen(double width, double height);
/// Without hatching; texts are ASCII.
std::unique_ptr<Pen> hpgl_pen();

}  // namespace kvtool

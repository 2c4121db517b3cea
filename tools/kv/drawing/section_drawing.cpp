// SPDX-License-Identifier: MIT
#include "tools/kv/drawing/section_drawing.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>

namespace kvtool {

namespace {

// On paper, in millimetres.
constexpr double kLargest = 120;
constexpr double kLeft = 32;
constexpr double kRight = 28;
constexpr double kAbove = 30;
constexpr double kBelow = 43;
constexpr double kTextHeight = 3;
constexpr double kTitleHeight = 4.5;
constexpr double kAxisBeyond = 7;
constexpr double kDimensionDistance = 18;
constexpr double kThicknessDistance = 11;
constexpr double kArrow = 3;
constexpr double kTail = 4;  // of an arrow that points inwards

struct Scale {
    double factor;
    const char *text;
};

constexpr Scale kScales[] = {{10, "10:1"},   {5, "5:1"},   {2, "2:1"},    {1, "1:1"},     {0.5, "1:2"},
                             {0.4, "1:2.5"}, {0.2, "1:5"}, {0.1, "1:10"}, {0.05, "1:20"}, {0.02, "1:50"}};

Scale choose_scale(const std::vector<SectionPage> &sections) {
    double size = 0;
    for (const SectionPage &page : sections) size = std::max({size, page.section.h, page.section.b});
    for (const Scale &scale : kScales) {
        if (size * scale.factor <= kLargest) return scale;
    }
    return {kLargest / size, "not to a usual scale"};
}

std::string text_of(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

double text_width(const std::string &text) {
    return static_cast<double>(text.size()) * kTextHeight * 0.75;
}

class Page {
  public:
    Page(Pen &pen, Point corner, double scale) : pen_(pen), corner_(corner), scale_(scale) {}

    Point on_paper(Point p) const { return corner_ + p * scale_; }
    void area(const std::vector<Outline> &outlines);
    void axes(const Section &section, Point centroid);
    // A length between two places that are on one level.
    void length(Point from, Point to, const std::string &text);
    // A length too small for its text, which stands after the second place.
    void thickness(Point from, Point to, double value);
    // A text beside a line that points to a place; `direction` is where the text is, and as long as the
    // line.
    void leader(Point tip, Point direction, const std::string &text);
    void extension(Point from, Point to) { pen_.line(from, to, Pen::Line::thin); }

  private:
    void arrow(Point tip, Point direction);

    Pen &pen_;
    Point corner_;  // of the section
    double scale_;
};

Point unit(Point vector) {
    return vector * (1 / std::hypot(vector.x, vector.y));
}

void Page::area(const std::vector<Outline> &outlines) {
    std::vector<Outline> paper;
    for (const Outline &outline : outlines) {
        paper.push_back({on_paper(outline.start), {}});
        for (const Edge &edge : outline.edges) {
            paper.back().edges.push_back({on_paper(edge.end), edge.arc, on_paper(edge.center), edge.angle});
        }
    }
    pen_.area(paper);
}

void Page::axes(const Section &section, Point centroid) {
    const Point low = on_paper({0, 0});
    const Point high = on_paper({section.b, section.h});
    const Point center = on_paper(centroid);
    pen_.line({low.x - kAxisBeyond, center.y}, {high.x + kAxisBeyond, center.y}, Pen::Line::axis);
    pen_.line({center.x, low.y - kAxisBeyond}, {center.x, high.y + kAxisBeyond}, Pen::Line::axis);
    for (const double x : {low.x - kAxisBeyond - 2, high.x + kAxisBeyond + 2}) {
        pen_.text({x, center.y - 1}, kTextHeight, false, "y");
    }
    for (const double y : {low.y - kAxisBeyond - 3, high.y + kAxisBeyond + 1}) {
        pen_.text({center.x, y}, kTextHeight, false, "z");
    }
}

void Page::arrow(Point tip, Point direction) {
    const Point back = tip - direction * kArrow;
    const Point aside = Point{-direction.y, direction.x} * (kArrow / 6);
    pen_.arrowhead(tip, back + aside, back - aside);
}

void Page::length(Point from, Point to, const std::string &text) {
    const Point direction = unit(to - from);
    const bool upright = direction.y != 0;
    pen_.line(from, to, Pen::Line::thin);
    arrow(from, direction * -1);
    arrow(to, direction);
    const Point above = upright ? Point{-1, 0} : Point{0, 1};
    pen_.text((from + to) * 0.5 + above, kTextHeight, upright, text);
}

void Page::thickness(Point from, Point to, double value) {
    const Point direction = unit(to - from);
    const bool upright = direction.y != 0;
    const std::string text = text_of(value);
    const double half = text_width(text) / 2;
    const Point end = to + direction * (kArrow + kTail + 2 * half);
    pen_.line(from - direction * (kArrow + kTail), end, Pen::Line::thin);
    arrow(from, direction);
    arrow(to, direction * -1);
    const Point above = upright ? Point{-1, 0} : Point{0, 1};
    pen_.text(end - direction * half + above, kTextHeight, upright, text);
}

void Page::leader(Point tip, Point direction, const std::string &text) {
    const Point bend = tip + direction;
    const double width = text_width(text);
    pen_.line(bend, tip, Pen::Line::thin);
    pen_.line(bend, bend + Point{width, 0}, Pen::Line::thin);
    arrow(tip, unit(direction) * -1);
    pen_.text(bend + Point{width / 2, 1}, kTextHeight, false, text);
}

void draw_height_and_width(Page &page, const Section &section) {
    const Point low = page.on_paper({0, 0});
    const Point high = page.on_paper({section.b, section.h});
    const double x = low.x - kDimensionDistance;
    const double y = low.y - kDimensionDistance;
    page.extension({low.x, low.y - 1}, {low.x, y - 1.5});
    page.extension({high.x, low.y - 1}, {high.x, y - 1.5});
    const bool pipe = section.kind == Section::Kind::pipe;
    page.length({low.x, y}, {high.x, y}, (pipe ? "D = " : "") + text_of(section.b));
    if (pipe) return;
    page.extension({low.x - 1, low.y}, {x - 1.5, low.y});
    page.extension({low.x - 1, high.y}, {x - 1.5, high.y});
    page.length({x, low.y}, {x, high.y}, text_of(section.h));
}

// Of the web; where it is on the left its text stands outside, away from the axis.
void draw_web_thickness(Page &page, const Section &section) {
    const bool middle = section.kind == Section::Kind::beam || section.kind == Section::Kind::tee;
    const double height = section.h * (section.kind == Section::Kind::tee ? 0.5 : 0.68);
    const double left = middle ? (section.b - section.s) / 2 : 0;
    const Point faces[] = {page.on_paper({left, height}), page.on_paper({left + section.s, height})};
    page.thickness(faces[middle ? 0 : 1], faces[middle ? 1 : 0], section.s);
}

// Of the upper flange, where it is measured, or beside it if that is anywhere.
void draw_flange_thickness(Page &page, const Section &section) {
    if (section.kind == Section::Kind::angle) {  // below, since the axis is above
        const double x = section.b * 0.75;
        page.thickness(page.on_paper({x, section.t}), page.on_paper({x, 0}), section.t);
        return;
    }
    if (section.slope > 0) {
        const double x = section.t_place();
        page.thickness(page.on_paper({x, section.h - section.t}), page.on_paper({x, section.h}), section.t);
        return;
    }
    const Point lower = page.on_paper({section.b, section.h - section.t});
    const Point upper = page.on_paper({section.b, section.h});
    const Point aside = {kThicknessDistance, 0};
    for (const Point edge : {lower, upper})
        page.extension(edge + Point{1, 0}, edge + aside + Point{1.5, 0});
    page.thickness(lower + aside, upper + aside, section.t);
}

void draw_thicknesses(Page &page, const Section &section) {
    if (section.kind == Section::Kind::pipe) {
        const Point tip = polar({section.b / 2, section.h / 2}, section.h / 2, 45);
        page.leader(page.on_paper(tip), polar({0, 0}, 9, 45), "t = " + text_of(section.t));
        return;
    }
    draw_web_thickness(page, section);
    if (section.kind != Section::Kind::box) draw_flange_thickness(page, section);
}

// The leaders of the radii, away from the material.
void draw_radii(Page &page, const Outline &outline, const Section &section, Point centroid, double scale) {
    constexpr double kLeader = 9;
    for (const Edge &edge : outline.edges) {
        if (edge.radius.empty()) continue;
        const bool fillet = edge.angle < 0;
        const double radius = edge.radius == "r" ? section.r : section.r1;
        const Point spoke = edge.end - edge.center;
        const double direction = std::atan2(spoke.y, spoke.x) * 180 / std::numbers::pi - edge.angle / 2;
        const Point tip = polar(edge.center, radius, direction);
        const Point away = fillet ? edge.center - tip : tip - edge.center;
        double distance = kLeader;
        if (fillet) {  // to beyond the axes, where it would cross them
            const bool angle = section.kind == Section::Kind::angle;
            const double beyond = std::max(centroid.x - tip.x, angle ? centroid.y - tip.y : 0) * scale;
            distance = std::max({kLeader, radius * scale + 4, beyond * std::numbers::sqrt2 + 4});
        }
        const Point diagonal = {std::copysign(distance / std::numbers::sqrt2, away.x),
                                std::copysign(distance / std::numbers::sqrt2, away.y)};
        page.leader(page.on_paper(tip), diagonal, std::string(edge.radius) + " = " + text_of(radius));
    }
}

// A section and all that belongs to it, above a base line; `top` is where its title is.
void draw_section(Pen &pen, const SectionPage &what, const Scale &scale, Point left, double room,
                  double top) {
    const Section &section = what.section;
    const std::vector<Outline> outlines = outlines_of(section);
    const Point centroid = centroid_of(outlines);
    Page paper(pen, left + Point{(room - section.b * scale.factor) / 2, 0}, scale.factor);
    paper.area(outlines);
    paper.axes(section, centroid);
    draw_height_and_width(paper, section);
    draw_thicknesses(paper, section);
    draw_radii(paper, outlines.front(), section, centroid, scale.factor);
    const double middle = left.x + room / 2;
    pen.text({middle, top}, kTitleHeight, false, what.title + "   " + scale.text);
    double line = left.y - kDimensionDistance - 9;
    for (const std::string &note : what.notes) {
        pen.text({middle, line}, kTextHeight * 0.85, false, note);
        line -= 5;
    }
}

}  // namespace

std::string draw(const std::vector<SectionPage> &sections,
                 std::unique_ptr<Pen> (*make_pen)(double width, double height)) {
    const Scale scale = choose_scale(sections);
    double width = 0;
    double height = 0;
    std::vector<double> rooms;
    for (const SectionPage &page : sections) {
        // Narrow sections leave room for the texts.
        rooms.push_back(std::max(page.section.b * scale.factor, 60.0));
        width += kLeft + rooms.back() + kRight;
        height = std::max(height, page.section.h * scale.factor);
    }
    const std::unique_ptr<Pen> pen = make_pen(width, kBelow + height + kAbove);
    Point left = {kLeft, kBelow};
    for (std::size_t i = 0; i < sections.size(); ++i) {
        draw_section(*pen, sections[i], scale, left, rooms[i], kBelow + height + kAbove - 8);
        left.x += rooms[i] + kRight + kLeft;
    }
    return pen->finish();
}

}  // namespace kvtool

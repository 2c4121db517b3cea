#include "tools/kv/drawing/section_drawing.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

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

Scale choose_scale(const Section &section) {
    const double size = std::max(section.h, section.b);
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
    void outline(const Outline &outline);
    void axes(const SectionPage &page);
    // A length between two places that are on one level; `direction` is that from the first to the second.
    void length(Point from, Point to, double value);
    // A length too small for its text, which stands behind the second place.
    void thickness(Point from, Point to, double value);
    void radius(Point center, double radius, double degrees, double distance, const std::string &name);
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

void Page::outline(const Outline &outline) {
    Outline paper{on_paper(outline.start), {}};
    for (const Edge &edge : outline.edges) {
        paper.edges.push_back({on_paper(edge.end), edge.arc, on_paper(edge.center), edge.angle});
    }
    pen_.area(paper);
}

void Page::axes(const SectionPage &page) {
    const Point low = on_paper({0, 0});
    const Point high = on_paper({page.section.b, page.section.h});
    const Point center = on_paper(page.centroid);
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

void Page::length(Point from, Point to, double value) {
    const Point direction = unit(to - from);
    const bool upright = direction.y != 0;
    pen_.line(from, to, Pen::Line::thin);
    arrow(from, direction * -1);
    arrow(to, direction);
    const Point above = upright ? Point{-1, 0} : Point{0, 1};
    pen_.text((from + to) * 0.5 + above, kTextHeight, upright, text_of(value));
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

// A leader from the upper right to the arc around a centre, `distance` long.
void Page::radius(Point center, double radius, double degrees, double distance, const std::string &name) {
    const Point tip = on_paper(polar(center, radius, degrees));
    const Point bend = polar(tip, distance, 45);
    const std::string text = name + " = " + text_of(radius);
    const double width = text_width(text);
    pen_.line(bend, tip, Pen::Line::thin);
    pen_.line(bend, bend + Point{width, 0}, Pen::Line::thin);
    arrow(tip, polar({0, 0}, 1, 225));
    pen_.text(bend + Point{width / 2, 1}, kTextHeight, false, text);
}

void draw_height_and_width(Page &page, const Section &section) {
    const Point low = page.on_paper({0, 0});
    const Point high = page.on_paper({section.b, section.h});
    const double x = low.x - kDimensionDistance;
    const double y = low.y - kDimensionDistance;
    page.extension({low.x - 1, low.y}, {x - 1.5, low.y});
    page.extension({low.x - 1, high.y}, {x - 1.5, high.y});
    page.length({x, low.y}, {x, high.y}, section.h);
    page.extension({low.x, low.y - 1}, {low.x, y - 1.5});
    page.extension({high.x, low.y - 1}, {high.x, y - 1.5});
    page.length({low.x, y}, {high.x, y}, section.b);
}

void draw_thicknesses(Page &page, const Section &section) {
    const double web = section.kind == Section::Kind::beam ? (section.b - section.s) / 2 : 0;
    const double height = section.h * (section.kind == Section::Kind::angle ? 0.75 : 0.68);
    page.thickness(page.on_paper({web, height}), page.on_paper({web + section.s, height}), section.s);
    if (section.kind == Section::Kind::angle) {  // below, since the axis is above
        const double x = section.b * 0.75;
        page.thickness(page.on_paper({x, section.t}), page.on_paper({x, 0}), section.t);
        return;
    }
    if (section.kind == Section::Kind::channel) {  // where it is measured
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

void draw_radii(Page &page, const SectionPage &what, double scale) {
    constexpr double kLeader = 9;
    const Section &section = what.section;
    const bool angle = section.kind == Section::Kind::angle;
    const Point fillet = section.fillet_center();
    // In an angle, to beyond the axes.
    const Point tip = polar(fillet, section.r, 225);
    const double beyond = angle ? (what.centroid.x - tip.x) * scale * std::numbers::sqrt2 + 4 : 0;
    if (section.r > 0)
        page.radius(fillet, section.r, 225, std::max({kLeader, section.r * scale + 4, beyond}), "r");
    if (section.kind == Section::Kind::beam || section.r1 <= 0) return;
    page.radius(section.edge_center(), section.r1, 45, kLeader, "r1");
}

}  // namespace

std::string draw(const SectionPage &page, std::unique_ptr<Pen> (*make_pen)(double width, double height)) {
    const Section &section = page.section;
    const Scale scale = choose_scale(section);
    const double width = section.b * scale.factor;
    const double height = section.h * scale.factor;
    // Narrow sections leave room for the texts.
    const double text_room = std::max(width, 60.0);
    const std::unique_ptr<Pen> pen = make_pen(kLeft + text_room + kRight, kBelow + height + kAbove);
    Page paper(*pen, {kLeft + (text_room - width) / 2, kBelow}, scale.factor);
    paper.outline(outline_of(section));
    paper.axes(page);
    draw_height_and_width(paper, section);
    draw_thicknesses(paper, section);
    draw_radii(paper, page, scale.factor);
    const double middle = (kLeft + text_room + kRight) / 2;
    pen->text({middle, kBelow + height + kAbove - 8}, kTitleHeight, false, page.title + "   " + scale.text);
    double line = kBelow - kDimensionDistance - 9;
    for (const std::string &note : page.notes) {
        pen->text({middle, line}, kTextHeight * 0.85, false, note);
        line -= 5;
    }
    return pen->finish();
}

}  // namespace kvtool

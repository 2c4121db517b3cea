#include "tools/kv/drawing/section_outline.hpp"

#include <cmath>
#include <numbers>

namespace kvtool {

namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

// The angle of the normal on the inner face of a sloping lower flange.
double normal_angle(const Section &section) {
    return std::atan2(1, section.slope) * kDegrees;
}

// The height of the lower flange's inner face, or of a line in parallel at a distance above it.
double face_height(const Section &section, double x, double distance) {
    return section.t + section.slope * (section.t_place() - x) + distance * std::hypot(1, section.slope);
}

// The lower part of a channel or an angle, from its outer edge to the web's inner face.
void add_lower_part(Outline &outline, const Section &section) {
    const double normal = normal_angle(section);
    const Point edge = section.edge_center();
    const Point fillet = section.fillet_center();
    outline.line_to(polar(edge, section.r1, 0));
    outline.arc(edge, normal);
    outline.line_to(polar(fillet, section.r, normal + 180));
    outline.arc(fillet, -normal);
}

// The part of a symmetrical outline that is still missing, backwards.
void mirror(Outline &outline, double height) {
    const auto up = [&](Point p) { return Point{p.x, height - p.y}; };
    const std::vector<Edge> lower = outline.edges;
    Point end = outline.last();
    outline.line_to(up(end));
    for (std::size_t i = lower.size(); i-- > 0;) {
        end = i > 0 ? lower[i - 1].end : outline.start;
        outline.edges.push_back({up(end), lower[i].arc, up(lower[i].center), lower[i].angle});
    }
}

Outline beam_outline(const Section &section) {
    Outline outline{{0, 0}, {}};
    const Point right = section.fillet_center();
    const Point left = {section.b - right.x, right.y};
    const Point upper = {0, section.h - 2 * right.y};
    outline.line_to({section.b, 0});
    outline.line_to({section.b, section.t});
    outline.line_to(polar(right, section.r, 270));
    outline.arc(right, -90);
    outline.line_to(polar(right + upper, section.r, 180));
    outline.arc(right + upper, -90);
    outline.line_to({section.b, section.h - section.t});
    outline.line_to({section.b, section.h});
    outline.line_to({0, section.h});
    outline.line_to({0, section.h - section.t});
    outline.line_to(polar(left + upper, section.r, 90));
    outline.arc(left + upper, -90);
    outline.line_to(polar(left, section.r, 0));
    outline.arc(left, -90);
    outline.line_to({0, section.t});
    return outline;
}

Outline channel_outline(const Section &section) {
    Outline outline{{0, 0}, {}};
    outline.line_to({section.b, 0});
    add_lower_part(outline, section);
    mirror(outline, section.h);
    return outline;
}

Outline angle_outline(const Section &section) {
    Outline outline{{0, 0}, {}};
    const Point upper_edge = {section.s - section.r1, section.h - section.r1};
    outline.line_to({section.b, 0});
    add_lower_part(outline, section);
    outline.line_to(polar(upper_edge, section.r1, 0));
    outline.arc(upper_edge, 90);
    outline.line_to({0, section.h});
    return outline;
}

}  // namespace

Point polar(Point center, double radius, double degrees) {
    const double radians = degrees / kDegrees;
    return {center.x + radius * std::cos(radians), center.y + radius * std::sin(radians)};
}

void Outline::arc(Point center, double angle) {
    const Point from = last() - center;
    const double radius = std::hypot(from.x, from.y);
    edges.push_back(
        {polar(center, radius, std::atan2(from.y, from.x) * kDegrees + angle), true, center, angle});
}

double Section::t_place() const {
    if (kind != Kind::channel) return b;
    return h <= 300 ? b / 2 : (b + s) / 2;
}

Point Section::fillet_center() const {
    const double x = (kind == Kind::beam ? (b + s) / 2 : s) + r;
    return {x, face_height(*this, x, r)};
}

Point Section::edge_center() const {
    return {b - r1, face_height(*this, b - r1, -r1)};
}

bool is_possible(const Section &section) {
    for (const double length : {section.h, section.b, section.s, section.t}) {
        if (!(length > 0 && length < 100'000)) return false;
    }
    if (!(section.r >= 0 && section.r1 >= 0)) return false;
    const Point fillet = section.fillet_center();
    const double edges = section.kind == Section::Kind::beam ? section.b : section.edge_center().x;
    const double sides = section.kind == Section::Kind::angle ? section.h - section.r1 : section.h / 2;
    return fillet.x <= edges && fillet.y <= sides && section.edge_center().y >= 0 &&
           section.r1 <= section.s;
}

Outline outline_of(const Section &section) {
    switch (section.kind) {
        case Section::Kind::channel:
            return channel_outline(section);
        case Section::Kind::angle:
            return angle_outline(section);
        default:
            return beam_outline(section);
    }
}

}  // namespace kvtool

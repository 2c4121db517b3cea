// SPDX-License-Identifier: MIT
#include "tools/kv/drawing/section_outline.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kvtool {

namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
constexpr double kNothing = 1e-9;  // what rounding leaves of a length

// A corner, and the radius that it is rounded with.
struct Corner {
    Point at;
    double radius = 0;
    std::string_view name = {};  // of the radius, where the drawing shows it
};

double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}

double length(Point a) {
    return std::hypot(a.x, a.y);
}

// How a corner is rounded: where the arc begins, where it ends, and by how much it turns.
struct Rounding {
    double tangent;  // the length of each edge that the arc takes away
    Edge arc;
    Point start;
};

Rounding round_corner(Point before, const Corner &corner, Point after) {
    const Point in = (corner.at - before) * (1 / length(corner.at - before));
    const Point out = (after - corner.at) * (1 / length(after - corner.at));
    const double turn = std::atan2(cross(in, out), in.x * out.x + in.y * out.y);
    const double tangent = corner.radius * std::tan(std::fabs(turn) / 2);
    const Point start = corner.at - in * tangent;
    const Point inwards = Point{-in.y, in.x} * (turn > 0 ? 1 : -1);
    return {
        tangent,
        {corner.at + out * tangent, true, start + inwards * corner.radius, turn * kDegrees, corner.name},
        start};
}

// False if the radii need more than the edges have.
bool make_outline(const std::vector<Corner> &corners, Outline &outline) {
    const std::size_t count = corners.size();
    std::vector<Rounding> roundings;
    for (std::size_t i = 0; i < count; ++i) {
        roundings.push_back(
            round_corner(corners[(i + count - 1) % count].at, corners[i], corners[(i + 1) % count].at));
    }
    outline.start = roundings.front().arc.end;
    Point end = outline.start;
    for (std::size_t i = 1; i <= count; ++i) {
        const Corner &corner = corners[i % count];
        const Rounding &rounding = roundings[i % count];
        const double taken = roundings[i - 1].tangent + rounding.tangent;
        if (!(length(corner.at - corners[i - 1].at) - taken > -kNothing)) return false;
        if (length(rounding.start - end) > kNothing) outline.edges.push_back({rounding.start});
        if (corner.radius > 0) outline.edges.push_back(rounding.arc);
        end = rounding.arc.end;
    }
    return true;
}

enum class Mirror { up, left };

// Adds the corners again, backwards, on the other side; without names for their radii.
void mirror(std::vector<Corner> &corners, Mirror side, double size) {
    for (std::size_t i = corners.size(); i-- > 0;) {
        const Point p = corners[i].at;
        corners.push_back(
            {side == Mirror::up ? Point{p.x, size - p.y} : Point{size - p.x, p.y}, corners[i].radius});
    }
}

std::vector<Corner> beam(const Section &section) {
    const double web = (section.b + section.s) / 2;
    std::vector<Corner> corners = {{{section.b, 0}},
                                   {{section.b, section.flange(section.b)}, section.r1, "r1"},
                                   {{web, section.flange(web)}, section.r, "r"}};
    mirror(corners, Mirror::up, section.h);
    mirror(corners, Mirror::left, section.b);
    return corners;
}

std::vector<Corner> channel(const Section &section) {
    std::vector<Corner> corners = {{{0, 0}},
                                   {{section.b, 0}},
                                   {{section.b, section.flange(section.b)}, section.r1, "r1"},
                                   {{section.s, section.flange(section.s)}, section.r, "r"}};
    mirror(corners, Mirror::up, section.h);
    return corners;
}

std::vector<Corner> angle(const Section &section) {
    const auto &[kind, h, b, s, t, r, r1, slope] = section;
    return {{{0, 0}}, {{b, 0}}, {{b, t}, r1, "r1"}, {{s, t}, r, "r"}, {{s, h}, r1}, {{0, h}}};
}

// The flange is above.
std::vector<Corner> tee(const Section &section) {
    const auto &[kind, h, b, s, t, r, r1, slope] = section;
    const double end = (b + s) / 2 - slope * h / 2;  // of the web
    // There x = end + slope * y, and y = h - flange(x).
    const double x = (end + slope * (h - t - slope * section.t_place())) / (1 - slope * slope);
    std::vector<Corner> corners = {{{end, 0}, r1 / 2},
                                   {{x, h - section.flange(x)}, r, "r"},
                                   {{b, h - section.flange(b)}, r1, "r1"},
                                   {{b, h}}};
    mirror(corners, Mirror::left, b);
    return corners;
}

std::vector<Corner> rectangle(const Section &section, double inwards, double radius,
                              std::string_view name) {
    const double left = inwards;
    const double right = section.b - inwards;
    const double upper = section.h - inwards;
    return {{{left, left}, radius},
            {{right, left}, radius},
            {{right, upper}, radius, name},
            {{left, upper}, radius}};
}

std::vector<std::vector<Corner>> corners_of(const Section &section) {
    switch (section.kind) {
        case Section::Kind::beam:
            return {beam(section)};
        case Section::Kind::channel:
            return {channel(section)};
        case Section::Kind::angle:
            return {angle(section)};
        case Section::Kind::tee:
            return {tee(section)};
        case Section::Kind::box:
            return {rectangle(section, 0, section.r, "r"), rectangle(section, section.t, section.r1, "")};
        default:
            return {rectangle(section, 0, section.h / 2, ""),
                    rectangle(section, section.t, section.h / 2 - section.t, "")};
    }
}

// Whether every part of the section has a thickness, and none reaches beyond another.
bool is_possible(const Section &section) {
    const auto &[kind, h, b, s, t, r, r1, slope] = section;
    for (const double size : {h, b, s, t}) {
        if (!(size > 0 && size < 100'000)) return false;
    }
    if (!(r >= 0 && r1 >= 0 && slope >= 0 && slope < 0.5)) return false;
    const bool hollow = kind == Section::Kind::box || kind == Section::Kind::pipe;
    if (hollow) return 2 * t < std::min(h, b);
    const double root = section.flange(kind == Section::Kind::beam ? (b + s) / 2 : s);
    const bool two_flanges = kind == Section::Kind::beam || kind == Section::Kind::channel;
    return s < b && section.flange(b) > 0 && root < (two_flanges ? h / 2 : h) &&
           (kind != Section::Kind::tee || s > slope * h);
}

struct Moments {
    double area = 0;
    Point first = {0, 0};
};

// The polygon of the ends of the edges, and between each arc and its chord a segment of a circle.
Moments moments_of(const Outline &outline) {
    Moments sum;
    Point from = outline.start;
    const auto add_triangle = [&](Point to) {  // with the origin
        const double twice = cross(from, to);
        sum.area += twice / 2;
        sum.first = sum.first + (from + to) * (twice / 6);
        from = to;
    };
    for (const Edge &edge : outline.edges) {
        if (edge.arc) {
            const Point spoke = from - edge.center;
            const double radius = length(spoke);
            const double turn = edge.angle / kDegrees;
            const double area = radius * radius / 2 * (turn - std::sin(turn));
            const double direction = std::atan2(spoke.y, spoke.x) * kDegrees + edge.angle / 2;
            const double beyond = 2.0 / 3 * std::pow(radius * std::sin(turn / 2), 3);
            sum.area += area;
            sum.first = sum.first + edge.center * area + polar({0, 0}, beyond, direction);
        }
        add_triangle(edge.end);
    }
    add_triangle(outline.start);
    return sum;
}

}  // namespace

Point polar(Point center, double radius, double degrees) {
    const double radians = degrees / kDegrees;
    return {center.x + radius * std::cos(radians), center.y + radius * std::sin(radians)};
}

double Section::t_place() const {
    switch (kind) {
        case Kind::beam:
        case Kind::tee:
            return b * 3 / 4;
        case Kind::channel:
            return h <= 300 ? b / 2 : (b + s) / 2;
        default:
            return b;
    }
}

std::vector<Outline> outlines_of(const Section &section) {
    std::vector<Outline> outlines;
    if (!is_possible(section)) return {};
    for (const std::vector<Corner> &corners : corners_of(section)) {
        outlines.emplace_back();
        if (!make_outline(corners, outlines.back())) return {};
    }
    return outlines;
}

Point centroid_of(const std::vector<Outline> &outlines) {
    Moments sum;
    for (const Outline &outline : outlines) {
        const Moments moments = moments_of(outline);
        const double sign = &outline == &outlines.front() ? 1 : -1;
        sum.area += sign * moments.area;
        sum.first = sum.first + moments.first * sign;
    }
    return sum.first * (1 / sum.area);
}

}  // namespace kvtool

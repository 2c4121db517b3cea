// SPDX-License-Identifier: MIT
// The outlines of cross-sections, in millimetres; x to the right and y up from the lower left corner of the
// rectangle around the section.
#pragma once

#include <string_view>
#include <vector>

namespace kvtool {

struct Point {
    double x;
    double y;
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, double factor) {
    return {a.x * factor, a.y * factor};
}
/// At a distance from a centre, in a direction in degrees.
Point polar(Point center, double radius, double degrees);

/// A line, or an arc that turns by an angle in degrees, counted counter-clockwise.
struct Edge {
    Point end;
    bool arc = false;
    Point center = {};
    double angle = 0;
    std::string_view radius = {};  ///< what the radius of an arc is called where the drawing shows it
};

/// A closed line.
struct Outline {
    Point start;
    std::vector<Edge> edges;
};

struct Section {
    enum class Kind { beam, channel, angle, tee, box, pipe };
    Kind kind;
    double h;
    double b;
    double s;      ///< of the web, or the upright leg
    double t;      ///< of the flanges, or the other leg, or the wall of a box or a pipe
    double r;      ///< of the fillets, or outside at the corners of a box
    double r1;     ///< at the edges of flanges and legs, or inside at the corners of a box
    double slope;  ///< of the inner faces of flanges, and of a tee's web; t is their thickness at
                   ///< t_place(), s that of the tee's web at h/2

    /// Where t is measured: of a flange on the right.
    double t_place() const;
    /// The thickness of that flange.
    double flange(double x) const { return t + slope * (t_place() - x); }
};

/// The outline, and that of the hollow in it if there is one. None if the dimensions make no section.
std::vector<Outline> outlines_of(const Section &section);

/// The centroid of the area inside the first outline and outside of the others.
Point centroid_of(const std::vector<Outline> &outlines);

}  // namespace kvtool

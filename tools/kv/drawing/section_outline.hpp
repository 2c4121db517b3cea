// The outlines of cross-sections, in millimetres; x to the right and y up from the lower left corner of the
// rectangle around the section.
#pragma once

#include <string>
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
};

/// A closed line.
struct Outline {
    Point start;
    std::vector<Edge> edges;

    Point last() const { return edges.empty() ? start : edges.back().end; }
    void line_to(Point end) { edges.push_back({end}); }
    /// From where the line has come to.
    void arc(Point center, double angle);
};

struct Section {
    enum class Kind { beam, channel, angle };
    Kind kind;
    double h;
    double b;
    double s;      ///< of the web, or the upright leg
    double t;      ///< of the flanges, or the other leg
    double r;      ///< of the fillets
    double r1;     ///< at the edges of flanges and legs
    double slope;  ///< of the inner faces of a channel's flanges

    /// Where t is measured.
    double t_place() const;
    /// Between flange and web: where a fillet has its middle, and the centre of its circle.
    Point fillet_center() const;
    /// The same at the edge of the lower flange.
    Point edge_center() const;
};

/// False if the dimensions make no section.
bool is_possible(const Section &section);

Outline outline_of(const Section &section);

}  // namespace kvtool

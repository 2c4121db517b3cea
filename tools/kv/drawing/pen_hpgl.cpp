// SPDX-License-Identifier: MIT
// Drawing as a plot file: HP-GL, in units of a fortieth of a millimetre.
#include <cmath>
#include <cstdio>

#include "tools/kv/drawing/pen.hpp"

namespace kvtool {

namespace {

constexpr double kUnits = 40;

class HpglPen : public Pen {
  public:
    void area(const std::vector<Outline> &outlines) override {
        use(1);
        for (const Outline &outline : outlines) {
            text_ += "PU" + place(outline.start) + ";\n";
            for (const Edge &edge : outline.edges) {
                if (edge.arc) {
                    char angle[32];
                    std::snprintf(angle, sizeof angle, ",%.3f", edge.angle);
                    text_ += "PD;AA" + place(edge.center) + angle + ";\n";
                }
                text_ += "PD" + place(edge.end) + ";\n";  // an arc ends where rounding takes it
            }
            text_ += "PD" + place(outline.start) + ";PU;\n";
        }
    }

    void line(Point from, Point to, Line kind) override {
        use(2);
        if (kind == Line::axis) text_ += "LT4,4;";
        text_ += "PU" + place(from) + ";PD" + place(to) + ";PU;";
        text_ += kind == Line::axis ? "LT;\n" : "\n";
    }

    void arrowhead(Point tip, Point left, Point right) override {
        use(2);
        const Point middle = (left + right) * 0.5;
        text_ += "PU" + place(tip) + ";PD" + place(left) + "," + place(right) + "," + place(tip) + "," +
                 place(middle) + ";PU;\n";
    }

    void text(Point middle, double height, bool upright, std::string_view text) override {
        use(2);
        char size[64];
        std::snprintf(size, sizeof size, "SI%.3f,%.3f;", height * 0.068, height * 0.1);  // in cm
        text_ += std::string(size) + (upright ? "DI0,1;" : "DI1,0;") + "LO4;PU" + place(middle) + ";LB";
        for (const char c : text) text_ += c >= ' ' && c <= '~' ? c : '?';
        text_ += "\x03\n";
    }

    std::string finish() override { return text_ + "PU0,0;SP0;\n"; }

  private:
    static std::string place(Point p) {
        return std::to_string(std::lround(p.x * kUnits)) + "," + std::to_string(std::lround(p.y * kUnits));
    }
    void use(int pen) {
        if (pen == pen_) return;
        pen_ = pen;
        text_ += "SP" + std::to_string(pen) + ";\n";
    }

    int pen_ = 0;
    std::string text_ = "IN;PA;\n";
};

}  // namespace

std::unique_ptr<Pen> hpgl_pen() {
    return std::make_unique<HpglPen>();
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Drawing as an SVG picture.
#include <cmath>
#include <cstdio>
#include <initializer_list>

#include "tools/kv/drawing/pen.hpp"

namespace kvtool {

namespace {

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    std::string result = text;
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
    return result != "-0" ? result : "0";
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '<') {
            result += "&lt;";
        } else if (c == '&') {
            result += "&amp;";
        } else {
            result += c >= ' ' && c <= '~' ? c : '?';
        }
    }
    return result;
}

class SvgPen : public Pen {
  public:
    SvgPen(double width, double height) : height_(height) {
        const std::string w = number(width);
        const std::string h = number(height);
        put({R"(<svg xmlns="http://www.w3.org/2000/svg" width=")", w, R"(mm" height=")", h,
             R"(mm" viewBox="0 0 )", w, " ", h, R"(" xml:space="preserve" font-family="sans-serif" )",
             R"(text-anchor="middle" stroke-linejoin="round">)", "\n",
             R"(<rect width="100%" height="100%" fill="white"/>)", "\n"});
    }

    void area(const std::vector<Outline> &outlines) override {
        put({R"(<path d=")"});
        for (const Outline &outline : outlines) {
            put({"M", place(outline.start)});
            Point from = outline.start;
            for (const Edge &edge : outline.edges) {
                const Point spoke = from - edge.center;
                const std::string radius = number(std::hypot(spoke.x, spoke.y));
                if (edge.arc) {
                    put({" A", radius, " ", radius, edge.angle > 0 ? " 0 0 0 " : " 0 0 1 ",
                         place(edge.end)});
                } else {
                    put({" L", place(edge.end)});
                }
                from = edge.end;
            }
            put({" Z"});
        }
        put({R"(" fill="#d5dbe3" fill-rule="evenodd" stroke="black" stroke-width="0.5"/>)", "\n"});
    }

    void line(Point from, Point to, Line kind) override {
        put({R"(<path d="M)", place(from), " L", place(to), R"(" stroke="black" stroke-width="0.18")",
             kind == Line::axis ? R"( stroke-dasharray="6 1.2 0.6 1.2")" : "", "/>\n"});
    }

    void arrowhead(Point tip, Point left, Point right) override {
        put({R"(<path d="M)", place(tip), " L", place(left), " L", place(right), " Z\"/>\n"});
    }

    void text(Point middle, double height, bool upright, std::string_view text) override {
        const std::string x = number(middle.x);
        const std::string y = number(height_ - middle.y);
        put({R"(<text x=")", x, R"(" y=")", y, R"(" font-size=")", number(height * 1.4), "\""});
        if (upright) put({R"( transform="rotate(-90 )", x, " ", y, R"lit()")lit"});
        put({">", escaped(text), "</text>\n"});
    }

    std::string finish() override { return text_ + "</svg>\n"; }

  private:
    void put(std::initializer_list<std::string_view> parts) {
        for (const std::string_view part : parts) text_ += part;
    }
    std::string place(Point p) const { return number(p.x) + " " + number(height_ - p.y); }

    double height_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Pen> svg_pen(double width, double height) {
    return std::make_unique<SvgPen>(width, height);
}

}  // namespace kvtool

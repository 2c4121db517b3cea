// SPDX-License-Identifier: MIT
#include "tools/kv/profile/sections.hpp"

#include <algorithm>
#include <iterator>

#include "tools/kv/failure.hpp"
#include "tools/kv/output.hpp"

namespace kvtool {

namespace {

using Kind = Section::Kind;

struct KnownType {
    std::string_view type;  // in small letters; with a star at its end it is only what the type begins with
    Kind kind;
    double slope;  // of the flanges
};

// Of a channel with tapered flanges above 300 mm the slope is 5 %.
constexpr KnownType kTypes[] = {
    {"ipe*", Kind::beam, 0},      {"he*", Kind::beam, 0},       {"ipb*", Kind::beam, 0},
    {"hl", Kind::beam, 0},        {"hd", Kind::beam, 0},        {"hp", Kind::beam, 0},
    {"h", Kind::beam, 0},         {"ub", Kind::beam, 0},        {"uc", Kind::beam, 0},
    {"ubp", Kind::beam, 0},       {"w", Kind::beam, 0},         {"i", Kind::beam, 0.14},
    {"ipn", Kind::beam, 0.14},    {"inp", Kind::beam, 0.14},    {"u", Kind::channel, 0.08},
    {"upn", Kind::channel, 0.08}, {"unp", Kind::channel, 0.08}, {"upe", Kind::channel, 0},
    {"uap", Kind::channel, 0},    {"pfc", Kind::channel, 0},    {"l", Kind::angle, 0},
    {"t", Kind::tee, 0.02},       {"rhs", Kind::box, 0},        {"shs", Kind::box, 0},
    {"rro", Kind::box, 0},        {"qro", Kind::box, 0},        {"chs", Kind::pipe, 0},
    {"ro", Kind::pipe, 0},
};

const KnownType *known_type(const std::string &name) {
    const std::string type = comparable(name.substr(0, name.find(' ')));
    const auto *const found =
        std::find_if(std::begin(kTypes), std::end(kTypes), [&](const KnownType &known) {
            const bool start = known.type.ends_with('*');
            return start ? type.starts_with(known.type.substr(0, known.type.size() - 1))
                         : type == known.type;
        });
    return found != std::end(kTypes) ? found : nullptr;
}

// The columns by their places below.
enum Column { kH, kB, kS, kT, kR, kR1, kD, kSlope, kEy, kEz, kA, kIy, kWy, kIyRadius, kIz, kWz, kIzRadius };

class Dimensions {
  public:
    Dimensions(std::string_view command, const TableEntry &entry) : command_(command), entry_(entry) {}
    double required(Column column) const {
        if (entry_.values[column]) return *entry_.values[column];
        throw Failure{kNotFound, std::string(command_) + ": the table '" + entry_.table +
                                     "' has no dimension " + kDrawnColumns[column] + " of " + entry_.name};
    }
    double optional(Column column, double otherwise) const {
        return entry_.values[column].value_or(otherwise);
    }

  private:
    std::string_view command_;
    const TableEntry &entry_;
};

Section section_of(const KnownType &known, const Dimensions &sizes) {
    if (known.kind == Kind::pipe) {
        const double diameter = sizes.required(kD);
        const double wall = sizes.required(kT);
        return {Kind::pipe, diameter, diameter, wall, wall, 0, 0, 0};
    }
    Section section{known.kind,         sizes.required(kH),    sizes.required(kB),     0,
                    sizes.required(kT), sizes.optional(kR, 0), sizes.optional(kR1, 0), known.slope};
    section.s = known.kind == Kind::box ? section.t : sizes.required(kS);
    if (known.kind == Kind::channel && known.slope > 0 && section.h > 300) section.slope = 0.05;
    section.slope = sizes.optional(kSlope, section.slope * 100) / 100;
    return section;
}

std::string note(const TableEntry &entry, std::initializer_list<Column> columns) {
    std::string text;
    for (const Column column : columns) {
        if (!entry.values[column]) continue;
        if (!text.empty()) text += "    ";
        text += kDrawnColumns[column] + " = " + text_of_value(entry.values[column]) + " " +
                unit_of(kDrawnColumns[column], Units::table);
    }
    return text;
}

// What the drawing does not say of the shape: where the thickness of sloping flanges is measured.
std::string shape_note(const Section &section) {
    const double slope = section.slope * 100;
    if (section.kind == Kind::box) return "    r1 = " + text_of_value(section.r1) + " mm inside";
    if (slope == 0) return "";
    const bool tee = section.kind == Kind::tee;
    const char *place = tee ? "    s at h/2, t at b/4, they slope " : "    t at b/4, flanges slope ";
    if (section.kind == Kind::channel) {
        place = section.h <= 300 ? "    t at b/2, flanges slope " : "    t at (b-s)/2, flanges slope ";
    }
    return place + text_of_value(slope) + " %";
}

}  // namespace

const std::vector<std::string> kDrawnColumns = {"h",  "b", "s",  "t",  "r",  "r1", "D",  "slope", "ey",
                                                "ez", "A", "Iy", "Wy", "iy", "Iz", "Wz", "iz"};

SectionPage page_of(std::string_view command, const TableEntry &entry) {
    const KnownType *known = known_type(entry.name);
    if (known == nullptr) {
        throw Failure{kNotFound,
                      std::string(command) + ": how " + entry.name +
                          " looks is not known, but only I, H, U, L and T sections, and RHS, SHS "
                          "and CHS"};
    }
    SectionPage page{section_of(*known, Dimensions(command, entry)), entry.name, {}};
    if (outlines_of(page.section).empty()) {
        throw Failure{kNotFound,
                      std::string(command) + ": the dimensions of " + entry.name + " make no section"};
    }
    page.notes = {note(entry, {kA, kEy, kEz}) + shape_note(page.section),
                  note(entry, {kIy, kWy, kIyRadius}), note(entry, {kIz, kWz, kIzRadius})};
    return page;
}

void write_drawing(const std::vector<SectionPage> &pages, const Arguments &arguments) {
    const auto hpgl = [](double, double) { return hpgl_pen(); };
    const std::string picture = draw(pages, arguments.has("--hpgl") ? +hpgl : svg_pen);
    save_file(arguments.value("--output", "-"), picture);
}

}  // namespace kvtool

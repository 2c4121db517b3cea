// The action draw: a cross-section as a picture.
#include "tools/kv/drawing/section_drawing.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/output.hpp"
#include "tools/kv/profile/action.hpp"

namespace kvtool {

namespace {

std::string type_of(const std::string &name) {
    char type[PROFIL_PART_SIZE];
    char size[PROFIL_PART_SIZE];
    profil_convert_result(name.c_str(), type, size);
    return type;
}

// Channels are called U..., angles L...; the flanges of a UPN slope, less so above 300 mm.
Section section_of(const TableEntry &entry, const std::vector<double> &dimensions) {
    const std::string type = type_of(entry.name);
    Section section{Section::Kind::beam, dimensions[0], dimensions[1], dimensions[2],
                    dimensions[3],       dimensions[4], dimensions[5], 0};
    if (type.substr(0, 1) == "U") section.kind = Section::Kind::channel;
    if (type.substr(0, 1) == "L") section.kind = Section::Kind::angle;
    if (section.kind == Section::Kind::beam) section.r1 = 0;
    if (type == "UPN") section.slope = section.h <= 300 ? 0.08 : 0.05;
    return section;
}

std::string note(const std::vector<std::string> &columns, const TableEntry &entry, std::size_t first,
                 std::size_t last) {
    std::string text;
    for (std::size_t i = first; i < last; ++i) {
        if (!entry.values[i]) continue;
        if (!text.empty()) text += "    ";
        text += columns[i] + " = " + text_of_value(entry.values[i]) + " " + unit_of(columns[i], false);
    }
    return text;
}

const std::vector<std::string> kColumns = {"h", "b",  "s",  "t",  "r",  "r1", "ez",
                                           "A", "Iy", "Wy", "iy", "Iz", "Wz", "iz"};
constexpr std::size_t kDimensions = 6;
constexpr std::size_t kRequired = 4;  // of them
constexpr std::size_t kCentroid = 6;

SectionPage page_of(const TableEntry &entry) {
    std::vector<double> dimensions;
    for (std::size_t i = 0; i < kDimensions; ++i) {
        if (i < kRequired && !entry.values[i]) {
            throw Failure{kNotFound, "kv profile draw: the table '" + entry.table + "' has no dimension " +
                                         kColumns[i] + " of " + entry.name};
        }
        dimensions.push_back(entry.values[i].value_or(0));
    }
    SectionPage page{section_of(entry, dimensions), {}, entry.name, {}};
    const Section &section = page.section;
    if (!is_possible(section)) {
        throw Failure{kNotFound, "kv profile draw: the dimensions of " + entry.name + " make no section"};
    }
    const double from_back = entry.values[kCentroid] ? *entry.values[kCentroid] * 10 : section.b / 2;
    page.centroid = {section.kind == Section::Kind::beam ? section.b / 2 : from_back,
                     section.kind == Section::Kind::angle ? from_back : section.h / 2};
    page.notes = {note(kColumns, entry, 7, 8), note(kColumns, entry, 8, 11), note(kColumns, entry, 11, 14)};
    if (section.slope > 0) {
        page.notes.front() +=
            section.h <= 300 ? "    t at b/2, flanges slope 8 %" : "    t at (b-s)/2, flanges slope 5 %";
    }
    return page;
}

int run_draw(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    const std::string &name = arguments.operands()[0];
    std::vector<TableFile> tables = open_tables(family, arguments);
    const TableEntry entry = get_entry(
        command, tables, name, [](const TableFile &) { return kColumns; }, false);
    const auto hpgl = [](double, double) { return hpgl_pen(); };
    save_file(arguments.value("--output", "-"),
              draw(page_of(entry), arguments.has("--hpgl") ? +hpgl : svg_pen));
    return kDone;
}

constexpr Option kOptions[] = {
    {"--hpgl", "", "a plot file in HP-GL instead of an SVG picture"},
    kOutputOption,
};

}  // namespace

const Action kProfileDraw = {
    "draw",
    "NAME",
    "draw a cross-section",
    R"(Draws the cross-section of an entry, found as by get, with its axes and dimensions in mm: a beam, a
channel for types that begin with U, an angle for those that begin with L. The table has to have
the columns h, b, s and t; r, r1 and ez are used where they are there.
)",
    kOptions,
    1,
    1,
    run_draw,
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// The action draw: a cross-section as a picture.
#include "tools/kv/failure.hpp"
#include "tools/kv/profile/action.hpp"
#include "tools/kv/profile/sections.hpp"

namespace kvtool {

namespace {

int run_draw(std::string_view command, const Arguments &arguments) {
    const TableFamily &family = family_of(command);
    const std::string &name = arguments.operands()[0];
    std::vector<TableFile> tables = open_tables(family, arguments);
    const TableEntry entry = get_entry(
        command, tables, name, [](const TableFile &) { return kDrawnColumns; }, Units::table);
    write_drawing({page_of(command, entry)}, arguments);
    return kDone;
}

constexpr Option kOptions[] = {
    kHpglOption,
    kOutputOption,
};

}  // namespace

const Action kProfileDraw = {
    "draw",
    "NAME",
    "draw a cross-section",
    R"(Draws the cross-section of an entry, found as by get, with its axes and its dimensions in mm:
I and H sections, channels, angles and tees, whose table has to have the columns h, b, s and t;
rectangular hollow sections with h, b and t; pipes with D and t. r, r1 and slope, in percent, are
used where they are there. The axes go through the centroid of what is drawn.
)",
    kOptions,
    1,
    1,
    run_draw,
};

}  // namespace kvtool

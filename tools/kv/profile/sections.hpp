// SPDX-License-Identifier: MIT
// What the entries of tables look like.
#pragma once

#include <string_view>
#include <vector>

#include "tools/kv/drawing/section_drawing.hpp"
#include "tools/kv/profile/tables.hpp"

namespace kvtool {

/// The columns that a drawing shows, in the units of the tables.
extern const std::vector<std::string> kDrawnColumns;

/// The page of an entry with these columns. Throws Failure (kNotFound) if its type is not known, or its
/// dimensions are missing or make no section.
SectionPage page_of(std::string_view command, const TableEntry &entry);

/// Draws as --hpgl and --output say. Throws Failure (kFile).
void write_drawing(const std::vector<SectionPage> &pages, const Arguments &arguments);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// The data that every format is measured with: 10,000 leaves in 100 sections, the same for all.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kvbench {

using Value = std::variant<double, std::int32_t, std::string, std::vector<double>>;

struct Leaf {
    std::string section;
    std::string block;  // inside the section; empty for a leaf of the section itself
    std::string name;
    Value value;
};

/// A section (or group) and the rest of the path.
using Address = std::pair<std::string, std::string>;

/// All leaves in the order of the text. Their paths are unique; the sections and blocks are contiguous.
const std::vector<Leaf> &leaves();

/// The leaves that hold a double, in the random order that all formats look them up in.
const std::vector<const Leaf *> &random_doubles();

/// The path of a leaf inside its section.
std::string path_in_section(const Leaf &leaf, char delimiter);
Address address_of(const Leaf &leaf, char delimiter);

/// A number as its shortest text that reads back as the same number.
std::string number_text(double value);
/// The value as a text; the numbers of a list are separated by `separator`.
std::string value_text(const Value &value, char separator);

}  // namespace kvbench

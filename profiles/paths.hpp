// SPDX-License-Identifier: MIT
// Where tables are.
#pragma once

#include <cstddef>

namespace kv::profiles {

enum class Family { profile, mat };

inline constexpr std::size_t kPathSize = 256;

/// A path with room for an extension that makes it too long for a file.
struct TablePath {
    char text[kPathSize + 8];
};

/// The directory of a family's tables; empty if nothing says it.
void table_directory(Family family, char (&directory)[kPathSize]);
/// Makes a path absolute, in place, if it begins with "." or "\".
void normalize(char (&path)[kPathSize]);
/// The path of the table that an application calls `name`; empty if it is too long.
void resolve_path(Family family, const char *name, TablePath &path);

}  // namespace kv::profiles

// SPDX-License-Identifier: MIT
// What a tree does not have, and what it has instead.
#pragma once

#include <string>
#include <vector>

#include "kv/env.h"

namespace kvtool {

/// The names of the elements of a block in their order; without a section, those of the sections.
std::vector<std::string> names_in(ENV *env, const char *section, const char *path, int32_t exact);

/// Throws Failure (kNotFound) for a section or an element of a file, with the nearest name at the place
/// where the path ends.
[[noreturn]] void fail_missing(const std::string &file, ENV *env, const char *section, const char *path);

}  // namespace kvtool

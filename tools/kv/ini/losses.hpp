// SPDX-License-Identifier: MIT
// What a change of an INI file cost beyond what was asked for.
#pragma once

#include <string>
#include <vector>

#include "tools/kv/env/edits.hpp"

namespace kvtool {

/// The text of a file as the library reads it; empty if it cannot be read.
std::string ini_text(const std::string &file);

/// A message for each line of the sections that were changed which has been cut or left out: the normal
/// form has no lines that are no entries, and nothing after the name of a header.
std::vector<std::string> losses(const std::string &before, const std::string &after,
                                const std::vector<Edit> &edits);

}  // namespace kvtool

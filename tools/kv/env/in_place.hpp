// SPDX-License-Identifier: MIT
// Changing a file that people edit: where it stands, or from one name to another.
#pragma once

#include <functional>
#include <string>

#include "tools/kv/arguments.hpp"

namespace kvtool {

/// Changes `file`, or with --output a copy of it, which goes there then; a change of standard input goes to
/// standard output. With --create a file that is missing is an empty one. `edit` gets the file to change
/// and the name for messages. With `keeps_text`, text before the first section is warned of. Throws Failure
/// (kFile), and what `edit` throws.
void change(const std::string &file, const Arguments &arguments,
            const std::function<void(const std::string &, const std::string &)> &edit,
            bool keeps_text = true);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Saving files.
#pragma once

#include <string>
#include <string_view>

namespace kvtool {

/// Gives a file new content: it holds its old content or all of the new one. "-" is standard output. Throws
/// Failure (kFile) with the reason.
void save_file(const std::string &name, std::string_view bytes);

/// Throws Failure (kFile) if a file certainly cannot be saved; nothing has changed. So work that takes long
/// need not be done in vain.
void require_writable(const std::string &name);

/// Bytes to standard output as they are, on every system. A failure shows when the program ends.
void print_bytes(std::string_view bytes);

}  // namespace kvtool

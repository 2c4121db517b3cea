// SPDX-License-Identifier: MIT
// What could stand next in a command line, for the completion of shells.
#pragma once

#include <span>

namespace kvtool {

/// `kv complete WORD...`: prints what the last word, which may be empty, could be. A line is a word, a tab
/// and what it means; or "@files" or "@directories" for names that the shell knows best. Prints nothing at
/// what it does not know; the exit code.
int run_completion(std::span<const char *const> words);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// The program `kv`: finds the action that the command line names, and tells what could not be done.
#pragma once

#include <span>

namespace kvtool {

/// Runs the command line without the program's own name; the exit code. It can be called again.
int run_program(std::span<const char *const> words);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Environment trees of the program: from a file and back to it, nothing lost unnoticed.
#pragma once

#include <memory>
#include <string>

#include "kv/env.h"

namespace kvtool {

struct CloseTree {
    void operator()(ENV *env) const { env_close(env, 0); }
};
/// An environment or a sub-environment that is closed at the end.
using Tree = std::unique_ptr<ENV, CloseTree>;

/// An empty environment.
Tree new_tree(int32_t id = 0, ENV *default_env = nullptr);

enum class LoadResult { done, missing, unreadable, syntax };

/// Reads a file, or standard input, into `env`. If that fails, `problem` tells the user why, beginning with
/// the file's name; if not, it tells what of the file is not read, and is empty for a sound one.
LoadResult try_load(const std::string &file, ENV *env, std::string &problem);

/// The same; throws Failure (kFile), and tells on standard error what is not read.
void load(const std::string &file, ENV *env);

/// What the last syntax error was, which was one of this file: "FILE:LINE:COLUMN: ...".
std::string syntax_problem(const std::string &file);

/// The canonical text with line feeds at the line ends.
std::string text_of(ENV *env);

/// The same text with the line ends of a file, CR LF.
std::string file_text(const std::string &text);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Reports of the environment tree, by the source that they are attributed to.
#pragma once

#include <cstdint>

#include "kv/frame.h"

namespace kv::env {

inline constexpr char kCore[] = "Env_core";    // tree, paths, text format, handles, traversal
inline constexpr char kAccess[] = "Env_pg";    // access by path and position
inline constexpr char kValues[] = "Env_util";  // typed values and arrays
inline constexpr char kFiles[] = "Env_uti2";   // merging, files and strings

/// An error of the tree itself, with the line that calls this.
inline void report(const char *text, const char *detail = nullptr, const char *source = kCore,
                   std::int32_t line = __builtin_LINE()) {
    kv_error(text, detail, nullptr, source, line);
}

}  // namespace kv::env

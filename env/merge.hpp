// SPDX-License-Identifier: MIT
// Merging, as edits of a file do it.
#pragma once

#include <cstdint>

#include "kv/env.h"

namespace kv::env {

/// Merges a block of `source` into the block with the same address in another tree, both of them root
/// environments, or, without a section, everything. Makes only what a text is stored in, and no block of a
/// text unless the mode is ENV_SINK_REPLACE: ENV_DATA. ENV_NOT_FOUND and ENV_BAD_PATH tell of the source.
/// Throws std::bad_alloc.
std::int32_t merge_where_stored(ENV *destination, ENV *source, const char *section, const char *path,
                                std::int32_t mode);

}  // namespace kv::env

// SPDX-License-Identifier: MIT
// The desktop's trash, as freedesktop.org's Trash specification 1.0 describes it.
#pragma once

#include "memory/owned.hpp"

namespace kv::platform::posix {

/// Moves a file, a link or a directory to the trash: that of the user, or, for another file system, the one
/// at the top of that; where there cannot be one, it is copied to the user's. False if it cannot be
/// moved; it stays then. Throws std::bad_alloc.
bool move_to_trash(const memory::String &path);

}  // namespace kv::platform::posix

// SPDX-License-Identifier: MIT
// What a file is to whom, and what else it has beside its content.
#pragma once

#include <sys/stat.h>

namespace kv::platform::posix {

/// Gives a new file all that an old one has beside its content: owner, group, permissions, access list,
/// attributes, labels and flags. False if something cannot be kept; the new file is of no use then, but
/// nobody has got more rights to it than to the old one. Throws std::bad_alloc.
bool keep_access(int old_file, const struct stat &old_status, int new_file);

}  // namespace kv::platform::posix

// SPDX-License-Identifier: MIT
// Single entries of directories, named by paths of the file system.
#pragma once

#include "platform/posix/path_builder.hpp"

namespace kv::platform::posix {

/// Renames an entry; false, with errno, if that fails or there is something at the new path.
bool rename_exclusive(const char *from, const char *to);
/// True if both paths are one and the same existing entry; links are not followed.
bool same_entry(const char *a, const char *b);
/// Writes the last component of `host` as `path`, which was mapped to it, spells it. False if they are not
/// the same but for case.
bool respell_last(const char *path, HostPath &host);

/// How a copy of a file ended.
enum class Copied { done, no_source, no_destination, failed };

/// Copies the content of a file over a file that may exist. A file copied onto itself stays. With
/// `attributes` the copy also gets the permissions and the time of modification.
Copied copy_content(const char *from, const char *to, bool attributes);

}  // namespace kv::platform::posix

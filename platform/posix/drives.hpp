// SPDX-License-Identifier: MIT
// From the families' paths to those of the file system.
#pragma once

#include "platform/posix/path_builder.hpp"

namespace kv::platform::posix {

/// What is about to be done with the file: writing to drive C creates the drive's directory.
enum class Purpose { read, write };

/// Maps `path` (with or without a drive letter, absolute or relative, with "\" or "/"): one without a
/// letter is on the current drive, a relative one in the drive's current directory. Every component is
/// looked up exactly first, then without regard to the case of ASCII letters; components that do not exist
/// are taken as they are. ".." is taken with the name before it, and leads out of no drive; on drive Z it
/// means what it means to the system where that name is a link. False if the drive does not exist or the
/// path is too long.
bool map_path(const char *path, Purpose purpose, HostPath &host);

}  // namespace kv::platform::posix

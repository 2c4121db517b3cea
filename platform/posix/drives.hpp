// Drives and paths: from the families' paths to those of the file system.
#pragma once

#include <climits>
#include <cstddef>

namespace kv::platform::posix {

/// A path of the file system.
struct HostPath {
    char text[PATH_MAX];
};

/// What is about to be done with the file: writing to drive C creates the drive's directory.
enum class Purpose { read, write };

/// Maps `path` (with or without a drive letter, absolute or relative, with "\" or "/"). Every component
/// is looked up exactly first, then without regard to the case of ASCII letters; components that do not
/// exist are taken as they are. False if the drive does not exist or the path is too long.
bool map_path(const char *path, Purpose purpose, HostPath &host);

}  // namespace kv::platform::posix

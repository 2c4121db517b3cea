// Paths of the system, as long as it lets them be.
#pragma once

#include <cstddef>
#include <windows.h>

namespace kv::platform::win32 {

/// Room for any path that the functions for 8-bit texts take.
struct FullPath {
    char text[2 * MAX_PATH];
};

/// The absolute path that the system makes of `path`. False if it is too long.
bool full_path(const char *path, FullPath &full);

/// The path of an open file or directory, with links resolved. False if the system does not tell.
bool final_path(HANDLE handle, FullPath &path);

/// The last component of a path.
const char *last_component(const char *path);

}  // namespace kv::platform::win32

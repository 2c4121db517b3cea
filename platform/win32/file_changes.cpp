// SPDX-License-Identifier: MIT
// Renaming, removing and making single files and directories.
#include <cstdio>
#include <cstring>
#include <windows.h>

#include "platform/platform.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

bool rename_file(const char *from, const char *to) {
    win32::FullPath old_path;
    win32::FullPath new_path;
    const bool known = win32::full_path(from, old_path) && win32::full_path(to, new_path);
    if (known && win32::same_path(old_path.text, new_path.text) &&
        std::strcmp(old_path.text, new_path.text) != 0) {
        // Not every version takes a name that changes its case only for a new one.
        win32::FullPath between;
        const int length = std::snprintf(between.text, sizeof between.text, "%s.kv-%lu.tmp", old_path.text,
                                         GetCurrentProcessId());
        if (length < 0 || static_cast<std::size_t>(length) >= sizeof between.text) return false;
        if (MoveFileExA(from, between.text, 0) == 0) return false;
        if (MoveFileExA(between.text, to, 0) != 0) return true;
        MoveFileExA(between.text, from, 0);
        return false;
    }
    return MoveFileExA(from, to, MOVEFILE_COPY_ALLOWED) != 0;
}

bool remove_file(const char *path) {
    return DeleteFileA(path) != 0;
}

bool make_directory(const char *path) {
    return CreateDirectoryA(path, nullptr) != 0;
}

bool remove_directory(const char *path) {
    return RemoveDirectoryA(path) != 0;
}

}  // namespace kv::platform

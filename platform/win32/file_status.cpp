// SPDX-License-Identifier: MIT
// What a path names and what may be done with it.
#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

FileKind file_kind(const char *path) {
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::none;
    // A link that leads nowhere has attributes of its own.
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        const win32::Handle entry(win32::open_entry(path));
        if (!entry.valid() && GetLastError() != ERROR_ACCESS_DENIED) return FileKind::none;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::directory : FileKind::file;
}

bool is_entry(const char *path) {
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool accessible(const char *path, bool, bool writing) {
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return false;
    constexpr DWORD kKeepsFromWriting = FILE_ATTRIBUTE_READONLY;
    return !writing || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
           (attributes & kKeepsFromWriting) == 0;
}

}  // namespace kv::platform

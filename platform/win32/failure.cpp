// SPDX-License-Identifier: MIT
// Why a call failed.
#include <cstdio>
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {

// What everybody meets is said in the words of POSIX, whatever the language of the system is.
const char *words_for(DWORD code) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return "No such file or directory";
        case ERROR_ACCESS_DENIED:
            return "Permission denied";
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return kFileInUse;
        case ERROR_WRITE_PROTECT:
            return "Read-only file system";
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return "No space left on device";
        case ERROR_NOT_READY:
            return "The drive is not ready";
        default:
            return nullptr;
    }
}

}  // namespace

void clear_failure() {
    SetLastError(ERROR_SUCCESS);
}

void describe_failure(char *text, std::size_t size) {
    const DWORD code = GetLastError();
    if (const char *words = words_for(code); words != nullptr) {
        std::snprintf(text, size, "%s", words);
    } else if (code == ERROR_SUCCESS) {
        std::snprintf(text, size, "%s", "");
    } else {
        std::snprintf(text, size, "Error %lu of the system", static_cast<unsigned long>(code));
    }
}

}  // namespace kv::platform

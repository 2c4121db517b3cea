// Renaming, removing and making single files and directories.
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

bool rename_file(const char *from, const char *to) {
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

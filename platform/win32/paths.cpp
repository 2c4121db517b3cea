#include "platform/win32/paths.hpp"

#include <cstring>

namespace kv::platform::win32 {

bool full_path(const char *path, FullPath &full) {
    const DWORD length = GetFullPathNameA(path, sizeof full.text, full.text, nullptr);
    return length > 0 && length < sizeof full.text;
}

bool final_path(HANDLE handle, FullPath &path) {
    const DWORD length =
        GetFinalPathNameByHandleA(handle, path.text, sizeof path.text, FILE_NAME_NORMALIZED);
    return length > 0 && length < sizeof path.text;
}

const char *last_component(const char *path) {
    const char *name = path + std::strlen(path);
    while (name > path && name[-1] != '/' && name[-1] != '\\' && name[-1] != ':') --name;
    return name;
}

}  // namespace kv::platform::win32

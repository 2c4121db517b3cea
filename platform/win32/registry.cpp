// SPDX-License-Identifier: MIT
// The registry.
#include <cstring>
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

bool registry_text(const char *key, char *text, std::size_t size) {
    HKEY opened;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
    // One more, since a value need not have its terminator.
    char value[1024 + 1];
    DWORD length = sizeof value - 1;
    DWORD type = REG_NONE;
    const LSTATUS status =
        RegQueryValueExA(opened, nullptr, nullptr, &type, reinterpret_cast<BYTE *>(value), &length);
    RegCloseKey(opened);
    if (status != ERROR_SUCCESS || type != REG_SZ) return false;
    value[length] = '\0';
    const std::size_t count = std::strlen(value);
    if (count + 1 < length || count >= size) return false;  // a zero byte within, or no room
    std::memcpy(text, value, count + 1);
    return true;
}

}  // namespace kv::platform

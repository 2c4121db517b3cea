// SPDX-License-Identifier: MIT
// Names for temporary files.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {
std::atomic<unsigned> next_number{0};
}

bool temporary_name(const char *directory, const char *prefix, char *name, std::size_t size) {
    const char *setting = std::getenv("TMP");
    if (setting != nullptr && *setting != '\0' && file_kind(setting) == FileKind::directory) {
        directory = setting;
    }
    const std::size_t length = std::strlen(directory);
    const bool separated = length > 0 && (directory[length - 1] == '\\' || directory[length - 1] == '/');
    constexpr int kMostAttempts = 100000;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const int written = std::snprintf(name, size, "%s%s%s%lx_%x", directory, separated ? "" : "\\",
                                          prefix, GetCurrentProcessId(), next_number.fetch_add(1));
        if (written < 0 || static_cast<std::size_t>(written) >= size) return false;
        for (char *c = name; *c != '\0'; ++c) *c = *c == '/' ? '\\' : *c;
        if (!is_entry(name)) return true;
    }
    return false;
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Names for temporary files.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace {

std::atomic<unsigned> next_number{0};

bool is_free(const char *path) {
    posix::HostPath host;
    struct stat status;
    return posix::map_path(path, posix::Purpose::read, host) && lstat(host.text, &status) != 0;
}

// The directory of the setting TMP as the families write it; false if there is no such directory. A path
// of the system's own is on drive Z, whatever the current drive is.
bool preferred_directory(posix::HostPath &directory) {
    const char *setting = std::getenv("TMP");
    directory.text[0] = '\0';
    if (setting == nullptr || *setting == '\0') return false;
    posix::PathBuilder builder(directory);
    if (*setting == '/' && !builder.append("Z:")) return false;
    if (!builder.append(setting)) return false;
    for (char *c = directory.text; *c != '\0'; ++c) *c = *c == '/' ? '\\' : *c;
    return file_kind(directory.text) == FileKind::directory;
}

}  // namespace

bool temporary_name(const char *directory, const char *prefix, char *name, std::size_t size) {
    posix::HostPath preferred;
    if (preferred_directory(preferred)) directory = preferred.text;
    const std::size_t length = std::strlen(directory);
    const bool separated = length > 0 && (directory[length - 1] == '\\' || directory[length - 1] == '/');
    constexpr int kMostAttempts = 100000;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const int written =
            std::snprintf(name, size, "%s%s%s%lx_%x", directory, separated ? "" : "\\", prefix,
                          static_cast<unsigned long>(getpid()), next_number.fetch_add(1));
        if (written < 0 || static_cast<std::size_t>(written) >= size) return false;
        if (is_free(name)) return true;
    }
    return false;
}

}  // namespace kv::platform

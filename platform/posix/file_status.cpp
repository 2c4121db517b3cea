// SPDX-License-Identifier: MIT
// What a path names and what may be done with it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

using posix::HostPath;
using posix::map_path;
using posix::Purpose;

FileKind file_kind(const char *path) {
    HostPath host;
    struct stat status;
    if (!map_path(path, Purpose::read, host) || stat(host.text, &status) != 0) return FileKind::none;
    return S_ISDIR(status.st_mode) ? FileKind::directory : FileKind::file;
}

bool is_entry(const char *path) {
    HostPath host;
    struct stat status;
    return map_path(path, Purpose::read, host) && lstat(host.text, &status) == 0;
}

bool accessible(const char *path, bool reading, bool writing) {
    HostPath host;
    if (!map_path(path, Purpose::read, host)) return false;
    const int mode = F_OK | (reading ? R_OK : 0) | (writing ? W_OK : 0);
    return faccessat(AT_FDCWD, host.text, mode, AT_EACCESS) == 0;
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Renaming, removing and making single files and directories; the free space of a drive.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/drive_table.hpp"
#include "platform/posix/drives.hpp"
#include "platform/posix/entries.hpp"

namespace kv::platform {

using posix::HostPath;
using posix::map_path;
using posix::Purpose;

namespace posix {

namespace {

// Not every C library has a function for the call, or its flag.
int rename_unless_there(const char *from, const char *to) {
#ifdef SYS_renameat2
    constexpr unsigned kNoReplace = 1;
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, kNoReplace));
#else
    static_cast<void>(from);
    static_cast<void>(to);
    errno = ENOSYS;
    return -1;
#endif
}

}  // namespace

bool rename_exclusive(const char *from, const char *to) {
    if (rename_unless_there(from, to) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // A file system that does not know the flag.
    struct stat status;
    if (lstat(to, &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from, to) == 0;
}

bool same_entry(const char *a, const char *b) {
    struct stat status_a;
    struct stat status_b;
    return lstat(a, &status_a) == 0 && lstat(b, &status_b) == 0 && status_a.st_dev == status_b.st_dev &&
           status_a.st_ino == status_b.st_ino;
}

bool respell_last(const char *path, HostPath &host) {
    const char *name = path + std::strlen(path);
    while (name > path && name[-1] != '/' && name[-1] != '\\' && name[-1] != ':') --name;
    char *last = std::strrchr(host.text, '/');
    if (last == nullptr || std::strlen(name) != std::strlen(last + 1)) return false;
    std::memcpy(last + 1, name, std::strlen(name) + 1);  // of the same length
    return true;
}

}  // namespace posix

bool rename_file(const char *from, const char *to) {
    HostPath old_host;
    HostPath new_host;
    if (!map_path(from, Purpose::write, old_host) || !map_path(to, Purpose::write, new_host)) return false;
    // A name that changes its case only was mapped to the file itself.
    if (std::strcmp(old_host.text, new_host.text) == 0) {
        if (!posix::respell_last(to, new_host)) return false;
        if (std::strcmp(old_host.text, new_host.text) == 0)
            return posix::same_entry(old_host.text, old_host.text);
    }
    return posix::rename_exclusive(old_host.text, new_host.text);
}

bool remove_file(const char *path) {
    HostPath host;
    return map_path(path, Purpose::write, host) && unlink(host.text) == 0;
}

bool make_directory(const char *path) {
    HostPath host;
    return map_path(path, Purpose::write, host) && mkdir(host.text, 0777) == 0;
}

bool remove_directory(const char *path) {
    HostPath host;
    return map_path(path, Purpose::write, host) && rmdir(host.text) == 0;
}

bool free_space(char drive, double &bytes) {
    HostPath host;
    posix::PathBuilder root(host);
    if (!drive_exists(drive) || !posix::append_drive(drive, root)) return false;
    // The directory of drive C may be created later; until then its nearest parent tells.
    struct statvfs status;
    while (statvfs(root.length() > 0 ? root.text() : "/", &status) != 0) {
        const char *slash = std::strrchr(root.text(), '/');
        if (errno != ENOENT || slash == nullptr) return false;
        root.cut(static_cast<std::size_t>(slash - root.text()));
    }
    bytes = static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize);
    return true;
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// What a file is to whom, and what else it has beside its content.
//
// Access lists are extended attributes to the kernel, so they need no care of their own. What the system
// itself computes from the content (signatures) or drops when a file is written (capabilities) is not
// carried over by hand: a file with a signature is written in place.
#include "platform/posix/file_access.hpp"

#include <cerrno>
#include <cstring>
#include <linux/fs.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "memory/owned.hpp"
#include "platform/failpoint.hpp"

namespace kv::platform::posix {

namespace {

using Bytes = memory::Vector<char>;

constexpr std::string_view kDroppedByWriting = "security.capability";
constexpr std::string_view kSignatures[] = {"security.ima", "security.evm"};

// Calls a function of the system that tells the size it needs, until the bytes fit. False if it fails.
template <typename Call>
bool read_whole(Bytes &bytes, Call call) {
    for (;;) {
        const ssize_t size = call(nullptr, 0);
        if (size < 0) return false;
        bytes.resize(static_cast<std::size_t>(size));
        if (size == 0) return true;
        const ssize_t count = call(bytes.data(), bytes.size());
        if (count < 0 && errno == ERANGE) continue;  // it has grown meanwhile
        if (count < 0) return false;
        bytes.resize(static_cast<std::size_t>(count));
        return true;
    }
}

// The names, each with its terminator. A file system without attributes has none.
bool list_attributes(int file, Bytes &names) {
    if (io_fails()) return false;
    if (read_whole(names, [&](char *buffer, std::size_t size) { return flistxattr(file, buffer, size); }))
        return true;
    names.clear();
    return errno == ENOTSUP;
}

bool read_attribute(int file, const char *name, Bytes &value) {
    return read_whole(value,
                      [&](char *buffer, std::size_t size) { return fgetxattr(file, name, buffer, size); });
}

bool copy_attribute(int old_file, int new_file, const char *name) {
    for (const std::string_view signature : kSignatures) {
        if (signature == name) return false;
    }
    Bytes value;
    Bytes there;
    if (!read_attribute(old_file, name, value)) return errno == ENODATA;
    if (read_attribute(new_file, name, there) && there == value) return true;
    return !io_fails() && fsetxattr(new_file, name, value.data(), value.size(), 0) == 0;
}

// Calls `function` for each name but for those that writing drops; false at the first that fails.
template <typename Function>
bool for_each_name(const Bytes &names, Function function) {
    for (std::size_t at = 0; at < names.size();) {
        const char *name = names.data() + at;
        at += std::strlen(name) + 1;
        if (name != kDroppedByWriting && !function(name)) return false;
    }
    return true;
}

bool contains(const Bytes &names, const char *wanted) {
    return !for_each_name(names, [&](const char *name) { return std::strcmp(name, wanted) != 0; });
}

// What a new file has by its directory's default and the old one has not, goes.
bool keep_attributes(int old_file, int new_file) {
    Bytes old_names;
    Bytes new_names;
    if (!list_attributes(old_file, old_names) || !list_attributes(new_file, new_names)) return false;
    return for_each_name(new_names,
                         [&](const char *name) {
                             return contains(old_names, name) || fremovexattr(new_file, name) == 0;
                         }) &&
           for_each_name(old_names,
                         [&](const char *name) { return copy_attribute(old_file, new_file, name); });
}

// The flags that a user sets, such as compression. A file system without flags has none.
bool keep_flags(int old_file, int new_file) {
    constexpr int kKept = FS_SECRM_FL | FS_UNRM_FL | FS_COMPR_FL | FS_SYNC_FL | FS_NODUMP_FL |
                          FS_NOATIME_FL | FS_NOCOMP_FL | FS_JOURNAL_DATA_FL | FS_NOTAIL_FL | FS_NOCOW_FL;
    int old_flags = 0;
    int new_flags = 0;
    if (ioctl(old_file, FS_IOC_GETFLAGS, &old_flags) != 0) return true;
    if (ioctl(new_file, FS_IOC_GETFLAGS, &new_flags) != 0) return (old_flags & kKept) == 0;
    const int wanted = (new_flags & ~kKept) | (old_flags & kKept);
    return wanted == new_flags || ioctl(new_file, FS_IOC_SETFLAGS, &wanted) == 0;
}

}  // namespace

// The owner first, since changing it clears bits; the permissions last, so that a new file that has a name
// already is private until all else is as it was.
bool keep_access(int old_file, const struct stat &old_status, int new_file) {
    struct stat made;
    if (io_fails() || fstat(new_file, &made) != 0) return false;
    const bool owned = made.st_uid == old_status.st_uid && made.st_gid == old_status.st_gid;
    if (!owned && fchown(new_file, old_status.st_uid, old_status.st_gid) != 0) return false;
    constexpr mode_t kPermissions = 07777;
    const mode_t permissions = old_status.st_mode & kPermissions;
    return keep_flags(old_file, new_file) && keep_attributes(old_file, new_file) &&
           fchmod(new_file, permissions) == 0 && fstat(new_file, &made) == 0 &&
           (made.st_mode & kPermissions) == permissions;
}

}  // namespace kv::platform::posix

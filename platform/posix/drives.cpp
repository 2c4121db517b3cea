// SPDX-License-Identifier: MIT
#include "platform/posix/drives.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>

#include "platform/posix/drive_table.hpp"

namespace kv::platform::posix {

namespace {

struct CloseDirectory {
    void operator()(DIR *directory) const { closedir(directory); }
};

bool is_separator(char c) {
    return c == '/' || c == '\\';
}

bool exists(const char *host) {
    struct stat status;
    return lstat(host, &status) == 0;
}

bool make_directories(const char *host) {
    HostPath partial;
    PathBuilder builder(partial);
    for (const char *at = host; *at != '\0';) {
        const char *end = std::strchr(at + 1, '/');
        const std::size_t size = end != nullptr ? static_cast<std::size_t>(end - at) : std::strlen(at);
        if (!builder.append({at, size})) return false;
        if (mkdir(builder.text(), 0777) != 0 && errno != EEXIST) return false;
        at += size;
    }
    return true;
}

// Replaces the last component, which does not exist as it is, by the directory's entry that differs
// from it in case only (the first in byte order, if there are several). False if there is none.
bool match_last_component(PathBuilder &host, std::size_t start) {
    char *component = host.at(start);
    host.at(start - 1)[0] = '\0';  // the slash before it
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(start > 1 ? host.text() : "/"));
    host.at(start - 1)[0] = '/';
    if (directory == nullptr) return false;
    char found[NAME_MAX + 1] = "";
    while (const dirent *entry = readdir(directory.get())) {
        if (strcasecmp(entry->d_name, component) != 0) continue;
        if (found[0] == '\0' || std::strcmp(entry->d_name, found) < 0) {
            std::snprintf(found, sizeof found, "%s", entry->d_name);
        }
    }
    if (found[0] == '\0') return false;
    std::memcpy(component, found, std::strlen(found));  // the same length: only letters' case differs
    return true;
}

// Corrects the case of the components after the drive's root as far as they exist.
void match_case(PathBuilder &host, std::size_t root) {
    if (exists(host.text())) return;
    const std::size_t length = host.length();
    for (std::size_t start = root + 1; start < length + 1;) {
        std::size_t end = start;
        while (end < length && host.text()[end] != '/') ++end;
        const char rest = *host.at(end);
        *host.at(end) = '\0';
        const bool found = exists(host.text()) || match_last_component(host, start);
        *host.at(end) = rest;
        if (!found) return;
        start = end + 1;
    }
}

// Replaces a path of drive Z that is a link to a directory by that directory: ".." leads on from there.
void follow_link(PathBuilder &host) {
    match_case(host, 0);
    struct stat status;
    HostPath target;
    const bool is_link = lstat(host.text(), &status) == 0 && S_ISLNK(status.st_mode);
    if (!is_link || realpath(host.text(), target.text) == nullptr) return;
    if (stat(target.text, &status) != 0 || !S_ISDIR(status.st_mode)) return;
    host.cut(0);
    host.append(target.text);  // which fits
}

// Appends the components of `path` to the host path, resolving "." and "..": nothing leads out of the
// drive, whose root is the first `root` characters.
bool append_components(char drive, std::string_view path, std::size_t root, PathBuilder &host) {
    while (!path.empty()) {
        if (is_separator(path.front())) {
            path.remove_prefix(1);
            continue;
        }
        std::size_t size = 0;
        while (size < path.size() && !is_separator(path[size])) ++size;
        const std::string_view component = path.substr(0, size);
        path.remove_prefix(size);
        if (component == ".") continue;
        if (component == "..") {
            if (drive == kNativeDrive) follow_link(host);
            std::size_t end = host.length();
            while (end > root && host.text()[end - 1] != '/') --end;
            host.cut(end > root ? end - 1 : root);
            continue;
        }
        if (!host.append("/") || !host.append(component)) return false;
    }
    return true;
}

}  // namespace

bool map_path(const char *path, Purpose purpose, HostPath &host_path) {
    if (*path == '\0') return false;
    std::string_view rest = path;
    const char drive = take_drive(rest);

    PathBuilder host(host_path);
    if (!append_drive(drive, host)) return false;
    const std::size_t root = host.length();
    if (purpose == Purpose::write && drive == 'C' && !exists(host.text())) make_directories(host.text());

    const bool relative = rest.empty() || !is_separator(rest.front());
    if (relative) {
        HostPath current;
        if (!read_directory(drive, current) || !append_components(drive, current.text, root, host))
            return false;
    }
    if (!append_components(drive, rest, root, host)) return false;
    if (host.length() == root) return host.append("/");
    match_case(host, root);
    return true;
}

}  // namespace kv::platform::posix

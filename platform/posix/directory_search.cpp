// SPDX-License-Identifier: MIT
// Searching a directory for names that match a pattern.
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>

#include "platform/platform.hpp"
#include "platform/posix/drives.hpp"
#include "platform/wildcards.hpp"

namespace kv::platform {

struct DirectorySearch::Place {
    ~Place() {
        if (directory != nullptr) closedir(directory);
    }

    DIR *directory = nullptr;
    posix::HostPath path;  // while opening
    char pattern[NAME_MAX + 1];
    char found[NAME_MAX + 1];
};

namespace {

// The directory and the pattern of a search path. False if the pattern is longer than any name.
bool divide(const char *search, posix::HostPath &directory, char *pattern) {
    const std::string_view path = search;
    const std::size_t drive = path.size() >= 2 && path[1] == ':' ? 2 : 0;
    const std::size_t separator = path.find_last_of("\\/");
    const std::size_t size = separator != path.npos ? separator + 1 : drive;
    const std::string_view name = path.substr(size);
    posix::HostPath text;
    posix::PathBuilder builder(text);
    if (name.size() > NAME_MAX || !builder.append(path.substr(0, size)) || !builder.append("."))
        return false;
    std::memcpy(pattern, name.data(), name.size());
    pattern[name.size()] = '\0';
    return posix::map_path(text.text, posix::Purpose::read, directory);
}

bool is_hidden(const char *name) {
    return name[0] == '.' && std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

}  // namespace

DirectorySearch::DirectorySearch() = default;

DirectorySearch::~DirectorySearch() = default;

bool DirectorySearch::open(const char *path) {
    place_ = memory::make_owned<Place>();
    if (place_ == nullptr) throw std::bad_alloc();
    if (!divide(path, place_->path, place_->pattern)) return false;
    place_->directory = opendir(place_->path.text);
    return place_->directory != nullptr;
}

bool DirectorySearch::next(FoundFile &file) {
    while (const dirent *entry = readdir(place_->directory)) {
        if (!matches_pattern(place_->pattern, entry->d_name)) continue;
        struct stat status;
        const int directory = dirfd(place_->directory);
        if (fstatat(directory, entry->d_name, &status, 0) != 0 &&
            fstatat(directory, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            continue;  // it has vanished meanwhile
        std::memcpy(place_->found, entry->d_name, std::strlen(entry->d_name) + 1);
        file.name = place_->found;
        file.directory = S_ISDIR(status.st_mode);
        file.hidden = is_hidden(entry->d_name);
        file.read_only = !S_ISLNK(status.st_mode) && (status.st_mode & 0222) == 0;
        file.system = false;
        file.archive = !file.directory;  // as Windows says of ordinary files
        file.size = file.directory || status.st_size < 0 ? 0 : static_cast<std::uint64_t>(status.st_size);
        file.modified = status.st_mtime;
        return true;
    }
    return false;
}

}  // namespace kv::platform

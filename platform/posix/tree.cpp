// SPDX-License-Identifier: MIT
#include "platform/posix/tree.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/entries.hpp"

namespace kv::platform::posix {

namespace {

using memory::String;
using Names = memory::Vector<String>;

class Directory {
  public:
    explicit Directory(const String &path) : directory_(opendir(path.c_str())) {}
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    ~Directory() {
        if (directory_ != nullptr) closedir(directory_);
    }

    bool is_open() const { return directory_ != nullptr; }
    // Null at the end, with errno 0, and after an error.
    const dirent *next() {
        errno = 0;
        return readdir(directory_);
    }

  private:
    DIR *directory_;
};

// All names are read before anything changes: what is made or removed meanwhile does not matter then, and
// no descriptor stays open while the walk goes down.
bool read_names(const String &path, Names &names) {
    Directory directory(path);
    if (!directory.is_open()) return false;
    while (const dirent *entry = directory.next()) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            names.emplace_back(entry->d_name);
        }
    }
    return errno == 0;
}

bool copy_link(const String &from, const String &to) {
    HostPath target;
    const ssize_t length = readlink(from.c_str(), target.text, sizeof target.text - 1);
    if (length < 0) return false;
    target.text[length] = '\0';
    if (symlink(target.text, to.c_str()) == 0) return true;
    return errno == EEXIST && unlink(to.c_str()) == 0 && symlink(target.text, to.c_str()) == 0;
}

bool copy_file_or_link(const String &from, const String &to, const struct stat &status) {
    if (S_ISLNK(status.st_mode)) return copy_link(from, to);
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;  // reading a pipe or a device need not end
        return false;
    }
    struct stat there;
    // A link at the new place would lead the copy somewhere else.
    if (lstat(to.c_str(), &there) == 0 && S_ISLNK(there.st_mode) && unlink(to.c_str()) != 0) return false;
    return copy_content(from.c_str(), to.c_str(), true) == Copied::done;
}

struct DirectoryPair {
    String from;
    String to;
    mode_t mode;
};

using Pairs = memory::Vector<DirectoryPair>;

bool make_copy_of_directory(DirectoryPair pair, Pairs &pairs) {
    if (mkdir(pair.to.c_str(), 0700) != 0) {
        struct stat there;
        if (errno != EEXIST || lstat(pair.to.c_str(), &there) != 0 || !S_ISDIR(there.st_mode)) return false;
        pair.mode = there.st_mode;
    }
    pairs.push_back(std::move(pair));
    return true;
}

bool copy_entry(const String &from, const String &to, Pairs &pairs) {
    struct stat status;
    if (lstat(from.c_str(), &status) != 0) return false;
    if (S_ISDIR(status.st_mode)) return make_copy_of_directory({from, to, status.st_mode}, pairs);
    return copy_file_or_link(from, to, status);
}

}  // namespace

String child_of(const String &directory, const char *name) {
    String path = directory;
    if (path.empty() || path.back() != '/') path += '/';
    return path += name;
}

bool lies_in(const String &path, const String &directory) {
    HostPath outer;
    if (realpath(directory.c_str(), outer.text) == nullptr) return false;
    const std::size_t outer_length = std::strcmp(outer.text, "/") == 0 ? 0 : std::strlen(outer.text);
    // The nearest parent that exists decides.
    HostPath inner;
    for (String at = path; !at.empty(); at.resize(at.rfind('/') != at.npos ? at.rfind('/') : 0)) {
        if (realpath(at.c_str(), inner.text) == nullptr) continue;
        return std::strncmp(inner.text, outer.text, outer_length) == 0 &&
               (inner.text[outer_length] == '\0' || inner.text[outer_length] == '/');
    }
    return outer_length == 0;
}

bool make_parents(const String &path) {
    for (std::size_t slash = path.find('/', 1); slash != path.npos; slash = path.find('/', slash + 1)) {
        if (mkdir(path.substr(0, slash).c_str(), 0777) != 0 && errno != EEXIST && errno != EROFS &&
            errno != EACCES)
            return false;
    }
    return true;
}

bool copy_tree(const String &from, const String &to) {
    Pairs pairs;
    if (!copy_entry(from, to, pairs)) return false;
    for (std::size_t done = 0; done < pairs.size(); ++done) {
        Names names;
        if (!read_names(pairs[done].from, names)) return false;
        for (const String &name : names) {
            const String source = child_of(pairs[done].from, name.c_str());
            const String target = child_of(pairs[done].to, name.c_str());
            if (!copy_entry(source, target, pairs)) return false;
        }
    }
    // The permissions come last, since a directory may be one that nobody may write to.
    for (std::size_t left = pairs.size(); left > 0; --left) {
        if (chmod(pairs[left - 1].to.c_str(), pairs[left - 1].mode & 07777) != 0) return false;
    }
    return true;
}

bool remove_tree(const String &path) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) return false;
    if (!S_ISDIR(status.st_mode)) return unlink(path.c_str()) == 0;
    bool removed = true;
    Names directories;
    directories.push_back(path);
    for (std::size_t done = 0; done < directories.size(); ++done) {
        Names names;
        removed = read_names(directories[done], names) && removed;
        for (const String &name : names) {
            String entry = child_of(directories[done], name.c_str());
            if (lstat(entry.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
                directories.push_back(std::move(entry));
            } else if (unlink(entry.c_str()) != 0 && errno != ENOENT) {
                removed = false;
            }
        }
    }
    for (std::size_t left = directories.size(); left > 0; --left) {
        if (rmdir(directories[left - 1].c_str()) != 0) removed = false;
    }
    return removed;
}

}  // namespace kv::platform::posix

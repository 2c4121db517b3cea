// SPDX-License-Identifier: MIT
// An entry in the trash is files/NAME and beside it info/NAME.trashinfo, which says where it was. The
// information is written first: whoever creates it owns the name.
#include "platform/posix/trash.hpp"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/entries.hpp"
#include "platform/posix/tree.hpp"

namespace kv::platform::posix {

namespace {

using memory::String;

constexpr std::string_view kInfo = ".trashinfo";

struct Trash {
    String directory;
    String top;  // what the paths in it are relative to; empty for the user's own trash
};

bool is_own_directory(const String &path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

bool make_own_directory(const String &path) {
    return mkdir(path.c_str(), 0700) == 0 || is_own_directory(path);
}

bool prepare(const Trash &trash) {
    return make_own_directory(child_of(trash.directory, "files")) &&
           make_own_directory(child_of(trash.directory, "info"));
}

bool find_home_trash(Trash &trash) {
    const char *data = std::getenv("XDG_DATA_HOME");
    const char *home = std::getenv("HOME");
    if (data != nullptr && *data == '/') {
        trash.directory = child_of(data, "Trash");
    } else if (home != nullptr && *home == '/') {
        trash.directory = child_of(home, ".local/share/Trash");
    } else {
        return false;
    }
    struct stat status;
    return make_parents(trash.directory) &&
           (mkdir(trash.directory.c_str(), 0700) == 0 ||
            (stat(trash.directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode))) &&
           prepare(trash);
}

String parent_of(const String &path) {
    const std::size_t slash = path.rfind('/');
    return slash > 0 ? path.substr(0, slash) : String("/");
}

// The highest directory above `path`, a real path, that is in the same file system.
String top_of(const String &path, dev_t device) {
    String top = path;
    for (std::size_t slash = path.rfind('/'); slash != path.npos; slash = top.rfind('/')) {
        const String parent = parent_of(top);
        struct stat status;
        if (stat(parent.c_str(), &status) != 0 || status.st_dev != device) break;
        top = parent;
        if (slash == 0) break;
    }
    return top;
}

bool find_trash_at(const String &top, Trash &trash) {
    char uid[24];
    std::snprintf(uid, sizeof uid, "%lu", static_cast<unsigned long>(geteuid()));
    trash.top = top;
    // One that the administrator has made for everybody counts only if nobody can meddle with it.
    const String shared = child_of(top, ".Trash");
    struct stat status;
    if (lstat(shared.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0) {
        trash.directory = child_of(shared, uid);
        if (make_own_directory(trash.directory) && prepare(trash)) return true;
    }
    trash.directory = child_of(top, ".Trash-") + uid;
    return make_own_directory(trash.directory) && prepare(trash);
}

void append_encoded(std::string_view path, String &text) {
    static constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~/";
    for (const char c : path) {
        if (kPlain.find(c) != kPlain.npos) {
            text += c;
            continue;
        }
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += code;
    }
}

String information(const String &path, const Trash &trash) {
    String text = "[Trash Info]\nPath=";
    std::string_view kept = path;
    if (!trash.top.empty()) {
        kept.remove_prefix(trash.top.size());
        while (!kept.empty() && kept.front() == '/') kept.remove_prefix(1);
    }
    append_encoded(kept, text);
    std::tm fields{};
    local_time(std::time(nullptr), fields);
    char date[80];
    std::snprintf(date, sizeof date, "\nDeletionDate=%04d-%02d-%02dT%02d:%02d:%02d\n",
                  fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                  fields.tm_sec);
    return text += date;
}

// False, with errno EEXIST if the name is taken.
bool write_information(const String &file, const String &text) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0) return false;
    const bool written = write_all(descriptor, text.data(), text.size());
    if (::close(descriptor) == 0 && written) return true;
    unlink(file.c_str());
    errno = EIO;
    return false;
}

bool move_by_copying(const String &from, const String &to) {
    struct stat status;
    if (lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    if (!copy_tree(from, to)) {
        remove_tree(to);
        errno = EIO;
        return false;
    }
    return remove_tree(from);
}

// The n-th name to try, short enough for its information.
String candidate(std::string_view name, int attempt) {
    char number[16] = "";
    if (attempt > 1) std::snprintf(number, sizeof number, ".%d", attempt);
    return String(name.substr(0, NAME_MAX - kInfo.size() - std::strlen(number))) + number;
}

bool put_into(const Trash &trash, const String &path, bool copying) {
    const String text = information(path, trash);
    const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
    constexpr int kMostAttempts = 10000;
    for (int attempt = 1; attempt <= kMostAttempts; ++attempt) {
        const String chosen = candidate(name, attempt);
        const String info = child_of(child_of(trash.directory, "info"), chosen.c_str()) + String(kInfo);
        if (!write_information(info, text)) {
            if (errno == EEXIST) continue;
            return false;
        }
        const String place = child_of(child_of(trash.directory, "files"), chosen.c_str());
        if (copying ? move_by_copying(path, place) : rename_exclusive(path.c_str(), place.c_str()))
            return true;
        const int error = errno;
        struct stat status;  // a copy that is whole stays restorable
        if (error == EEXIST || lstat(place.c_str(), &status) != 0) unlink(info.c_str());
        errno = error;
        if (error != EEXIST) return false;
    }
    return false;
}

// The path with the links above its last component resolved. False for what cannot be moved: nothing
// there, the root, the top of a file system.
bool real_entry(const String &path, String &real, dev_t &device) {
    struct stat status;
    HostPath parent;
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos || slash + 1 == path.size() || lstat(path.c_str(), &status) != 0) return false;
    struct stat above;
    if (realpath(parent_of(path).c_str(), parent.text) == nullptr || stat(parent.text, &above) != 0)
        return false;
    real = child_of(parent.text, path.c_str() + slash + 1);
    device = status.st_dev;
    return above.st_dev == device;
}

}  // namespace

bool move_to_trash(const String &path) {
    String real;
    dev_t device = 0;
    if (!real_entry(path, real, device)) return false;
    Trash home;
    const bool has_home = find_home_trash(home);
    if (has_home && lies_in(home.directory, real)) return false;
    struct stat status;
    if (has_home && stat(home.directory.c_str(), &status) == 0 && status.st_dev == device) {
        if (put_into(home, real, false)) return true;
        if (errno != EXDEV) return false;
    } else {
        Trash top;
        if (find_trash_at(top_of(parent_of(real), device), top) && !lies_in(top.directory, real) &&
            put_into(top, real, false))
            return true;
    }
    return has_home && put_into(home, real, true);
}

}  // namespace kv::platform::posix

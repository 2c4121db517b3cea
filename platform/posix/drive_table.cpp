// SPDX-License-Identifier: MIT
#include "platform/posix/drive_table.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace {

constexpr int kDrives = 26;
constexpr std::size_t kLongestDirectory = 255;  // as Windows has it

// All process-wide state of the drives.
struct DriveState {
    std::atomic<char> current;
    Lock &lock;                                        // of the directories
    char directories[kDrives][kLongestDirectory + 1];  // after the drive's root: "/a/b", "" for the root
};

constinit DriveState state{posix::kNativeDrive, Lock::of(Lock::Kind::directories), {}};

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_directory(const char *host) {
    struct stat status;
    return stat(host, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

namespace posix {

bool append_drive(char drive, PathBuilder &host) {
    if (drive == kNativeDrive) return true;
    if (drive < 'A' || drive > 'Z') return false;
    const char variable[] = {'K', 'V', '_', 'D', 'R', 'I', 'V', 'E', '_', drive, '\0'};
    if (const char *directory = std::getenv(variable); directory != nullptr && *directory != '\0') {
        std::string_view root = directory;
        while (!root.empty() && root.back() == '/') root.remove_suffix(1);
        return host.append(root);
    }
    if (drive != 'C') return false;
    if (const char *data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') {
        return host.append(data) && host.append("/kv/drive_c");
    }
    const char *home = std::getenv("HOME");
    return home != nullptr && *home == '/' && host.append(home) && host.append("/.local/share/kv/drive_c");
}

bool read_directory(char drive, HostPath &directory) {
    if (drive == kNativeDrive) {
        // Outside the root of the file system the directory reads "(unreachable)/...".
        return getcwd(directory.text, sizeof directory.text) != nullptr && directory.text[0] == '/';
    }
    const std::lock_guard guard(state.lock);
    std::snprintf(directory.text, sizeof directory.text, "%s", state.directories[drive - 'A']);
    return true;
}

char take_drive(std::string_view &path) {
    if (path.size() < 2 || !is_letter(path[0]) || path[1] != ':') return state.current;
    const char drive = path[0];
    path.remove_prefix(2);
    return drive >= 'a' ? static_cast<char>(drive - 'a' + 'A') : drive;
}

}  // namespace posix

char current_drive() {
    return state.current;
}

std::size_t share_length(const char *) {
    return 0;
}

bool drive_exists(char drive) {
    posix::HostPath host;
    posix::PathBuilder root(host);
    if (!posix::append_drive(drive, root)) return false;
    // The directory of drive C may be created later, by the first write to it.
    return drive == 'C' || root.length() == 0 || is_directory(root.text());
}

bool set_current_drive(char drive) {
    if (!drive_exists(drive)) return false;
    state.current = drive;
    return true;
}

bool current_directory(char drive, char *buffer, std::size_t size) {
    posix::HostPath directory;
    if (!drive_exists(drive) || !posix::read_directory(drive, directory)) return false;
    const char *text = directory.text[0] != '\0' ? directory.text : "/";
    if (std::strlen(text) + 3 > size) return false;
    *buffer++ = drive;
    *buffer++ = ':';
    for (; *text != '\0'; ++text) *buffer++ = *text == '/' ? '\\' : *text;
    *buffer = '\0';
    return true;
}

bool change_directory(const char *path) {
    std::string_view rest = path;
    const char drive = posix::take_drive(rest);
    posix::HostPath host;
    if (!posix::map_path(path, posix::Purpose::write, host)) return false;
    if (drive == posix::kNativeDrive) {
        if (chdir(host.text) != 0) return false;
    } else {
        posix::HostPath drive_directory;
        posix::PathBuilder root(drive_directory);
        if (!posix::append_drive(drive, root)) return false;
        std::string_view directory(host.text + root.length());
        if (directory == "/") directory.remove_prefix(1);
        if (directory.size() > kLongestDirectory || !is_directory(host.text) ||
            faccessat(AT_FDCWD, host.text, X_OK, AT_EACCESS) != 0)
            return false;
        const std::lock_guard guard(state.lock);
        char *kept = state.directories[drive - 'A'];
        std::memcpy(kept, directory.data(), directory.size());
        kept[directory.size()] = '\0';
    }
    state.current = drive;
    return true;
}

}  // namespace kv::platform

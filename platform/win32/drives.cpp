// SPDX-License-Identifier: MIT
// Drives and current directories. The system keeps the current directory of each drive in the variable
// "=C:" of the process; its own change of the directory does not, so that it is done here, as the C library
// does it.
#include <cstring>

#include "platform/platform.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

namespace {

// No box asks for a disk while this exists.
class QuietErrors {
  public:
    QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;
    ~QuietErrors() { SetThreadErrorMode(before_, nullptr); }

  private:
    DWORD before_ = 0;
};

bool is_drive(char drive) {
    return drive >= 'A' && drive <= 'Z';
}

char capital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool has_drive(const char *path) {
    return is_drive(capital(path[0])) && path[1] == ':';
}

// Tells the variable of the drive where the process is now.
bool keep_directory() {
    win32::FullPath directory;
    const DWORD length = GetCurrentDirectoryA(sizeof directory.text, directory.text);
    if (length == 0 || length >= sizeof directory.text) return false;
    if (!has_drive(directory.text)) return true;  // on another computer
    const char variable[] = {'=', capital(directory.text[0]), ':', '\0'};
    return SetEnvironmentVariableA(variable, directory.text) != 0;
}

}  // namespace

char current_drive() {
    win32::FullPath directory;
    const DWORD length = GetCurrentDirectoryA(sizeof directory.text, directory.text);
    const bool known = length > 0 && length < sizeof directory.text && has_drive(directory.text);
    return known ? capital(directory.text[0]) : '\0';
}

bool drive_exists(char drive) {
    if (!is_drive(drive)) return false;
    const QuietErrors quiet;
    const char root[] = {drive, ':', '\\', '\0'};
    return GetFileAttributesA(root) != INVALID_FILE_ATTRIBUTES;
}

bool set_current_drive(char drive) {
    if (!is_drive(drive)) return false;
    const QuietErrors quiet;
    const char here[] = {drive, ':', '\0'};
    return SetCurrentDirectoryA(here) != 0 && keep_directory();
}

bool current_directory(char drive, char *buffer, std::size_t size) {
    const bool shared = drive == '\0' && current_drive() == '\0';
    if (!shared && !drive_exists(drive)) return false;
    const char here[] = {drive, ':', '.', '\0'};
    win32::FullPath directory;
    if (!win32::full_path(shared ? "." : here, directory)) return false;
    const std::size_t length = std::strlen(directory.text);
    if (length + 1 > size) return false;
    std::memcpy(buffer, directory.text, length + 1);
    if (!shared) buffer[0] = drive;
    return true;
}

std::size_t share_length(const char *path) {
    constexpr char kSeparators[] = "\\/";
    if (std::strspn(path, kSeparators) != 2) return 0;
    const std::size_t server = 2 + std::strcspn(path + 2, kSeparators);
    if (server == 2 || path[server] == '\0') return 0;
    const std::size_t share = std::strcspn(path + server + 1, kSeparators);
    return share > 0 ? server + 1 + share : 0;
}

bool change_directory(const char *path) {
    const QuietErrors quiet;
    win32::FullPath directory;
    // Some versions of the system go to directories whose names they cannot tell.
    if (!win32::full_path(path, directory) || std::strlen(directory.text) >= MAX_PATH) return false;
    return SetCurrentDirectoryA(directory.text) != 0 && keep_directory();
}

bool free_space(char drive, double &bytes) {
    if (!is_drive(drive)) return false;
    const QuietErrors quiet;
    const char root[] = {drive, ':', '\\', '\0'};
    ULARGE_INTEGER available;
    if (GetDiskFreeSpaceExA(root, &available, nullptr, nullptr) == 0) return false;
    bytes = static_cast<double>(available.QuadPart);
    return true;
}

}  // namespace kv::platform

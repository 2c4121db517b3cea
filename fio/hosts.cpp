// SPDX-License-Identifier: MIT
// The current directory and the current drive, which this family calls the host.
#include "kv/fio.h"

#include "fio/path_join.hpp"
#include "platform/platform.hpp"

namespace platform = kv::platform;
using kv::fio::drive_letter;

namespace {

// The first character after the blanks in front; 0 if there is none.
char first_character(const char *name) {
    if (name == nullptr) return '\0';
    while (*name == ' ') ++name;
    return *name;
}

bool read_current_directory(char drive, char *buf, int32_t size) {
    return buf != nullptr && size > 0 &&
           platform::current_directory(drive, buf, static_cast<std::size_t>(size));
}

}  // namespace

int32_t fio_chdir(const char *dir) noexcept {
    kv::fio::Path path;
    if (!path.join(nullptr, dir, nullptr)) return -1;
    if (path.empty()) return 0;
    return platform::change_directory(path.text) ? 0 : -1;
}

char *fio_getcwd(char *buf, int32_t size) noexcept {
    return read_current_directory(platform::current_drive(), buf, size) ? buf : nullptr;
}

int32_t fio_gethostname(char *buf, int32_t size) noexcept {
    const char drive = platform::current_drive();
    if (buf == nullptr || size < 3 || drive == '\0') return -1;
    buf[0] = drive;
    buf[1] = ':';
    buf[2] = '\0';
    return 0;
}

int32_t fio_sethostname(const char *name) noexcept {
    const char first = first_character(name);
    if (first == '\0') return 0;
    return platform::set_current_drive(drive_letter(first)) ? 0 : -1;
}

int32_t fio_host_exist(const char *name) noexcept {
    return platform::drive_exists(drive_letter(first_character(name))) ? 1 : 0;
}

char *fio_get_host_cwd(const char *host, char *buf, int32_t size) noexcept {
    const char first = first_character(host);
    if (first == '\0') return fio_getcwd(buf, size);
    if (!read_current_directory(drive_letter(first), buf, size) && buf != nullptr && size > 0)
        buf[0] = '\0';
    return buf;
}

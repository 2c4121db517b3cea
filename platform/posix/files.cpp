// SPDX-License-Identifier: MIT
// Reading files, and their status.
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"
#include "platform/posix/file_lock.hpp"

namespace kv::platform {

using posix::HostPath;
using posix::map_path;
using posix::Purpose;

// A child that was forked meanwhile has the descriptor too, and the lock with it.
InputFile::~InputFile() {
    if (locked_) posix::unlock_byte(static_cast<int>(handle_), posix::kContentByte);
    posix::close_descriptor(handle_);
}

bool InputFile::open(const char *path, Content content) {
    HostPath host;
    missing_ = !map_path(path, Purpose::read, host);
    if (missing_) return false;
    const int descriptor = posix::open_descriptor(host.text, O_RDONLY);
    missing_ = descriptor < 0 && (errno == ENOENT || errno == ENOTDIR);
    if (descriptor < 0) return false;
    handle_ = descriptor;
    struct stat status;
    if (fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) return false;
    if (content == Content::consistent && S_ISREG(status.st_mode)) {
        locked_ = posix::lock_for_reading(descriptor) == posix::Locked::done;
    }
    return true;
}

std::int64_t InputFile::read(char *buffer, std::size_t size) {
    if (io_fails()) return -1;
    ssize_t count;
    do {
        count = ::read(static_cast<int>(handle_), buffer, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

std::int64_t InputFile::read_at(std::int64_t offset, char *buffer, std::size_t size) {
    if (io_fails()) return -1;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = pread(static_cast<int>(handle_), buffer + done, size - done,
                                    offset + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<std::int64_t>(done);
}

bool InputFile::modification_time(std::int64_t &seconds) const {
    struct stat status;
    if (io_fails() || fstat(static_cast<int>(handle_), &status) != 0) return false;
    seconds = status.st_mtime;
    return true;
}

bool modification_time(const char *path, std::int64_t &seconds) {
    HostPath host;
    struct stat status;
    if (!map_path(path, Purpose::read, host) || stat(host.text, &status) != 0) return false;
    seconds = status.st_mtime;
    return true;
}

}  // namespace kv::platform

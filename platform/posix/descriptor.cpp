// SPDX-License-Identifier: MIT
#include "platform/posix/descriptor.hpp"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "platform/failpoint.hpp"

namespace kv::platform::posix {

int open_descriptor(const char *host_path, int flags, unsigned mode) {
    if (io_fails()) return -1;
    int descriptor;
    do {
        descriptor = ::open(host_path, flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

void close_descriptor(std::intptr_t descriptor) {
    if (descriptor >= 0) ::close(static_cast<int>(descriptor));
}

bool write_all(int descriptor, const char *bytes, std::size_t size) {
    if (io_fails()) return false;
    while (size > 0) {
        const ssize_t count = ::write(descriptor, bytes, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

std::int64_t read_from_start(int descriptor, char *bytes, std::size_t size) {
    if (io_fails()) return -1;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = pread(descriptor, bytes + done, size - done, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<std::int64_t>(done);
}

}  // namespace kv::platform::posix

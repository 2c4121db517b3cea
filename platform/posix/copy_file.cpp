// SPDX-License-Identifier: MIT
// Copying the content of a file.
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"
#include "platform/posix/entries.hpp"

namespace kv::platform {

namespace {

// Lets the system copy as far as it can; the rest is left to read_and_write().
void copy_in_kernel(int from, int to) {
    constexpr std::size_t kMost = std::size_t{1} << 30;
    while (copy_file_range(from, nullptr, to, nullptr, kMost, 0) > 0) {
    }
}

bool read_and_write(int from, int to) {
    char block[65536];
    for (;;) {
        const ssize_t count = ::read(from, block, sizeof block);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        if (!posix::write_all(to, block, static_cast<std::size_t>(count))) return false;
    }
}

void keep_attributes(int to, const struct stat &status) {
    const timespec times[] = {status.st_atim, status.st_mtim};
    static_cast<void>(fchmod(to, status.st_mode & 0777) == 0 && futimens(to, times) == 0);
}

}  // namespace

namespace posix {

Copied copy_content(const char *from, const char *to, bool attributes) {
    Descriptor source(open_descriptor(from, O_RDONLY | O_NOCTTY));
    struct stat status;
    if (source.value() < 0 || fstat(source.value(), &status) != 0 || S_ISDIR(status.st_mode)) {
        return Copied::no_source;
    }
    struct stat there;
    if (stat(to, &there) == 0 && there.st_dev == status.st_dev && there.st_ino == status.st_ino) {
        return Copied::done;  // opening it for writing would empty it
    }
    Descriptor destination(open_descriptor(to, O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY));
    if (destination.value() < 0) return Copied::no_destination;
    if (S_ISREG(status.st_mode)) copy_in_kernel(source.value(), destination.value());
    const bool written = read_and_write(source.value(), destination.value());
    if (written && attributes) keep_attributes(destination.value(), status);
    return destination.close() && written ? Copied::done : Copied::failed;
}

}  // namespace posix

CopyResult copy_file(const char *from, const char *to) {
    posix::HostPath source;
    posix::HostPath destination;
    if (!posix::map_path(from, posix::Purpose::read, source)) return CopyResult::no_source;
    const bool mapped = posix::map_path(to, posix::Purpose::write, destination);
    // The source is looked at first: a missing one must not create anything.
    if (!mapped) {
        return accessible(from, true, false) && file_kind(from) == FileKind::file
                   ? CopyResult::no_destination
                   : CopyResult::no_source;
    }
    switch (posix::copy_content(source.text, destination.text, false)) {
        case posix::Copied::done:
            return CopyResult::done;
        case posix::Copied::no_source:
            return CopyResult::no_source;
        case posix::Copied::no_destination:
            return CopyResult::no_destination;
        case posix::Copied::failed:
            break;
    }
    return CopyResult::short_write;
}

}  // namespace kv::platform

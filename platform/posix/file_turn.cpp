// Turns at changing a file.
//
// The turn is an exclusive flock() on the file itself, so that nothing is left behind and the system
// ends it with the process. A file that is replaced while one waits is another file then, and the wait
// begins anew at that one. A file that is not there yet has no lock of its own: its turn is its
// directory's, until it exists.
//
// No bound is needed on the beginning anew: each time, somebody else has finished his turn meanwhile by
// putting a new file in place, or has removed the file.
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace {

bool lock(int descriptor) {
    int result;
    do {
        result = flock(descriptor, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

// A child that was forked meanwhile has the descriptor too, so that closing it would not be enough.
void unlock(std::intptr_t descriptor) {
    if (descriptor < 0) return;
    flock(static_cast<int>(descriptor), LOCK_UN);
    posix::close_descriptor(descriptor);
}

bool is_at(const char *host_path, int descriptor) {
    struct stat there;
    struct stat here;
    return stat(host_path, &there) == 0 && fstat(descriptor, &here) == 0 && there.st_dev == here.st_dev &&
           there.st_ino == here.st_ino;
}

int open_for_lock(const char *host_path) {
    return posix::open_descriptor(host_path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
}

int open_directory_of(const posix::HostPath &host) {
    posix::HostPath directory = host;
    char *slash = std::strrchr(directory.text, '/');
    if (slash == nullptr) return -1;
    slash[slash == directory.text ? 1 : 0] = '\0';
    return posix::open_descriptor(directory.text, O_RDONLY | O_DIRECTORY);
}

}  // namespace

FileTurn::FileTurn(const char *path) {
    for (;;) {
        posix::HostPath host;  // anew each time: it is the existing file that decides about the case
        if (!posix::map_path(path, posix::Purpose::write, host)) return;
        int descriptor = open_for_lock(host.text);
        if (descriptor < 0) {
            if (errno != ENOENT) return;
            const int directory = open_directory_of(host);
            if (directory < 0) return;
            lock(directory);
            descriptor = open_for_lock(host.text);
            if (descriptor < 0) {
                handle_ = directory;
                return;
            }
            unlock(directory);
        }
        if (!lock(descriptor) || is_at(host.text, descriptor)) {
            handle_ = descriptor;
            return;
        }
        unlock(descriptor);
    }
}

FileTurn::~FileTurn() {
    unlock(handle_);
}

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// Locks on files that changes and reads of them agree on.
#include "platform/posix/file_lock.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>

#include "platform/lock_timeout.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace posix {

namespace {

struct flock region(short type, off_t byte) {
    struct flock region {};
    region.l_type = type;
    region.l_whence = SEEK_SET;
    region.l_start = byte;
    region.l_len = 1;
    return region;
}

}  // namespace

Deadline::Deadline() : end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(lock_timeout())) {}

bool Deadline::sleep() const {
    constexpr std::chrono::milliseconds kPause{1};
    if (std::chrono::steady_clock::now() >= end_) return false;
    std::this_thread::sleep_for(kPause);
    return true;
}

Locked try_lock_byte(int descriptor, short type, off_t byte) {
    struct flock lock = region(type, byte);
    int result;
    do {
        result = fcntl(descriptor, F_OFD_SETLK, &lock);
    } while (result != 0 && errno == EINTR);
    if (result == 0) return Locked::done;
    return errno == EAGAIN || errno == EACCES ? Locked::in_use : Locked::impossible;
}

Locked lock_byte(int descriptor, short type, off_t byte, const Deadline &deadline) {
    for (;;) {
        const Locked result = try_lock_byte(descriptor, type, byte);
        if (result != Locked::in_use || !deadline.sleep()) return result;
    }
}

Locked lock_for_reading(int descriptor) {
    const Deadline deadline;
    for (;;) {
        struct flock gate = region(F_RDLCK, kGateByte);
        if (fcntl(descriptor, F_OFD_GETLK, &gate) != 0 || gate.l_type == F_UNLCK) {
            const Locked locked = try_lock_byte(descriptor, F_RDLCK, kContentByte);
            if (locked != Locked::in_use) return locked;
        }
        if (!deadline.sleep()) return Locked::in_use;
    }
}

Locked lock_for_overwriting(int descriptor) {
    const Deadline deadline;
    const Locked gate = lock_byte(descriptor, F_WRLCK, kGateByte, deadline);
    if (gate != Locked::done) return gate;
    const Locked locked = lock_byte(descriptor, F_WRLCK, kContentByte, deadline);
    unlock_byte(descriptor, kGateByte);
    return locked;
}

void unlock_byte(int descriptor, off_t byte) {
    static_cast<void>(try_lock_byte(descriptor, F_UNLCK, byte));
}

FileStamp stamp_of(const struct stat &status) {
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    return {true, status.st_dev, status.st_ino, status.st_size,
            std::int64_t{status.st_mtim.tv_sec} * kNanoseconds + status.st_mtim.tv_nsec};
}

bool same_file(const struct stat &a, const struct stat &b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace posix

namespace {

// A process that changes a file in a loop would take the lock again before any waiting process has looked.
// So only one process at a time asks for the lock, and the others wait to be that one.
posix::Locked lock_for_change(int file, const posix::Deadline &deadline) {
    const posix::Locked queued = posix::lock_byte(file, F_WRLCK, posix::kQueueByte, deadline);
    if (queued != posix::Locked::done) return queued;
    const posix::Locked locked = posix::lock_byte(file, F_WRLCK, posix::kChangeByte, deadline);
    posix::unlock_byte(file, posix::kQueueByte);
    return locked;
}

}  // namespace

// A file that is replaced while one waits is another file then, and the wait begins anew at that one.
// A child that was forked meanwhile has the descriptor too, so that closing it does not release the lock.
bool FileLock::acquire(const char *path) {
    release();
    const posix::Deadline deadline;
    do {
        posix::HostPath host;  // anew each time: it is the existing file that decides about the case
        struct stat there;
        stamp_ = {};
        if (!posix::map_path(path, posix::Purpose::write, host) || stat(host.text, &there) != 0)
            return true;
        stamp_ = posix::stamp_of(there);
        if (!S_ISREG(there.st_mode)) return true;
        constexpr int kFlags = O_NONBLOCK | O_NOCTTY;
        posix::Descriptor file(posix::open_descriptor(host.text, O_RDWR | kFlags));
        if (file.value() < 0 && errno == EACCES)
            file.reset(posix::open_descriptor(host.text, O_WRONLY | kFlags));
        if (file.value() < 0) {
            if (errno == ENOENT) continue;
            // Without the right to write it, the file is not changed in the end; else nothing may be
            // risked.
            return errno == EACCES || errno == EPERM || errno == EROFS || errno == ETXTBSY;
        }
        const posix::Locked locked = lock_for_change(file.value(), deadline);
        if (locked == posix::Locked::in_use) return false;
        struct stat here;
        if (fstat(file.value(), &here) != 0 || !S_ISREG(here.st_mode)) return true;
        if (stat(host.text, &there) == 0 && posix::same_file(here, there)) {
            stamp_ = posix::stamp_of(here);
            handle_ = file.release();
            return true;
        }
        posix::unlock_byte(file.value(), posix::kChangeByte);
    } while (deadline.sleep());
    return false;
}

void FileLock::release() {
    if (handle_ < 0) return;
    posix::unlock_byte(static_cast<int>(handle_), posix::kChangeByte);
    posix::close_descriptor(handle_);
    handle_ = -1;
}

namespace {

struct CloseDirectory {
    void operator()(DIR *directory) const { closedir(directory); }
};

using Directory = std::unique_ptr<DIR, CloseDirectory>;

bool is_number(const char *text) {
    return *text != '\0' && text[std::strspn(text, "0123456789")] == '\0';
}

std::size_t read_text(const char *path, char *text, std::size_t size) {
    const posix::Descriptor file(posix::open_descriptor(path, O_RDONLY));
    const ssize_t count = file.value() >= 0 ? ::read(file.value(), text, size - 1) : 0;
    const std::size_t length = count > 0 ? static_cast<std::size_t>(count) : 0;
    text[length] = '\0';
    return length;
}

// Whether the description of a descriptor in /proc tells of a lock on one of our bytes of the file, such as
// "lock: 1: OFDLCK ADVISORY WRITE -1 fe:00:1234 4611686018427387904 4611686018427387904", or "0 EOF".
bool tells_of_lock(const char *description, const struct stat &file) {
    char wanted[64];
    std::snprintf(wanted, sizeof wanted, " %02x:%02x:%llu ", major(file.st_dev), minor(file.st_dev),
                  static_cast<unsigned long long>(file.st_ino));
    for (const char *line = std::strstr(description, "lock:"); line != nullptr;
         line = std::strstr(line + 1, "lock:")) {
        const char *range = std::strstr(line, wanted);
        if (range == nullptr) return false;
        char *end = nullptr;
        const long long first = std::strtoll(range + std::strlen(wanted), &end, 10);
        const long long last =
            std::strncmp(end, " EOF", 4) == 0 ? posix::kGateByte : std::strtoll(end, nullptr, 10);
        if (first <= posix::kGateByte && last >= posix::kLockRange) return true;
    }
    return false;
}

bool holds_lock(const char *process, const struct stat &file) {
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%.20s/fdinfo", process);
    const Directory descriptors(opendir(path));
    while (const dirent *entry = descriptors != nullptr ? readdir(descriptors.get()) : nullptr) {
        char name[128];
        char description[1024];
        std::snprintf(name, sizeof name, "%s/%.20s", path, entry->d_name);
        if (is_number(entry->d_name) && read_text(name, description, sizeof description) > 0 &&
            tells_of_lock(description, file)) {
            return true;
        }
    }
    return false;
}

// The first other process that has a lock. False if it is only this one.
bool find_holder(const struct stat &file, char *holder, std::size_t size) {
    bool own = false;
    const Directory processes(opendir("/proc"));
    while (const dirent *entry = processes != nullptr ? readdir(processes.get()) : nullptr) {
        if (!is_number(entry->d_name) || !holds_lock(entry->d_name, file)) continue;
        if (std::strtol(entry->d_name, nullptr, 10) == getpid()) {
            own = true;
            continue;
        }
        char path[64];
        char name[64];
        std::snprintf(path, sizeof path, "/proc/%.20s/comm", entry->d_name);
        read_text(path, name, sizeof name);
        name[std::strcspn(name, "\n")] = '\0';
        std::snprintf(holder, size, "%s (process %.20s)", name, entry->d_name);
        return true;
    }
    return !own;
}

}  // namespace

LockState lock_state(const char *path, char *holder, std::size_t size) {
    *holder = '\0';
    posix::HostPath host;
    struct stat status;
    if (!posix::map_path(path, posix::Purpose::read, host)) return LockState::free;
    const posix::Descriptor file(posix::open_descriptor(host.text, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    if (file.value() < 0 || fstat(file.value(), &status) != 0) return LockState::free;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = posix::kLockRange;
    lock.l_len = posix::kGateByte - posix::kLockRange + 1;
    if (fcntl(file.value(), F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return LockState::free;
    return find_holder(status, holder, size) ? LockState::held : LockState::free;
}

}  // namespace kv::platform

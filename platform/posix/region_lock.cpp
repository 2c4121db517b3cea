// SPDX-License-Identifier: MIT
// Locks on the bytes of a file, between processes and between streams.
//
// They are those of the open file, not of the process: a lock of the process would end as soon as
// anything in it closes the same file. They are advice: who does not ask is not kept away.
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/stream.hpp"

namespace kv::platform {

namespace {

LockResult change(int descriptor, short type, off_t length) {
    struct flock region {};
    region.l_type = type;
    region.l_whence = SEEK_SET;
    region.l_len = length;
    int result;
    do {
        result = fcntl(descriptor, F_OFD_SETLK, &region);
    } while (result != 0 && errno == EINTR);
    if (result == 0) return LockResult::done;
    if (errno == EBADF) return LockResult::bad_file;
    return errno == EACCES || errno == EAGAIN ? LockResult::denied : LockResult::failed;
}

bool has_position(int descriptor) {
    return lseek(descriptor, 0, SEEK_CUR) >= 0;
}

// The file of a descriptor once more; -1 where it may not be written.
int open_for_writing(int descriptor) {
    char path[32];
    std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
    return posix::open_descriptor(path, O_RDWR | O_NOCTTY);
}

}  // namespace

RegionLock::~RegionLock() {
    posix::close_descriptor(holder_);
}

LockResult RegionLock::lock(const Stream &stream) {
    const int descriptor = stream.file != nullptr ? posix::stream_descriptor(stream) : -1;
    const int mode = descriptor >= 0 ? fcntl(descriptor, F_GETFL) : -1;
    if (mode < 0) return LockResult::bad_file;
    // What is still in the stream's buffer counts to the length.
    if (__fwriting(stream.file) != 0 && std::fflush(stream.file) != 0) return LockResult::failed;
    struct stat status;
    if (!has_position(descriptor) || fstat(descriptor, &status) != 0) return LockResult::no_position;
    if (status.st_size == 0) return LockResult::done;  // to the system, no bytes would mean all bytes
    if ((mode & O_ACCMODE) != O_RDONLY) return change(descriptor, F_WRLCK, status.st_size);
    // The system gives the lock to one alone only where he may write.
    if (holder_ < 0) holder_ = open_for_writing(descriptor);
    if (holder_ < 0) return change(descriptor, F_RDLCK, status.st_size);
    return change(static_cast<int>(holder_), F_WRLCK, status.st_size);
}

LockResult RegionLock::unlock(const Stream &stream) {
    const int descriptor = stream.file != nullptr ? posix::stream_descriptor(stream) : -1;
    if (descriptor < 0) return LockResult::bad_file;
    if (!has_position(descriptor)) return LockResult::no_position;
    // All bytes, whatever the length was when it was locked.
    return change(holder_ >= 0 ? static_cast<int>(holder_) : descriptor, F_UNLCK, 0);
}

}  // namespace kv::platform

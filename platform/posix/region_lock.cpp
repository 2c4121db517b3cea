// Locks on the bytes of a file, between processes and between streams.
//
// They are those of the open file, not of the process: a lock of the process would end as soon as
// anything in it closes the same file. They are advice: who does not ask is not kept away.
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.hpp"
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

}  // namespace

LockResult lock_stream(const Stream &stream) {
    const int descriptor = stream.file != nullptr ? posix::stream_descriptor(stream) : -1;
    const int mode = descriptor >= 0 ? fcntl(descriptor, F_GETFL) : -1;
    if (mode < 0) return LockResult::bad_file;
    struct stat status;
    if (!has_position(descriptor) || fstat(descriptor, &status) != 0) return LockResult::no_position;
    if (status.st_size == 0) return LockResult::done;  // to the system, no bytes would mean all bytes
    // A stream that only reads cannot have the lock alone; it shares it with other readers.
    return change(descriptor, (mode & O_ACCMODE) == O_RDONLY ? F_RDLCK : F_WRLCK, status.st_size);
}

LockResult unlock_stream(const Stream &stream) {
    const int descriptor = stream.file != nullptr ? posix::stream_descriptor(stream) : -1;
    if (descriptor < 0) return LockResult::bad_file;
    if (!has_position(descriptor)) return LockResult::no_position;
    return change(descriptor, F_UNLCK, 0);  // whatever the length was when it was locked
}

}  // namespace kv::platform

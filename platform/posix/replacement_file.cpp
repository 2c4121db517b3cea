// A file that takes its new content as a whole.
//
// The usual road is a temporary file beside the target, flushed to the disk and renamed over it. Where
// that would lose something (a second hard link, an owner that cannot be kept) or is impossible, the
// content is collected in memory and written in place at the end, after the room for it has been
// reserved, so that a full disk leaves the old content.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

struct ReplacementFile::Paths {
    posix::HostPath target;     // symbolic links resolved
    posix::HostPath temporary;  // in the target's directory
    std::size_t directory;      // characters of the target's directory, with the slash
    bool exists;
    struct stat status;
};

namespace {

// Some file systems and devices cannot be flushed; that is no failure of the write.
bool flush_to_disk(int descriptor) {
    if (io_fails()) return false;
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

// Makes the new name durable. Not every file system lets a directory be flushed, and the content is
// safe either way.
void flush_directory(posix::HostPath &target, std::size_t directory) {
    const char kept = target.text[directory];
    target.text[directory] = '\0';
    const int descriptor = posix::open_descriptor(target.text, O_RDONLY | O_DIRECTORY);
    target.text[directory] = kept;
    if (descriptor < 0) return;
    fsync(descriptor);
    posix::close_descriptor(descriptor);
}

// The room is reserved first, so that a full disk shows before anything is overwritten. Should writing fail
// all the same, the old content is written back.
bool overwrite(int descriptor, const struct stat &status, const memory::Vector<char> &bytes) {
    const auto size = static_cast<off_t>(bytes.size());
    memory::Vector<char> old(static_cast<std::size_t>(std::min(size, status.st_size)));
    const bool known = pread(descriptor, old.data(), old.size(), 0) == static_cast<ssize_t>(old.size());
    const bool reserved =
        size <= status.st_size || (!io_fails() && posix_fallocate(descriptor, 0, size) == 0);
    if (reserved && posix::write_all(descriptor, bytes.data(), bytes.size()) &&
        ftruncate(descriptor, size) == 0) {
        return flush_to_disk(descriptor);
    }
    if (known && lseek(descriptor, 0, SEEK_SET) == 0) posix::write_all(descriptor, old.data(), old.size());
    // On a failure of this, too, there is nothing left to do.
    [[maybe_unused]] const int result = ftruncate(descriptor, status.st_size);
    return false;
}

}  // namespace

ReplacementFile::ReplacementFile() = default;

ReplacementFile::~ReplacementFile() {
    if (handle_ < 0) return;
    posix::close_descriptor(handle_);
    unlink(paths_->temporary.text);
}

bool ReplacementFile::open(const char *path) {
    failed_ = true;
    paths_ = memory::make_owned<Paths>();
    exhausted_ = paths_ == nullptr;
    posix::HostPath mapped;
    if (exhausted_ || !posix::map_path(path, posix::Purpose::write, mapped)) return false;
    if (realpath(mapped.text, paths_->target.text) == nullptr) {
        std::memcpy(paths_->target.text, mapped.text, sizeof mapped.text);
    }
    paths_->exists = stat(paths_->target.text, &paths_->status) == 0;
    if (paths_->exists) {
        if (S_ISDIR(paths_->status.st_mode) ||
            faccessat(AT_FDCWD, paths_->target.text, W_OK, AT_EACCESS) != 0)
            return false;
    }
    paths_->directory =
        static_cast<std::size_t>(std::strrchr(paths_->target.text, '/') - paths_->target.text) + 1;

    struct stat link;
    const bool dangling_link = !paths_->exists && lstat(paths_->target.text, &link) == 0;
    const bool replaceable =
        paths_->exists ? S_ISREG(paths_->status.st_mode) && paths_->status.st_nlink == 1 : !dangling_link;
    if (!replaceable || !open_temporary()) {
        // In place. A file that is not there yet is made now, so that a wrong name shows at once.
        const int flags = O_WRONLY | O_CREAT | O_NOCTTY;
        const int descriptor = paths_->exists ? 0 : posix::open_descriptor(paths_->target.text, flags);
        if (descriptor < 0) return false;
        if (!paths_->exists) posix::close_descriptor(descriptor);
    }
    failed_ = false;
    return true;
}

bool ReplacementFile::open_temporary() {
    static std::atomic<unsigned> counter{0};
    char *temporary = paths_->temporary.text;
    for (int attempt = 0; attempt < 100 && handle_ < 0; ++attempt) {
        const int length =
            std::snprintf(temporary, PATH_MAX, "%.*s.kv-%ld-%u.tmp", static_cast<int>(paths_->directory),
                          paths_->target.text, static_cast<long>(getpid()), counter.fetch_add(1));
        if (length >= PATH_MAX) return false;
        handle_ = posix::open_descriptor(temporary, O_WRONLY | O_CREAT | O_EXCL);
        if (handle_ < 0 && errno != EEXIST) return false;
    }
    if (handle_ < 0 || !paths_->exists) return handle_ >= 0;

    // The owner and the permissions stay as they were; the owner first, since changing it clears bits.
    const int descriptor = static_cast<int>(handle_);
    struct stat made;
    const struct stat &old = paths_->status;
    const bool kept = !io_fails() && fstat(descriptor, &made) == 0 &&
                      ((made.st_uid == old.st_uid && made.st_gid == old.st_gid) ||
                       fchown(descriptor, old.st_uid, old.st_gid) == 0) &&
                      fchmod(descriptor, old.st_mode & 07777) == 0;
    if (kept) return true;
    posix::close_descriptor(descriptor);
    unlink(temporary);
    handle_ = -1;
    return false;
}

bool ReplacementFile::write_temporary(const char *bytes, std::size_t size) {
    return posix::write_all(static_cast<int>(handle_), bytes, size);
}

bool ReplacementFile::commit_temporary() {
    const int descriptor = static_cast<int>(handle_);
    handle_ = -1;
    const bool flushed = flush_to_disk(descriptor);
    const bool closed = ::close(descriptor) == 0 && !io_fails();
    if (!flushed || !closed || io_fails() || rename(paths_->temporary.text, paths_->target.text) != 0) {
        unlink(paths_->temporary.text);
        return false;
    }
    flush_directory(paths_->target, paths_->directory);
    return true;
}

bool ReplacementFile::commit_in_place() {
    const int flags = O_CREAT | O_NOCTTY;
    int opened = posix::open_descriptor(paths_->target.text, O_RDWR | flags);
    if (opened < 0) opened = posix::open_descriptor(paths_->target.text, O_WRONLY | flags);
    posix::Descriptor file(opened);
    struct stat status;
    if (opened < 0 || fstat(opened, &status) != 0) return false;
    const bool done = S_ISREG(status.st_mode) ? overwrite(opened, status, pending_)
                                              : posix::write_all(opened, pending_.data(), pending_.size());
    return file.close() && done;
}

}  // namespace kv::platform

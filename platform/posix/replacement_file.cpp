// SPDX-License-Identifier: MIT
// A file that takes its new content as a whole.
//
// The usual way: a file without a name in the target's directory takes the content, is flushed to the disk,
// gets the target's access, then a name, and is renamed over the target. A file that is not there yet gets
// its own name at once, unless somebody else has made one meanwhile. Where the file system has no files
// without names, a private one with a name is used.
//
// Names of such files are few and made of the target's, and their files are locked: so the next save of the
// target finds what a killed process has left, and what a living one still needs.
//
// Where a new file cannot stand for the old one, the content is written in place, after the space for it
// has been reserved, so that a full disk leaves the old content.
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
#include "platform/posix/entries.hpp"
#include "platform/posix/file_access.hpp"
#include "platform/posix/file_lock.hpp"
#include "platform/posix/report_output.hpp"

namespace kv::platform {

struct ReplacementFile::Paths {
    memory::String path;        // the caller's
    posix::HostPath target;     // symbolic links resolved
    posix::HostPath temporary;  // the name of the new file while it has one of its own; else ""
    std::size_t directory = 0;  // characters of the target's directory, with the slash
    bool exists = false;
    bool replaceable = false;    // a new file can stand for the target, as far as one can see
    bool made = false;           // the target is empty, made through a link that led nowhere, and locked
    bool overtaken = false;      // attach() has met somebody who was making it, too
    posix::Descriptor file{-1};  // the target, if it is a file that exists
    struct stat status {};       // the target's

    bool is_regular() const { return S_ISREG(status.st_mode); }

    // Looks at the target. False if it cannot be written.
    bool attach();
    // The same under the lock, which is taken anew.
    bool attach(FileLock &lock);
    // Removes what was made, unless something has become of it.
    void unmake();
    bool open_target(const char *host, bool leads_nowhere);
    bool lock_made(const char *host);
    // True if the target is what the lock found, or what attach() did.
    bool is_current(const FileLock *lock) const;

    enum class Outcome { done, failed, overtaken, impossible };
    // Puts a complete new file in the target's place, or makes it the target. Throws std::bad_alloc.
    Outcome replace(int new_file);
    Outcome become(int new_file);
    bool take_name(int new_file);
};

namespace {

constexpr int kNames = 8;  // of temporary files of one target

// Some file systems and devices cannot be flushed; that is no failure of the write.
bool flush_to_disk(int descriptor) {
    if (io_fails()) return false;
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

// The directory of a path whose first `length` characters it is.
int open_directory(posix::HostPath &path, std::size_t length, int flags, unsigned mode = 0) {
    const char kept = path.text[length];
    path.text[length] = '\0';
    const int descriptor = posix::open_descriptor(path.text, flags, mode);
    path.text[length] = kept;
    return descriptor;
}

// Makes the new name durable. Not every file system lets a directory be flushed, and the content is
// safe either way.
void flush_directory(posix::HostPath &target, std::size_t directory) {
    const posix::Descriptor descriptor(open_directory(target, directory, O_RDONLY | O_DIRECTORY));
    if (descriptor.value() >= 0) fsync(descriptor.value());
}

std::uint64_t hash(const char *text) {
    constexpr std::uint64_t kStart = 14695981039346656037U;  // FNV-1a
    constexpr std::uint64_t kPrime = 1099511628211U;
    std::uint64_t value = kStart;
    for (; *text != '\0'; ++text) value = (value ^ static_cast<unsigned char>(*text)) * kPrime;
    return value;
}

// Writes the temporary name of this number beside the target. False if the path gets too long.
bool name_temporary(const posix::HostPath &target, std::size_t directory, int number,
                    posix::HostPath &name) {
    const int length =
        std::snprintf(name.text, sizeof name.text, "%.*s.kv-%016llx-%d.tmp", static_cast<int>(directory),
                      target.text, static_cast<unsigned long long>(hash(target.text + directory)), number);
    if (static_cast<std::size_t>(length) < sizeof name.text) return true;
    name.text[0] = '\0';
    return false;
}

// Removes a temporary file that nobody holds any more.
void remove_abandoned(const char *name) {
    constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const posix::Descriptor file(posix::open_descriptor(name, kFlags));
    if (file.value() < 0 ||
        posix::try_lock_byte(file.value(), F_WRLCK, posix::kChangeByte) != posix::Locked::done) {
        return;
    }
    struct stat here;
    struct stat there;
    if (fstat(file.value(), &here) == 0 && S_ISREG(here.st_mode) && lstat(name, &there) == 0 &&
        posix::same_file(here, there)) {
        unlink(name);
    }
    posix::unlock_byte(file.value(), posix::kChangeByte);
}

void remove_abandoned(const posix::HostPath &target, std::size_t directory) {
    posix::HostPath name;
    for (int number = 0; number < kNames; ++number) {
        if (name_temporary(target, directory, number, name)) remove_abandoned(name.text);
    }
}

// Locks a temporary file, which has this name or none. Until then, somebody who saves the same target may
// take it for an abandoned one; the name is gone then, or another's, and the result false.
bool lock_under_name(int descriptor, const char *name) {
    const posix::Locked locked = posix::try_lock_byte(descriptor, F_WRLCK, posix::kChangeByte);
    if (name == nullptr) return true;
    struct stat here;
    struct stat there;
    return locked != posix::Locked::in_use && fstat(descriptor, &here) == 0 && lstat(name, &there) == 0 &&
           posix::same_file(here, there);
}

// Gives a file without a name a name; false, with errno, if that fails or there is something of that name.
bool link_file(int descriptor, const char *name) {
    char unnamed[32];
    std::snprintf(unnamed, sizeof unnamed, "/proc/self/fd/%d", descriptor);
    return !io_fails() && linkat(AT_FDCWD, unnamed, AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
}

bool can_link() {
    return access("/proc/self/fd", X_OK) == 0;
}

// The bytes of a file that is written no more.
bool read_whole_file(int descriptor, memory::Vector<char> &bytes) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return false;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    return posix::read_from_start(descriptor, bytes.data(), bytes.size()) == status.st_size;
}

// Writes over the old bytes, and shortens the file last. The space is reserved first, so that a full disk
// shows before anything is overwritten. Should writing fail all the same, the old content is written back.
bool overwrite(int descriptor, off_t old_size, const memory::Vector<char> &bytes) {
    const auto size = static_cast<off_t>(bytes.size());
    memory::Vector<char> old(static_cast<std::size_t>(old_size));
    const bool known =
        posix::read_from_start(descriptor, old.data(), old.size()) == static_cast<std::int64_t>(old.size());
    const bool reserved = size <= old_size || (!io_fails() && posix_fallocate(descriptor, 0, size) == 0);
    if (reserved && lseek(descriptor, 0, SEEK_SET) == 0 &&
        posix::write_all(descriptor, bytes.data(), bytes.size()) && ftruncate(descriptor, size) == 0 &&
        flush_to_disk(descriptor)) {
        return true;
    }
    if (known && lseek(descriptor, 0, SEEK_SET) == 0) posix::write_all(descriptor, old.data(), old.size());
    // On a failure of this, too, there is nothing left to do.
    [[maybe_unused]] const int result = ftruncate(descriptor, old_size);
    return false;
}

bool write_to_device(const char *path, const memory::Vector<char> &bytes) {
    posix::Descriptor device(posix::open_descriptor(path, O_WRONLY | O_NOCTTY));
    return device.value() >= 0 && posix::write_all(device.value(), bytes.data(), bytes.size()) &&
           device.close();
}

}  // namespace

bool ReplacementFile::Paths::open_target(const char *host, bool leads_nowhere) {
    const int flags = O_NONBLOCK | O_NOCTTY | (leads_nowhere ? O_CREAT : 0);
    file.reset(posix::open_descriptor(host, O_RDWR | flags));
    if (file.value() < 0 && errno == EACCES) file.reset(posix::open_descriptor(host, O_WRONLY | flags));
    if (file.value() < 0 || fstat(file.value(), &status) != 0) return false;
    exists = true;
    return !leads_nowhere || lock_made(host);
}

// A file that was not there had no lock to wait for. The one that locks it first may change it; others, and
// those who see that it has gone or has a content by now, begin anew.
bool ReplacementFile::Paths::lock_made(const char *host) {
    const posix::Locked locked = posix::try_lock_byte(file.value(), F_WRLCK, posix::kChangeByte);
    struct stat now;
    made = locked != posix::Locked::in_use && fstat(file.value(), &status) == 0 && status.st_size == 0 &&
           stat(host, &now) == 0 && posix::same_file(now, status);
    overtaken = !made;
    if (overtaken) posix::unlock_byte(file.value(), posix::kChangeByte);
    return made;
}

void ReplacementFile::Paths::unmake() {
    if (!made) return;
    made = false;
    struct stat now;
    if (lstat(target.text, &now) == 0 && posix::stamp_of(now) == posix::stamp_of(status))
        unlink(target.text);
    posix::unlock_byte(file.value(), posix::kChangeByte);
}

// It is the kernel that follows links when it opens the target, so that its protection of links in shared
// directories holds; the path without links has to lead to the same file.
bool ReplacementFile::Paths::attach() {
    posix::HostPath host;
    unmake();
    overtaken = false;
    file.reset(-1);
    if (!posix::map_path(path.c_str(), posix::Purpose::write, host)) return false;
    exists = stat(host.text, &status) == 0;
    if (!exists && errno != ENOENT) return false;
    struct stat link;
    const bool leads_nowhere = !exists && lstat(host.text, &link) == 0;
    if (exists && !is_regular()) {
        if (S_ISDIR(status.st_mode) || faccessat(AT_FDCWD, host.text, W_OK, AT_EACCESS) != 0) return false;
    } else if ((exists || leads_nowhere) && !open_target(host.text, leads_nowhere)) {
        return false;
    }
    replaceable = !exists;
    if (exists && is_regular() && status.st_nlink == 1) {
        struct stat resolved;
        replaceable = realpath(host.text, target.text) != nullptr && stat(target.text, &resolved) == 0 &&
                      posix::same_file(resolved, status);
    }
    if (!exists || !replaceable) target = host;
    directory = static_cast<std::size_t>(std::strrchr(target.text, '/') - target.text) + 1;
    return true;
}

bool ReplacementFile::Paths::attach(FileLock &lock) {
    constexpr int kMostAttempts = 10;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        unmake();  // or its lock would be waited for
        if (!lock.acquire(path.c_str())) return false;
        if (attach()) return true;
        if (!overtaken) return false;
    }
    return false;
}

bool ReplacementFile::Paths::is_current(const FileLock *lock) const {
    struct stat now;
    const bool there = stat(target.text, &now) == 0;
    if (made) return there && posix::stamp_of(now) == posix::stamp_of(status);
    if (lock != nullptr) return (there ? posix::stamp_of(now) : FileStamp()) == lock->stamp();
    return there == exists && (!there || posix::same_file(now, status));
}

// Gives a new file without a name one of the temporary names.
bool ReplacementFile::Paths::take_name(int new_file) {
    for (int number = 0; number < kNames; ++number) {
        if (!name_temporary(target, directory, number, temporary)) return false;
        if (link_file(new_file, temporary.text)) return true;
        temporary.text[0] = '\0';
        if (errno != EEXIST) return false;
    }
    return false;
}

// The target that was not there becomes the new file, unless there is one by now.
ReplacementFile::Paths::Outcome ReplacementFile::Paths::become(int new_file) {
    if (!flush_to_disk(new_file)) return Outcome::failed;
    const bool named = temporary.text[0] != '\0';
    const bool done = named ? !io_fails() && posix::rename_exclusive(temporary.text, target.text)
                            : link_file(new_file, target.text);
    if (!done) return errno == EEXIST ? Outcome::overtaken : Outcome::failed;
    temporary.text[0] = '\0';
    return Outcome::done;
}

ReplacementFile::Paths::Outcome ReplacementFile::Paths::replace(int new_file) {
    if (!exists) return become(new_file);
    if (!replaceable || !posix::keep_access(file.value(), status, new_file)) return Outcome::impossible;
    if (!flush_to_disk(new_file)) return Outcome::failed;
    if (temporary.text[0] == '\0' && !take_name(new_file)) return Outcome::impossible;
    if (io_fails()) return Outcome::failed;
    if (rename(temporary.text, target.text) != 0) return Outcome::impossible;
    temporary.text[0] = '\0';
    return Outcome::done;
}

ReplacementFile::ReplacementFile() = default;

ReplacementFile::~ReplacementFile() {
    if (paths_ == nullptr) return;
    if (paths_->temporary.text[0] != '\0') unlink(paths_->temporary.text);
    // The temporary file may be the target by now, and a child that was forked meanwhile has it open, too.
    if (handle_ >= 0) posix::unlock_byte(static_cast<int>(handle_), posix::kChangeByte);
    posix::close_descriptor(handle_);
    paths_->unmake();
}

bool ReplacementFile::open(const char *path, const FileLock *lock) {
    failed_ = true;
    lock_ = lock;
    try {
        paths_ = memory::make_owned<Paths>();
        if (paths_ == nullptr) throw std::bad_alloc();
        paths_->path = path;
    } catch (const std::bad_alloc &) {
        exhausted_ = true;
        return false;
    }
    paths_->temporary.text[0] = '\0';
    if (lock != nullptr ? !paths_->attach() : !paths_->attach(own_lock_)) {
        overtaken_ = lock != nullptr && paths_->overtaken;
        return false;
    }
    if (paths_->replaceable) remove_abandoned(paths_->target, paths_->directory);
    const bool beside = paths_->replaceable && open_temporary();
    failed_ = !beside && !paths_->exists;
    return !failed_;
}

bool ReplacementFile::open_temporary() {
    Paths &paths = *paths_;
    const unsigned mode = paths.exists ? posix::kForOwner : posix::kForAll;
    if (can_link()) {
        handle_ = open_directory(paths.target, paths.directory, O_RDWR | O_TMPFILE, mode);
    }
    if (handle_ >= 0) return lock_under_name(static_cast<int>(handle_), nullptr);
    for (int number = 0; number < kNames; ++number) {
        if (!name_temporary(paths.target, paths.directory, number, paths.temporary)) return false;
        handle_ = posix::open_descriptor(paths.temporary.text, O_RDWR | O_CREAT | O_EXCL, mode);
        if (handle_ >= 0 && lock_under_name(static_cast<int>(handle_), paths.temporary.text)) return true;
        const bool taken = handle_ >= 0 || errno == EEXIST;
        posix::close_descriptor(handle_);
        handle_ = -1;
        paths.temporary.text[0] = '\0';
        if (!taken) return false;
    }
    return false;
}

// A file that may not grow so much, or a pipe that nobody reads, is a failed write, not the process's end.
bool ReplacementFile::write_temporary(const char *bytes, std::size_t size) {
    const posix::NoWriteSignals guard;
    return posix::write_all(static_cast<int>(handle_), bytes, size);
}

// Without a lock of the caller's, the content does not depend on the old one: if the target has been made
// or replaced by somebody meanwhile, it is looked at anew.
bool ReplacementFile::commit_temporary() {
    constexpr int kMostAttempts = 10;
    const int new_file = static_cast<int>(handle_);
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        if (!paths_->is_current(lock_)) {
            overtaken_ = lock_ != nullptr;
            if (overtaken_ || !paths_->attach(own_lock_)) return false;
        }
        switch (paths_->replace(new_file)) {
            case Paths::Outcome::done:
                paths_->made = false;
                flush_directory(paths_->target, paths_->directory);
                return true;
            case Paths::Outcome::impossible:
                return read_whole_file(new_file, pending_) && commit_in_place();
            case Paths::Outcome::overtaken:
                break;
            case Paths::Outcome::failed:
                return false;
        }
    }
    return false;
}

// What somebody without a lock does to the file while readers are waited for counts, too.
bool ReplacementFile::commit_in_place() {
    const posix::NoWriteSignals guard;
    constexpr int kMostAttempts = 10;
    Paths &paths = *paths_;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        if (!paths.is_current(lock_)) {
            overtaken_ = lock_ != nullptr;
            if (overtaken_ || !paths.attach(own_lock_)) return false;
        }
        if (!paths.exists) return false;
        if (!paths.is_regular()) return write_to_device(paths.target.text, pending_);
        const int file = paths.file.value();
        in_use_ = posix::lock_for_overwriting(file) == posix::Locked::in_use;
        if (in_use_) return false;
        const bool current = paths.is_current(lock_);
        struct stat status;
        const bool done = current && fstat(file, &status) == 0 && overwrite(file, status.st_size, pending_);
        posix::unlock_byte(file, posix::kContentByte);
        if (!current) continue;
        if (done && paths.made) {
            posix::unlock_byte(file, posix::kChangeByte);
            paths.made = false;
        }
        return done;  // what it wrote is on the disk, whatever closing says
    }
    return false;
}

}  // namespace kv::platform

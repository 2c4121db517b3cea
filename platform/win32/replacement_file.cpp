// A file that takes its new content as a whole.
//
// The usual road is a temporary file beside the target, with its attributes and rights, flushed to the
// disk, and the system's own call that puts it in the target's place. Where somebody has the target open so
// that it cannot be replaced, or where that would lose something (a second hard link, a link), the content
// is written in place at the end, after the room for it has been reserved.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

using win32::from_handle;
using win32::to_handle;

struct ReplacementFile::Paths {
    win32::FullPath target;
    char temporary[sizeof(win32::FullPath) + 64];  // in the target's directory
    bool exists;
};

namespace {

bool flush_to_disk(HANDLE handle) {
    if (io_fails()) return false;
    // Some devices cannot be flushed; that is no failure of the write.
    return FlushFileBuffers(handle) != 0 || GetLastError() == ERROR_INVALID_FUNCTION;
}

bool set_size(HANDLE handle, std::int64_t size) {
    LARGE_INTEGER position;
    position.QuadPart = size;
    return SetFilePointerEx(handle, position, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(handle) != 0;
}

bool rewind(HANDLE handle) {
    return SetFilePointerEx(handle, LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0;
}

bool read_all(HANDLE handle, memory::Vector<char> &bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::int64_t count = win32::read_some(handle, bytes.data() + done, bytes.size() - done);
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

// The room is reserved first, so that a full disk shows before anything is overwritten. Should writing fail
// all the same, the old content is written back.
bool overwrite(HANDLE handle, const memory::Vector<char> &bytes) {
    LARGE_INTEGER size_before;
    if (GetFileSizeEx(handle, &size_before) == 0) return false;
    const auto size = static_cast<std::int64_t>(bytes.size());
    memory::Vector<char> old(static_cast<std::size_t>(std::min<std::int64_t>(size, size_before.QuadPart)));
    const bool known = read_all(handle, old);
    const bool reserved = size <= size_before.QuadPart || (!io_fails() && set_size(handle, size));
    if (reserved && rewind(handle) && win32::write_all(handle, bytes.data(), bytes.size()) &&
        SetEndOfFile(handle) != 0) {
        return flush_to_disk(handle);
    }
    if (known && rewind(handle)) win32::write_all(handle, old.data(), old.size());
    set_size(handle, size_before.QuadPart);
    return false;
}

bool can_be_replaced(HANDLE target) {
    BY_HANDLE_FILE_INFORMATION information;
    return GetFileType(target) == FILE_TYPE_DISK && GetFileInformationByHandle(target, &information) != 0 &&
           information.nNumberOfLinks == 1;
}

// Gives the new file the attributes, the age and the rights of the old one. False if the system does not
// let it.
bool make_alike(HANDLE file, const char *path, const char *old_path) {
    constexpr DWORD kAttributes =
        FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD attributes = GetFileAttributesA(old_path);
    if (io_fails() || attributes == INVALID_FILE_ATTRIBUTES) return false;
    const DWORD kept = (attributes & kAttributes) | FILE_ATTRIBUTE_ARCHIVE;
    if (kept != FILE_ATTRIBUTE_ARCHIVE && SetFileAttributesA(path, kept) == 0) return false;
    const win32::Handle old(win32::open_entry(old_path));
    FILETIME created;
    if (GetFileTime(old.get(), &created, nullptr, nullptr) != 0) {
        SetFileTime(file, &created, nullptr, nullptr);
    }
    DWORD size = 0;
    GetFileSecurityA(old_path, DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    if (size == 0) return true;  // a file system without rights
    memory::Vector<char> rights(size);
    return GetFileSecurityA(old_path, DACL_SECURITY_INFORMATION, rights.data(), size, &size) != 0 &&
           SetFileSecurityA(path, DACL_SECURITY_INFORMATION, rights.data()) != 0;
}

// True if the new file has the target's place. The first call does it in one step. The second, which takes
// two, serves those versions of the system that do not let the first replace a file that somebody has open.
bool put_in_place(const char *temporary, const char *target, bool exists) {
    if (exists) {
        // Who has the file open may keep it from being replaced.
        const win32::Handle replaceable(win32::open_file(target, DELETE, OPEN_EXISTING));
        if (!replaceable.valid()) return false;
    }
    constexpr DWORD kMove = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    constexpr DWORD kReplace = REPLACEFILE_WRITE_THROUGH | REPLACEFILE_IGNORE_MERGE_ERRORS;
    return MoveFileExA(temporary, target, kMove) != 0 ||
           (exists && ReplaceFileA(target, temporary, nullptr, kReplace, nullptr, nullptr) != 0);
}

}  // namespace

ReplacementFile::ReplacementFile() = default;

ReplacementFile::~ReplacementFile() {
    if (handle_ == -1) return;
    win32::close_handle(handle_);
    DeleteFileA(paths_->temporary);
}

bool ReplacementFile::open(const char *path) {
    failed_ = true;
    paths_ = memory::make_owned<Paths>();
    exhausted_ = paths_ == nullptr;
    if (exhausted_ || !win32::full_path(path, paths_->target)) return false;
    const char *target = paths_->target.text;
    const DWORD attributes = GetFileAttributesA(target);
    paths_->exists = attributes != INVALID_FILE_ATTRIBUTES;
    bool replaceable = true;
    if (paths_->exists) {
        if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) return false;
        // What cannot be opened for writing cannot be written; a file that is being read can.
        const win32::Handle file(win32::open_file(target, GENERIC_WRITE, OPEN_EXISTING));
        if (!file.valid()) return false;
        replaceable = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 && can_be_replaced(file.get());
    }
    const bool beside = replaceable && open_temporary();
    if (exhausted_) return false;
    if (!beside) {
        // In place. A file that is not there yet is made now, so that a wrong name shows at once.
        if (!paths_->exists &&
            !win32::Handle(win32::open_file(target, GENERIC_WRITE, OPEN_ALWAYS)).valid()) {
            return false;
        }
    }
    failed_ = false;
    return true;
}

bool ReplacementFile::open_temporary() {
    static std::atomic<unsigned> counter{0};
    const char *target = paths_->target.text;
    const auto directory = static_cast<int>(win32::last_component(target) - target);
    constexpr int kMostAttempts = 100;
    for (int attempt = 0; attempt < kMostAttempts && handle_ == -1; ++attempt) {
        std::snprintf(paths_->temporary, sizeof paths_->temporary, "%.*s.kv-%lu-%u.tmp", directory, target,
                      GetCurrentProcessId(), counter.fetch_add(1));
        handle_ =
            from_handle(win32::open_file(paths_->temporary, GENERIC_READ | GENERIC_WRITE, CREATE_NEW));
        if (handle_ == -1 && GetLastError() != ERROR_FILE_EXISTS) return false;
    }
    if (handle_ == -1 || !paths_->exists) return handle_ != -1;
    try {
        if (make_alike(to_handle(handle_), paths_->temporary, target)) return true;
    } catch (const std::bad_alloc &) {
        exhausted_ = true;
    }
    CloseHandle(to_handle(handle_));
    DeleteFileA(paths_->temporary);
    handle_ = -1;
    return false;
}

bool ReplacementFile::write_temporary(const char *bytes, std::size_t size) {
    return win32::write_all(to_handle(handle_), bytes, size);
}

bool ReplacementFile::commit_temporary() {
    const bool flushed = flush_to_disk(to_handle(handle_));
    if (!flushed || io_fails()) return false;
    const char *temporary = paths_->temporary;
    // While it is open it cannot be moved; should the content be needed, it is read again.
    CloseHandle(to_handle(handle_));
    handle_ = -1;
    if (!io_fails() && put_in_place(temporary, paths_->target.text, paths_->exists)) return true;
    win32::Handle again(win32::open_file(temporary, GENERIC_READ, OPEN_EXISTING));
    if (again.valid()) {
        handle_ = from_handle(again.release());  // its end removes the file
        LARGE_INTEGER size;
        if (paths_->exists && GetFileSizeEx(to_handle(handle_), &size) != 0) {
            pending_.resize(static_cast<std::size_t>(size.QuadPart));
            return read_all(to_handle(handle_), pending_) && commit_in_place();
        }
        return false;
    }
    DeleteFileA(temporary);
    return false;
}

bool ReplacementFile::commit_in_place() {
    const char *target = paths_->target.text;
    win32::Handle file(win32::open_file(target, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
    const bool readable = file.valid();
    const win32::Handle only_written(readable ? INVALID_HANDLE_VALUE
                                              : win32::open_file(target, GENERIC_WRITE, OPEN_ALWAYS));
    const HANDLE handle = readable ? file.get() : only_written.get();
    if (!readable && !only_written.valid()) return false;
    if (GetFileType(handle) == FILE_TYPE_DISK) return overwrite(handle, pending_);
    return win32::write_all(handle, pending_.data(), pending_.size());
}

}  // namespace kv::platform

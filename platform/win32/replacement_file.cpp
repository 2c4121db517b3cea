// SPDX-License-Identifier: MIT
// A file that takes its new content as a whole.
//
// The new content is written to a temporary file beside the target. It is marked for removal from the first
// moment on, so that the system removes it with its process, and nobody else can open it. When it is
// complete and on the disk, it gets the target's attributes and rights, loses that mark, and is renamed to
// the target in one step.
//
// ReplaceFileA, which may take two steps, keeps what a renamed file would lose (streams beside the
// content), and serves those versions of the system that do not let an open target be renamed over. Where
// that is impossible, too, or would lose something (a second hard link, a link, rights that cannot be read
// or given), the content is written in place.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "platform/win32/content_lock.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/kept_properties.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

using win32::from_handle;
using win32::to_handle;

struct ReplacementFile::Paths {
    win32::FullPath target;
    char temporary[sizeof(win32::FullPath) + 64];  // in the target's directory
    bool exists = false;
    bool made = false;      // the target is empty, and was made here
    FileStamp expected;     // of the target
    bool streamed = false;  // the target has more than its content

    bool rename(HANDLE file, bool over) const;
    bool rename_over(HANDLE file) const;
    bool merge(std::intptr_t &file) const;
    enum class Outcome { done, in_the_way, impossible };
    Outcome replace(std::intptr_t &file) const;
};

namespace {

constexpr int kNames = 8;  // of temporary files of one target

// What a temporary file's name begins with.
int name_temporary(const win32::FullPath &target, char *name, std::size_t size) {
    const char *last = win32::last_component(target.text);
    win32::FullPath lower;
    std::strcpy(lower.text, last);
    CharLowerA(lower.text);
    return std::snprintf(name, size, "%.*s.kv-%016llx-", static_cast<int>(last - target.text), target.text,
                         static_cast<unsigned long long>(win32::hash(lower.text)));
}

// Removes temporary files that are left after a power failure, say. What somebody writes now is kept by
// him.
void remove_abandoned(const win32::FullPath &target) {
    char path[sizeof target.text + 64];
    const int begin = name_temporary(target, path, sizeof path);
    std::strcpy(path + begin, "?.tmp");
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(path, &found);
    if (search == INVALID_HANDLE_VALUE) return;
    const auto directory = static_cast<std::size_t>(win32::last_component(path) - path);
    do {
        std::snprintf(path + directory, sizeof path - directory, "%s", found.cFileName);
        DeleteFileA(path);
    } while (FindNextFileA(search, &found) != 0);
    FindClose(search);
}

bool set_removal(HANDLE file, bool removed) {
    FILE_DISPOSITION_INFO disposition{static_cast<BOOLEAN>(removed)};
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != 0;
}

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

// The bytes of a file. False if they cannot be read.
bool read_all(HANDLE handle, memory::Vector<char> &bytes) {
    LARGE_INTEGER size;
    if (GetFileSizeEx(handle, &size) == 0 || !rewind(handle)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::int64_t count = win32::read_some(handle, bytes.data() + done, bytes.size() - done);
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

// The space is reserved first, so that a full disk shows before anything is overwritten. Should writing
// fail all the same, the old content is written back.
bool overwrite(HANDLE handle, const memory::Vector<char> &bytes) {
    LARGE_INTEGER old_size;
    if (GetFileSizeEx(handle, &old_size) == 0) return false;
    memory::Vector<char> old;
    const bool known = read_all(handle, old);
    const auto size = static_cast<std::int64_t>(bytes.size());
    const bool reserved = size <= old_size.QuadPart || (!io_fails() && set_size(handle, size));
    if (reserved && rewind(handle) && win32::write_all(handle, bytes.data(), bytes.size()) &&
        SetEndOfFile(handle) != 0 && flush_to_disk(handle)) {
        return true;
    }
    if (known && rewind(handle)) win32::write_all(handle, old.data(), old.size());
    set_size(handle, old_size.QuadPart);
    return false;
}

// Somebody who has the file open may keep it from being replaced. Who reads it for a moment only, as virus
// scanners do, is waited for.
bool may_be_replaced(const char *target) {
    constexpr DWORD kLongest = 100;
    const win32::Waiting waiting(std::min<DWORD>(lock_timeout(), kLongest));
    const win32::Handle file(win32::open_shared_file(target, DELETE, OPEN_EXISTING, waiting));
    return file.valid() || GetLastError() != ERROR_SHARING_VIOLATION;
}

}  // namespace

// Renames the open temporary file, which nobody can take away or exchange meanwhile.
bool ReplacementFile::Paths::rename(HANDLE file, bool over) const {
    constexpr auto kWithFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);  // FileRenameInfoEx
    constexpr DWORD kReplace = 1;
    constexpr DWORD kAsPosix = 2;  // over an open target, too
    win32::WidePath name;
    if (io_fails() || !win32::widen(target.text, name)) return false;
    alignas(FILE_RENAME_INFO) char request[sizeof(FILE_RENAME_INFO) + sizeof name] = {};
    auto *info = reinterpret_cast<FILE_RENAME_INFO *>(request);
    info->FileNameLength = static_cast<DWORD>(std::wcslen(name.text) * sizeof *name.text);
    std::memcpy(info->FileName, name.text, info->FileNameLength);
    if (over) {
        constexpr DWORD kFlags = kReplace | kAsPosix;
        std::memcpy(request, &kFlags, sizeof kFlags);  // in place of the older record's first field
        if (SetFileInformationByHandle(file, kWithFlags, request, sizeof request) != 0) return true;
        std::memset(request, 0, sizeof kFlags);
    }
    info->ReplaceIfExists = static_cast<BOOLEAN>(over);
    return SetFileInformationByHandle(file, FileRenameInfo, request, sizeof request) != 0;
}

// Lets the system merge the temporary file and the target. Should it have taken the target away without
// putting the temporary file in its place, that is done here. False, with the temporary file open, if the
// target has its old content.
bool ReplacementFile::Paths::merge(std::intptr_t &file) const {
    CloseHandle(to_handle(file));
    file = -1;
    if (!io_fails() && ReplaceFileA(target.text, temporary, nullptr, 0, nullptr, nullptr) != 0) return true;
    constexpr DWORD kAccess = GENERIC_READ | DELETE;
    file = from_handle(CreateFileA(temporary, kAccess, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    return file != -1 && !is_entry(target.text) && rename(to_handle(file), false);
}

ReplacementFile::Paths::Outcome ReplacementFile::Paths::replace(std::intptr_t &file) const {
    const HANDLE handle = to_handle(file);
    if (!exists) {
        set_removal(handle, false);
        if (rename(handle, false)) return Outcome::done;
        const DWORD error = GetLastError();
        const bool appeared = error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
        return appeared ? Outcome::in_the_way : Outcome::impossible;
    }
    if (!win32::keep_properties(handle, target.text) || !may_be_replaced(target.text)) {
        return Outcome::impossible;
    }
    set_removal(handle, false);
    if (!streamed && rename(handle, true)) return Outcome::done;
    return merge(file) ? Outcome::done : Outcome::impossible;
}

ReplacementFile::ReplacementFile() = default;

ReplacementFile::~ReplacementFile() {
    if (paths_ == nullptr) return;
    if (handle_ != -1) {
        const bool marked = set_removal(to_handle(handle_), true);
        win32::close_handle(handle_);
        if (!marked) DeleteFileA(paths_->temporary);
    }
    if (paths_->made && win32::stamp_of(paths_->target.text) == paths_->expected) {
        DeleteFileA(paths_->target.text);
    }
}

bool ReplacementFile::open(const char *path, const FileLock *lock) {
    failed_ = true;
    lock_ = lock;
    paths_ = memory::make_owned<Paths>();
    exhausted_ = paths_ == nullptr;
    if (exhausted_ || !win32::full_path(path, paths_->target)) return false;
    if (lock == nullptr && !own_lock_.acquire(path)) return false;
    paths_->expected = (lock != nullptr ? lock : &own_lock_)->stamp();
    const char *target = paths_->target.text;
    const DWORD attributes = GetFileAttributesA(target);
    paths_->exists = attributes != INVALID_FILE_ATTRIBUTES;
    bool replaceable = true;
    if (paths_->exists) {
        if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) return false;
        // What cannot be opened for writing cannot be written; a file that is being read can.
        const win32::Handle file(
            win32::open_shared_file(target, GENERIC_WRITE, OPEN_EXISTING, win32::Waiting()));
        if (!file.valid()) return false;
        replaceable = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 &&
                      GetFileType(file.get()) == FILE_TYPE_DISK && win32::link_count(file.get()) == 1;
        paths_->streamed = replaceable && win32::has_other_streams(target);
    }
    if ((!replaceable || !open_temporary()) && !paths_->exists) {
        // In place. A file that is not there yet is made now, so that a wrong name shows at once.
        const win32::Handle file(win32::open_file(target, GENERIC_WRITE, OPEN_ALWAYS));
        if (!file.valid()) return false;
        if (GetLastError() != ERROR_ALREADY_EXISTS) {
            paths_->expected = win32::stamp_of(file.get());
            paths_->made = paths_->expected.exists;  // else it is a device
        }
    }
    failed_ = false;
    return true;
}

bool ReplacementFile::open_temporary() {
    char *name = paths_->temporary;
    const win32::FullPath &target = paths_->target;
    remove_abandoned(target);
    const int begin = name_temporary(target, name, sizeof paths_->temporary);
    for (int number = 0; number < kNames && handle_ == -1; ++number) {
        std::snprintf(name + begin, sizeof paths_->temporary - static_cast<std::size_t>(begin), "%d.tmp",
                      number);
        handle_ = from_handle(win32::make_temporary(name, paths_->exists ? target.text : nullptr));
        // One that is marked for removal cannot even be looked at.
        const DWORD error = GetLastError();
        if (handle_ == -1 && error != ERROR_FILE_EXISTS && error != ERROR_ACCESS_DENIED) return false;
    }
    if (handle_ != -1) set_removal(to_handle(handle_), true);
    return handle_ != -1;
}

bool ReplacementFile::write_temporary(const char *bytes, std::size_t size) {
    return win32::write_all(to_handle(handle_), bytes, size);
}

bool ReplacementFile::commit_temporary() {
    if (!flush_to_disk(to_handle(handle_))) return false;
    overtaken_ = lock_ != nullptr && win32::stamp_of(paths_->target.text) != paths_->expected;
    if (overtaken_) return false;
    switch (paths_->replace(handle_)) {
        case Paths::Outcome::done:
            if (handle_ == -1) return true;
            FlushFileBuffers(to_handle(handle_));  // the new name
            win32::close_handle(handle_);
            handle_ = -1;
            return true;
        case Paths::Outcome::in_the_way:
            overtaken_ = lock_ != nullptr;
            if (overtaken_) return false;
            break;
        case Paths::Outcome::impossible:
            if (!paths_->exists) return false;
            break;
    }
    return handle_ != -1 && read_all(to_handle(handle_), pending_) && commit_in_place();
}

bool ReplacementFile::commit_in_place() {
    const char *target = paths_->target.text;
    const win32::Waiting waiting;
    const DWORD disposition = lock_ != nullptr && paths_->expected.exists ? OPEN_EXISTING : OPEN_ALWAYS;
    win32::Handle readable(
        win32::open_shared_file(target, GENERIC_READ | GENERIC_WRITE, disposition, waiting));
    const win32::Handle writable(
        readable.valid() ? INVALID_HANDLE_VALUE
                         : win32::open_shared_file(target, GENERIC_WRITE, disposition, waiting));
    const HANDLE handle = readable.valid() ? readable.get() : writable.get();
    if (!readable.valid() && !writable.valid()) {
        overtaken_ = lock_ != nullptr && win32::stamp_of(target) != paths_->expected;
        return false;
    }
    if (GetFileType(handle) != FILE_TYPE_DISK) {
        return win32::write_all(handle, pending_.data(), pending_.size());
    }
    in_use_ = !win32::lock_content(handle, true, waiting);
    if (in_use_) return false;
    overtaken_ = lock_ != nullptr && win32::stamp_of(handle) != paths_->expected;
    const bool done = !overtaken_ && overwrite(handle, pending_);
    if (!done) paths_->expected = win32::stamp_of(handle);
    win32::unlock_content(handle);
    if (done) paths_->made = false;
    return done;
}

}  // namespace kv::platform

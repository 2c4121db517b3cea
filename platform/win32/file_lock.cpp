// SPDX-License-Identifier: MIT
// The lock on changes of a file: a mutex of the system whose name says the file. The system ends it with
// its owner, nothing is left behind, and the file itself stays free for everybody. It keeps order among the
// programs of one computer; a change made on another one shows in the file's stamp.
//
// Beside the mutex its owner holds an event whose name says the owner, too: so those who wait can say
// whom they wait for.
#include <cstdio>
#include <cstring>
#include <new>
// The second needs the first.
// clang-format off
#include <windows.h>
#include <tlhelp32.h>
// clang-format on

#include "platform/platform.hpp"
#include "platform/win32/content_lock.hpp"
#include "platform/win32/file_users.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

namespace {

struct Held {
    HANDLE mutex;
    HANDLE mark;
};

// What all ways to write the path of a file have in common: its final path, or that of its directory and
// its name. Of several hard links it is the file itself, which is never replaced.
bool identity(const char *path, win32::FullPath &identity) {
    win32::FullPath full;
    if (!win32::full_path(path, full)) return false;
    if (const win32::Handle file(win32::open_entry(full.text)); file.valid()) {
        if (win32::link_count(file.get()) > 1) {
            const FileStamp stamp = win32::stamp_of(file.get());
            std::snprintf(identity.text, sizeof identity.text, "%llx:%llx",
                          static_cast<unsigned long long>(stamp.volume),
                          static_cast<unsigned long long>(stamp.number));
            return true;
        }
        return win32::final_path(file.get(), identity);
    }
    const char *name = win32::last_component(full.text);
    const std::size_t length = std::strlen(name);
    char kept[sizeof full.text];
    std::memcpy(kept, name, length + 1);
    full.text[name - full.text] = '\0';
    const win32::Handle directory(win32::open_entry(full.text));
    if (!directory.valid() || !win32::final_path(directory.get(), identity)) return false;
    std::size_t end = std::strlen(identity.text);
    if (end + 1 + length >= sizeof identity.text) return false;
    if (end > 0 && identity.text[end - 1] != '\\') identity.text[end++] = '\\';
    std::memcpy(identity.text + end, kept, length + 1);
    return true;
}

struct LockName {
    char text[64];
};

bool name_lock(const char *path, LockName &name) {
    win32::FullPath file;
    if (!identity(path, file)) return false;
    CharLowerA(file.text);
    std::snprintf(name.text, sizeof name.text, "Global\\kv-turn-%016llx",
                  static_cast<unsigned long long>(win32::hash(file.text)));
    return true;
}

void name_mark(const LockName &lock, DWORD process, LockName &name) {
    std::snprintf(name.text, sizeof name.text, "%s-%lu", lock.text, process);
}

// Every user may wait for it.
class ForEverybody {
  public:
    ForEverybody() {
        InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor_, TRUE, nullptr, FALSE);
    }
    ForEverybody(const ForEverybody &) = delete;
    ForEverybody &operator=(const ForEverybody &) = delete;
    SECURITY_ATTRIBUTES *attributes() { return &attributes_; }

  private:
    SECURITY_DESCRIPTOR descriptor_;
    SECURITY_ATTRIBUTES attributes_{sizeof attributes_, &descriptor_, FALSE};
};

HANDLE make_mutex(const LockName &name) {
    return CreateMutexA(ForEverybody().attributes(), FALSE, name.text);
}

HANDLE make_mark(const LockName &lock) {
    LockName name;
    name_mark(lock, GetCurrentProcessId(), name);
    return CreateEventA(ForEverybody().attributes(), TRUE, FALSE, name.text);
}

enum class Taken { done, in_use, impossible };

// An owner that has ended without giving the mutex back counts as one that did.
Taken take(HANDLE mutex, DWORD limit) {
    switch (WaitForSingleObject(mutex, limit)) {
        case WAIT_OBJECT_0:
        case WAIT_ABANDONED:
            return Taken::done;
        case WAIT_TIMEOUT:
            return Taken::in_use;
        default:
            return Taken::impossible;
    }
}

void tell_owner(const LockName &lock, char *holder, std::size_t size) {
    const win32::Handle processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!processes.valid()) return;
    PROCESSENTRY32 process{};
    process.dwSize = sizeof process;
    for (BOOL more = Process32First(processes.get(), &process); more != 0;
         more = Process32Next(processes.get(), &process)) {
        LockName name;
        name_mark(lock, process.th32ProcessID, name);
        const win32::Handle mark(OpenEventA(SYNCHRONIZE, FALSE, name.text));
        if (!mark.valid()) continue;
        std::snprintf(holder, size, "%s (process %lu)", process.szExeFile, process.th32ProcessID);
        return;
    }
}

// Whether those who read the file keep a change of it waiting.
bool content_in_use(HANDLE file, const char *path) {
    const bool in_place =
        win32::link_count(file) > 1 || (GetFileAttributesA(path) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return in_place && !win32::lock_content(file, true, win32::Waiting(0));
}

}  // namespace

bool FileLock::acquire(const char *path) {
    release();
    const win32::Waiting waiting;
    LockName name;
    while (name_lock(path, name)) {
        win32::Handle mutex(make_mutex(name));
        if (!mutex.valid()) break;
        const Taken taken = take(mutex.get(), waiting.left());
        if (taken == Taken::in_use) return false;
        if (taken == Taken::impossible) break;
        // What has the name now may be another file, or the same one with a second link.
        LockName now;
        if (name_lock(path, now) && std::strcmp(name.text, now.text) != 0) {
            ReleaseMutex(mutex.get());
            continue;
        }
        if (auto *held = new (std::nothrow) Held{mutex.get(), make_mark(name)}) {
            mutex.release();
            handle_ = reinterpret_cast<std::intptr_t>(held);
        } else {
            ReleaseMutex(mutex.get());
        }
        break;
    }
    stamp_ = win32::stamp_of(path);
    return true;
}

void FileLock::release() {
    if (handle_ == -1) return;
    auto *held = reinterpret_cast<Held *>(handle_);
    if (held->mark != nullptr) CloseHandle(held->mark);
    ReleaseMutex(held->mutex);
    CloseHandle(held->mutex);
    delete held;
    handle_ = -1;
}

LockState lock_state(const char *path, char *holder, std::size_t size) {
    if (size > 0) holder[0] = '\0';
    LockName name;
    if (name_lock(path, name)) {
        const win32::Handle mutex(make_mutex(name));
        const Taken taken = mutex.valid() ? take(mutex.get(), 0) : Taken::impossible;
        if (taken == Taken::done) ReleaseMutex(mutex.get());
        if (taken == Taken::in_use) {
            tell_owner(name, holder, size);
            return LockState::held;
        }
    }
    const win32::Handle file(win32::open_file(path, GENERIC_WRITE, OPEN_EXISTING));
    const bool held =
        file.valid() ? content_in_use(file.get(), path) : GetLastError() == ERROR_SHARING_VIOLATION;
    if (held) win32::describe_user(path, holder, size);
    return held ? LockState::held : LockState::free;
}

}  // namespace kv::platform

// Turns at changing a file: a mutex of the system whose name says the file. The system ends it with its
// owner, nothing is left behind, and the file itself stays free for everybody. It keeps order among the
// programs of one computer.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

namespace {

// What all ways to write the path of a file have in common: its final path, or that of its directory and
// its name.
bool identity(const char *path, win32::FullPath &identity) {
    win32::FullPath full;
    if (!win32::full_path(path, full)) return false;
    if (const win32::Handle file(win32::open_entry(full.text)); file.valid()) {
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

std::uint64_t hash(const char *text) {
    constexpr std::uint64_t kStart = 14695981039346656037U;
    constexpr std::uint64_t kPrime = 1099511628211U;
    std::uint64_t value = kStart;
    for (; *text != '\0'; ++text) value = (value ^ static_cast<unsigned char>(*text)) * kPrime;
    return value;
}

// A mutex that every user may wait for.
HANDLE make_mutex(const char *name) {
    SECURITY_DESCRIPTOR everybody;
    InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
    SECURITY_ATTRIBUTES attributes{sizeof attributes, &everybody, FALSE};
    return CreateMutexA(&attributes, FALSE, name);
}

}  // namespace

FileTurn::FileTurn(const char *path) {
    win32::FullPath file;
    if (!identity(path, file)) return;
    CharLowerA(file.text);
    char name[64];
    std::snprintf(name, sizeof name, "Global\\kv-turn-%016llx",
                  static_cast<unsigned long long>(hash(file.text)));
    win32::Handle mutex(make_mutex(name));
    if (!mutex.valid()) return;
    // An owner that has ended without giving it back counts as one that did.
    const DWORD result = WaitForSingleObject(mutex.get(), INFINITE);
    if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) handle_ = win32::from_handle(mutex.release());
}

FileTurn::~FileTurn() {
    if (handle_ == -1) return;
    ReleaseMutex(win32::to_handle(handle_));
    win32::close_handle(handle_);
}

}  // namespace kv::platform

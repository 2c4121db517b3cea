// SPDX-License-Identifier: MIT
// The process: its environment, its locks and the kind of platform.
#include <cstdlib>
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

const char *environment_variable(const char *name) {
    return std::getenv(name);
}

bool set_environment_variable(const char *name, const char *value) {
    return _putenv_s(name, value) == 0;
}

std::uintptr_t Lock::this_thread() {
    return GetCurrentThreadId();
}

void Lock::survive_forks() {
    survives_forks_ = true;  // nothing forks here
}

CommandResult run_command(const char *line) {
    const int code = std::system(line);
    if (code == 0) return CommandResult::done;
    return static_cast<DWORD>(code) == STATUS_CONTROL_C_EXIT ? CommandResult::interrupted
                                                             : CommandResult::failed;
}

std::int32_t windows_platform_code() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (GetVersionExA(&version) == 0) return 0;
    switch (version.dwPlatformId) {
        case VER_PLATFORM_WIN32s:
            return 2;
        case VER_PLATFORM_WIN32_WINDOWS:
            return 4;
        case VER_PLATFORM_WIN32_NT:
            return version.dwMajorVersion > 3 ? 5 : 3;
        default:
            return 0;
    }
}

bool windows_directory(char *buffer, std::size_t size) {
    char directory[MAX_PATH];
    const UINT length = GetWindowsDirectoryA(directory, sizeof directory);
    if (length == 0 || length >= sizeof directory || length >= size) return false;
    for (UINT i = 0; i <= length; ++i) buffer[i] = directory[i];
    return true;
}

}  // namespace kv::platform

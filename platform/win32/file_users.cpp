// SPDX-License-Identifier: MIT
#include "platform/win32/file_users.hpp"

#include <cstdio>
#include <cstring>
// The second needs the first.
// clang-format off
#include <windows.h>
#include <restartmanager.h>
// clang-format on

#include "platform/win32/paths.hpp"

namespace kv::platform::win32 {

namespace {

// The restart manager's library, which is loaded only when it is asked for something.
class RestartManager {
  public:
    RestartManager() {
        constexpr char kName[] = "\\rstrtmgr.dll";
        char path[MAX_PATH + sizeof kName];
        const UINT length = GetSystemDirectoryA(path, MAX_PATH);
        if (length == 0 || length >= MAX_PATH) return;
        std::memcpy(path + length, kName, sizeof kName);
        library_ = LoadLibraryA(path);
        if (library_ == nullptr) return;
        find("RmStartSession", start_);
        find("RmRegisterResources", register_);
        find("RmGetList", list_);
        find("RmEndSession", end_);
        wchar_t key[CCH_RM_SESSION_KEY + 1] = L"";
        open_ = start_ != nullptr && register_ != nullptr && list_ != nullptr && end_ != nullptr &&
                start_(&session_, 0, key) == ERROR_SUCCESS;
    }
    RestartManager(const RestartManager &) = delete;
    RestartManager &operator=(const RestartManager &) = delete;
    ~RestartManager() {
        if (open_) end_(session_);
        if (library_ != nullptr) FreeLibrary(library_);
    }

    // The first process; false if there is none.
    bool user_of(const wchar_t *path, RM_PROCESS_INFO &user) const {
        constexpr UINT kMost = 16;
        RM_PROCESS_INFO users[kMost];
        UINT needed = 0;
        UINT count = kMost;
        DWORD reasons = 0;
        if (!open_ || register_(session_, 1, &path, 0, nullptr, 0, nullptr) != ERROR_SUCCESS ||
            list_(session_, &needed, &count, users, &reasons) != ERROR_SUCCESS || count == 0) {
            return false;
        }
        user = users[0];
        return true;
    }

  private:
    template <typename Function>
    void find(const char *name, Function &function) {
        const FARPROC found = GetProcAddress(library_, name);
        static_assert(sizeof function == sizeof found);
        std::memcpy(&function, &found, sizeof found);
    }

    decltype(&RmStartSession) start_ = nullptr;
    decltype(&RmRegisterResources) register_ = nullptr;
    decltype(&RmGetList) list_ = nullptr;
    decltype(&RmEndSession) end_ = nullptr;
    HMODULE library_ = nullptr;
    DWORD session_ = 0;
    bool open_ = false;
};

}  // namespace

void describe_user(const char *path, char *text, std::size_t size) {
    FullPath full;
    WidePath wide;
    RM_PROCESS_INFO user;
    if (!full_path(path, full) || !widen(full.text, wide) || !RestartManager().user_of(wide.text, user))
        return;
    char name[2 * CCH_RM_MAX_APP_NAME];
    if (WideCharToMultiByte(CP_ACP, 0, user.strAppName, -1, name, sizeof name, nullptr, nullptr) == 0)
        return;
    std::snprintf(text, size, "%s (process %lu)", name, user.Process.dwProcessId);
}

}  // namespace kv::platform::win32

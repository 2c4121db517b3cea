// SPDX-License-Identifier: MIT
// The services of Windows itself: message boxes, debugger output, the registry, the recycle bin, drives.
#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

#include "kv.h"

#include "tests/support/boxes_win32.hpp"
#include "tests/support/support.hpp"

namespace {

using namespace kvtest;

// The texts that the thread sends to a debugger while this exists; they come as exceptions first.
std::string g_sent;

LONG CALLBACK take_text(EXCEPTION_POINTERS *pointers) {
    constexpr DWORD kDebugText = 0x40010006;  // DBG_PRINTEXCEPTION_C
    const EXCEPTION_RECORD &record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != kDebugText) return EXCEPTION_CONTINUE_SEARCH;
    g_sent += reinterpret_cast<const char *>(record.ExceptionInformation[1]);
    return EXCEPTION_CONTINUE_EXECUTION;
}

class Debugger {
  public:
    Debugger() : handler_(AddVectoredExceptionHandler(1, take_text)) { g_sent.clear(); }
    Debugger(const Debugger &) = delete;
    Debugger &operator=(const Debugger &) = delete;
    ~Debugger() { RemoveVectoredExceptionHandler(handler_); }

  private:
    void *handler_;
};

TEST(OnWindows, ADebuggerGetsErrors) {
    const Debugger debugger;
    kv_error("a", nullptr, "b", "f.c", 3);
    kv_error_onoff(0);
    kv_error("c", nullptr, nullptr, "f.c", 4);
    kv_message("m", nullptr, nullptr, "f.c", 5);
    kv_error_onoff(1);
    EXPECT_EQ(g_sent,
              "KV_ERROR in Unknown Application \"f.c\" line 3:\nab\n\n"
              "KV_ERROR in Unknown Application \"f.c\" line 4:\nc\n\n");
}

// The log is not held while a box waits for its user.
TEST(OnWindows, OtherThreadsReportWhileABoxIsOpen) {
    boxes_are_left_alone = true;
    std::atomic<bool> dismissed{false};
    std::thread blocked([&] {
        kv_end();  // without a beginning
        dismissed = true;
    });
    HWND box = wait_for_box(GetCurrentProcessId());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(read_box(box).caption, "MISSMATCH WITH BEGIN-END-BRACKET:\n");
    EXPECT_EQ(read_box(box).text, "  END without BEGIN!\n\n");
    kv_error("meanwhile", nullptr, nullptr, "f.c", 1);
    EXPECT_EQ(count_in_log("  meanwhile!"), 1);
    EXPECT_FALSE(dismissed);
    dismiss_box(box);
    blocked.join();
    EXPECT_TRUE(dismissed);
    boxes_are_left_alone = false;
}

TEST(OnWindows, TheSearchAsksTheRegistry) {
    fio_chdir("C:\\");
    kv_putenv("KV=");
    write_file(drive_c() / "other.ini", "");
    char out[256] = "";
    const std::string key = "Software\\kv Software AG\\kv3.ini";
    EXPECT_EQ(kv_suche_datei(nullptr, nullptr, nullptr, out), -1);
    {
        const RegistryValue value(key, "C:\\other.ini");
        EXPECT_EQ(kv_suche_datei(nullptr, nullptr, nullptr, out), 0);
        EXPECT_STREQ(out, "C:\\other.ini");
        HKEY opened = nullptr;
        ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, key.c_str(), 0, KEY_WRITE, &opened), 0);
        const DWORD number = 'C';
        EXPECT_EQ(RegSetValueExA(opened, nullptr, 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number), 4),
                  0);
        RegCloseKey(opened);
        EXPECT_EQ(kv_suche_datei(nullptr, nullptr, nullptr, out), -1);  // no text
    }
    EXPECT_EQ(kv_suche_datei(nullptr, nullptr, nullptr, out), -1);
    HKEY none = nullptr;
    EXPECT_NE(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\kv Software AG", 0, KEY_READ, &none), 0);
}

// The names in the recycle bin.
std::vector<std::string> recycled() {
    std::vector<std::string> names;
    CoInitialize(nullptr);
    LPITEMIDLIST place = nullptr;
    IShellFolder *desktop = nullptr;
    IShellFolder *bin = nullptr;
    IEnumIDList *items = nullptr;
    if (SHGetSpecialFolderLocation(nullptr, CSIDL_BITBUCKET, &place) == S_OK &&
        SHGetDesktopFolder(&desktop) == S_OK &&
        desktop->BindToObject(place, nullptr, IID_IShellFolder, reinterpret_cast<void **>(&bin)) == S_OK &&
        bin->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, &items) == S_OK) {
        LPITEMIDLIST item = nullptr;
        while (items->Next(1, &item, nullptr) == S_OK) {
            STRRET name;
            char text[MAX_PATH] = "";
            // The shell folder of files names its items by their bytes in this way alone.
            if (bin->GetDisplayNameOf(item, SHGDN_NORMAL, &name) == S_OK && name.uType == STRRET_WSTR) {
                WideCharToMultiByte(CP_ACP, 0, name.pOleStr, -1, text, sizeof text, nullptr, nullptr);
            }
            names.emplace_back(std::filesystem::path(text).filename().string());
            CoTaskMemFree(item);
        }
    }
    return names;
}

TEST(OnWindows, WhatIsRecycledCanBeRestored) {
    write_file(drive_c() / "once.txt", "x");
    std::filesystem::create_directories(drive_c() / "dir" / "sub");
    write_file(drive_c() / "group.txt", "x");
    write_file(drive_c() / "gone.txt", "x");
    EXPECT_EQ(fio_purge_ex("c:\\", "gone.txt", 0), 0);
    EXPECT_EQ(fio_purge_ex("c:\\", "once.txt", 1), 0);
    EXPECT_EQ(fio_rmdir_ex("c:\\dir", 1), 0);
    const char *const names[] = {"group.txt", nullptr};
    EXPECT_EQ(fio_group_operation("c:\\", names, nullptr, nullptr, FIO_GROUP_DELETE, 0, nullptr, nullptr),
              0);
    for (const char *name : {"once.txt", "dir", "group.txt", "gone.txt"}) {
        EXPECT_FALSE(std::filesystem::exists(drive_c() / name)) << name;
    }
    std::string all;
    for (const std::string &name : recycled()) all += name + " ";
    for (const char *name : {"once.txt", "dir", "group.txt"}) EXPECT_NE(all.find(name), all.npos) << all;
    EXPECT_EQ(all.find("gone.txt"), all.npos) << all;
    EXPECT_EQ(fio_purge_ex("c:\\", "none.txt", 1), 0);
}

TEST(OnWindows, DrivesAreThoseOfTheSystem) {
    EXPECT_EQ(fio_host_exist("c"), 1);
    EXPECT_EQ(fio_host_exist("q"), 0);
    std::filesystem::create_directory(drive_c() / "mapped");
    write_file(use_drive_m() / "x.txt", "x");
    EXPECT_EQ(fio_host_exist("m"), 1);
    EXPECT_EQ(fio_exist("m:\\", "X.TXT"), 1);
    EXPECT_EQ(fio_getdiskfree("q"), 0.0);
    ULARGE_INTEGER available;
    ASSERT_NE(GetDiskFreeSpaceExA("M:\\", &available, nullptr, nullptr), 0);
    const auto expected = static_cast<double>(available.QuadPart);
    EXPECT_NEAR(fio_getdiskfree("m"), expected, 0.1 * expected);
    EXPECT_EQ(fio_sethostname("c"), 0);
    char text[256];
    EXPECT_EQ(fio_chdir("c:\\mapped"), 0);
    char native[256];
    GetCurrentDirectoryA(sizeof native, native);
    EXPECT_STREQ(fio_getcwd(text, sizeof text), "C:\\mapped");
    EXPECT_STREQ(native + 1, text + 1);
    EXPECT_EQ(fio_chdir("z:\\"), 0);
    EXPECT_STREQ(fio_get_host_cwd("c", text, sizeof text), "C:\\mapped");
    EXPECT_EQ(fio_sethostname("c"), 0);
    EXPECT_STREQ(fio_getcwd(text, sizeof text), "C:\\mapped");
    EXPECT_EQ(fio_chdir("c:\\"), 0);
}

// Bytes in use on all heaps of the process.
std::size_t used_bytes() {
    std::size_t used = 0;
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) used += entry.cbData;
        }
        HeapUnlock(heaps[i]);
    }
    return used;
}

// The system's own threads allocate now and then; what a cycle leaves behind shows in every round.
TEST(OnWindows, UnloadingLeavesTheHeapAsItWas) {
    bool kept = false;
    for (int round = 0; round < 6 && !kept; ++round) {
        const std::size_t before = used_bytes();
        for (int i = 0; i < 100; ++i) {
            HMODULE library = LoadLibraryA(KV_TEST_LIBRARY);
            ASSERT_NE(library, nullptr);
            void *function = reinterpret_cast<void *>(GetProcAddress(library, "kv_getenv"));
            EXPECT_NE(function, nullptr);
            EXPECT_NE(FreeLibrary(library), 0);
            EXPECT_EQ(GetModuleHandleA("kv.dll"), nullptr);
        }
        kept = used_bytes() < before + 1000;
    }
    EXPECT_TRUE(kept);
}

// The share is drive M, or whatever has that name.
TEST(OnWindows, TheCurrentDirectoryOnAShare) {
    const std::string share = "\\\\localhost\\m";
    const std::filesystem::path work = use_drive_m() / "work";
    std::filesystem::create_directories(work / "sub");
    write_file(work / "x.ini", "[S]\r\na=7\r\n");
    write_file(work / "x.pro", "Typ\tName\tA\nx\tone\t1\n");
    ASSERT_EQ(fio_chdir((share + "\\work\\sub").c_str()), 0);
    ASSERT_EQ(fio_chdir(".."), 0);
    char text[256] = "#";
    EXPECT_STREQ(fio_getcwd(text, sizeof text), (share + "\\work").c_str());
    EXPECT_EQ(fio_gethostname(text, sizeof text), -1);
    EXPECT_STREQ(fio_get_host_cwd(nullptr, text, sizeof text), (share + "\\work").c_str());
    const struct {
        const char *path;
        std::string full;
    } paths[] = {
        {"x.ini", share + "\\work\\x.ini"},
        {"\\x.ini", share + "\\x.ini"},
        {"\\\\a\\b\\x.ini", "\\\\a\\b\\x.ini"},
        {"c:\\x.ini", "c:\\x.ini"},
    };
    for (const auto &[path, full] : paths) {
        EXPECT_STREQ(fio_make_fullpath(text, nullptr, nullptr, path), full.c_str());
    }
    for (const char *name : {"x.ini", "\\work\\x.ini"}) {
        EXPECT_EQ(kv_suche_datei(nullptr, nullptr, name, text), 0) << name;
        EXPECT_STREQ(text, (share + "\\work\\x.ini").c_str());
    }
    // Neither the computer nor the share is a directory to be made.
    const char *const names[] = {"x.ini", nullptr};
    EXPECT_EQ(fio_group_operation(".", names, (share + "\\new\\dir").c_str(), nullptr, FIO_GROUP_COPY, 0,
                                  nullptr, nullptr),
              0);
    EXPECT_EQ(fio_exist((share + "\\new\\dir").c_str(), "x.ini"), 1);
    MINI *cache = mini_open(nullptr, "x.ini", MINI_READONLY);
    int32_t value = 0;
    EXPECT_EQ(mini_read_long(cache, "S", "a", &value), INI_OK);
    EXPECT_EQ(value, 7);
    mini_close(&cache);
    for (const char *name : {".\\x", "..\\..\\work\\x", "\\work\\x"}) {
        PROFIL *table = profil_open(name, nullptr, nullptr);
        EXPECT_NE(table, nullptr) << name;
        if (table != nullptr) profil_close(table);
    }
    EXPECT_EQ(fio_sethostname("c"), 0);
    EXPECT_STREQ(fio_getcwd(text, sizeof text), "C:\\");
}

}  // namespace

// SPDX-License-Identifier: MIT
#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <io.h>
#include <string>
#include <thread>
#include <windows.h>

#include "platform/platform.hpp"
#include "tests/support/boxes_win32.hpp"
#include "tests/support/child_win32.hpp"
#include "tests/support/host.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

namespace {

// Puts caption and text on standard error, as on POSIX, and dismisses the box.
void answer(HWND window) {
    const Box box = read_box(window);
    for (const std::string &line : {box.caption, box.text}) {
        std::string out = line;
        if (out.empty() || out.back() != '\n') out += '\n';
        static_cast<void>(_write(2, out.data(), static_cast<unsigned>(out.size())));
    }
    dismiss_box(window);
}

struct Search {
    DWORD process;
    HWND found;
};

BOOL CALLBACK end_at_box(HWND window, LPARAM parameter) {
    Search &search = *reinterpret_cast<Search *>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    if (process != search.process || std::string(name) != "#32770" || read_box(window).text.empty())
        return TRUE;
    search.found = window;
    return FALSE;
}

std::atomic<bool> g_ended{false};
std::thread g_answers;

void answer_boxes() {
    while (!g_ended) {
        if (HWND box = find_box(GetCurrentProcessId()); box != nullptr && !boxes_are_left_alone)
            answer(box);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

}  // namespace

std::atomic<bool> boxes_are_left_alone{false};

HWND find_box(DWORD process) {
    Search search{process, nullptr};
    EnumWindows(end_at_box, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND wait_for_box(DWORD process) {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (HWND box = find_box(process); box != nullptr) return box;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return nullptr;
}

Box read_box(HWND window) {
    Box box;
    char text[2048] = "";
    GetWindowTextA(window, text, sizeof text);
    box.caption = text;
    constexpr int kTextOfABox = 0xFFFF;
    GetDlgItemTextA(window, kTextOfABox, text, sizeof text);
    box.text = text;
    return box;
}

void dismiss_box(HWND window) {
    PostMessageA(window, WM_COMMAND, IDOK, 0);
}

// The tests write to the root of drive C, as the library does, and empty drive M. Whoever starts them says
// that nobody minds.
Host::Host() {
    if (std::getenv("KV_TEST_OWNS_DRIVE_C") == nullptr) {
        std::fputs(
            "These tests write to C:\\. Start them by ctest, which gives them drives of their own.\n",
            stderr);
        return;
    }
    root_ = "C:\\";
    g_answers = std::thread(answer_boxes);
}

Host::~Host() {
    g_ended = true;
    if (g_answers.joinable()) g_answers.join();
}

unsigned long process_number() {
    return GetCurrentProcessId();
}

RegistryValue::RegistryValue(const std::string &key, const std::string &text) : key_(key) {
    HKEY opened = nullptr;
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened,
                              nullptr),
              0);
    const auto *bytes = reinterpret_cast<const BYTE *>(text.c_str());
    EXPECT_EQ(RegSetValueExA(opened, nullptr, 0, REG_SZ, bytes, static_cast<DWORD>(text.size() + 1)), 0);
    RegCloseKey(opened);
}

RegistryValue::~RegistryValue() {
    // With the keys above it that this one was made for.
    for (std::string key = key_; key.find('\\') != key.npos; key.resize(key.rfind('\\'))) {
        if (RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str()) != 0) break;
    }
}

void use_time_zone_of_berlin() {
    std::tm fields{};
    EXPECT_TRUE(kv::platform::local_time(1'000'000'000, fields));
    EXPECT_EQ(fields.tm_hour, 3) << "the time zone of this computer is not that of Berlin";
}

bool use_german_locale(const char *) {
    return std::setlocale(LC_ALL, "German") != nullptr;
}

void set_modified(const std::filesystem::path &path, std::int64_t seconds) {
    constexpr DWORD kEveryShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE entry = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, kEveryShare, nullptr, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    ULARGE_INTEGER ticks;  // of 100 ns since 1601
    ticks.QuadPart = static_cast<ULONGLONG>((seconds + 11'644'473'600) * 10'000'000);
    const FILETIME time{ticks.LowPart, ticks.HighPart};
    EXPECT_NE(SetFileTime(entry, nullptr, nullptr, &time), 0) << path;
    CloseHandle(entry);
}

std::filesystem::path use_drive_m() {
    std::filesystem::path root = "M:\\";
    std::error_code empty;  // a root without entries cannot be iterated over
    for (const auto &entry : std::filesystem::directory_iterator(root, empty))
        remove_directory(entry.path());
    return root;
}

}  // namespace kvtest

int main(int argc, char **argv) {
    int result = 0;
    return kvtest::run_child_function(argc, argv, result) ? result : kvtest::run_tests(argc, argv);
}

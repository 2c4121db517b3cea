// SPDX-License-Identifier: MIT
// What becomes of an INI file when a change is killed, or meets other processes, as Windows has them: those
// that are started here are this program again.
#include <chrono>
#include <functional>
#include <random>
#include <thread>
#include <windows.h>

#include "platform/platform.hpp"
#include "tests/config/ini_safety.hpp"
#include "tests/support/child_win32.hpp"

namespace {

using namespace kvtest;
using kv::platform::FileLock;
using kv::platform::lock_state;
using kv::platform::LockState;
using kv::platform::ReplacementFile;
namespace fs = std::filesystem;

const ChildFunction kWriteEntries("write-entries", [](const ChildFunction::Arguments &arguments) {
    return write_entries(arguments.at(0), std::stoi(arguments.at(1)), std::stoi(arguments.at(2)));
});

const ChildFunction kChangeForEver("change-for-ever", [](const ChildFunction::Arguments &arguments) {
    for (int i = 0;; ++i) ini_write_string(arguments.at(0).c_str(), "", "n", i % 2 == 0 ? "22" : "1");
    return 0;
});

const ChildFunction kLockForEver("lock-for-ever", [](const ChildFunction::Arguments &arguments) {
    FileLock lock;
    lock.acquire(arguments.at(0).c_str());
    Sleep(INFINITE);
    return 0;
});

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE open_file(const std::string &path, DWORD access, DWORD sharing) {
    return CreateFileA(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
}

TEST_F(IniSafety, ProcessesThatChangeOneFileLoseNothing) {
    constexpr int kProcesses = 3;
    constexpr int kChanges = 20;
    const std::string link = (directory / "link.ini").string();
    for (const bool linked : {false, true}) {  // the file is not there at first
        if (linked) fs::create_hard_link(file, link);
        std::vector<std::unique_ptr<Child>> children;
        for (int who = 0; who < kProcesses; ++who) {
            children.push_back(std::make_unique<Child>(
                "write-entries", ChildFunction::Arguments{linked && who % 2 == 0 ? link : file,
                                                          std::to_string(who + (linked ? kProcesses : 0)),
                                                          std::to_string(kChanges)}));
        }
        for (const auto &child : children) EXPECT_EQ(child->wait(), 0);
        const std::string text = content() + "\r\n";
        for (int who = 0; who < (linked ? 2 : 1) * kProcesses; ++who) {
            EXPECT_EQ(missing_entries(text, who, kChanges), 0) << who;
        }
        EXPECT_EQ(files(), linked ? 2 : 1);
    }
}

TEST_F(IniSafety, AKilledChangeLeavesOldOrNew) {
    std::string filler;
    for (int i = 0; i < 1500; ++i) filler += "key" + std::to_string(i) + "=some value\r\n";
    const std::string versions[] = {"n=1\r\n" + filler, "n=22\r\n" + filler};
    std::mt19937 random(20250101);
    write_file(file, versions[0]);
    int changed = 0;
    std::string before = versions[0];
    for (int run = 0; run < 30; ++run) {
        const Child child("change-for-ever", {file});
        std::this_thread::sleep_for(std::chrono::milliseconds(200 + random() % 200));
        child.kill();
        const std::string now = content();
        ASSERT_TRUE(now == versions[0] || now == versions[1]) << "run " << run << ": " << now.size();
        changed += now != before ? 1 : 0;
        before = now;
    }
    EXPECT_GT(changed, 2);  // the children did get to their work
    // Their locks ended with them. What a power failure would have left is removed, unless it is in use.
    const std::string left = (directory / ".kv-a90c37a7fa9e8341-1.tmp").string();
    write_file(left, "half");
    HANDLE user = open_file(left, GENERIC_READ, 0);
    EXPECT_EQ(ini_write_string(file.c_str(), "", "n", "1"), INI_OK);
    EXPECT_EQ(files(), 2);
    CloseHandle(user);
    EXPECT_EQ(ini_write_string(file.c_str(), "", "n", "1"), INI_OK);
    EXPECT_EQ(files(), 1);
}

// A process that has the file open: it goes on reading what it has opened, or it cannot be replaced and the
// change is made in place.
TEST_F(IniSafety, AFileThatIsBeingReadIsChanged) {
    kv_putenv("KV_LOCK_TIMEOUT=0.05");
    constexpr DWORD kWithoutReplacing = FILE_SHARE_READ | FILE_SHARE_WRITE;
    for (const DWORD sharing : {kWithoutReplacing, kShareAll}) {
        for (std::size_t i = 0; i < changes().size(); ++i) {
            SCOPED_TRACE(testing::Message() << "change " << i << ", sharing " << sharing);
            reset(kBefore);
            EXPECT_EQ(changes()[i](file.c_str()), INI_OK);
            const std::string after = content();
            reset(kBefore);
            HANDLE reader = open_file(file, GENERIC_READ, sharing);
            ASSERT_NE(reader, INVALID_HANDLE_VALUE);
            EXPECT_EQ(changes()[i](file.c_str()), INI_OK);
            EXPECT_EQ(content(), after);
            CloseHandle(reader);
            EXPECT_EQ(files(), 1);
        }
    }
    // Who shares nothing is left alone.
    reset(kBefore);
    HANDLE owner = open_file(file, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
    EXPECT_EQ(content(), kBefore);
    CloseHandle(owner);
    kv_putenv("KV_LOCK_TIMEOUT=");
}

TEST_F(IniSafety, WaitingForOthersEnds) {
    kv_putenv("KV_LOCK_TIMEOUT=0.05");
    reset(kBefore);
    char holder[64] = "";
    const Child child("lock-for-ever", {file});
    while (*holder == '\0') lock_state(file.c_str(), holder, sizeof holder);  // it starts
    EXPECT_NE(std::string(holder).find("(process " + std::to_string(child.process_id()) + ")"),
              std::string::npos)
        << holder;
    EXPECT_EQ(lock_state(file.c_str(), holder, sizeof holder), LockState::held);
    for (std::size_t i = 0; i < changes().size(); ++i) {
        EXPECT_EQ(changes()[i](file.c_str()), tells_of_saving(i) ? INI_NOT_WRITABLE : INI_FAILED) << i;
    }
    EXPECT_EQ(content(), kBefore);
    child.kill();
    EXPECT_EQ(lock_state(file.c_str(), holder, sizeof holder), LockState::free);
    // Readers are waited for by who writes in place.
    fs::create_hard_link(file, directory / "link.ini");
    {
        kv::platform::InputFile reader;
        ASSERT_TRUE(reader.open(file.c_str(), kv::platform::InputFile::Content::consistent));
        EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
        EXPECT_EQ(lock_state(file.c_str(), holder, sizeof holder), LockState::held);
    }
    EXPECT_EQ(content(), kBefore);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
    kv_putenv("KV_LOCK_TIMEOUT=");
}

// Somebody who does not know the lock changes the file between its reading and its saving.
TEST_F(IniSafety, AChangeWithoutTheLockIsNoticed) {
    const std::function<void()> meanwhiles[] = {
        [&] { write_file(file, "x=1"); },
        [&] { fs::remove(file); },
        [&] { fs::rename(directory / "other.ini", file); },
    };
    for (int i = 0; i < 18; ++i) {
        SCOPED_TRACE(i);
        const int links = i / 6;  // 0: there is no file yet
        const bool locked = i % 2 == 0;
        reset(kBefore);
        write_file(directory / "other.ini", "x=1");
        if (links == 0) fs::remove(file);
        if (links == 2) fs::create_hard_link(file, directory / "link.ini");
        const std::string before = content();
        FileLock lock;
        ReplacementFile replacement;
        ASSERT_TRUE(lock.acquire(file.c_str()));
        ASSERT_TRUE(replacement.open(file.c_str(), locked ? &lock : nullptr) &&
                    replacement.write("new", 3));
        meanwhiles[i / 2 % 3]();
        const std::string changed = content();
        const bool overtaken = locked && changed != before;
        EXPECT_EQ(replacement.commit(), !overtaken);
        EXPECT_EQ(replacement.overtaken(), overtaken);
        EXPECT_EQ(content(), overtaken ? changed : "new");
    }
}

std::string rights(const std::string &path) {
    DWORD size = 0;
    char descriptor[4096];
    return GetFileSecurityA(
               path.c_str(),
               OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
               descriptor, sizeof descriptor, &size) != 0
               ? std::string(descriptor, size)
               : "error " + std::to_string(GetLastError());
}

TEST_F(IniSafety, RightsAndAttributesStay) {
    std::string seen;
    for (const bool open_to_all : {false, true}) {
        reset(kBefore);
        SECURITY_DESCRIPTOR everybody;
        InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
        if (open_to_all) SetFileSecurityA(file.c_str(), DACL_SECURITY_INFORMATION, &everybody);
        SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_HIDDEN);
        const std::string before = rights(file);
        EXPECT_NE(before, seen);
        seen = before;
        ReplacementFile replacement;
        ASSERT_TRUE(replacement.open(file.c_str()));
        EXPECT_EQ(files(), 2);
        const std::string temporary = (directory / ".kv-a90c37a7fa9e8341-0.tmp").string();
        EXPECT_EQ(open_file(temporary, GENERIC_READ, kShareAll), INVALID_HANDLE_VALUE);
        ASSERT_TRUE(replacement.write("new", 3) && replacement.commit());
        EXPECT_EQ(content(), "new");
        EXPECT_EQ(rights(file), before);
        EXPECT_NE(GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_HIDDEN, DWORD{0});
        EXPECT_EQ(files(), 1);
    }
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace

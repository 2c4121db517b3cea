// What becomes of an INI file when a change is killed, or meets other processes, as Windows has them: those
// that are started here are this program again.
#include <chrono>
#include <random>
#include <thread>
#include <windows.h>

#include "tests/config/ini_safety.hpp"
#include "tests/support/child_win32.hpp"

namespace {

using namespace kvtest;

const ChildFunction kWriteEntries("write-entries", [](const ChildFunction::Arguments &arguments) {
    return write_entries(arguments.at(0), std::stoi(arguments.at(1)), std::stoi(arguments.at(2)));
});

const ChildFunction kChangeForEver("change-for-ever", [](const ChildFunction::Arguments &arguments) {
    for (int i = 0;; ++i) ini_write_string(arguments.at(0).c_str(), "", "n", i % 2 == 0 ? "22" : "1");
    return 0;
});

TEST_F(IniSafety, ProcessesThatChangeOneFileLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kChanges = 50;
    {
        std::vector<std::unique_ptr<Child>> children;
        for (int who = 0; who < kProcesses; ++who) {  // the file is not there at first
            children.push_back(std::make_unique<Child>(
                "write-entries",
                ChildFunction::Arguments{file, std::to_string(who), std::to_string(kChanges)}));
        }
        for (const auto &child : children) EXPECT_EQ(child->wait(), 0);
    }
    const std::string text = content() + "\r\n";
    for (int who = 0; who < kProcesses; ++who) EXPECT_EQ(missing_entries(text, who, kChanges), 0) << who;
    EXPECT_EQ(files(), 1);
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
    // The turns ended with them.
    EXPECT_EQ(ini_write_string(file.c_str(), "", "n", "1"), INI_OK);
}

// A process that has the file open: it goes on reading what it has opened, or it cannot be replaced and the
// change is made in place.
TEST_F(IniSafety, AFileThatIsBeingReadIsChanged) {
    constexpr DWORD kWithoutReplacing = FILE_SHARE_READ | FILE_SHARE_WRITE;
    for (const DWORD sharing : {kWithoutReplacing, kWithoutReplacing | FILE_SHARE_DELETE}) {
        for (std::size_t i = 0; i < changes().size(); ++i) {
            SCOPED_TRACE(testing::Message() << "change " << i << ", sharing " << sharing);
            reset(kBefore);
            EXPECT_EQ(changes()[i](file.c_str()), INI_OK);
            const std::string after = content();
            reset(kBefore);
            HANDLE reader =
                CreateFileA(file.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
            ASSERT_NE(reader, INVALID_HANDLE_VALUE);
            EXPECT_EQ(changes()[i](file.c_str()), INI_OK);
            EXPECT_EQ(content(), after);
            CloseHandle(reader);
            EXPECT_EQ(files(), 1);
        }
    }
    // Who shares nothing is left alone.
    reset(kBefore);
    HANDLE owner =
        CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
    EXPECT_EQ(content(), kBefore);
    CloseHandle(owner);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
    EXPECT_EQ(GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_HIDDEN, DWORD{FILE_ATTRIBUTE_HIDDEN});
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace

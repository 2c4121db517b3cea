// What becomes of an INI file when a change is killed, has no rights, or meets another process. On POSIX
// alone: the tests fork, lower the limits of a process, and set rights that Windows does not have.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <functional>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "tests/config/ini_safety.hpp"
#include "tests/support/size_limit_posix.hpp"

namespace {

using namespace kvtest;
namespace fs = std::filesystem;

// Runs the function in a process of its own and gives its result.
int in_child(const std::function<int()> &function) {
    const pid_t child = fork();
    if (child == 0) _exit(function() + 100);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) - 100 : -1000;
}

// The same without the rights of root.
int as_nobody(const std::function<int()> &function) {
    return in_child([&] {
        if (geteuid() == 0 && setuid(65534) != 0) return -50;
        return function();
    });
}

TEST_F(IniSafety, FilesWithoutRights) {
    fs::permissions(directory, fs::perms{0755});
    for (std::size_t i = 0; i < changes().size(); ++i) {
        SCOPED_TRACE(i);
        reset(kBefore);
        fs::permissions(file, fs::perms{0444});
        EXPECT_EQ(as_nobody([&] { return changes()[i](file.c_str()); }),
                  tells_of_saving(i) ? INI_NOT_WRITABLE : INI_OK);
        EXPECT_EQ(content(), kBefore);
        fs::permissions(file, fs::perms{0222});  // it must not be taken for an empty file
        EXPECT_EQ(as_nobody([&] { return changes()[i](file.c_str()); }), INI_FAILED);
        EXPECT_EQ(content(), kBefore);
        EXPECT_EQ(files(), 1);
    }
    // No right to the directory: a file that is there is written in place, a new one is not made.
    reset(kBefore);
    fs::permissions(file, fs::perms{0666});
    EXPECT_EQ(as_nobody([&] { return ini_write_string(file.c_str(), "S", "a", "9"); }), INI_OK);
    EXPECT_EQ(content(), "[S]\r\na=9\r\n;c\r\n[T]\r\nb=2\r\n");
    const std::string other = (directory / "new.ini").string();
    EXPECT_EQ(as_nobody([&] { return ini_write_string(other.c_str(), "S", "a", "9"); }), INI_NOT_WRITABLE);
    EXPECT_EQ(files(), 1);
}

TEST_F(IniSafety, PermissionsAndLinksStay) {
    reset(kBefore);
    fs::permissions(file, fs::perms{0640});
    const std::string link = (directory / "link.ini").string();
    fs::create_symlink("test.ini", link);
    EXPECT_EQ(ini_write_string(link.c_str(), "S", "a", "9"), INI_OK);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0640});
    fs::remove(link);
    fs::create_hard_link(file, link);
    EXPECT_EQ(ini_delete_section(file.c_str(), "S"), INI_OK);
    EXPECT_EQ(read_file(link), "[T]\r\nb=2\r\n");
    EXPECT_EQ(files(), 2);
}

// Of several links the file is written in place.
TEST_F(IniSafety, InPlaceEveryFailureLeavesOldOrNew) {
    const auto reset_links = [this] {
        reset(kBefore);
        fs::create_hard_link(file, directory / "link.ini");
    };
    for (std::size_t i = 0; i < changes().size(); ++i) {
        reset_links();
        ASSERT_EQ(changes()[i](file.c_str()), INI_OK);
        const std::string after = content();
        for (std::int64_t call = 0;; ++call) {
            SCOPED_TRACE(testing::Message() << "change " << i << ", call " << call);
            reset_links();
            kv::platform::plan_io_failure(call, false);
            const int32_t status = changes()[i](file.c_str());
            const bool failed = kv::platform::calls_until_failure < 0;
            kv::platform::plan_io_failure(-1, false);
            const std::string now = content();
            EXPECT_TRUE(now == kBefore || now == after) << now;
            EXPECT_TRUE(status != INI_OK || now == after || !tells_of_saving(i)) << status;
            EXPECT_EQ(read_file(directory / "link.ini"), now);
            EXPECT_EQ(files(), 2);
            if (!failed) break;
            ASSERT_LT(call, 100);
        }
        sweep_allocation_failures([&](std::int64_t successes) {
            SCOPED_TRACE(testing::Message() << "change " << i << ", " << successes << " succeed");
            write_file(file, kBefore);
            const int32_t status = changes()[i](file.c_str());
            EXPECT_EQ(content(), status == INI_OK ? after : kBefore);
            EXPECT_EQ(files(), 2);
        });
    }
}

TEST_F(IniSafety, AFullDisk) {
    // Of several links the file is written in place.
    for (const bool linked : {false, true}) {
        for (std::size_t i = 0; i < changes().size(); ++i) {
            SCOPED_TRACE(testing::Message() << i << (linked ? ", in place" : ""));
            const std::string before = kBefore + std::string(100000, ';') + "\r\n";
            reset(before);
            if (linked) fs::create_hard_link(file, directory / "link.ini");
            const int status = in_child([&] {
                const SizeLimit limit(50000);
                return changes()[i](file.c_str());
            });
            const bool kept = content() == before;
            if (tells_of_saving(i)) {
                EXPECT_EQ(status, kept ? INI_WRITE_FAILED : INI_OK);
            }
            EXPECT_TRUE(kept || content().size() < 1000);  // a small content fits
            EXPECT_EQ(files(), linked ? 2 : 1);
        }
    }
}

// Gives the entry "n" of the file the value.
using SetNumber = std::function<void(const char *path, const char *value)>;

// Kills processes that change the file, at random moments; the number of those that got to a change.
void kill_changes(const std::string &file, int kills, const SetNumber &set, int &changed) {
    std::string filler;
    for (int i = 0; i < 1500; ++i) filler += "key" + std::to_string(i) + "=some value\r\n";
    const std::string versions[] = {"n=1\r\n" + filler, "n=22\r\n" + filler};
    std::mt19937 random(20250101);
    changed = 0;
    write_file(file, versions[0]);
    std::string before = versions[0];
    int latest = 500;  // microseconds until the kill; as many as changes take here
    for (int run = 0; run < kills; ++run) {
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            // The first change is slow, as a new process is.
            set(file.c_str(), before == versions[0] ? "1" : "22");
            static_cast<void>(!write(ready[1], "r", 1));
            for (int i = before == versions[0] ? 0 : 1;; ++i) set(file.c_str(), i % 2 == 0 ? "22" : "1");
        }
        char byte = 0;
        ASSERT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % static_cast<unsigned>(latest)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        std::string now = read_file(file);
        if (now.find("\r\n", now.size() - 2) == now.npos) now += "\r\n";  // a cache ends without
        ASSERT_TRUE(now == versions[0] || now == versions[1]) << "run " << run << ": " << now.size();
        // Seldom changed: the changes are slower.
        if (now != before) {
            ++changed;
            latest = std::max(latest - latest / 16, 100);
        } else {
            latest = std::min(latest + latest / 16, 100'000);
        }
        before = now;
    }
}

TEST_F(IniSafety, AKilledChangeLeavesOldOrNew) {
    int changed = 0;
    kill_changes(
        file, 1000, [](const char *path, const char *value) { ini_write_string(path, "", "n", value); },
        changed);
    EXPECT_GT(changed, 50);  // the children did get to their work
    // Their locks ended with them.
    EXPECT_EQ(ini_write_string(file.c_str(), "", "n", "1"), INI_OK);
}

TEST_F(IniSafety, AKilledUpdateOfACacheLeavesOldOrNew) {
    int changed = 0;
    kill_changes(
        file, 200,
        [](const char *path, const char *value) {
            MINI *cache = mini_open(nullptr, path, 0);
            mini_write_string(cache, "", "n", value);
            mini_close(&cache);
        },
        changed);
    EXPECT_GT(changed, 10);
    EXPECT_EQ(ini_write_string(file.c_str(), "", "n", "1"), INI_OK);
}

TEST_F(IniSafety, ProcessesThatChangeOneFileLoseNothing) {
    constexpr int kProcesses = 8;
    constexpr int kChanges = 500;
    std::vector<pid_t> children;
    for (int who = 0; who < kProcesses; ++who) {  // the file is not there at first
        children.push_back(fork());
        if (children.back() == 0) _exit(write_entries(file, who, kChanges) != 0);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const std::string text = content() + "\r\n";
    for (int who = 0; who < kProcesses; ++who) EXPECT_EQ(missing_entries(text, who, kChanges), 0) << who;
    EXPECT_EQ(files(), 1);
}

// While a change waits for the lock, `meanwhile` happens to the file.
TEST_F(IniSafety, AFileThatVanishesOrIsReplacedBeforeItsLockCame) {
    const std::function<void()> meanwhiles[] = {
        [&] { fs::remove(file); },
        [&] {
            write_file(directory / "other.ini", "x=1\r\n");
            fs::rename(directory / "other.ini", file);
        },
    };
    const char *const expected[] = {"[S]\r\na=9", "x=1\r\n\r\n[S]\r\na=9"};
    for (std::size_t i = 0; i < 2; ++i) {
        reset(kBefore);
        pid_t child = -1;
        {
            kv::platform::FileLock lock;
            ASSERT_TRUE(lock.acquire(file.c_str()));
            child = fork();
            if (child == 0) _exit(ini_write_string(file.c_str(), "S", "a", "9"));
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            EXPECT_EQ(content(), kBefore);  // it waits
            meanwhiles[i]();
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(content(), expected[i]);
    }
}

}  // namespace

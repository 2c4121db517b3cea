// SPDX-License-Identifier: MIT
// What becomes of an INI file when a change is killed, has no rights, or meets another process. On POSIX
// alone: the tests fork, lower the limits of a process, and set rights that Windows does not have.
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

#include "platform/failpoint.hpp"
#include "platform/platform.hpp"
#include "tests/config/ini_safety.hpp"
#include "tests/support/other_user_posix.hpp"
#include "tests/support/size_limit_posix.hpp"

namespace {

using namespace kvtest;
namespace fs = std::filesystem;

TEST_F(IniSafety, FilesWithoutRights) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
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
    in_place = true;
    fail_every_call();
    fail_every_allocation();
}

TEST_F(IniSafety, AFullDisk) {
    for (in_place = false;; in_place = true) {
        for (std::size_t i = 0; i < changes().size(); ++i) {
            SCOPED_TRACE(testing::Message() << i << (in_place ? ", in place" : ""));
            const std::string before = kBefore + std::string(100000, ';') + "\r\n";
            reset(before);
            const int status = in_child([&] {
                const SizeLimit limit(50000);
                return changes()[i](file.c_str());
            });
            const bool kept = content() == before;
            if (tells_of_saving(i)) {
                EXPECT_EQ(status, kept ? INI_WRITE_FAILED : INI_OK);
            }
            EXPECT_TRUE(kept || content().size() < 1000);  // a small content fits
            EXPECT_EQ(files(), in_place ? 2 : 1);
        }
        if (in_place) break;
    }
}

// An access list as the kernel keeps it: the owner, a user of his own, the group, the mask, others.
std::string access_list() {
    std::string list(4, '\0');
    list[0] = 2;  // the version
    const std::uint32_t kNoId = UINT32_MAX;
    const struct {
        std::uint16_t tag, rights;
        std::uint32_t id;
    } entries[] = {{1, 6, kNoId}, {2, 4, 12345}, {4, 0, kNoId}, {16, 4, kNoId}, {32, 0, kNoId}};
    for (const auto &entry : entries) list.append(reinterpret_cast<const char *>(&entry), sizeof entry);
    return list;
}

std::string attribute(const std::string &path, const char *name) {
    char value[256];
    const ssize_t size = getxattr(path.c_str(), name, value, sizeof value);
    return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
}

TEST_F(IniSafety, AccessStaysWhatItWas) {
    constexpr char kAccess[] = "system.posix_acl_access";
    const std::string list = access_list();
    // By its directory's default, a new file would get a list; the old one has none.
    if (setxattr(directory.c_str(), "system.posix_acl_default", list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "no access lists here";
    }
    reset(kBefore);
    removexattr(file.c_str(), kAccess);
    fs::permissions(file, fs::perms{0640});
    const bool attributes = setxattr(file.c_str(), "user.note", "mine", 4, 0) == 0;
    for (const std::string &expected : {std::string("none"), list}) {
        if (expected == list) {
            ASSERT_EQ(setxattr(file.c_str(), kAccess, list.data(), list.size(), 0), 0);
        }
        const fs::perms permissions = fs::status(file).permissions();
        ASSERT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
        EXPECT_EQ(attribute(file, kAccess), expected);
        EXPECT_EQ(attribute(file, "user.note"), attributes ? "mine" : "none");
        EXPECT_EQ(fs::status(file).permissions(), permissions);
    }
    // Somebody else's file is his afterwards, whether he or root has changed it.
    if (geteuid() != 0) return;
    ASSERT_EQ(chown(file.c_str(), 4711, 4712), 0);
    ASSERT_EQ(ini_write_string(file.c_str(), "S", "a", "10"), INI_OK);
    fs::permissions(file, fs::perms{0666});
    fs::permissions(directory, fs::perms{0777});
    EXPECT_EQ(as_nobody([&] { return ini_write_string(file.c_str(), "S", "b", "11"); }), INI_OK);
    struct stat status {};
    stat(file.c_str(), &status);
    EXPECT_EQ(status.st_uid, 4711U);
    EXPECT_EQ(status.st_gid, 4712U);
    EXPECT_EQ(content(), "[S]\r\na=10\r\n;c\r\nb=11\r\n\r\n[T]\r\nb=2\r\n");
}

// Whoever may read a file can lock it; waiting for that ends.
TEST_F(IniSafety, LocksOfOthers) {
    reset(kBefore);
    setenv("KV_LOCK_TIMEOUT", "0.05", 1);
    const int reader = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    char holder[64];
    EXPECT_EQ(kv::platform::lock_state(file.c_str(), holder, sizeof holder), kv::platform::LockState::free);
    ASSERT_EQ(flock(reader, LOCK_EX), 0);  // is no lock of ours
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "1"), INI_OK);
    struct flock all {};
    all.l_type = F_RDLCK;
    const int again = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(fcntl(again, F_OFD_SETLK, &all), 0);
    const std::string before = content();
    for (std::size_t i = 0; i < changes().size(); ++i) {
        EXPECT_EQ(changes()[i](file.c_str()), tells_of_saving(i) ? INI_NOT_WRITABLE : INI_FAILED) << i;
    }
    MINI *cache = mini_open(nullptr, file.c_str(), MINI_LOADALL);  // reading goes on
    int32_t number = 0;
    EXPECT_EQ(mini_read_long(cache, "T", "b", &number), INI_OK);
    mini_write_string(cache, "T", "b", "3");
    EXPECT_EQ(mini_update_file(cache), 0);
    EXPECT_EQ(content(), before);
    // It is this process that waits.
    EXPECT_EQ(kv::platform::lock_state(file.c_str(), holder, sizeof holder), kv::platform::LockState::free);
    close(again);
    EXPECT_EQ(mini_update_file(cache), 1);
    mini_close(&cache);
    // A reader, once there is one, is waited for only by who writes in place.
    fs::create_hard_link(file, directory / "link.ini");
    kv::platform::InputFile input;
    ASSERT_TRUE(input.open(file.c_str(), kv::platform::InputFile::Content::consistent));
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_NOT_WRITABLE);
    EXPECT_EQ(ini_delete_entry(file.c_str(), "S", "a"), INI_FAILED);
    fs::remove(directory / "link.ini");
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
    close(reader);
    unsetenv("KV_LOCK_TIMEOUT");
}

// Two caches that create one section: each keeps what the other has put into the file.
TEST_F(IniSafety, SectionsThatOthersCreatedMeanwhile) {
    reset(kBefore);
    MINI *caches[2];
    for (int i = 0; i < 2; ++i) {
        caches[i] = mini_open(nullptr, file.c_str(), 0);
        mini_write_string(caches[i], "new", "both", i == 0 ? "first" : "second");
        mini_write_string(caches[i], "new", i == 0 ? "one" : "two", "1");
    }
    for (MINI *&cache : caches) EXPECT_EQ(mini_close(&cache), 1);
    EXPECT_EQ(content(),
              "[S]\r\na=1\r\n;c\r\n\r\n[T]\r\nb=2\r\n\r\n[new]\r\nboth=second\r\none=1\r\ntwo=1");
}

// What a killed process has left, with the name that the next save looks at.
TEST_F(IniSafety, AbandonedTemporariesAreRemoved) {
    reset(kBefore);
    const std::string name = (directory / ".kv-a90c37a7fa9e8341-1.tmp").string();
    write_file(name, "half");
    const int holder = open(name.c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(holder, F_OFD_SETLK, &lock), 0);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
    EXPECT_EQ(files(), 2);
    close(holder);
    EXPECT_EQ(ini_write_string(file.c_str(), "S", "a", "9"), INI_OK);
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

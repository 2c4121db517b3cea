// SPDX-License-Identifier: MIT
// Drives that are directories of the host, its current directory, and what its rights allow: what Windows
// does not have.
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "kv/fio.h"

#include "tests/fio/hosts.hpp"
#include "tests/support/other_user_posix.hpp"
#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;
using namespace kvtest;

std::string with_backslashes(std::string path) {
    for (char &c : path) c = c == '/' ? '\\' : c;
    return path;
}

TEST(HostsOnPosix, TheNativeDriveIsCurrentAtTheStart) {
    const fs::path start = fs::current_path();
    fs::create_directories(kvtest::drive_c() / "Work");
    kvtest::write_file(kvtest::drive_c() / "Work/file.txt", "x");
    fs::current_path(kvtest::drive_c());
    const std::string here = "Z:" + with_backslashes(kvtest::drive_c().string());
    EXPECT_EQ(host(), "Z:");
    EXPECT_EQ(cwd(), here);
    EXPECT_EQ(full("x.ini"), here + "\\x.ini");
    EXPECT_EQ(full("/etc/x.ini"), "Z:\\etc\\x.ini");
    EXPECT_EQ(fio_chdir("Work"), 0);
    EXPECT_EQ(fs::current_path(), kvtest::drive_c() / "Work");
    EXPECT_EQ(fio_exist("", "FILE.TXT"), 1);
    EXPECT_EQ(fio_chdir("c:\\work"), 0);  // also makes the drive current
    EXPECT_EQ(cwd(), "C:\\Work");         // with its own case
    EXPECT_EQ(fs::current_path(), kvtest::drive_c() / "Work");
    EXPECT_EQ(fio_sethostname("z"), 0);
    fs::current_path(start);
}

TEST(HostsOnPosix, ADriveThatVanishes) {
    const fs::path root = kvtest::use_drive_m();
    EXPECT_EQ(fio_sethostname("m"), 0);
    fs::remove_all(root);
    EXPECT_EQ(fio_host_exist("M"), 0);
    EXPECT_EQ(fio_sethostname("z"), 0);
}

// Windows makes none that are deeper.
TEST(HostsOnPosix, DeepDirectoriesAreKeptUpTo255Characters) {
    const std::string part(100, 'd');
    fs::create_directories(kvtest::drive_c() / "Work" / part / part / part);
    EXPECT_EQ(fio_chdir("c:\\Work"), 0);
    EXPECT_EQ(fio_chdir(part.c_str()), 0);
    EXPECT_EQ(fio_chdir(part.c_str()), 0);
    EXPECT_EQ(fio_chdir(part.c_str()), -1);
    EXPECT_EQ(cwd(), "C:\\Work\\" + part + '\\' + part);
}

TEST(Access, IsWhatTheRightsAllow) {
    if (!kvtest::has_other_user()) GTEST_SKIP() << kvtest::kNoOtherUser;
    fs::create_directories(kvtest::drive_c() / "Work");
    kvtest::write_file(kvtest::drive_c() / "Work/file.txt", "x");
    const fs::path file = kvtest::drive_c() / "Work/file.txt";
    fs::permissions(kvtest::drive_c(), fs::perms{0755});
    // Root would be let through everywhere.
    ASSERT_TRUE(geteuid() != 0 || chown(file.c_str(), kvtest::kNobody, kvtest::kNobody) == 0);
    const int wrong_answers = kvtest::as_nobody([&] {
        int wrong = 0;
        const struct {
            int permissions;
            int32_t allowed[4];  // modes 0, 2, 4, 6
        } cases[] = {{0644, {1, 1, 1, 1}}, {0444, {1, 0, 1, 0}}, {0200, {1, 1, 0, 0}}, {0, {1, 0, 0, 0}}};
        for (const auto &row : cases) {
            fs::permissions(file, static_cast<fs::perms>(row.permissions));
            for (int mode = 0; mode < 4; ++mode) {
                wrong += fio_access("c:\\work", "FILE.TXT", mode * 2) != row.allowed[mode];
            }
        }
        return wrong;
    });
    EXPECT_EQ(wrong_answers, 0);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Environment files and the rights, the links and the limits of the system. On POSIX alone: the tests fork,
// and set what Windows does not have.
#include <sys/wait.h>
#include <unistd.h>

#include "tests/env/trees.hpp"
#include "tests/support/other_user_posix.hpp"
#include "tests/support/size_limit_posix.hpp"

namespace {

using namespace kvtest;
namespace fs = std::filesystem;

fs::path host(const char *name) {
    return drive_c() / name;
}

class FilesOnPosix : public testing::Test {
  protected:
    void TearDown() override { empty_drive_c(); }
};

// Runs `work` in a child process without the rights of root; the child tells with its exit code how many
// expectations failed.
template <class Work>
void in_child(Work work) {
    clear_log();
    fs::permissions(drive_c(), fs::perms::all);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && (setegid(kNobody) != 0 || seteuid(kNobody) != 0)) _exit(100);
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(FilesOnPosix, KeepLinksAndPermissions) {
    const Env env = tree("[s]\n");
    fs::create_directory(host("real"));
    write_file(host("real") / "t.env", "[old]\r\n");
    fs::permissions(host("real") / "t.env", static_cast<fs::perms>(0640));
    fs::create_symlink("real/t.env", host("link.env"));
    env_write_file("c:\\link.env", env.get());
    EXPECT_TRUE(fs::is_symlink(host("link.env")));
    EXPECT_EQ(read_file(host("real") / "t.env"), "[s]\r\n");
    EXPECT_EQ(fs::status(host("real") / "t.env").permissions(), static_cast<fs::perms>(0640));
    // A link to nothing stays one and gets its target; a second name stays the same file.
    fs::create_symlink("real/new.env", host("dangling.env"));
    env_write_file("c:\\dangling.env", env.get());
    EXPECT_TRUE(fs::is_symlink(host("dangling.env")));
    EXPECT_EQ(read_file(host("real") / "new.env"), "[s]\r\n");
    write_file(host("one.env"), "[old, and longer than the new content]\r\n");
    fs::create_hard_link(host("one.env"), host("two.env"));
    env_write_file("c:\\two.env", env.get());
    EXPECT_EQ(read_file(host("one.env")), "[s]\r\n");
    write_file(host("plain.env"), "[old]\r\n");
    fs::permissions(host("plain.env"), static_cast<fs::perms>(0604));
    env_write_file("c:\\plain.env", env.get());
    EXPECT_EQ(read_file(host("plain.env")), "[s]\r\n");
    EXPECT_EQ(fs::status(host("plain.env")).permissions(), static_cast<fs::perms>(0604));
}

TEST_F(FilesOnPosix, OldFileStaysWhenTheDiskIsFull) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    const Env big = tree("[s]\n  v =" + std::string(100'000, 'x') + "\n");
    write_file(host("kept.env"), "[old]\r\n");
    fs::permissions(host("kept.env"), static_cast<fs::perms>(0666));
    in_child([&] {
        const SizeLimit limit(20'000);
        env_write_file("c:\\kept.env", big.get());
        EXPECT_GE(count_in_log(">ERROR"), 1);
    });
    EXPECT_EQ(read_file(host("kept.env")), "[old]\r\n");
    EXPECT_LE(entries_of_drive_c().size(), 2U);  // with the log
}

TEST_F(FilesOnPosix, ThatMayNotBeReadOrWritten) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    const Env env = tree("[s]\n  a =1\n");
    write_file(host("secret.env"), "[t]\n");
    fs::permissions(host("secret.env"), fs::perms::none);
    in_child([&] {
        EXPECT_EQ(env_read_file("c:\\secret.env", env.get()), ENV_ERROR);
        EXPECT_EQ(count_in_log("cann't open to read:"), 1);
        EXPECT_EQ(dump(env.get()), "[s] a=1");
    });
    write_file(host("fixed.env"), "[old]\r\n");
    fs::permissions(host("fixed.env"), fs::perms::owner_read | fs::perms::others_read);
    in_child([&] {
        env_write_file("c:\\fixed.env", env.get());
        EXPECT_EQ(count_in_log("cann't open to write:"), 1) << read_log();
    });
    EXPECT_EQ(read_file(host("fixed.env")), "[old]\r\n");
}

}  // namespace

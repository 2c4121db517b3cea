// SPDX-License-Identifier: MIT
// Environment files and the rights and links of the system. On POSIX alone: the tests fork, and set what
// Windows does not have.
#include "tests/env/trees.hpp"
#include "tests/support/other_user_posix.hpp"

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

// Runs `work` without the rights of root.
template <class Work>
void run_as_nobody(Work work) {
    clear_log();
    fs::permissions(drive_c(), fs::perms::all);
    EXPECT_EQ(as_nobody([&] {
                  work();
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
}

// Other links and permissions stay as those of INI files do.
TEST_F(FilesOnPosix, ALinkToNothingGetsItsTarget) {
    const Env env = tree("[s]\n");
    fs::create_directory(host("real"));
    fs::create_symlink("real/new.env", host("dangling.env"));
    env_write_file("c:\\dangling.env", env.get());
    EXPECT_TRUE(fs::is_symlink(host("dangling.env")));
    EXPECT_EQ(read_file(host("real") / "new.env"), "[s]\r\n");
}

TEST_F(FilesOnPosix, ThatMayNotBeReadOrWritten) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    const Env env = tree("[s]\n  a =1\n");
    write_file(host("secret.env"), "[t]\n");
    fs::permissions(host("secret.env"), fs::perms::none);
    run_as_nobody([&] {
        EXPECT_EQ(env_read_file("c:\\secret.env", env.get()), ENV_ERROR);
        EXPECT_EQ(count_in_log("cann't open to read:"), 1);
        EXPECT_EQ(dump(env.get()), "[s] a=1");
    });
    write_file(host("fixed.env"), "[old]\r\n");
    fs::permissions(host("fixed.env"), fs::perms::owner_read | fs::perms::others_read);
    run_as_nobody([&] {
        env_write_file("c:\\fixed.env", env.get());
        EXPECT_EQ(count_in_log("cann't open to write:"), 1) << read_log();
    });
    EXPECT_EQ(read_file(host("fixed.env")), "[old]\r\n");
}

}  // namespace

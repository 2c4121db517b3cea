// Copying, renaming and removing single files; directories; names for temporary files; free space.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kv/fio.h"
#include "kv/frame.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

fs::path in_c(const char *name) {
    return kvtest::drive_c() / name;
}

// Runs a check in a child process without the rights of root; the number of things that are wrong.
template <typename Check>
int wrong_as_nobody(Check check) {
    fs::permissions(kvtest::drive_c(), fs::perms{0777});
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && seteuid(65534) != 0) _exit(99);
        _exit(check());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
}

TEST(Copy, KeepsEveryByte) {
    std::string content;
    for (const std::size_t size : std::initializer_list<std::size_t>{0, 1, 511, 512, 1024, 1 << 20}) {
        content.resize(size);
        for (std::size_t at = 0; at < size; ++at) content[at] = static_cast<char>(at * 31 + at / 251);
        kvtest::write_file(in_c("from.bin"), content);
        kvtest::write_file(in_c("to.bin"), std::string(2000000, 'x'));
        EXPECT_EQ(fio_copy("c:\\", "FROM.BIN", "c:\\", "To.bin"), FIO_COPY_DONE) << size;
        EXPECT_TRUE(kvtest::read_file(in_c("to.bin")) == content) << size;
    }
}

TEST(Copy, ResultsSayWhatFailed) {
    kvtest::write_file(in_c("a"), "content");
    EXPECT_EQ(fio_copy("c:\\", "none", "c:\\", "made"), FIO_COPY_NO_SOURCE);
    EXPECT_FALSE(fs::exists(in_c("made")));
    EXPECT_EQ(fio_copy("c:\\", "", "c:\\", "made"), FIO_COPY_NO_SOURCE);  // a directory
    EXPECT_EQ(fio_copy("c:\\", "a", "c:\\none", "b"), FIO_COPY_NO_DESTINATION);
    EXPECT_EQ(fio_copy("c:\\", "a", "q:\\", "b"), FIO_COPY_NO_DESTINATION);
    EXPECT_EQ(fio_copy("c:\\", "a", "c:\\", std::string(300, 'n').c_str()), FIO_COPY_NO_DESTINATION);
    EXPECT_EQ(fio_copy("c:\\", "a", "/dev", "full"), FIO_COPY_SHORT_WRITE);
    EXPECT_EQ(fio_copy("c:\\", "a", "c:\\", "A"), FIO_COPY_DONE);  // onto itself
    EXPECT_EQ(kvtest::read_file(in_c("a")), "content");
}

TEST(Rename, TakesNoNameThatIsTaken) {
    kvtest::write_file(in_c("old"), "old");
    kvtest::write_file(in_c("taken"), "taken");
    EXPECT_EQ(fio_rename("c:\\", "old", "TAKEN"), -1);
    EXPECT_EQ(fio_rename("c:\\", "none", "new"), -1);
    EXPECT_EQ(kvtest::read_file(in_c("taken")), "taken");
    EXPECT_EQ(fio_rename("c:\\", "old", "OLD"), 0);
    EXPECT_TRUE(fs::exists(in_c("OLD")));
    EXPECT_FALSE(fs::exists(in_c("old")));
    EXPECT_EQ(fio_rename("c:\\", "old", "new"), 0);
    EXPECT_EQ(kvtest::read_file(in_c("new")), "old");
}

TEST(Remove, FilesAndDirectoriesEachTheirWay) {
    kvtest::write_file(in_c("file"), "x");
    EXPECT_EQ(fio_mkdir("c:\\dir"), 0);
    EXPECT_EQ(fio_mkdir("c:\\DIR"), -1);
    EXPECT_EQ(fio_mkdir("c:\\none\\dir"), -1);
    EXPECT_EQ(fio_purge("c:\\", "dir"), -1);
    EXPECT_EQ(fio_rmdir("c:\\file"), -1);
    EXPECT_EQ(fio_purge("c:\\", "FILE"), 0);
    EXPECT_EQ(fio_purge("c:\\", "file"), -1);
    EXPECT_EQ(fio_purge_ex("c:\\", "file", 1), 0);  // nothing to recycle
    EXPECT_EQ(fio_rmdir_ex("c:\\none", 1), 0);
    kvtest::write_file(in_c("dir/file"), "x");
    EXPECT_EQ(fio_rmdir("c:\\dir"), -1);
    EXPECT_EQ(fio_purge("c:\\dir", "file"), 0);
    EXPECT_EQ(fio_rmdir("c:\\dir\\"), 0);
    EXPECT_FALSE(fs::exists(in_c("dir")));
}

TEST(Remove, ReadOnlyDirectoriesKeepTheirFiles) {
    fs::create_directories(in_c("closed"));
    kvtest::write_file(in_c("closed/file"), "x");
    fs::permissions(in_c("closed"), fs::perms{0555});
    EXPECT_EQ(
        wrong_as_nobody([] {
            return (fio_purge("c:\\closed", "file") != -1) + (fio_purge_ex("c:\\closed", "file", 1) != -1) +
                   (fio_rename("c:\\closed", "file", "new") != -1) + (fio_mkdir("c:\\closed\\d") != -1) +
                   (fio_copy("c:\\closed", "file", "c:\\closed", "new") != FIO_COPY_NO_DESTINATION);
        }),
        0);
    EXPECT_EQ(kvtest::read_file(in_c("closed/file")), "x");
    fs::permissions(in_c("closed"), fs::perms{0755});
}

TEST(NotYet, MoveAndIslockReport) {
    kvtest::clear_log();
    EXPECT_EQ(fio_move(nullptr, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(fio_islock(nullptr), -1);
    EXPECT_EQ(kvtest::count_in_log("Not yet implemented"), 2);
    EXPECT_EQ(kvtest::count_in_log("\"Fio\""), 2);
}

class TemporaryNames : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("TMP");
        start_ = fs::current_path();
        EXPECT_EQ(fio_chdir("c:\\"), 0);
    }
    void TearDown() override {
        unsetenv("TMP");
        fs::current_path(start_);
        fio_sethostname("z");
    }

    fs::path start_;
};

TEST_F(TemporaryNames, AreFreeAndInTheCurrentDirectory) {
    char out[257];
    const char *buffer = fio_tmpnam(out);
    ASSERT_NE(buffer, nullptr);
    EXPECT_STREQ(buffer, out);
    const std::string first = out;
    EXPECT_EQ(first.rfind("C:\\kv_", 0), 0u) << first;
    EXPECT_EQ(fio_exist("", out), 0);
    EXPECT_EQ(fio_tmpnam(nullptr), buffer);
    EXPECT_NE(first, buffer);
}

TEST_F(TemporaryNames, PreferTheDirectoryOfTmp) {
    fs::create_directories(in_c("Temp"));
    setenv("TMP", in_c("Temp").c_str(), 1);  // a native path, though C is current
    std::string wanted = "Z:" + in_c("Temp").string();
    for (char &c : wanted) c = c == '/' ? '\\' : c;
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind(wanted + "\\kv_", 0), 0u);
    setenv("TMP", "c:\\temp\\", 1);
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind("c:\\temp\\kv_", 0), 0u);
    setenv("TMP", "c:\\none", 1);
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind("C:\\kv_", 0), 0u);
    const std::string deep = "c:\\" + std::string(130, 'd') + '\\' + std::string(130, 'd');
    fs::create_directories(in_c((std::string(130, 'd') + '/' + std::string(130, 'd')).c_str()));
    setenv("TMP", deep.c_str(), 1);
    kvtest::clear_log();
    char out[257] = "#";
    EXPECT_EQ(fio_tmpnam(out), nullptr);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(kvtest::count_in_log("Too long TmpName"), 1);
}

TEST_F(TemporaryNames, WithoutACurrentDirectoryUseThePoint) {
    EXPECT_EQ(fio_sethostname("z"), 0);
    fs::create_directories(in_c("gone"));
    fs::current_path(in_c("gone"));
    fs::remove(in_c("gone"));
    kvtest::clear_log();
    char out[257];
    const char *name = fio_tmpnam(out);
    EXPECT_EQ(kvtest::count_in_log("Failed fio_getcwd call"), 1);
    // "." leads nowhere then, so that no name in it can be said to be free.
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(kvtest::count_in_log("Failed _tempnam call"), 1);
}

TEST(DiskFree, IsThatOfTheDrivesFileSystem) {
    testing::internal::CaptureStdout();
    const double bytes = fio_getdiskfree("c:\\whatever");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nGetDiskFreeSpaceEx:\n");
    struct statvfs status;
    ASSERT_EQ(statvfs(kvtest::drive_c().c_str(), &status), 0);
    const double now = static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize);
    EXPECT_NEAR(bytes, now, 0.1 * now + 1e9);
    testing::internal::CaptureStdout();
    for (const char *none : {"q", "", "1", static_cast<const char *>(nullptr)})
        EXPECT_EQ(fio_getdiskfree(none), 0.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace

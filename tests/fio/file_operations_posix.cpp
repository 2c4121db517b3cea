// SPDX-License-Identifier: MIT
// Single files and directories where rights, devices and names of POSIX come in, which Windows does not
// have.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "kv/fio.h"

#include "tests/fio/temporary_names.hpp"
#include "tests/support/other_user_posix.hpp"
#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

fs::path in_c(const char *name) {
    return kvtest::drive_c() / name;
}

TEST(Remove, ReadOnlyDirectoriesKeepTheirFiles) {
    if (!kvtest::has_other_user()) GTEST_SKIP() << kvtest::kNoOtherUser;
    fs::create_directories(in_c("closed"));
    kvtest::write_file(in_c("closed/file"), "x");
    fs::permissions(in_c("closed"), fs::perms{0555});
    fs::permissions(kvtest::drive_c(), fs::perms{0777});
    EXPECT_EQ(
        kvtest::as_nobody([] {
            return (fio_purge("c:\\closed", "file") != -1) + (fio_purge_ex("c:\\closed", "file", 1) != -1) +
                   (fio_rename("c:\\closed", "file", "new") != -1) + (fio_mkdir("c:\\closed\\d") != -1) +
                   (fio_copy("c:\\closed", "file", "c:\\closed", "new") != FIO_COPY_NO_DESTINATION);
        }),
        0);
    EXPECT_EQ(kvtest::read_file(in_c("closed/file")), "x");
    fs::permissions(in_c("closed"), fs::perms{0755});
}

TEST(CopyOnPosix, AFullDeviceTakesLess) {
    kvtest::write_file(in_c("a"), "content");
    EXPECT_EQ(fio_copy("c:\\", "a", "/dev", "full"), FIO_COPY_SHORT_WRITE);
}

class TemporaryNamesOnPosix : public kvtest::TemporaryNames {};

TEST_F(TemporaryNamesOnPosix, WithoutACurrentDirectoryUseThePoint) {
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

TEST_F(TemporaryNamesOnPosix, PreferTheDirectoryOfTmp) {
    fs::create_directories(in_c("Temp"));
    kvtest::set_variable("TMP", in_c("Temp"));  // a native path, though C is current
    std::string wanted = "Z:" + in_c("Temp").string();
    for (char &c : wanted) c = c == '/' ? '\\' : c;
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind(wanted + "\\kv_", 0), 0u);
}

// Windows has no directories whose paths are that long.
TEST_F(TemporaryNamesOnPosix, ThatAreTooLong) {
    const std::string deep = "c:\\" + std::string(130, 'd') + '\\' + std::string(130, 'd');
    fs::create_directories(in_c((std::string(130, 'd') + '/' + std::string(130, 'd')).c_str()));
    kvtest::set_variable("TMP", deep);
    kvtest::clear_log();
    char out[257] = "#";
    EXPECT_EQ(fio_tmpnam(out), nullptr);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(kvtest::count_in_log("Too long TmpName"), 1);
}

}  // namespace

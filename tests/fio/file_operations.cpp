// SPDX-License-Identifier: MIT
// Copying, renaming and removing single files; directories; names for temporary files; free space.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "kv/fio.h"
#include "kv/frame.h"

#include "tests/fio/temporary_names.hpp"
#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

fs::path in_c(const char *name) {
    return kvtest::drive_c() / name;
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
    EXPECT_TRUE(kvtest::has_entry(kvtest::drive_c(), "OLD"));
    EXPECT_FALSE(kvtest::has_entry(kvtest::drive_c(), "old"));
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

TEST(NotYet, MoveAndIslockReport) {
    kvtest::clear_log();
    EXPECT_EQ(fio_move(nullptr, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(fio_islock(nullptr), -1);
    EXPECT_EQ(kvtest::count_in_log("Not yet implemented"), 2);
    EXPECT_EQ(kvtest::count_in_log("\"Fio\""), 2);
}

using kvtest::TemporaryNames;

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
    kvtest::set_variable("TMP", "c:\\temp\\");
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind("c:\\temp\\kv_", 0), 0u);
    kvtest::set_variable("TMP", "c:\\none");
    EXPECT_EQ(std::string(fio_tmpnam(nullptr)).rfind("C:\\kv_", 0), 0u);
}

TEST(DiskFree, IsThatOfTheDrivesFileSystem) {
    testing::internal::CaptureStdout();
    const double bytes = fio_getdiskfree("c:\\whatever");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nGetDiskFreeSpaceEx:\n");
    const auto now = static_cast<double>(fs::space(kvtest::drive_c()).available);
    EXPECT_NEAR(bytes, now, 0.1 * now + 1e9);
    testing::internal::CaptureStdout();
    for (const char *none : {"q", "", "1", static_cast<const char *>(nullptr)})
        EXPECT_EQ(fio_getdiskfree(none), 0.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace

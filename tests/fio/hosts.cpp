// SPDX-License-Identifier: MIT
// Drives with current directories of their own, and where paths lead from there.
#include "tests/fio/hosts.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;
using namespace kvtest;

std::string cwd_of(const char *host) {
    char text[256] = "#";
    EXPECT_EQ(fio_get_host_cwd(host, text, sizeof text), text);
    return text;
}

class Hosts : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(kvtest::drive_c() / "Work/Sub");
        kvtest::write_file(kvtest::drive_c() / "Work/file.txt", "x");
        fs::create_directories(kvtest::use_drive_m() / "Jobs");
        start_ = fs::current_path();
        EXPECT_EQ(fio_chdir("z:\\"), 0);
    }
    void TearDown() override {
        for (const char *root : {"m:\\", "c:\\", "z:\\"}) EXPECT_EQ(fio_chdir(root), 0) << root;
        fs::current_path(start_);
    }

    fs::path start_;
};

TEST_F(Hosts, EveryDriveKeepsItsDirectory) {
    EXPECT_EQ(fio_chdir("c:\\Work"), 0);  // also makes the drive current
    EXPECT_EQ(host(), "C:");
    EXPECT_EQ(cwd(), "C:\\Work");
    EXPECT_EQ(fio_chdir("Sub"), 0);
    EXPECT_EQ(cwd(), "C:\\Work\\Sub");
    EXPECT_EQ(fio_sethostname("  m"), 0);
    EXPECT_EQ(cwd(), "M:\\");
    EXPECT_EQ(fio_chdir("Jobs\\.\\"), 0);
    EXPECT_EQ(cwd_of("c"), "C:\\Work\\Sub");
    EXPECT_EQ(cwd_of(" M:\\ignored "), "M:\\Jobs");
    EXPECT_EQ(cwd_of(nullptr), "M:\\Jobs");
    EXPECT_EQ(host(), "M:");

    EXPECT_EQ(full("x.ini"), "M:\\Jobs\\x.ini");
    EXPECT_EQ(full("c:..\\x.ini"), "C:\\Work\\Sub\\..\\x.ini");
    EXPECT_EQ(full("\\x.ini"), "M:\\x.ini");
    EXPECT_EQ(full("C:"), "C:\\Work\\Sub");
    EXPECT_EQ(full("C:\\a\\"), "C:\\a");
    EXPECT_EQ(full("C:\\"), "C:\\");
    EXPECT_EQ(full("q:x"), "");
    EXPECT_EQ(full("q:\\x"), "q:\\x");
    EXPECT_EQ(fio_exist("c:..", "file.txt"), 1);
    EXPECT_EQ(fio_exist("c:", "file.txt"), 0);
    EXPECT_EQ(fio_chdir("c:.."), 0);
    EXPECT_EQ(fio_exist("", "file.txt"), 1);
    EXPECT_EQ(fio_exist("", "\\work\\file.txt"), 1);
}

TEST_F(Hosts, FailuresChangeNothing) {
    EXPECT_EQ(fio_chdir("c:\\Work"), 0);
    for (const char *bad : {"none", "file.txt", "q:\\", "c:\\Work\\file.txt", "z:\\none"}) {
        EXPECT_EQ(fio_chdir(bad), -1) << bad;
        EXPECT_EQ(cwd(), "C:\\Work") << bad;
    }
    EXPECT_EQ(fio_chdir(""), 0);
    EXPECT_EQ(fio_chdir(nullptr), 0);
    for (const char *bad : {"q:", "1", "[", "\xE4"}) {
        EXPECT_EQ(fio_sethostname(bad), -1) << bad;
        EXPECT_EQ(fio_host_exist(bad), 0) << bad;
        EXPECT_EQ(cwd_of(bad), "") << bad;
    }
    EXPECT_EQ(fio_host_exist(nullptr), 0);
    EXPECT_EQ(fio_sethostname(nullptr), 0);
    EXPECT_EQ(fio_sethostname("   "), 0);
    EXPECT_EQ(fio_host_exist("m"), 1);
    EXPECT_EQ(cwd(), "C:\\Work");
    char text[256] = "kept";
    EXPECT_EQ(fio_gethostname(text, 2), -1);
    EXPECT_EQ(fio_getcwd(text, 7), nullptr);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(fio_getcwd(text, 8), text);
    EXPECT_EQ(fio_get_host_cwd("c", text, 7), text);
    EXPECT_STREQ(text, "");
}

TEST_F(Hosts, AccessAndKinds) {
    EXPECT_EQ(fio_ispath("c:\\Work"), 1);
    EXPECT_EQ(fio_ispath("c:\\Work\\"), 1);
    EXPECT_EQ(fio_ispath("c:\\Work\\file.txt"), 0);
    EXPECT_EQ(fio_ispath("c:\\none"), 0);
    EXPECT_EQ(fio_ispath(nullptr), 0);
    EXPECT_EQ(fio_exist("c:\\Work", nullptr), 1);
    EXPECT_EQ(fio_exist(nullptr, nullptr), 0);

    EXPECT_EQ(fio_access("c:\\Work", "none", 0), 0);
}

}  // namespace

// Drives with current directories of their own, and where paths lead from there.
#include <filesystem>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "kv/env.h"
#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

std::string with_backslashes(std::string path) {
    for (char &c : path) c = c == '/' ? '\\' : c;
    return path;
}

std::string cwd() {
    char text[256];
    return fio_getcwd(text, sizeof text) == text ? text : "(none)";
}

std::string cwd_of(const char *host) {
    char text[256] = "#";
    EXPECT_EQ(fio_get_host_cwd(host, text, sizeof text), text);
    return text;
}

std::string host() {
    char text[3];
    return fio_gethostname(text, sizeof text) == 0 ? text : "(none)";
}

std::string full(const char *name) {
    char out[256];
    return fio_make_fullpath(out, nullptr, nullptr, name);
}

class Hosts : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(kvtest::drive_c() / "Work/Sub");
        fs::create_directories(kvtest::drive_c() / "drive_m/Jobs");
        kvtest::write_file(kvtest::drive_c() / "Work/file.txt", "x");
        setenv("KV_DRIVE_M", (kvtest::drive_c() / "drive_m").c_str(), 1);
        start_ = fs::current_path();
        fs::current_path(kvtest::drive_c());
    }
    void TearDown() override {
        for (const char *root : {"m:\\", "c:\\", "z:\\"}) EXPECT_EQ(fio_chdir(root), 0) << root;
        fs::current_path(start_);
        unsetenv("KV_DRIVE_M");
    }

    fs::path start_;
};

TEST_F(Hosts, TheNativeDriveIsCurrentAtTheStart) {
    const std::string here = "Z:" + with_backslashes(kvtest::drive_c().string());
    EXPECT_EQ(host(), "Z:");
    EXPECT_EQ(cwd(), here);
    EXPECT_EQ(full("x.ini"), here + "\\x.ini");
    EXPECT_EQ(full("/etc/x.ini"), "Z:\\etc\\x.ini");
    EXPECT_EQ(fio_chdir("Work"), 0);
    EXPECT_EQ(fs::current_path(), kvtest::drive_c() / "Work");
    EXPECT_EQ(fio_exist("", "FILE.TXT"), 1);
}

TEST_F(Hosts, EveryDriveKeepsItsDirectory) {
    EXPECT_EQ(fio_chdir("c:\\work"), 0);  // also makes the drive current
    EXPECT_EQ(host(), "C:");
    EXPECT_EQ(cwd(), "C:\\Work");
    EXPECT_EQ(fs::current_path(), kvtest::drive_c());
    EXPECT_EQ(fio_chdir("sub"), 0);
    EXPECT_EQ(cwd(), "C:\\Work\\Sub");
    EXPECT_EQ(fio_sethostname("  m"), 0);
    EXPECT_EQ(cwd(), "M:\\");
    EXPECT_EQ(fio_chdir("JOBS\\.\\"), 0);
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

TEST_F(Hosts, TheWholeLibraryWorksThere) {
    EXPECT_EQ(fio_chdir("c:\\work"), 0);
    ENV *env = env_open(0, nullptr);
    env_put_string(env, "a", "b", "c");
    env_write_file("here.env", env);
    env_close(env, 0);
    EXPECT_NE(kvtest::read_file(kvtest::drive_c() / "Work/here.env"), "");
}

TEST_F(Hosts, FailuresChangeNothing) {
    EXPECT_EQ(fio_chdir("c:\\work"), 0);
    for (const char *bad : {"none", "file.txt", "q:\\", "c:\\work\\file.txt", "z:\\none"}) {
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
    EXPECT_EQ(fio_sethostname("m"), 0);
    fs::remove_all(kvtest::drive_c() / "drive_m");
    EXPECT_EQ(fio_host_exist("M"), 0);
    fs::create_directories(kvtest::drive_c() / "drive_m");
}

TEST_F(Hosts, DeepDirectoriesAreKeptUpTo255Characters) {
    EXPECT_EQ(fio_chdir("c:\\work"), 0);
    const std::string part(100, 'd');
    fs::create_directories(kvtest::drive_c() / "Work" / part / part / part);
    EXPECT_EQ(fio_chdir(part.c_str()), 0);
    EXPECT_EQ(fio_chdir(part.c_str()), 0);
    EXPECT_EQ(fio_chdir(part.c_str()), -1);
    EXPECT_EQ(cwd(), "C:\\Work\\" + part + '\\' + part);
}

TEST_F(Hosts, AccessAndKinds) {
    EXPECT_EQ(fio_ispath("c:\\work"), 1);
    EXPECT_EQ(fio_ispath("c:\\work\\"), 1);
    EXPECT_EQ(fio_ispath("c:\\work\\file.txt"), 0);
    EXPECT_EQ(fio_ispath("c:\\none"), 0);
    EXPECT_EQ(fio_ispath(nullptr), 0);
    EXPECT_EQ(fio_exist("c:\\work", nullptr), 1);
    EXPECT_EQ(fio_exist(nullptr, nullptr), 0);

    const fs::path file = kvtest::drive_c() / "Work/file.txt";
    fs::permissions(kvtest::drive_c(), fs::perms{0755});
    const pid_t child = fork();
    if (child == 0) {  // root would be let through everywhere
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && (chown(file.c_str(), kNobody, kNobody) != 0 || seteuid(kNobody) != 0))
            _exit(99);
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
        _exit(wrong);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(fio_access("c:\\work", "none", 0), 0);
}

}  // namespace

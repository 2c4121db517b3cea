// The program `kv` where disks are full, rights are missing and commands are those of the shell. On POSIX
// alone: Windows has no such devices, rights and commands.
#include <sys/stat.h>

#include "tests/support/other_user_posix.hpp"
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class OnPosix : public ProgramTest {
  protected:
    void expect_run(const std::vector<std::string> &words, int code, const std::string &out) const {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.out, out);
        EXPECT_EQ(outcome.err.empty(), code == 0) << outcome.err;
    }
    OnPosix() { write("press.env", kPress); }
    // Expects a save to fail with the file as it was and nothing left beside it.
    void expect_unsaved(const std::vector<std::string> &words, const RunOptions &options) const {
        const Outcome outcome = run(words, options);
        EXPECT_EQ(outcome.code, 3);
        EXPECT_NE(outcome.err.find("press.env: could not be saved"), std::string::npos) << outcome.err;
        EXPECT_EQ(content("press.env"), kPress);
        for (const auto &entry : std::filesystem::directory_iterator(path(""))) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(name == "press.env" || name == "kv") << name;
        }
    }
};

TEST_F(OnPosix, AFullDiskLeavesTheFile) {
    RunOptions full;
    full.limit = RunOptions::Limit::file_size;
    full.limit_value = 100;
    expect_unsaved({"env", "set", "press.env", "press", "name", "longer than it was before"}, full);
    expect({"set", "press.env", "press", "a", "1", "--output", "/dev/full"}, 3, "",
           "/dev/full: could not be");
    expect({"set", "press.env", "press", "a", "1", "--output", "none/x.env"}, 3, "",
           "none/x.env: could not be");
    EXPECT_EQ(content("press.env"), kPress);
}

TEST_F(OnPosix, RightsAreRespectedAndKept) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    RunOptions nobody;
    nobody.as_nobody = true;
    ASSERT_EQ(chmod(path("press.env").c_str(), 0444), 0);
    expect_unsaved({"env", "set", "press.env", "press", "name", "x"}, nobody);
    ASSERT_EQ(chmod(path("press.env").c_str(), 0), 0);
    const Outcome unreadable = run({"env", "set", "--create", "press.env", "press", "name", "x"}, nobody);
    EXPECT_EQ(unreadable.code, 3);
    EXPECT_NE(unreadable.err.find("press.env: cannot be read: Permission denied"), std::string::npos)
        << unreadable.err;
    ASSERT_EQ(chmod(path("press.env").c_str(), 0640), 0);
    expect({"set", "press.env", "press", "name", "x"}, 0, "");
    struct stat status {};
    ASSERT_EQ(stat(path("press.env").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(OnPosix, AFullStandardOutputIsAnError) {
    RunOptions options;
    options.output = "/dev/full";
    for (const char *form : {"--text", "--json"}) {
        const Outcome outcome = run({"env", "show", "press.env", form}, options);
        EXPECT_EQ(outcome.code, 3);
        EXPECT_EQ(outcome.err, "kv: standard output cannot be written\n");
    }
}

TEST_F(OnPosix, AFullDiskLeavesTheRecords) {
    write("a.rec", "old");
    RunOptions full;
    full.limit = RunOptions::Limit::file_size;
    full.limit_value = 100;
    const Outcome outcome = run({"record", "write", "a.rec", "s200", "1"}, full);
    EXPECT_EQ(outcome.code, 3);
    EXPECT_NE(outcome.err.find("a.rec: could not be saved"), outcome.err.npos) << outcome.err;
    EXPECT_EQ(content("a.rec"), "old");
    for (const char *file : {"/dev/full", "no/a.rec"}) {
        const Outcome unsaved = run({"record", "write", file, "l", "1"});
        EXPECT_EQ(unsaved.code, 3);
        EXPECT_NE(unsaved.err.find(std::string(file) + ": could not be saved"), unsaved.err.npos)
            << unsaved.err;
    }
    ASSERT_EQ(chmod(path("a.rec").c_str(), 0640), 0);
    EXPECT_EQ(run({"record", "write", "a.rec", "l", "1"}).code, 0);
    struct stat status {};
    ASSERT_EQ(stat(path("a.rec").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(OnPosix, ADirectoryThatMayNotBeReadIsAFailure) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    std::filesystem::create_directory(path("d"));
    write("d/.a \"hidden\" one", "");
    const Outcome listed = run({"ls", "d", "--json"});
    EXPECT_NE(listed.out.find("{\"name\": \".a \\\"hidden\\\" one\", \"attributes\": [\"hidden\""),
              listed.out.npos)
        << listed.out;
    std::filesystem::permissions(path("d"), std::filesystem::perms{0300});
    const Outcome outcome = run({"ls", "d"}, {.as_nobody = true});
    EXPECT_EQ(outcome.code, 3);
    EXPECT_NE(outcome.err.find("'d' cannot be read"), std::string::npos) << outcome.err;
    std::filesystem::permissions(path("d"), std::filesystem::perms{0755});
}

TEST_F(OnPosix, TimesCommands) {
    expect_run(
        {"timer", "report", "times.txt", "echo one", "sleep 0.02", "--repeat", "2", "--name", "Echo"}, 0,
        "one\none\n");
    const std::string report = content("times.txt");
    EXPECT_EQ(report.find("   Zeitmessung vom "), 0U);
    EXPECT_NE(report.find("\n               Echo |       2 | "), std::string::npos) << report;
    const std::string slow = "\n         sleep 0.02 |       2 |     ";
    ASSERT_NE(report.find(slow), std::string::npos) << report;
    EXPECT_GE(std::stod(report.substr(report.find(slow) + slow.size())), 0.038);
    const Outcome failed = run({"timer", "report", "times.txt", "exit 3", "echo on", "--append"});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, "on\n");
    EXPECT_NE(failed.err.find("'exit 3' failed"), std::string::npos);
    EXPECT_EQ(content("times.txt").find(report), 0U);
    EXPECT_GT(content("times.txt").size(), report.size());
    expect_run({"timer", "report", "no/times.txt", "true"}, 3, "");
    expect_run({"timer", "report", path(".").string(), "echo not run"}, 3, "");
    for (const char *count : {"0", "x", "-1", "1000001", ""}) {
        expect_run({"timer", "report", "times.txt", "echo not run", "--repeat", count}, 2, "");
    }
    expect_run({"timer", "report", "times.txt"}, 2, "");
    expect_run({"timer", "report", "times.txt", "echo not run", "--name=a", "--name=b"}, 2, "");
    expect_run({"timer"}, 2, "");
}

TEST_F(OnPosix, AnIniFileThatMayNotBeWrittenStays) {
    if (!has_other_user()) GTEST_SKIP() << kNoOtherUser;
    const std::string before = "[Beep]\r\nTick=1,0\r\n";
    write("t.ini", before);
    RunOptions nobody;
    nobody.as_nobody = true;
    std::filesystem::permissions(path("t.ini"), std::filesystem::perms{0444});
    const Outcome outcome = run({"ini", "delete", "Beep", "--file", "t.ini"}, nobody);
    EXPECT_EQ(outcome.code, 3);
    EXPECT_NE(outcome.err.find("t.ini: could not be saved"), std::string::npos) << outcome.err;
    EXPECT_EQ(content("t.ini"), before);
}

}  // namespace

}  // namespace kvtest

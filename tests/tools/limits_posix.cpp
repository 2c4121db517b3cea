// SPDX-License-Identifier: MIT
// The program `kv` where disks are full, rights are missing and commands are those of the shell. On POSIX
// alone: Windows has no such devices, rights and commands.
#include <map>
#include <sys/stat.h>

#include "tests/support/other_user_posix.hpp"
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class OnPosix : public ProgramTest {
  protected:
    OnPosix() {
        write("press.env", kPress);
        write("t.ini", "[Beep]\r\nTick=1,0\r\n");
        write("a.rec", "old");
        std::filesystem::create_directory(path("d"));
    }
    // All files with their content.
    std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> all;
        for (const auto &entry : std::filesystem::directory_iterator(path(""))) {
            const std::string name = entry.path().filename();
            if (name != "kv") all[name] = name == "d" ? "" : content(name);
        }
        return all;
    }
};

TEST_F(OnPosix, WhatFailsLeavesTheFiles) {
    RunOptions full;
    full.limit = RunOptions::Limit::file_size;
    full.limit_value = 100;
    RunOptions nobody;
    nobody.as_nobody = true;
    const std::string unsaved = ": could not be saved: ";
    const struct {
        std::vector<std::string> words;
        const RunOptions &options;
        std::string err;
        std::string file = {};
        mode_t mode = 0;
    } cases[] = {
        {{"env", "set", "press.env", "press", "name", "longer than before"}, full, "press.env" + unsaved},
        {{"ini", "set", "t.ini", "Beep", "a", std::string(100, 'x')}, full, "t.ini" + unsaved},
        {{"record", "write", "a.rec", "s200", "1"}, full, "a.rec" + unsaved},
        {{"env", "set", "press.env", "press", "a", "1", "-o", "/dev/full"}, {}, "/dev/full" + unsaved},
        {{"record", "write", "/dev/full", "l", "1"}, {}, "/dev/full" + unsaved},
        {{"timer", "report", "/dev/full", "true"}, {}, "/dev/full" + unsaved},
        {{"env", "set", "press.env", "press", "a", "1"}, nobody, "Permission denied", "press.env", 0444},
        {{"ini", "delete", "Beep", "-ft.ini"}, nobody, "t.ini" + unsaved, "t.ini", 0444},
        {{"env", "set", "--create", "press.env", "press", "a", "1"},
         nobody,
         "press.env: cannot be read: Permission denied",
         "press.env",
         0},
        {{"ls", "d"}, nobody, "'d' cannot be read: Permission denied", "d", 0300},
    };
    const auto before = files();
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::PrintToString(row.words));
        if (row.options.as_nobody && !has_other_user()) continue;
        if (!row.file.empty()) chmod(path(row.file).c_str(), row.mode);
        const Outcome outcome = run(row.words, row.options);
        if (!row.file.empty()) chmod(path(row.file).c_str(), row.file == "d" ? 0755 : 0644);
        EXPECT_EQ(outcome.code, 3);
        EXPECT_NE(outcome.err.find(row.err), std::string::npos) << outcome.err;
        EXPECT_EQ(files(), before);
    }
}

TEST_F(OnPosix, ASaveKeepsTheRights) {
    const std::vector<std::string> lines[] = {{"env", "set", "press.env", "press", "name", "x"},
                                              {"record", "write", "a.rec", "l", "1"}};
    for (const std::vector<std::string> &words : lines) {
        const std::filesystem::path file = path(words[2]);
        ASSERT_EQ(chmod(file.c_str(), 0640), 0);
        expect_run(words, 0, "");
        struct stat status {};
        ASSERT_EQ(stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0640U);
    }
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

TEST_F(OnPosix, TimesCommands) {
    const RunOptions process{.process = true};  // what the commands print is not the program's
    const auto report = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"timer", "report"});
        return run(words, process);
    };
    EXPECT_EQ(report({"t", "echo one", "sleep 0.02", "--repeat", "2", "--name", "Echo"}).out, "one\none\n");
    const std::string table = content("t");
    EXPECT_EQ(table.find("   Zeitmessung vom "), 0U);
    EXPECT_NE(table.find("\n               Echo |       2 | "), std::string::npos) << table;
    const std::string slow = "\n         sleep 0.02 |       2 |     ";
    ASSERT_NE(table.find(slow), std::string::npos) << table;
    EXPECT_GE(std::stod(table.substr(table.find(slow) + slow.size())), 0.038);
    const Outcome failed = report({"t", "exit 3", "echo on", "--append"});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, "on\n");
    EXPECT_NE(failed.err.find("'exit 3' failed"), std::string::npos);
    EXPECT_EQ(content("t").find(table), 0U);
    EXPECT_GT(content("t").size(), table.size());
    EXPECT_EQ(report({"-", "true", "--name=T", "--repeat=2", "-j"})
                  .out.find("[\n{\"name\": \"T\", \"runs\": 2, \"seconds\": 0"),
              0U);
    // Ctrl-C stops it, as the shell of a command tells.
    const Outcome stopped = report({"stopped", "kill -INT $$", "echo not run"});
    EXPECT_EQ(stopped.code, -1);
    EXPECT_EQ(stopped.out, "");
    EXPECT_FALSE(std::filesystem::exists(path("stopped")));
    for (const char *count : {"0", "x", "-1", "1000001", ""}) {
        expect_run({"timer", "report", "t", "echo not run", "--repeat", count}, 2, "", "--repeat needs");
    }
    expect_run({"timer", "report", "t", "echo not run", "--name=a", "--name=b"}, 2, "", "more names");
}

}  // namespace

}  // namespace kvtest

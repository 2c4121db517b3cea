// `kv where` and `kv timer`.
#include <stdlib.h>

#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class WhereAndTimer : public ProgramTest {
  protected:
    WhereAndTimer() {
        unsetenv("KV");
        unsetenv("KV_REGISTRY");
        std::filesystem::remove(drive_c() / "kv3.ini");
    }
    ~WhereAndTimer() override {
        unsetenv("KV");
        unsetenv("KV_REGISTRY");
    }
    void expect_run(const std::vector<std::string> &words, int code, const std::string &out) const {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.out, out);
        EXPECT_EQ(outcome.err.empty(), code == 0) << outcome.err;
    }
    // The path as the library shows it.
    std::string shown(const std::string &name) const {
        std::string text = "Z:" + path(name).string();
        for (char &c : text) c = c == '/' ? '\\' : c;
        return text;
    }
};

TEST_F(WhereAndTimer, TellsThePlaces) {
    const std::string nowhere = "not found  current directory  " + shown("kv3.ini") + "\n" +
                                "not found  KV                 (not set)\n" +
                                "not found  drive C            C:\\kv3.ini\n";
    expect_run({"where"}, 1, nowhere + "not found  registry           (no entry)\n");
    write("registry.txt", "[Software\\kv Software AG\\kv3.ini]\n@=C:\\gone.ini\n");
    setenv("KV_REGISTRY", path("registry.txt").c_str(), 1);
    expect_run({"where"}, 1, nowhere + "not found  registry           C:\\gone.ini\n");
    write("kv3.ini", "[Pfade]\nVorlagen=C:\\nowhere;C:\\\n");
    expect_run({"where"}, 0, "found      current directory  " + shown("kv3.ini") + "\n");
    expect_run({"where", "--path"}, 0, shown("kv3.ini") + "\n");
    setenv("KV", "C:\\", 1);
    write_file(drive_c() / "x.txt", "");
    expect_run({"where", "x.txt", "--path"}, 0, "C:\\x.txt\n");
    unsetenv("KV");
    expect_run({"where", "x.txt", "--section", "Pfade", "--entry", "Vorlagen"}, 0,
               "not found  current directory  " + shown("x.txt") + "\n" +
                   "not found  KV                 (not set)\n" + "found      current directory  " +
                   shown("kv3.ini") + "\n" + "not found  listed directory   C:\\nowhere\\x.txt\n" +
                   "found      listed directory   C:\\x.txt\n");
    expect_run({"where", "y.txt", "--path"}, 0, shown("kv3.ini") + "\n");
    expect_run({"where", "y.txt", "--section=Pfade", "--entry=Vorlagen", "--path"}, 1, "");
    expect_run({"where", "y.txt", "--section=Pfade"}, 2, "");
    expect_run({"where", "--section=Pfade", "--entry=Vorlagen"}, 2, "");
    EXPECT_EQ(run({"where", "--help"}).out.find("Usage: kv where"), 0U);
}

TEST_F(WhereAndTimer, TimesCommands) {
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
    EXPECT_EQ(run({"timer", "--help"}).out.find("Usage: kv timer report"), 0U);
}

}  // namespace

}  // namespace kvtest

// `kv env` and the file system: missing, broken, unwritable and large files, and the real samples.
#include <sys/stat.h>

#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class EnvFiles : public ProgramTest {
  protected:
    EnvFiles() { write("press.env", kPress); }
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

TEST_F(EnvFiles, AMissingFileIsMadeOnlyOnRequest) {
    expect({"set", "new.env", "s", "a", "1"}, 3, "", "new.env: cannot be read: No such file");
    EXPECT_FALSE(std::filesystem::exists(path("new.env")));
    expect({"set", "new.env", "s", "a", "1", "--create"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =1\r\n");
    expect({"edit", "--create", "new.env", "-e", "set s a 2"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =2\r\n");
    expect({"set", "no/new.env", "s", "a", "1", "--create"}, 3, "", "could not be saved");
    expect({"set", ".", "s", "a", "1", "--create"}, 3, "", "is a directory");
}

TEST_F(EnvFiles, AFileWithAnErrorIsNotTouched) {
    const std::string broken = kPress + "}\r\n";
    write("broken.env", broken);
    expect({"set", "broken.env", "press", "name", "x", "--create"}, 3, "", "broken.env:19:1: a section");
    expect({"merge", "press.env", "broken.env"}, 3, "", "broken.env:19:1: ");
    expect({"merge", "broken.env", "press.env"}, 3, "", "broken.env:19:1: ");
    EXPECT_EQ(content("broken.env"), broken);
    EXPECT_EQ(content("press.env"), kPress);
}

TEST_F(EnvFiles, AFullDiskLeavesTheFile) {
    RunOptions full;
    full.limit = RLIMIT_FSIZE;
    full.limit_value = 100;
    expect_unsaved({"env", "set", "press.env", "press", "name", "longer than it was before"}, full);
    expect({"set", "press.env", "press", "a", "1", "--output", "/dev/full"}, 3, "",
           "/dev/full: could not be");
    expect({"set", "press.env", "press", "a", "1", "--output", "none/x.env"}, 3, "",
           "none/x.env: could not be");
    EXPECT_EQ(content("press.env"), kPress);
}

TEST_F(EnvFiles, RightsAreRespectedAndKept) {
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

TEST_F(EnvFiles, ALineOfTenMegabytes) {
    const std::string line(10'000'000, 'x');
    write("long.env", "[s]\n  x =" + line + "\n");
    expect({"set", "long.env", "s", "y", "1"}, 0, "");
    expect({"get", "long.env", "s", "x"}, 0, line + "\n");
    expect({"show", "long.env", "s", "y"}, 0, "y = 1\n");
}

TEST_F(EnvFiles, NoLogIsWritten) {
    clear_log();
    expect({"check", "none.env"}, 3, "", "none.env");
    expect({"get", "press.env", "press", "@"}, 2, "", "no name");
    EXPECT_EQ(read_log(), "");
}

TEST_F(EnvFiles, TheSamplesAreCanonicalButForTheirComments) {
    for (const std::string name : {"press.env", "site.env"}) {
        const std::string sample = read_file(std::filesystem::path(KV_TEST_EXAMPLES) / name);
        ASSERT_FALSE(sample.empty()) << name;
        std::string canonical;
        for (std::size_t start = 0; start < sample.size();) {
            const std::size_t end = sample.find('\n', start) + 1;
            ASSERT_EQ(sample.substr(end - 2, 2), "\r\n");
            if (sample[start] != ';') canonical += sample.substr(start, end - start);
            start = end;
        }
        write(name, sample);
        expect({"show", name, "--text"}, 0, canonical);
        expect({"set", name, "machine"}, 0, "");
        EXPECT_EQ(content(name), canonical);
    }
}

}  // namespace

}  // namespace kvtest

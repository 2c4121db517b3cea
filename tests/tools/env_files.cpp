// `kv env` and the file system: missing, broken, unwritable and large files, and the real samples.
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class EnvFiles : public ProgramTest {
  protected:
    EnvFiles() { write("press.env", kPress); }
};

TEST_F(EnvFiles, AMissingFileIsMadeOnlyOnRequest) {
    expect({"set", "new.env", "s", "a", "1"}, 3, "", "new.env: cannot be read: No such file");
    EXPECT_FALSE(std::filesystem::exists(path("new.env")));
    expect({"set", "new.env", "s", "a", "1", "--create"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =1\r\n");
    expect({"edit", "--create", "new.env", "-e", "set s a 2"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =2\r\n");
    expect({"set", "no/new.env", "s", "a", "1", "--create"}, 3, "", "could not be saved");
    expect({"set", ".", "s", "a", "1", "--create"}, 3, "", "Is a directory");
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

// SPDX-License-Identifier: MIT
// `kv env` and the file system: missing, broken, unwritable and large files, and the real samples.
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class EnvFiles : public ProgramTest {
  protected:
    EnvFiles() { write("press.env", kPress); }
};

TEST_F(EnvFiles, AMissingFileIsMadeOnlyOnRequest) {
    expect({"set", "new.env", "s", "a", "1", "--create"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =1\r\n");
    expect({"edit", "--create", "new.env", "-e", "set s a 2"}, 0, "");
    EXPECT_EQ(content("new.env"), "[s]\r\n  a =2\r\n");
    // The library finds the file whatever its case and its drive are, and so does the program.
    write("broken.env", "[s]\n}");
    std::string drive = path("BROKEN.env").string();
    if (drive[1] != ':') drive = "Z:" + drive;
    for (char &c : drive) c = c == '/' ? '\\' : c;
    expect({"set", drive, "s", "a", "1", "--create"}, 3, "", ":2:1: ");
    EXPECT_EQ(content("broken.env"), "[s]\n}");
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

}  // namespace

}  // namespace kvtest

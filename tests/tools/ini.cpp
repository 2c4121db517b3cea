// `kv ini`: reading and changing INI files from the shell.
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

const std::string kIni =
    "; top\r\na=1\r\n\r\n[Pfade]\r\nDaten= C:\\x y\r\nbad\r\nDaten=2\r\nL\xE4nge=3\r\n[Beep]\r\n";

class IniProgram : public ProgramTest {
  protected:
    IniProgram() { write("t.ini", kIni); }

    void expect_ini(const std::vector<std::string> &words, int code, const std::string &out,
                    const std::string &err = {}) const {
        std::vector<std::string> all{"ini"};
        all.insert(all.end(), words.begin(), words.end());
        SCOPED_TRACE(testing::PrintToString(all));
        const Outcome outcome = run(all);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.out, out);
        EXPECT_TRUE(err.empty() ? outcome.err.empty() : outcome.err.find(err) != std::string::npos)
            << outcome.err;
    }
    // With --file t.ini.
    void expect_file(std::vector<std::string> words, int code, const std::string &out,
                     const std::string &err = {}) const {
        words.insert(words.end(), {"--file", "t.ini"});
        expect_ini(words, code, out, err);
    }
};

TEST_F(IniProgram, Reads) {
    expect_file({"get", "Pfade", "Daten"}, 0, " C:\\x y\n");
    expect_file({"get", "", "a"}, 0, "1\n");
    expect_file({"get", "Pfade", "x"}, 1, "", "t.ini: [Pfade] x not found");
    expect_file({"get", "pfade", "Daten"}, 1, "", "t.ini: [pfade] not found");
    expect_file({"get", "", "x"}, 1, "", "t.ini: the unnamed section: x not found");
    expect_file({"sections"}, 0, "Pfade\nBeep\n");
    expect_file({"keys", "Pfade"}, 0, "Daten\nL\xE4nge\n");
    expect_file({"keys", "Beep"}, 0, "");
    expect_file({"list"}, 0, "a=1\n\n[Pfade]\nDaten= C:\\x y\nL\xE4nge=3\n\n[Beep]\n");
    expect_file({"list", "Pfade"}, 0, "[Pfade]\nDaten= C:\\x y\nL\xE4nge=3\n");
    expect_file({"list", "x", "--json"}, 1, "", "[x] not found");
    expect_file(
        {"list", "--json"}, 0,
        "[\n{\"section\": \"\", \"entries\": [\n{\"key\": \"a\", \"value\": \"1\"}\n]},\n"
        "{\"section\": \"Pfade\", \"entries\": [\n{\"key\": \"Daten\", \"value\": \" C:\\\\x y\"},\n"
        "{\"key\": \"L\\u00e4nge\", \"value\": \"3\"}\n]},\n{\"section\": \"Beep\", \"entries\": "
        "[\n]}\n]\n");
    std::string many = "[S]\n";
    std::string keys;
    for (int i = 0; i < 2000; ++i) {
        many += "key" + std::to_string(i) + "=\n";
        keys += "key" + std::to_string(i) + "\n";
    }
    write("t.ini", many);
    expect_file({"keys", "S"}, 0, keys);
}

TEST_F(IniProgram, Changes) {
    expect_file({"set", "Beep", "Tick", "1,0"}, 0, "");
    expect_file({"delete", "Pfade", "L\xE4nge"}, 0, "", "t.ini: line 6 is no entry and was left out: bad");
    expect_file({"rename", "", "a", "b"}, 0, "");
    expect_file({"rename", "Pfade", "Paths"}, 0, "");
    EXPECT_EQ(content("t.ini"),
              "; top\r\nb=1\r\n\r\n[Paths]\r\nDaten= C:\\x y\r\nDaten=2\r\n\r\n[Beep]\r\nTick=1,0\r\n");
    expect_file({"delete", "Paths"}, 0, "");
    expect_file({"edit", "-e", "set S k 'two words'", "-e", "rename S k j", "-e", "delete Beep"}, 0, "");
    EXPECT_EQ(content("t.ini"), "; top\r\nb=1\r\n\r\n[S]\r\nj=two words\r\n");
}

// Other programs read such a line whole. The library reads pieces of 511 characters.
TEST_F(IniProgram, LongLines) {
    const std::string other = "  " + std::string(2000, 'x') + "=1 ",
                      comment = ";" + std::string(600, ' ') + ";";
    const std::string in_piece = "a=" + std::string(509, 'v') + "b=2";
    write("t.ini", other + "\r\n[S] c\r\n" + comment + "\r\n" + in_piece + "\r\nno\r\n");
    expect_file({"set", "S", "k", "1"}, 0, "",
                "t.ini: line 2 lost what stood behind its name: c\nt.ini: line 5 is no entry and was left "
                "out: no\n");
    EXPECT_EQ(content("t.ini"), other + "\r\n\r\n[S]\r\n" + comment + "\r\n" + in_piece + "\r\nk=1\r\n");
    expect_file({"edit", "-e", "rename S T", "-e", "set T b 3"}, 0, "",
                "line 5 has more than 511 characters and was cut\n");
    EXPECT_EQ(content("t.ini"), other + "\r\n\r\n[T]\r\n" + comment + "\r\n" + in_piece.substr(0, 511) +
                                    "\r\nb=3\r\nk=1\r\n");
    expect_file({"get", "T", "b"}, 0, "3\n");
    expect_file({"delete", "T", "a"}, 0, "");
    expect_file({"delete", ""}, 0, "");
    EXPECT_EQ(content("t.ini"), "[T]\r\n" + comment + "\r\nb=3\r\nk=1\r\n");
}

TEST_F(IniProgram, FailedEditsSaveNothing) {
    const std::string too_long(510, 'v');
    expect_file({"edit", "-e", "set S k 1", "-e", "delete Pfade x"}, 1, "",
                "t.ini: edit 2: [Pfade] x not found; nothing was saved");
    expect_file({"edit", "-e", "set S k 1", "-e", "rename x y"}, 1, "", "edit 2: [x] not found");
    expect_file({"delete", "x"}, 1, "", "t.ini: [x] not found; nothing was saved");
    expect_file({"edit", "-e", "set S k"}, 2, "", "edit 1: set wants SECTION KEY VALUE; nothing was saved");
    expect_file({"edit", "-e", "put S k 1"}, 2, "", "no edit 'put'");
    expect_file({"edit"}, 2, "", "-e EDIT is missing");
    for (const std::vector<std::string> &words :
         std::vector<std::vector<std::string>>{{"set", "S]", "k", "1"},
                                               {"set", " S", "k", "1"},
                                               {"set", "S", "k=", "1"},
                                               {"set", "S", ";k", "1"},
                                               {"set", "S", "[k", "1"},
                                               {"set", "S", "", "1"},
                                               {"set", "S", "k", "1 "},
                                               {"set", "S", "k", "1\n2"},
                                               {"set", "S", "k\n", "1"},
                                               {"set", "S", "k", too_long},
                                               {"rename", "Beep", " "},
                                               {"rename", "Pfade", "Daten", "x=y"}}) {
        expect_file(words, 2, "", "nothing was saved");
    }
    EXPECT_EQ(content("t.ini"), kIni);
    expect_file({"set", "S", "k", too_long.substr(1)}, 0, "");
    expect_file({"get", "S", "k"}, 0, too_long.substr(1) + "\n");
}

TEST_F(IniProgram, Files) {
    expect_ini({"get", "S", "k", "--file", "no.ini"}, 3, "", "no.ini: cannot be read: No such file");
    expect_ini({"set", "S", "k", "1", "--file", "no.ini"}, 3, "", "no.ini: cannot be read");
    expect_ini({"set", "S", "k", "1", "--file", "no.ini", "--create"}, 0, "");
    EXPECT_EQ(content("no.ini"), "[S]\r\nk=1");
    expect_ini({"sections", "--file", "."}, 3, "", "Is a directory");
    expect_ini({"set", "S", "k", "1", "--file", "no/x.ini", "--create"}, 3, "", "could not be saved");
}

TEST_F(IniProgram, TheMainConfigurationFile) {
    expect_ini({"get", "Beep", "Tick"}, 3, "", "there is no main configuration file");
    write("kv3.ini", "[Beep]\r\nTick=1,0\r\n");
    expect_ini({"get", "Beep", "Tick"}, 0, "1,0\n");
    expect_ini({"set", "Beep", "Tick", "2,0"}, 0, "");
    EXPECT_EQ(content("kv3.ini"), "[Beep]\r\nTick=2,0\r\n");
}

TEST_F(IniProgram, Help) {
    EXPECT_NE(run({"ini", "--help"}).out.find("main"), std::string::npos);
    for (const char *action : {"get", "sections", "keys", "list", "set", "delete", "rename", "edit"}) {
        const Outcome outcome = run({"ini", action, "--help"});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_NE(outcome.out.find(std::string("Usage: kv ini ") + action), std::string::npos);
    }
    expect_ini({}, 2, "", "which action?");
    expect_ini({"put"}, 2, "", "there is no action 'put'");
    expect_ini({"get", "S"}, 2, "", "KEY is missing");
    expect_ini({"sections", "S"}, 2, "", "'S' is a word too many");
}

}  // namespace

}  // namespace kvtest

// SPDX-License-Identifier: MIT
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
        expect_run(all, code, out, err);
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
    expect_ini({"delete", "t.ini", "Beep", "x", "y"}, 2, "", "'y' is a word too many");
    expect_file({"set", "t.ini", "Beep", "x", "y"}, 2, "", "'y' is a word too many beside --file");
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
    expect_ini({"set", "S", "k", "1", "--file", "no.ini", "--create"}, 0, "");
    EXPECT_EQ(content("no.ini"), "[S]\r\nk=1");
    expect_ini({"set", "S", "k", "1", "--file", "no/x.ini", "--create"}, 3, "", "could not be saved");
    // The file before the other operands, standard input and output.
    expect_ini({"get", "t.ini", "Beep", "x"}, 1, "", "t.ini: [Beep] x not found");
    expect_ini({"list", "T.INI", "Pfade"}, 0, "[Pfade]\nDaten= C:\\x y\nL\xE4nge=3\n");
    expect_ini({"get", "t.ini", "Pfade"}, 3, "", "name one with --file t.ini");
    expect_ini({"delete", "t.ini", "Pfade", "Daten", "--output", "-"}, 0,
               "; top\r\na=1\r\n\r\n[Pfade]\r\nbad\r\nDaten=2\r\nL\xE4nge=3\r\n[Beep]\r\n");
    const RunOptions from_file{.input = path("t.ini").string()};
    EXPECT_EQ(run({"ini", "keys", "-", "Pfade", "--json"}, from_file).out,
              "[\n\"Daten\",\n\"L\\u00e4nge\"\n]\n");
    EXPECT_EQ(run({"ini", "set", "-", "Beep", "Tick", "1"}, from_file).out.substr(0, 10), "; top\r\na=1");
    EXPECT_EQ(content("t.ini"), kIni);
}

TEST_F(IniProgram, Types) {
    write("t.ini", "[S]\nl = -12 \nd=1e3\nt=12 mm\nb=2147483648\nlist=1,2,3,\nmix=1,x\nempty=\n");
    const struct {
        std::vector<std::string> words;
        int code;
        std::string out;
        std::string err = {};
    } cases[] = {
        {{"l", "-t", "long"}, 0, "-12\n"},
        {{"d", "-t", "double"}, 0, "1000\n"},
        {{"d", "-t", "long"}, 1, "", "t.ini: [S] d is not a whole number of 32 bits"},
        {{"t", "-t", "double"}, 1, "", "is not a number"},
        {{"b", "-t", "long"}, 1, "", "is not a whole number of 32 bits"},
        {{"list", "-t", "longs"}, 0, "1\n2\n3\n"},
        {{"mix", "-t", "doubles"}, 1, "", "is not a list of numbers"},
        {{"mix", "-t", "list"}, 0, "1\nx\n"},
        {{"empty", "-t", "longs"}, 0, ""},
        {{"empty", "-t", "long", "--default", "5"}, 1, "", "is not a whole number"},
        {{"none", "-t", "long", "--default", "5"}, 0, "5\n"},
        {{"none", "-t", "long", "--default", "x"}, 2, "", "the value 'x' of --default is not a whole"},
        {{"lst"}, 1, "", "[S] lst not found; did you mean 'list'?"},
    };
    for (const auto &row : cases) {
        std::vector<std::string> words{"get", "t.ini", "S"};
        words.insert(words.end(), row.words.begin(), row.words.end());
        expect_ini(words, row.code, row.out, row.err);
    }
}

TEST_F(IniProgram, TheMainConfigurationFile) {
    expect_ini({"get", "Beep", "Tick"}, 3, "", "there is no main configuration file");
    write("kv3.ini", "[Beep]\r\nTick=1,0\r\n");
    expect_ini({"get", "Beep", "Tick"}, 0, "1,0\n");
    expect_ini({"set", "Beep", "Tick", "2,0"}, 0, "");
    EXPECT_EQ(content("kv3.ini"), "[Beep]\r\nTick=2,0\r\n");
}

}  // namespace

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// `kv env set`, `delete`, `insert`, `edit` and `merge`: what the file holds then.
#include <thread>

#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

const std::string kSmall = "[s]\r\n  a =1\r\n  b ={\r\n    c =2\r\n  }\r\n  a =3\r\n";

// The file after a change: `from`, which occurs in it, replaced by `to`.
std::string with(std::string text, const std::string &from, const std::string &to) {
    const std::size_t at = text.find(from);
    if (at == std::string::npos) ADD_FAILURE() << from;
    return text.replace(at, from.size(), to);
}

class EnvEdit : public ProgramTest {
  protected:
    struct Case {
        std::vector<std::string> words;  // with FILE left out: it comes behind the action
        std::string file;
    };
    struct Refusal {
        std::vector<std::string> words;
        int code;
        std::string err;
    };

    static std::vector<std::string> on_file(std::vector<std::string> words) {
        words.insert(words.begin() + 1, "small.env");
        return words;
    }
    void expect_changes(const std::vector<Case> &cases) const {
        for (const Case &each : cases) {
            write("small.env", kSmall);
            expect(on_file(each.words), 0, "");
            EXPECT_EQ(content("small.env"), each.file) << each.words[1];
        }
    }
    void expect_refusals(const std::vector<Refusal> &refusals) const {
        for (const Refusal &each : refusals) {
            write("small.env", "; as it was\n" + kSmall);
            expect(on_file(each.words), each.code, "", each.err);
            EXPECT_EQ(content("small.env"), "; as it was\n" + kSmall);
        }
    }
};

TEST_F(EnvEdit, Sets) {
    const std::string end = "  a =3\r\n";
    expect_changes({
        {{"set", "s", "a", "-5"}, with(kSmall, "a =1", "a =-5")},
        {{"set", "s", "a@2", ""}, with(kSmall, "a =3", "a =")},
        {{"set", "s", "a@4", "x"}, with(kSmall, end, end + "  a =\r\n  a =x\r\n")},
        {{"set", "s", "b", "flat"}, with(kSmall, "b ={\r\n    c =2\r\n  }", "b =flat")},
        {{"set", "s", "a@new", "x"}, with(kSmall, "a =1", "a ={\r\n    new =x\r\n  }")},
        {{"set", "s", "b/x@y", "m@n", "--delimiter=/"}, with(kSmall, "  }", "    x@y =m@n\r\n  }")},
        {{"set", "s", "b@1@7", "digits"}, with(kSmall, "  }", "    7 =digits\r\n  }")},
        {{"set", "t", "u@v", "1"}, kSmall + "[t]\r\n  u ={\r\n    v =1\r\n  }\r\n"},
        {{"set", "t"}, kSmall + "[t]\r\n"},
        {{"set", "s"}, kSmall},
        {{"set", "s", "a", "C:\\dir\\"}, with(kSmall, "a =1", "a =C:\\dir\\\\")},
    });
}

TEST_F(EnvEdit, DeletesAndInserts) {
    expect_changes({
        {{"delete", "s", "a"}, with(kSmall, "  a =1\r\n", "")},
        {{"delete", "s", "b"}, with(kSmall, "  b ={\r\n    c =2\r\n  }\r\n", "")},
        {{"delete", "s", "b@c"}, with(kSmall, "    c =2\r\n", "")},
        {{"delete", "s"}, ""},
        {{"insert", "s", "b@c", "d", "0"}, with(kSmall, "    c", "    d =0\r\n    c")},
        {{"insert", "s", "a@2", "a", "x"}, with(kSmall, "  a =3", "  a =x\r\n  a =3")},
        {{"insert", "s", "a@2", "b"}, with(kSmall, "  a =3", "  b =\r\n  a =3")},
        {{"insert", "s", "x@0", "7@1", "x"}, with(kSmall, "  a =1", "  7@1 =x\r\n  a =1")},
        {{"insert", "s", "first"}, "[first]\r\n" + kSmall},
    });
}

TEST_F(EnvEdit, MakesSeveralEditsAtOnce) {
    expect_changes({
        {{"edit", "-e", "set s a 'it''s \"5\"'", "-e", "delete\ts b",
          "-e=insert s a@2 \"x \"\"y\"\"\" C:\\it's"},
         "[s]\r\n  a =it's \"5\"\r\n  x \"y\" =C:\\it's\r\n  a =3\r\n"},
        {{"edit", "-e", "set s a ''", "-e", "set s a@new '2 3'", "-e", "block s b@c"},
         with(with(kSmall, "a =1", "a ={\r\n    new =2 3\r\n  }"), "c =2", "c ={\r\n    }")},
    });
    write("small.env", kSmall);
    expect({"edit", "small.env", "-e", "delete s", "-e", "set t x 1", "--output", "other.env"}, 0, "");
    EXPECT_EQ(content("small.env"), kSmall);
    EXPECT_EQ(content("other.env"), "[t]\r\n  x =1\r\n");
    expect({"edit", "small.env", "-e", "delete s b", "--output", "-"}, 0, "[s]\r\n  a =1\r\n  a =3\r\n");
    write("edits", "delete s b\n\nset s 'a' ''\n");
    EXPECT_EQ(run({"env", "edit", "small.env"}, {.input = path("edits").string()}).code, 0);
    EXPECT_EQ(content("small.env"), "[s]\r\n  a =\r\n  a =3\r\n");
    EXPECT_EQ(run({"env", "edit", "-"}, {.input = path("edits").string()}).code, 2);
}

// The sample, which people have written comments into, changes in one line.
TEST_F(EnvEdit, KeepsWhatPeopleWrote) {
    const std::string site = read_file(std::filesystem::path(KV_TEST_EXAMPLES) / "site.env");
    write("site.env", "title\r\n" + site + "\x1a rest");
    const std::string warning =
        "site.env:1:1: warning: text before the first section is not read; it stays";
    expect({"set", "site.env", "press", "lubrication@interval", "90"}, 0, "", warning);
    EXPECT_EQ(content("site.env"), "title\r\n" + with(site, "interval =120", "interval =90") + "\x1a rest");
    write("copy.env", site);
    expect({"merge", "site.env", "copy.env", "--mode=replace"}, 0, "", "a Ctrl-Z ends the text");
    EXPECT_EQ(content("copy.env"), with(site, "interval =120", "interval =90"));
    EXPECT_EQ(run({"env", "set", "-", "panel", "language", "de"}, {.input = path("copy.env").string()}).out,
              with(content("copy.env"), "language =en", "language =de"));
    expect({"format", "site.env", "-o", "-"}, 0, run({"env", "show", "copy.env", "--text"}).out,
           "site.env:2: 3 lines of comments, of which this is the first, are dropped");
    expect({"format", "site.env"}, 0, "",
           "site.env:1: text before the first section is not read; it is dropped");
    EXPECT_EQ(content("site.env"), run({"env", "show", "copy.env", "--text"}).out);
}

TEST_F(EnvEdit, ChangesOfSeveralProcessesAreAllThere) {
    write("shared.env", "; shared\r\n[s]\r\n");
    constexpr int kProcesses = 4, kChanges = 10;
    std::vector<std::thread> threads;
    for (int i = 0; i < kProcesses; ++i) {
        threads.emplace_back([&, i] {
            const std::string process = "p" + std::to_string(i);
            const RunOptions own = {.output = path(process).string(),
                                    .error = path(process + ".err").string()};
            for (int k = 1; k <= kChanges; ++k) {
                const std::string name = process + "@" + std::to_string(k);
                EXPECT_EQ(run_process({"env", "set", "shared.env", "s", name, "x"}, own).code, 0);
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    expect({"count", "shared.env", "s"}, 0, std::to_string(kProcesses * kChanges) + "\n");
    EXPECT_TRUE(content("shared.env").starts_with("; shared\r\n[s]\r\n"));
}

TEST_F(EnvEdit, RefusesAndLeavesTheFile) {
    const std::string nested(1100, '@');
    expect_refusals({
        {{"set", "s", "a"}, 2, "set wants a value"},
        {{"set", "s", "a", " x"}, 2, "begin with a blank"},
        {{"set", "s", "a", "x\t"}, 2, "end with a blank"},
        {{"set", "s", "a", "{x"}, 2, "begin with \"{\""},
        {{"set", "s", "a", "x\ny"}, 2, "line end"},
        {{"set", "s", "a", "x\r"}, 2, "line end"},
        {{"set", "s", "a", "\x1a"}, 2, "byte 26"},
        {{"set", "s", "b@x=y", "1"}, 2, "hold \"=\""},
        {{"set", "s", "[x", "1"}, 2, "begin with \"[\""},
        {{"set", "s", "}x", "1"}, 2, "begin with"},
        {{"set", "s", "x ", "1"}, 2, "end with a blank"},
        {{"set", "t]", "x", "1"}, 2, "hold \"]\""},
        {{"set", " t", "x", "1"}, 2, "begin with a blank"},
        {{"set", "s", nested, "1"}, 2, "1023"},
        {{"set", "s", "@", "1"}, 2, "no name"},
        {{"set", "s", "a@2000000", "1"}, 2, "cannot be made"},
        {{"insert", "s", "a", "", "1"}, 2, "be empty"},
        {{"insert", "s", "a", "x=", "1"}, 2, "hold \"=\""},
        {{"insert", "s", "b@d", "x"}, 1, "[s] b@d not found"},
        {{"insert", "t", "x"}, 1, "[t] not found"},
        {{"delete", "s", "a@3"}, 1, "[s] a@3 not found"},
        {{"delete", "t"}, 1, "[t] not found"},
        {{"edit", "-e", " "}, 2, "an edit is empty"},
        {{"edit", "-e", "put s a 1"}, 2, "no edit 'put'"},
        {{"edit", "-e", "set s a 1 2"}, 2, "edit 1: set wants SECTION [PATH VALUE]"},
        {{"edit", "-e", "set s a 'x"}, 2, "a quote is not closed"},
        {{"edit", "-e", "set s a 'x'y"}, 2, "a quote is not closed"},
        {{"edit", "-e", "set s a 9", "-e", "delete s b", "-e", "delete s z"}, 1, "edit 3: [s] z not found"},
    });
}

TEST_F(EnvEdit, MergesByMode) {
    write("from.env", "[s]\n a=10\n b={\n c=20\n d=21\n}\n a=30\n[t]\n x=40\n");
    const std::string base = "[s]\r\n  a =1\r\n  b ={\r\n    c =2\r\n  }\r\n";
    struct Merge {
        std::vector<std::string> words;
        std::string file;
    };
    const std::vector<Merge> merges = {
        {{}, "[s]\r\n  a =1\r\n  b ={\r\n    c =2\r\n    d =21\r\n  }\r\n  a =30\r\n[t]\r\n  x =40\r\n"},
        {{"--mode=add", "s", "b"}, "[s]\r\n  a =1\r\n  b ={\r\n    c =2\r\n    d =21\r\n  }\r\n"},
        {{"--mode=replace"},
         "[s]\r\n  a =10\r\n  b ={\r\n    c =20\r\n    d =21\r\n  }\r\n  a =30\r\n[t]\r\n  x =40\r\n"},
        {{"--mode=update"}, "[s]\r\n  a =10\r\n  b ={\r\n    c =20\r\n  }\r\n"},
        {{"--mode=append", "s", "b"},
         "[s]\r\n  a =1\r\n  b ={\r\n    c =2\r\n    c =20\r\n    d =21\r\n  }\r\n"},
        {{"t"}, base + "[t]\r\n  x =40\r\n"},
    };
    for (const Merge &each : merges) {
        write("to.env", base);
        std::vector<std::string> words = {"merge", "from.env", "to.env"};
        words.insert(words.end(), each.words.begin(), each.words.end());
        expect(words, 0, "");
        EXPECT_EQ(content("to.env"), each.file);
    }
    write("to.env", "[s]\n b =1\n");
    expect({"merge", "from.env", "to.env"}, 1, "", "to.env: a text would have to become a block");
    write("to.env", base);
    expect({"merge", "from.env", "to.env", "t", "--output", "-"}, 0, base + "[t]\r\n  x =40\r\n");
    expect({"merge", "from.env", "to.env", "u"}, 1, "", "from.env: [u] is no block");
    expect({"merge", "from.env", "to.env", "--mode", "mix"}, 2, "",
           "--mode is one of add, append, replace, update, not 'mix'");
    expect({"merge", "from.env", "none.env"}, 3, "", "none.env: cannot be read");
    EXPECT_EQ(content("to.env"), base);
}

}  // namespace

}  // namespace kvtest

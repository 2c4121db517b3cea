// SPDX-License-Identifier: MIT
// `kv env check` and `kv env diff`: what is said of a file, and of two.
#include <random>

#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class EnvCompare : public ProgramTest {};

TEST_F(EnvCompare, ChecksTellWhatNobodyMeans) {
    const struct {
        const char *file;
        const char *warning;  // behind the name of the file; empty: none
    } cases[] = {
        {"; c\r\n\r\n [s]\n; c\n a =1\n a =2\n", ""},
        {"[s]\nlink ={\n}\nlink ={\n}\nhost =\n", ""},
        {"; c\n  x\n[s]\n", "2:3: warning: text before the first section"},
        {"x", "1:1: warning: text before the first section"},
        {"[s]\n  ; c\n min =1\n", "2:3: warning: [s] ; c\\x0a min: a comment begins at the start"},
        {"[s]\n max\n min =1\n", "2:2: warning: [s] max\\x0a min: \"=\" is missing behind 'max'"},
        {"[s]\na =1\nb ={\n c =\n d =\n c =\n}\n", "6:2: warning: [s] b@c@2: 'c' is there twice"},
        {"[s]\na =x\0y\n", "2:5: warning: a zero byte is left out"},
        {"[s]\n\x1a[t]\n", "2:1: warning: a Ctrl-Z ends the text; 4 bytes behind it"},
        {"[s]\n[t\n", "3:1: warning: the section's name has no \"]\""},
    };
    for (const auto &each : cases) {
        std::string file = each.file;
        if (file == "[s]\na =x") file += std::string("\0y\n", 3);
        write("odd.env", file);
        const std::string warning = *each.warning != '\0' ? "odd.env:" + std::string(each.warning) : "";
        expect({"check", "odd.env"}, 0, "", warning);
        EXPECT_EQ(run({"env", "check", "odd.env", "--strict"}).code, warning.empty() ? 0 : 1) << file;
    }
}

TEST_F(EnvCompare, ChecksAgainstTheMakersFile) {
    write("maker.env",
          "[s]\nlimits ={\n min =-5\n max =10,20\n}\nslot ={\n id =1\n}\nslot ={\n}\nname =x\n");
    const struct {
        const char *file;
        int code;
        const char *finding;  // behind the name of the file; empty: none
    } cases[] = {
        {"[s]\nlimits ={\n min =7.5e1\n max =1 , 2\n}\nname =\n", 0, ""},
        {"[s]\nlimts ={\n a =\n}\n", 1,
         "2:1: error: [s] limts: the maker's file has no such element; did you "
         "mean 'limits'?"},
        {"[S]\n", 1, "1:1: error: [S]: the maker's file has no such section; did you mean 's'?"},
        {"[s]\nlimits =1\n", 1, "2:1: error: [s] limits: is a text, and the maker's file has a block"},
        {"[s]\nname ={\n}\n", 1, "2:1: error: [s] name: is a block, and the maker's file has a text"},
        {"[s]\nlimits ={\n min =low\n}\n", 1, "3:2: error: [s] limits@min: 'low' is no number, as '-5'"},
        {"[s]\nlimits ={\n max =1,x\n}\n", 1, "3:2: error: [s] limits@max: '1,x' is no list of numbers"},
        {"[s]\nlimits ={\n max =1\n}\n", 0,
         "3:2: note: [s] limits@max: has 1 number, and the maker's file 2"},
        {"[s]\nname =x\n", 0, "2:1: note: [s] name: is the same as in the maker's file"},
        {"[s]\nslot ={\n}\nslot ={\n}\nslot ={\n}\n", 1,
         "6:1: error: [s] slot@3: is number 3 of its name, and "
         "the maker's file has 2"},
        {"[s]\n ; c\nname =y\n", 1, "2:2: warning: [s] ; c\\x0aname: a comment begins"},
    };
    for (const auto &each : cases) {
        write("site.env", each.file);
        const std::string finding = *each.finding != '\0' ? "site.env:" + std::string(each.finding) : "";
        expect({"check", "site.env", "--against", "maker.env"}, each.code, "", finding);
    }
    write("site.env",
          "[s]\nslot ={\n id =x\n}\nslot ={\n own =\n}\nslot ={\n}\n[local]\n a ={\n b =\n }\n");
    const std::vector<std::pair<std::vector<std::string>, int>> patterns = {
        {{"s slot", "local"}, 2}, {{"s slot@3", "s slot@2@o?n", "loc*"}, 2}, {{"s", "*"}, 2},
        {{"s slot@2", "l"}, 4},   {{"s slot@1@id", "local a"}, 5},
    };
    for (const auto &[free, lines] : patterns) {
        std::vector<std::string> words = {"env", "check", "site.env", "--against=maker.env", "--json"};
        for (const std::string &pattern : free) words.insert(words.end(), {"--free", pattern});
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, 1) << free[0];  // of the id, which is no number
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), lines + 1) << outcome.out;
        EXPECT_NE(outcome.out.find(R"({"file": "site.env", "line": 3, "column": 2, "severity": "error", )"
                                   R"("section": "s", "path": "slot@id", "message": "'x' is no number)"),
                  std::string::npos)
            << outcome.out;
    }
    expect({"check", "site.env", "--free", "s"}, 2, "", "--free goes with --against");
    expect({"check", "site.env", "--against", "none.env"}, 3, "", "none.env: cannot be read");
}

// A file of random elements; names are few, so that they are repeated.
std::string random_file(std::mt19937 &random) {
    const std::vector<std::string> names = {"a", "b", "7", "x y", "'q"};
    const std::vector<std::string> values = {"", "1", "two words", "it's", "\"", "\\x", "; =", "[x]"};
    const auto below = [&](std::size_t count) { return random() % count; };
    std::string text;
    for (const char *section : {"[s]", "[t u]", "[v]"}) {
        if (below(4) == 0) continue;
        text += std::string(section) + "\n; comment\n";
        std::size_t depth = 0;
        for (std::size_t left = below(12); left > 0; --left) {
            text += names[below(names.size())] + " =";
            if (depth < 3 && below(3) == 0) {
                text += "{\n";
                ++depth;
            } else {
                text += values[below(values.size())] + "\n";
            }
            if (depth > 0 && below(3) == 0) {
                text += "}\n";
                --depth;
            }
        }
        while (depth-- > 0) text += "}\n";
    }
    return text;
}

TEST_F(EnvCompare, EditsOfADiffMakeTheOtherFile) {
    std::mt19937 random(4711);
    for (int i = 0; i < 60 && !HasFailure(); ++i) {
        write("a.env", random_file(random));
        write("b.env", random_file(random));
        const Outcome diff = run({"env", "diff", "a.env", "b.env"});
        EXPECT_EQ(diff.err, "");
        write("edits", diff.out);
        SCOPED_TRACE(content("a.env") + "---\n" + content("b.env") + "---\n" + diff.out);
        EXPECT_EQ(run({"env", "edit", "a.env"}, {.input = path("edits").string()}).err, "");
        EXPECT_EQ(run({"env", "show", "a.env", "--text"}).out, run({"env", "show", "b.env", "--text"}).out);
        EXPECT_EQ(diff.code, diff.out.empty() ? 0 : 1);
        expect({"diff", "a.env", "b.env"}, 0, "");
    }
}

TEST_F(EnvCompare, DiffsAreDrawnAndTellWhatNoPathNames) {
    write("a.env", "[s]\na =1\nb ={\nc =2\nd =3\n}\nb ={\nc ={\n}\n}\n");
    write("b.env", "[s]\na =1\nn =0\nb ={\nc =4\n}\nb ={\nc ={\ne =5\n}\n}\n[t]\n");
    expect({"diff", "a.env", "b.env"}, 1,
           "set t\ninsert s b n 0\ndelete s b@d\nset s b@c 4\nset s b@2@c@e 5\n");
    expect(
        {"diff", "a.env", "b.env", "--tree"}, 1,
        "  [s]\n+   n = 0\n    b\n-     c = 2\n+     c = 4\n-     d = 3\n    b@2\n      c\n+       e = 5\n"
        "+ [t]\n");
    write("b.env", "[s]\na =1\nm@n =0\nb ={\nc =2\nd =3\n}\nb ={\nc ={\n}\n}\n[s]\nx =\n");
    expect({"diff", "a.env", "b.env"}, 3, "",
           "b.env: [s]: differs, and no edit can say how\nb.env: [s] m@n: differs");
    expect({"diff", "a.env", "b.env", "--delimiter=/"}, 3, "insert s b m@n 0\n", "b.env: [s]: differs");
}

}  // namespace

}  // namespace kvtest

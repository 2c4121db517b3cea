// SPDX-License-Identifier: MIT
// `kv env` where it only reads: show, get, names, count, check, and the command line itself.
#include <algorithm>
#include <array>

#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

using namespace std::string_literals;

struct Case {
    std::vector<std::string> words;
    int code;
    std::string out;
    std::string err = {};
};

class EnvRead : public ProgramTest {
  protected:
    EnvRead() { write("press.env", kPress); }
    void expect_all(const std::vector<Case> &cases) const {
        for (const Case &each : cases) expect(each.words, each.code, each.out, each.err);
    }
};

TEST_F(EnvRead, RefusesWhatIsNoPath) {
    expect_all({
        {{"get", "press.env", "press", "@@"}, 2, "", "has no name"},
        {{"get", "press.env", "press", std::string(1024, 'x')}, 2, "", "1023"},
        {{"get", "press.env", "press", std::string(98, '@') + "x"}, 2, "", "97"},
        {{"get", "press.env", "press", "name", "--delimiter="}, 2, "", "--delimiter"},
        {{"show", "press.env", "--json", "--text"}, 2, "", "not both"},
        {{"count", "press.env", "press", "--same-name"}, 2, "", "needs PATH"},
    });
}

TEST_F(EnvRead, GetsValues) {
    write("text.env", "[s]\n d =1d3\n list =0.1, 2,-3e-5\n words =a, b,,c \n empty =\n far =99999999999\n");
    expect_all({
        {{"get", "press.env", "press", "name"}, 0, "Press 4\n"},
        {{"get", "./press.env", "press", "axis@2@name"}, 0, "Y\n"},
        {{"get", "press.env", "press", "limits.max", "--delimiter", "/."}, 0, "250\n"},
        {{"get", "text.env", "s", "d", "--type", "double"}, 0, "1000\n"},
        {{"get", "text.env", "s", "list", "--type", "doubles"}, 0, "0.1\n2\n-3e-05\n"},
        {{"get", "text.env", "s", "words", "--type", "strings"}, 0, "a\n b\n\nc\n"},
        {{"get", "text.env", "s", "far", "--type", "long"}, 0, "2147483647\n"},
        {{"get", "press.env", "press", "speed", "--type", "long"}, 1, "", "is not a whole number"},
        {{"get", "text.env", "s", "list", "--type", "longs"}, 1, "", "is not a list of whole numbers"},
        {{"get", "text.env", "s", "empty", "--type", "doubles"}, 1, "", "is not a list of numbers"},
        {{"get", "press.env", "press", "limits"}, 1, "", "[press] limits is a block"},
        {{"get", "press.env", "press", "far"}, 1, "", "press.env: [press] far not found\n"},
        {{"get", "press.env", "press", "limits@mx"}, 1, "", "not found; did you mean 'max'?"},
        {{"get", "press.env", "Press", "x"}, 1, "", "not found; did you mean 'press'?"},
        {{"get", "press.env", "press", "far", "--any-depth"}, 0, "7\n"},
    });
}

TEST_F(EnvRead, GetsThroughTheDefaultChain) {
    write("site.env", "[press]\r\n  speed =90\r\n");
    write("line.env", "[press]\r\n  speed =1\r\n  shift =2\r\n");
    const std::array<std::string, 3> values[] = {
        {"speed", "text", "site.env\t90\n"},
        {"shift", "long", "line.env\t2\n"},
        {"axes", "longs", "press.env\t1\npress.env\t2\npress.env\t3\n"},
        {"nothing", "text", ""}};
    for (const auto &[name, type, out] : values) {
        expect({"get", "site.env", "press", name, "--default", "line.env", "--default=press.env",
                "--origin", "-t", type},
               out.empty() ? 1 : 0, out, out.empty() ? "site.env: [press] nothing not found" : "");
    }
}

TEST_F(EnvRead, ListsAndCounts) {
    expect_all({
        {{"names", "press.env"}, 0, "press\nspare\n"},
        {{"names", "press.env", "press", "axis@2", "--json"}, 0, "[\n\"name\",\n\"travel\"\n]\n"},
        {{"names", "press.env", "press", "travel", "--any-depth"}, 0, "far\n"},
        {{"names", "press.env", "press", "name"}, 1, "", "is not a block"},
        {{"names", "press.env", "press", "axis@3"}, 1, "", "not found"},
        {{"count", "press.env"}, 0, "2\n"},
        {{"count", "press.env", "spare"}, 0, "0\n"},
        {{"count", "press.env", "press", "axis@2", "--same-name"}, 0, "2\n"},
        {{"count", "press.env", "press", "/axis/2/name", "--same-name", "--delimiter=./"}, 0, "1\n"},
        {{"count", "press.env", "press", "shaft", "--same-name"}, 1, "", "not found"},
    });
}

TEST_F(EnvRead, ShowsATree) {
    expect_all({
        {{"show", "press.env"},
         0,
         "[press]\n├── name = Press 4\n├── speed = 120.5\n├── limits\n│   ├── min = 0\n│   └── max = 250\n"
         "├── axes = 1,2,3\n├── axis\n│   └── name = X\n└── axis\n    ├── name = Y\n    └── travel\n"
         "        └── far = 7\n[spare]\n"},
        {{"show", "press.env", "press", "travel@far", "--any-depth"}, 0, "far = 7\n"},
        {{"show", "press.env", "press", "travel"}, 1, "", "not found"},
        {{"show", "press.env", "--text"}, 0, kPress},
        {{"show", "press.env", "press", "axis@2", "--text"},
         0,
         "[press]\r\n  axis ={\r\n    name =Y\r\n    travel ={\r\n      far =7\r\n    }\r\n  }\r\n"},
        {{"show", "press.env", "press", "speed", "--text"}, 0, "[press]\r\n  speed =120.5\r\n"},
        {{"show", "press.env", "press", "limits", "--json"},
         0,
         "[\n{\"name\": \"limits\", \"elements\": [\n{\"name\": \"min\", \"value\": \"0\"},\n"
         "{\"name\": \"max\", \"value\": \"250\"}\n]}\n]\n"},
    });
}

TEST_F(EnvRead, ShowsWhatNoSimplePathReaches) {
    // Sections of one name, a delimiter and digits in names, repeated and empty blocks.
    const std::string text =
        "[a]\r\n  x =1\r\n[a]\r\n  7 ={\r\n    u@v ={\r\n    }\r\n    u@v ={\r\n      7 =2\r\n    }\r\n  "
        "}\r\n";
    write("odd.env", text);
    expect({"show", "odd.env"}, 0,
           "[a]\n└── x = 1\n[a]\n└── 7\n    ├── u@v\n    └── u@v\n        └── 7 = 2\n");
    expect({"show", "odd.env", "--json"}, 0,
           "[\n{\"name\": \"a\", \"elements\": [\n{\"name\": \"x\", \"value\": \"1\"}\n]},\n"
           "{\"name\": \"a\", \"elements\": [\n{\"name\": \"7\", \"elements\": [\n"
           "{\"name\": \"u@v\", \"elements\": [\n]},\n{\"name\": \"u@v\", \"elements\": [\n"
           "{\"name\": \"7\", \"value\": \"2\"}\n]}\n]}\n]}\n]\n");
    write("one.env", text.substr(text.find("[a]\r\n  7")));
    expect({"show", "one.env", "a", "--text"}, 0, content("one.env"));
    write("long.env", "[a]\n" + std::string(1100, 'n') + " ={\n}\n");
    expect({"show", "long.env"}, 3, "[a]\n└── " + std::string(1100, 'n') + "\n", "no path can have");
}

TEST_F(EnvRead, JsonEscapesEveryOddByte) {
    std::string file = "[s]\n";
    std::string json = "[\n{\"name\": \"s\", \"elements\": [\n";
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '\n' || byte == '\r' || byte == 26) continue;
        file += "e =<" + std::string(1, static_cast<char>(byte)) + ">\n";
        char escape[] = "\\u0000";
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
        const std::string plain(byte == '"' || byte == '\\' ? 1U : 0U, '\\');
        json += "{\"name\": \"e\", \"value\": \"<";
        json += byte < 0x20 || byte >= 0x7f ? escape : plain + static_cast<char>(byte);
        json += byte < 255 ? ">\"},\n" : ">\"}\n";
    }
    write("bytes.env", file);
    expect({"show", "bytes.env", "--json"}, 0, json + "]}\n]\n");
    write("words.env", "[s]\nH\xf6he =\x80 5\xb5m\nL\u00e4nge =5 \u20ac\u0085\x1b[31m\n");
    expect({"show", "words.env"}, 0,
           "[s]\n├── H\u00f6he = \\x80 5\u00b5m\n└── L\u00e4nge = 5 \u20ac\\x85\\x1b[31m\n");
    expect({"get", "words.env", "s", "H\xf6he"}, 0, "\x80 5\xb5m\n");
}

TEST_F(EnvRead, ChecksFiles) {
    write("section.env", "[a]\r\n  x =1\r\n}\r\n");
    write("name.env", "[a]\nx =1\nyes\n");
    write("block.env", "[a]\nx ={\ny =1\n[b]\n");
    expect_all({
        {{"check", "press.env", "press.env"}, 0, ""},
        {{"check", "section.env"}, 1, "", "section.env:3:1: a section must begin here"},
        {{"check", "press.env", "block.env", "name.env"}, 1, "", "block.env:4:1: the block does not end"},
        {{"check", "name.env", "none.env"}, 3, "", "none.env: cannot be read: No such file"},
        {{"check", "none.env", "name.env"}, 3, "", "name.env:3:1: the text ends inside a name"},
        {{"get", "block.env", "a", "x"}, 3, "", "block.env:4:1: "},
    });
    // What is not read as it stands there.
    write("zero.env", "[a]\nx =1\0\0\n"s);
    write("mark.env", "\xef\xbb\xbf[a]\nx =1\n");
    write("wide.env", "\xff\xfe[\0a\0]\0"s);
    expect_all({
        {{"check", "zero.env"}, 0, "", "zero.env:2:5: warning: a zero byte is left out, as with 1 more\n"},
        {{"get", "zero.env", "a", "x"}, 0, "1\n", "zero.env:2:5: a zero byte"},
        {{"check", "mark.env"}, 0, "", "mark.env:1:1: warning: a byte order mark, which is no part"},
        {{"check", "wide.env"}, 3, "", "wide.env: is a text in UTF-16"},
        {{"get", "wide.env", "a", "x"}, 3, "", "wide.env: is a text in UTF-16"},
    });
}

TEST_F(EnvRead, DeepTreesNeedNoStack) {
    constexpr int kDepth = 100000;
    std::string text = "[s]\n";
    for (int i = 0; i < kDepth; ++i) text += "a={";
    text += "b=1\n" + std::string(kDepth, '}');
    write("deep.env", text);
    RunOptions options;
    options.limit = RunOptions::Limit::stack;
    options.limit_value = 256 * 1024;
    const Outcome json = run({"env", "show", "deep.env", "--json"}, options);
    EXPECT_EQ(json.code, 0) << json.err;
    EXPECT_EQ(std::count(json.out.begin(), json.out.end(), '['), kDepth + 2);
    EXPECT_EQ(std::count(json.out.begin(), json.out.end(), ']'), kDepth + 2);
    const Outcome tree = run({"env", "show", "deep.env"}, options);
    EXPECT_EQ(tree.code, 0) << tree.err;
    EXPECT_NE(tree.out.find("└── (depth 100001) b = 1\n"), std::string::npos);
    EXPECT_EQ(run({"env", "check", "deep.env"}, options).code, 0);
    EXPECT_EQ(run({"env", "get", "deep.env", "s", "b", "--any-depth"}, options).out, "1\n");
}

}  // namespace

}  // namespace kvtest

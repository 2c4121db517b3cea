// SPDX-License-Identifier: MIT
// What an update makes of the file, byte for byte; deleting and renaming.
#include <string>
#include <vector>

#include "tests/config/mini_caches.hpp"

namespace {

using namespace kvtest;

constexpr char kReport[] = "Incorrect entry's format. '=' is not found;";

// A call in short, its status: "=section|key|value" writes, "-section|key" deletes, ">section|key|name"
// renames, "]old|new" renames a section, "[section" deletes it, "!section" unloads it, "?section" loads it.
// "NIL" is no text.
int32_t call(MINI *cache, const std::string &text) {
    std::vector<std::string> words(1);
    for (const char c : text.substr(1)) {
        if (c == '|') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    words.resize(3);
    const auto word = [&](std::size_t i) { return words[i] != "NIL" ? words[i].c_str() : nullptr; };
    switch (text[0]) {
        case '=':
            return mini_write_string(cache, word(0), word(1), word(2));
        case '-':
            return mini_delete_entry(cache, word(0), word(1));
        case '>':
            return mini_rename_entry(cache, word(0), word(1), word(2));
        case '[':
            return mini_delete_section(cache, word(0));
        case ']':
            return mini_rename_section(cache, word(0), word(1));
        case '!':
            return mini_unload_one_section(cache, word(0));
        default:
            keys(cache, word(0));
            return INI_OK;
    }
}

struct Golden {
    std::string before;
    std::vector<std::string> calls;
    std::string after;
    int32_t flags = 0;
    int reports = 0;
};

constexpr char kFile[] =
    "; top\n\n u = 0 \n[A]\n  ; of a\n a  = 1\nno\nb= 2 \n\n\n;end of a\n[ B ] rest\nx=1\nalso no\ny = 2\n";
const std::string kA = "\n\n[A]\n; of a\na  = 1\nno\nb= 2\n;end of a";
const std::string kB = "\n\n[B]\nx=1\nalso no\ny = 2";

TEST(MiniMerge, Golden) {
    const Golden cases[] = {
        {kFile, {}, "; top\nu = 0" + kA + kB},
        {kFile, {}, "; top\nu= 0\n\n[A]\n; of a\na= 1\nb= 2\n;end of a\n\n[B]\nx=1\ny= 2", MINI_LOADALL, 2},
        {kFile, {"=A|a|new", "=|u| 9"}, "; top\nu= 9\n\n[A]\n; of a\na=new\nb= 2\n;end of a" + kB, 0, 1},
        // New entries come last in their section, and new sections in the file.
        {kFile,
         {"=A|c|3", "=NIL|v|1"},
         "; top\nu= 0\nv=1\n\n[A]\n; of a\na= 1\nb= 2\n;end of a\nc=3" + kB,
         0,
         1},
        {kFile, {"=C|c|3", "= D d | d |4", "?E"}, "; top\nu = 0" + kA + kB + "\n\n[C]\nc=3\n\n[D d]\nd=4"},
        // A renamed entry is not the line's any more: it and those behind it come at the end.
        {kFile, {"?A", ">A|a| new "}, "; top\nu = 0\n\n[A]\n; of a\n;end of a\nnew= 1\nb= 2" + kB, 0, 1},
        // No empty line before what no entry precedes.
        {"[A]\n\n[B]\n;c\n[C]\nx=1\n[D]\n[E]\n", {}, "[A]\n[B]\n;c\n[C]\nx=1\n\n[D]\n\n[E]"},
        {"", {"=A|a|1", "=|u|1"}, "u=1\n\n[A]\na=1"},
        // The second of two sections reads as the first.
        {"[A]\na=1\na=2\n[A]\nb=2\n", {"=A|a|9"}, "[A]\na=9\na=2\n\n[A]\na=9\na=2"},
        {"u=1\n[ ]\nu=2\nx\n[A]\na=1\n", {"=|v|3", "=A|a|2"}, "u=1\nv=3\n\n[]\nu=2\nx\n\n[A]\na=2"},
        // A line that others have added, and changes that are lost.
        {"[A]\na=1\n", {"=A|a|2", "!A"}, "[A]\na=1"},
        {"[A]\na=1\n\x1amore", {"=A|a|2"}, "[A]\na=2\x1amore"},
        {kFile, {"=C|c|1"}, "[C]\nc=1", MINI_REWRITE},
        {kFile, {"=C|c|1"}, "u= 0\n[A]\na= 1\nb= 2\n[B]\nx=1\ny= 2\n[C]\nc=1", MINI_REWRITE | MINI_LOADALL},
    };
    for (const Golden &c : cases) {
        for (const std::string &before : {crlf(c.before), c.before}) {
            SCOPED_TRACE(c.after);
            write_file(cache_file(), before);
            clear_log();
            Cache cache(c.flags);
            for (const std::string &text : c.calls) EXPECT_EQ(call(cache, text), INI_OK) << text;
            EXPECT_EQ(read_file(cache_file()), before);
            EXPECT_EQ(cache.close(), 1);
            EXPECT_EQ(read_file(cache_file()), crlf(c.after));
            EXPECT_EQ(count_in_log(kReport), c.reports);
        }
    }
}

// What was once appended is not appended again when others have removed it.
TEST(MiniMerge, ModifiedUntilSaved) {
    use_file("");
    const Cache cache;
    mini_write_string(cache, "A", "a", "1");
    std::filesystem::permissions(drive_c(), std::filesystem::perms::owner_all);
    std::filesystem::remove(cache_file());
    std::filesystem::create_directory(cache_file());
    EXPECT_EQ(mini_update_file(cache), 0);
    std::filesystem::remove(cache_file());
    EXPECT_EQ(mini_update_file(cache), 1);  // the change was not lost by the failure
    EXPECT_EQ(read_file(cache_file()), crlf("[A]\na=1"));
    use_file("[B]\n");
    EXPECT_EQ(mini_update_file(cache), 1);
    EXPECT_EQ(read_file(cache_file()), crlf("[B]"));
}

TEST(MiniOpen, ReadOnlyNeverWrites) {
    std::filesystem::remove(cache_file());
    EXPECT_EQ(mini_open(nullptr, kCacheFile, MINI_READONLY), nullptr);
    use_file("[A]\na=1\n");
    Cache cache(MINI_READONLY);
    mini_write_string(cache, "A", "a", "2");
    EXPECT_EQ(value(cache, "A", "a"), "2");
    EXPECT_EQ(mini_update_file(cache), 0);
    EXPECT_EQ(mini_delete_entry(cache, "A", "a"), MINI_REFUSED);
    EXPECT_EQ(mini_delete_section(cache, "x"), MINI_REFUSED);
    EXPECT_EQ(mini_rename_entry(cache, "A", "a", "b"), MINI_REFUSED);
    EXPECT_EQ(mini_rename_section(cache, "A", " "), MINI_REFUSED);
    EXPECT_EQ(cache.close(), 1);
    EXPECT_EQ(read_file(cache_file()), crlf("[A]\na=1\n"));
}

TEST(MiniOpen, FindsItsFile) {
    std::filesystem::remove(cache_file());
    std::filesystem::create_directories(drive_c() / "sub");
    write_file(drive_c() / "sub" / "x.ini", "k=in sub\r\n");
    write_file(drive_c() / "kv3.ini", "k=main\r\n");
    struct Case {
        const char *dir, *name, *text;
    };
    for (const Case &c : {Case{nullptr, "C:\\sub\\x.ini", "in sub"}, Case{"C:\\sub", "x.ini", "in sub"},
                          Case{"C:/sub/", "x.ini", "in sub"}, Case{"C:\\nowhere", "C:/sub/x.ini", "in sub"},
                          Case{nullptr, nullptr, "main"}, Case{"C:\\sub", "", "main"},
                          Case{nullptr, "C:\\sub\\", "main"}}) {
        SCOPED_TRACE(c.name != nullptr ? c.name : "NIL");
        MINI *cache = mini_open(c.dir, c.name, MINI_READONLY);
        ASSERT_NE(cache, nullptr);
        EXPECT_EQ(value(cache, "", "k"), c.text);
        mini_close(&cache);
        EXPECT_EQ(cache, nullptr);
    }
    std::filesystem::remove(drive_c() / "kv3.ini");
    clear_log();
    EXPECT_EQ(mini_open(nullptr, nullptr, MINI_READONLY), nullptr);
    EXPECT_EQ(count_in_log("kv_suche_datei did not find KVINIFILE"), 1);
    MINI *homeless = mini_open(nullptr, "", 0);  // works in memory
    ASSERT_NE(homeless, nullptr);
    EXPECT_EQ(mini_write_string(homeless, "s", "k", "v"), INI_OK);
    EXPECT_EQ(value(homeless, "s", "k"), "v");
    EXPECT_EQ(mini_update_file(homeless), 0);
    mini_close(&homeless);

    const std::string longest = "C:\\" + std::string(251, 'x');
    EXPECT_EQ(mini_open("C:\\s", (std::string(252, 'x')).c_str(), 0), nullptr);
    EXPECT_EQ(mini_open(nullptr, (longest + "xx").c_str(), 0), nullptr);
    EXPECT_EQ(mini_open((longest + "xx").c_str(), "y", 0), nullptr);
}

TEST(MiniOpen, AFirstUpdateMakesTheFile) {
    std::filesystem::remove(cache_file());
    Cache cache(MINI_LOADALL);
    EXPECT_EQ(mini_update_file(cache), 1);
    EXPECT_TRUE(std::filesystem::exists(cache_file()));
    EXPECT_EQ(read_file(cache_file()), "");
    mini_write_double(cache, "s", "d", 0.1);
    EXPECT_EQ(cache.close(), 1);
    EXPECT_EQ(read_file(cache_file()), crlf("[s]\nd=0.1"));
}

TEST(MiniEdit, LoadedOrNot) {
    const std::string before = "[A]\na = 1\nb=2\n[B]\nx=1\n", name80(80, 'n'), name79(79, 'n');
    const struct {
        std::string call;
        int32_t status;
        std::string keys;   // of A, if it is loaded; the file stays then
        std::string after;  // of the file, at once, if it is not
    } cases[] = {
        {"- A|a", INI_OK, "b", "[A]\nb=2\n[B]\nx=1\n"},
        {">A|a|c ", INI_OK, "c b", "[A]\nc= 1\nb=2\n[B]\nx=1\n"},
        {">A|b|" + name80, INI_OK, "a " + name79, "[A]\na= 1\n" + name79 + "=2\n[B]\nx=1\n"},
        {">A|x|y", INI_NO_ENTRY, "a b", "[A]\na= 1\nb=2\n\n[B]\nx=1\n"},
        {"-A|NIL", INI_NO_ENTRY, "a b", before},
        {">A|a|  ", INI_BAD_NAME, "a b", before},
        {"[NIL", INI_NO_ENTRY, "a b", before},
        {"]A| ", INI_BAD_NAME, "a b", before},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.call);
        use_file(before);
        const Cache loaded;
        keys(loaded, "A");
        EXPECT_EQ(call(loaded, c.call), c.status);
        EXPECT_EQ(read_file(cache_file()), crlf(before));
        EXPECT_EQ(keys(loaded, "A"), c.keys);
        const Cache fresh;
        EXPECT_EQ(call(fresh, c.call), c.status);
        EXPECT_EQ(read_file(cache_file()), crlf(c.after));
    }
    // Sections go and get names in the file at once, loaded or not.
    for (const bool load : {false, true}) {
        use_file(before);
        const Cache cache;
        if (load) keys(cache, "A");
        EXPECT_EQ(call(cache, "] A| Z "), INI_OK);
        EXPECT_EQ(keys(cache, "A"), "<1>");
        EXPECT_EQ(read_file(cache_file()), crlf("[Z]\na = 1\nb=2\n[B]\nx=1\n"));
        EXPECT_EQ(call(cache, "[ Z "), INI_OK);
        EXPECT_EQ(read_file(cache_file()), crlf("[B]\nx=1\n"));
        EXPECT_EQ(call(cache, "[Q"), INI_NO_SECTION);
    }
    for (const char *each : {"-A|NIL", "[NIL", ">A|NIL|x", "]NIL|x"})
        EXPECT_EQ(call(nullptr, each), INI_FAILED);
    std::filesystem::remove(cache_file());
    const Cache missing;
    EXPECT_EQ(call(missing, "-A|a"), INI_FAILED);
    EXPECT_EQ(call(missing, "]A|B"), INI_FAILED);
}

// A section that was renamed while loaded is found under its new name only, values and all.
TEST(MiniEdit, RenamedSectionsStayLoaded) {
    use_file("u=1\n[A]\na=1\n");
    {
        const Cache cache;
        mini_write_string(cache, "A", "a", "2");
        mini_write_string(cache, "", "u", "2");
        EXPECT_EQ(mini_rename_section(cache, "A", "Z"), INI_OK);
        EXPECT_EQ(mini_rename_section(cache, "", "U"), INI_OK);
        EXPECT_EQ(value(cache, "Z", "a") + value(cache, "U", "u") + value(cache, "A", "a"), "22<1>");
        EXPECT_EQ(keys(cache, ""), "");
    }
    EXPECT_EQ(read_file(cache_file()), crlf("[U]\nu=2\n\n[Z]\na=2"));
}

}  // namespace

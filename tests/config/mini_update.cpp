// What an update makes of the file, byte for byte; deleting and renaming.
#include <functional>
#include <vector>

#include "tests/config/mini_caches.hpp"

namespace {

using namespace kvtest;

constexpr char kReport[] = "Incorrect entry's format. '=' is not found;";

using Calls = std::function<void(MINI *)>;

Calls write(const char *section, const char *entry, const char *text) {
    return [=](MINI *cache) { EXPECT_EQ(mini_write_string(cache, section, entry, text), INI_OK); };
}
Calls touch(const char *section) {
    return [=](MINI *cache) { keys(cache, section); };
}
Calls rename(const char *section, const char *old_name, const char *new_name) {
    return [=](MINI *cache) { EXPECT_EQ(mini_rename_entry(cache, section, old_name, new_name), INI_OK); };
}
Calls remove(const char *section, const char *entry) {
    return [=](MINI *cache) { EXPECT_EQ(mini_delete_entry(cache, section, entry), INI_OK); };
}

struct Golden {
    const char *what;
    std::string before;
    std::vector<Calls> calls;
    std::string after;
    int32_t flags = 0;
    int reports = 0;
};

void expect(const std::vector<Golden> &cases) {
    for (const Golden &c : cases) {
        SCOPED_TRACE(c.what);
        for (const std::string &before : {crlf(c.before), c.before}) {
            write_file(cache_file(), before);
            clear_log();
            Cache cache(c.flags);
            for (const Calls &call : c.calls) call(cache);
            EXPECT_EQ(read_file(cache_file()), before);
            EXPECT_EQ(cache.close(), 1);
            EXPECT_EQ(read_file(cache_file()), crlf(c.after));
            EXPECT_EQ(count_in_log(kReport), c.reports);
        }
    }
}

constexpr char kFile[] =
    "; top\n\n u = 0 \n[A]\n  ; of a\n a  = 1\nno\nb= 2 \n\n\n;end of a\n[ B ] rest\nx=1\nalso no\ny = 2\n";

TEST(MiniMerge, Golden) {
    expect({
        {"nothing loaded",
         kFile,
         {},
         "; top\nu = 0\n\n[A]\n; of a\na  = 1\nno\nb= 2\n;end of a\n\n[B]\nx=1\nalso no\ny = 2"},
        {"all loaded",
         kFile,
         {},
         "; top\nu= 0\n\n[A]\n; of a\na= 1\nb= 2\n;end of a\n\n[B]\nx=1\ny= 2",
         MINI_LOADALL,
         2},
        {"values in place",
         kFile,
         {write("A", "a", "new"), write("", "u", " 9")},
         "; top\nu= 9\n\n[A]\n; of a\na=new\nb= 2\n;end of a\n\n[B]\nx=1\nalso no\ny = 2",
         0,
         1},
        {"new entries come last",
         kFile,
         {write("A", "c", "3"), write("B", " z ", ""), write(nullptr, "v", "1")},
         "; top\nu= 0\nv=1\n\n[A]\n; of a\na= 1\nb= 2\n;end of a\nc=3\n\n[B]\nx=1\ny= 2\nz=",
         0,
         2},
        {"new sections come last",
         kFile,
         {write("C", "c", "3"), write(" D d ", "d", "4"), touch("E")},
         "; top\nu = 0\n\n[A]\n; of a\na  = 1\nno\nb= 2\n;end of a\n\n[B]\nx=1\nalso no\ny = 2"
         "\n\n[C]\nc=3\n\n[D d]\nd=4"},
        {"removed",
         kFile,
         {touch("A"), remove("A", "a")},
         "; top\nu = 0\n\n[A]\n; of a\nb= 2\n;end of a\n\n[B]\nx=1\nalso no\ny = 2",
         0,
         1},
        // A renamed entry is not the line's any more: it and those behind it come at the end.
        {"renamed",
         kFile,
         {touch("A"), rename("A", "a", " new ")},
         "; top\nu = 0\n\n[A]\n; of a\n;end of a\nnew= 1\nb= 2\n\n[B]\nx=1\nalso no\ny = 2",
         0,
         1},
        {"last one renamed",
         kFile,
         {touch("A"), rename("A", "b", "new")},
         "; top\nu = 0\n\n[A]\n; of a\na= 1\n;end of a\nnew= 2\n\n[B]\nx=1\nalso no\ny = 2",
         0,
         1},
        {"no blank line before what no entry precedes",
         "[A]\n\n[B]\n;c\n[C]\nx=1\n[D]\n[E]\n",
         {},
         "[A]\n[B]\n;c\n[C]\nx=1\n\n[D]\n\n[E]"},
        {"entry in an empty section", "[A]\n[B]\n", {write("A", "a", "1")}, "[A]\na=1\n\n[B]"},
        {"unnamed section of a file without one", "[A]\na=1\n", {write("", "u", "1")}, "u=1\n\n[A]\na=1"},
        {"empty file", "", {write("A", "a", "1"), write("", "u", "1")}, "u=1\n\n[A]\na=1"},
        {"empty file, no unnamed section", "", {write("A", "a", "1")}, "[A]\na=1"},
        {"only comments", ";x\n\n ;y", {write("A", "a", "1")}, ";x\n;y\n\n[A]\na=1"},
        {"repeated keys", "[A]\na=1\na=2\n", {write("A", "a", "9")}, "[A]\na=9\na=2"},
        {"the second of two sections reads as the first",
         "[A]\na=1\n[A]\nb=2\n",
         {write("A", "a", "9")},
         "[A]\na=9\n\n[A]\na=9"},
        {"header without a name",
         "u=1\n[ ]\nu=2\nx\n[A]\na=1\n",
         {write("", "v", "3"), write("A", "a", "2")},
         "u=1\nv=3\n\n[]\nu=2\nx\n\n[A]\na=2"},
        {"a line that others have added",
         "[A]\na=1\nnew=1\nb=2\n",
         {touch("A"), remove("A", "new"), write("A", "b", "3")},
         "[A]\na=1\nb=3"},
        {"unloaded changes are lost",
         "[A]\na=1\n",
         {write("A", "a", "2"), [](MINI *cache) { mini_unload_one_section(cache, "A"); }},
         "[A]\na=1"},
        {"alone", kFile, {write("C", "c", "1")}, "[C]\nc=1", MINI_REWRITE},
        {"alone, all",
         kFile,
         {write("C", "c", "1")},
         "u= 0\n[A]\na= 1\nb= 2\n[B]\nx=1\ny= 2\n[C]\nc=1",
         MINI_REWRITE | MINI_LOADALL},
    });
}

TEST(MiniMerge, KeepsWhatStandsBehindCtrlZ) {
    write_file(cache_file(), "[A]\r\na=1\r\n\x1amore\n");
    Cache cache;
    mini_write_string(cache, "A", "a", "2");
    cache.close();
    EXPECT_EQ(read_file(cache_file()), "[A]\r\na=2\x1amore\n");
}

// The file's other sections may change between loading and updating; several updates are the same as one.
TEST(MiniMerge, WithTheFileAsItIsNow) {
    use_file("[A]\na=1\n\n[B]\nb=1\n");
    const Cache cache;
    const Cache other;
    mini_write_string(cache, "A", "a", "2");
    mini_write_string(other, "B", "b", "2");
    EXPECT_EQ(mini_update_file(other), 1);
    EXPECT_EQ(mini_update_file(cache), 1);
    EXPECT_EQ(read_file(cache_file()), crlf("[A]\na=2\n\n[B]\nb=2"));
    EXPECT_EQ(mini_update_file(cache), 1);
    EXPECT_EQ(read_file(cache_file()), crlf("[A]\na=2\n\n[B]\nb=2"));
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
        const char *dir;
        const char *name;
        const char *text;
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

struct Edit {
    const char *what;
    std::function<int32_t(MINI *)> run;
    int32_t status;          // when the section is loaded
    std::string file;        // then, at once
    std::string keys;        // of A
    int32_t other_status;    // when it is not loaded
    std::string other_file;  // then, at once
};

TEST(MiniEdit, LoadedOrNot) {
    const std::string before = "[A]\na = 1\nb=2\n[B]\nx=1\n";
    const std::string a80(80, 'n');
    const std::string a79(79, 'n');
    const Edit edits[] = {
        {"delete entry", [](MINI *c) { return mini_delete_entry(c, " A", "a"); }, INI_OK, before, "b",
         INI_OK, "[A]\nb=2\n[B]\nx=1\n"},
        {"delete missing", [](MINI *c) { return mini_delete_entry(c, "A", "a "); }, INI_NO_ENTRY, before,
         "a b", INI_NO_ENTRY, "[A]\na= 1\nb=2\n[B]\nx=1\n"},
        {"delete NIL", [](MINI *c) { return mini_delete_entry(c, "A", nullptr); }, INI_NO_ENTRY, before,
         "a b", INI_NO_ENTRY, before},
        {"rename entry", [](MINI *c) { return mini_rename_entry(c, "A", "a", "c "); }, INI_OK, before,
         "c b", INI_OK, "[A]\nc= 1\nb=2\n[B]\nx=1\n"},
        {"rename to a longer name", [&](MINI *c) { return mini_rename_entry(c, "A", "b", a80.c_str()); },
         INI_OK, before, "a " + a79, INI_OK, "[A]\na= 1\n" + a79 + "=2\n[B]\nx=1\n"},
        {"rename to nothing", [](MINI *c) { return mini_rename_entry(c, "A", "a", "  "); }, INI_BAD_NAME,
         before, "a b", INI_BAD_NAME, before},
        {"rename to NIL", [](MINI *c) { return mini_rename_entry(c, "A", "x", nullptr); }, INI_BAD_NAME,
         before, "a b", INI_BAD_NAME, before},
        {"rename missing", [](MINI *c) { return mini_rename_entry(c, "A", "x", "y"); }, INI_NO_ENTRY,
         before, "a b", INI_NO_ENTRY, "[A]\na= 1\nb=2\n\n[B]\nx=1\n"},
        {"rename NIL", [](MINI *c) { return mini_rename_entry(c, "A", nullptr, "y"); }, INI_NO_ENTRY,
         before, "a b", INI_NO_ENTRY, before},
        {"delete section", [](MINI *c) { return mini_delete_section(c, " A "); }, INI_OK, "[B]\nx=1\n",
         "<1>", INI_OK, "[B]\nx=1\n"},
        {"delete section NIL", [](MINI *c) { return mini_delete_section(c, nullptr); }, INI_NO_ENTRY,
         before, "a b", INI_NO_ENTRY, before},
        {"rename section", [](MINI *c) { return mini_rename_section(c, " A", " Z "); }, INI_OK,
         "[Z]\na = 1\nb=2\n[B]\nx=1\n", "<1>", INI_OK, "[Z]\na = 1\nb=2\n[B]\nx=1\n"},
        {"rename section to nothing", [](MINI *c) { return mini_rename_section(c, "A", " "); },
         INI_BAD_NAME, before, "a b", INI_BAD_NAME, before},
        {"rename section NIL", [](MINI *c) { return mini_rename_section(c, nullptr, "y"); }, INI_NO_ENTRY,
         before, "a b", INI_NO_ENTRY, before},
        {"missing section", [](MINI *c) { return mini_delete_section(c, "Q"); }, INI_NO_SECTION,
         "[A]\na = 1\nb=2\n\n[B]\nx=1", "a b", INI_NO_SECTION, "[A]\na = 1\nb=2\n\n[B]\nx=1"},
    };
    for (const Edit &edit : edits) {
        SCOPED_TRACE(edit.what);
        use_file(before);
        const Cache loaded;
        keys(loaded, "A");
        EXPECT_EQ(edit.run(loaded), edit.status);
        EXPECT_EQ(read_file(cache_file()), crlf(edit.file));
        EXPECT_EQ(keys(loaded, "A"), edit.keys);
        use_file(before);
        const Cache fresh;
        EXPECT_EQ(edit.run(fresh), edit.other_status);
        EXPECT_EQ(read_file(cache_file()), crlf(edit.other_file));
    }
    EXPECT_EQ(mini_delete_entry(nullptr, "A", nullptr), INI_FAILED);
    EXPECT_EQ(mini_delete_section(nullptr, nullptr), INI_FAILED);
    EXPECT_EQ(mini_rename_entry(nullptr, "A", nullptr, "x"), INI_FAILED);
    EXPECT_EQ(mini_rename_section(nullptr, nullptr, "x"), INI_FAILED);
    std::filesystem::remove(cache_file());
    const Cache missing;
    EXPECT_EQ(mini_delete_entry(missing, "A", "a"), INI_FAILED);
    EXPECT_EQ(mini_rename_section(missing, "A", "B"), INI_FAILED);
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

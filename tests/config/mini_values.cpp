// Reading and writing in a cache: what is loaded, statuses, buffers, numbers.
#include <vector>

#include "tests/config/mini_caches.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

constexpr char kReport[] = "Incorrect entry's format. '=' is not found.";

TEST(MiniLoad, Format) {
    struct Case {
        std::string file;
        const char *section;
        const char *entry;
        std::string value;
    };
    const std::string v510(510, 'v');
    const Case cases[] = {
        {"a = 1\n", "", "a", " 1"},
        {" \ta\t =\tb \x01\n", nullptr, "a\t", "\tb"},
        {"=x\n", "  ", "", "x"},
        {"a=b=c\n", "", "a", "b=c"},
        {"a=1\na=2\n", "", "a", "1"},
        {";a=1\n", "", "a", "<2>"},
        {"a=;no comment\n", "", "a", ";no comment"},
        {"A=1\n", "", "a", "<2>"},
        {" [ s ] x\nk=1\n", "s", "k", "1"},
        {"[s\nk=1\n", " s ", "k", "1"},
        {"[s]\nk=1\n[s]\nk=2\nl=3\n", "s", "k", "1"},
        {"[s]\nk=1\n[s]\nk=2\nl=3\n", "s", "l", "<2>"},
        {"[s]\n[t]\nk=1\n", "s", "k", "<2>"},
        {"[s]\nk=1\n", "", "k", "<2>"},
        {"[s]\nk=1\n", "S", "k", "<1>"},
        {"", "s", "k", "<1>"},
        {"", "", "k", "<2>"},
        {"a=1\x1a\nb=2\n", "", "a", "1"},
        {"a=1\n\x1a"s + "b=2\n", "", "b", "<2>"},
        {"a=1\0b=2\n"s, "", "a", "1"},
        {"a=1\0b=2\n"s, "", "b", "2"},
        {"\0\0[s]\0k=1\0\0"s, "s", "k", "1"},
        {"a=\xff\x80\n", "", "a", "\xff\x80"},
        {"a=x\ry\r\r\n", "", "a", "x\ry"},
        {"k=" + v510 + "\n", "", "k", v510},
        {"k=" + v510 + "b=2\n", "", "k", v510},
        {"k=" + v510 + "b=2\n", "", "b", "2"},
        {"\0k="s + v510 + "b=2\n", "", "b", "2"},
        {std::string(100'000, 'x') + "=1\nk=2\n", "", "k", "2"},
    };
    for (const Case &c : cases) {
        for (const std::string &content : {crlf(c.file), c.file}) {
            for (const int32_t flags : {0, int32_t{MINI_LOADALL}}) {
                SCOPED_TRACE(c.file.substr(0, 80) + (flags == 0 ? ", when asked for" : ", all"));
                write_file(cache_file(), content);
                const Cache cache(flags | MINI_READONLY);
                EXPECT_EQ(value(cache, c.section, c.entry), c.value);
            }
        }
    }
}

TEST(MiniLoad, Reports) {
    use_file("x\na=1\n[s]\nno\nb=2\n[ ]\nc=3\nnot counted\n[t]\nd=4\n");
    const Cache all(MINI_LOADALL | MINI_READONLY);
    EXPECT_EQ(count_in_log(kReport), 2);
    EXPECT_EQ(count_in_log("Section's name is not defined. Description is ignored"), 1);
    EXPECT_EQ(keys(all, ""), "a");
    EXPECT_EQ(keys(all, "s"), "b");
    EXPECT_EQ(keys(all, "t"), "d");
    clear_log();
    const Cache asked(MINI_READONLY);
    EXPECT_EQ(keys(asked, "s"), "b");
    EXPECT_EQ(keys(asked, "s"), "b");  // loaded once
    EXPECT_EQ(count_in_log(kReport), 1);
}

// A line stands across every edge of the blocks that the file is read in.
TEST(MiniLoad, LinesAcrossBlocks) {
    for (int shift = 0; shift < 40; ++shift) {
        std::string file = "[s]\n" + std::string(static_cast<std::size_t>(shift), ';') + "\n";
        for (int i = 0; i < 3000; ++i)
            file += "key " + std::to_string(i) + "=" + std::to_string(i * 7) + "\n";
        use_file(file);
        const Cache cache(MINI_READONLY);
        for (int i = 0; i < 3000; ++i) {
            ASSERT_EQ(value(cache, "s", ("key " + std::to_string(i)).c_str()), std::to_string(i * 7));
        }
    }
}

TEST(MiniRead, Sizes) {
    use_file("[s]\nk=abcdef\n");
    const Cache cache(MINI_READONLY);
    struct Case {
        int32_t size;
        int32_t status;
        const char *text;
        int32_t size_after;
    };
    for (const Case &c :
         {Case{3, INI_NO_ROOM, "abc", 3}, Case{6, INI_OK, "abcdef", 6}, Case{9, INI_OK, "abcdef", 6},
          Case{0, INI_NO_ROOM, "", 0}, Case{-1, INI_NO_ROOM, "#", -1}}) {
        char buffer[10] = "#";
        int32_t size = c.size;
        EXPECT_EQ(mini_read_string(cache, "s", "k", buffer, &size), c.status) << c.size;
        EXPECT_STREQ(buffer, c.text);
        EXPECT_EQ(size, c.size_after);
    }
}

TEST(MiniRead, KeyLists) {
    use_file("[s]\na=1\nbc=2\n[t]\n");
    const Cache cache(MINI_READONLY);
    struct Case {
        const char *section;
        int32_t capacity;
        int32_t status;
        std::string list;  // with all its zero bytes
    };
    const Case cases[] = {
        {"s", 10, INI_OK, "a\0bc\0\0"s}, {"s", 6, INI_OK, "a\0bc\0\0"s}, {"s", 5, INI_NO_ROOM, "a\0\0"s},
        {"s", 4, INI_NO_ROOM, "a\0\0"s}, {"s", 1, INI_NO_ROOM, "\0"s},   {"s", 0, INI_NO_ROOM, ""},
        {"t", 1, INI_OK, "\0"s},         {"u", 9, INI_NO_SECTION, ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.section + std::to_string(c.capacity));
        std::string buffer(12, '#');
        int32_t size = c.capacity;
        EXPECT_EQ(mini_read_string(cache, c.section, nullptr, buffer.data(), &size), c.status);
        if (c.status != INI_NO_SECTION && c.capacity > 0) {
            EXPECT_EQ(size, static_cast<int32_t>(c.list.size()) - 1);
        }
        EXPECT_EQ(buffer, c.list + std::string(12 - c.list.size(), '#'));
    }
}

TEST(MiniStatus, NilAndMissing) {
    use_file("[s]\nk=1\n");
    const Cache cache;
    char buffer[10];
    int32_t size = 9, number = -7;
    double real = -7;
    struct Case {
        const char *what;
        int32_t status;
        int32_t expected;
    };
    const Case cases[] = {
        {"read NIL cache", mini_read_string(nullptr, "s", "k", buffer, &size), INI_FAILED},
        {"read NIL buffer", mini_read_string(nullptr, "s", "k", nullptr, &size), INI_NO_ROOM},
        {"read NIL size", mini_read_string(cache, "s", "k", buffer, nullptr), INI_NO_ROOM},
        {"read section", mini_read_string(cache, "t", "k", buffer, &size), INI_NO_SECTION},
        {"read entry", mini_read_string(cache, "s", " k", buffer, &size), INI_NO_ENTRY},
        {"long NIL cache", mini_read_long(nullptr, "s", "k", &number), INI_FAILED},
        {"long NIL value", mini_read_long(nullptr, "s", nullptr, nullptr), INI_NO_ROOM},
        {"long NIL entry", mini_read_long(nullptr, "s", nullptr, &number), INI_NO_ENTRY},
        {"long section", mini_read_long(cache, "t", "k", &number), INI_NO_SECTION},
        {"double entry", mini_read_double(cache, "s", "l", &real), INI_NO_ENTRY},
        {"longs NIL items", mini_read_longs(cache, "s", "k", nullptr, &size), INI_NO_ROOM},
        {"longs NIL count", mini_read_longs(cache, "s", "k", &number, nullptr), INI_NO_ROOM},
        {"longs NIL entry", mini_read_longs(cache, "s", nullptr, &number, &size), INI_NO_ENTRY},
        {"doubles section", mini_read_doubles(cache, "t", "k", &real, &size), INI_NO_SECTION},
        {"write NIL cache", mini_write_string(nullptr, "s", nullptr, nullptr), INI_FAILED},
        {"write NIL entry", mini_write_string(cache, "n1", nullptr, "v"), INI_NO_ENTRY},
        {"write NIL value", mini_write_string(cache, "n2", "k", nullptr), INI_NO_ROOM},
        {"write blank entry", mini_write_string(cache, "n3", "  ", "v"), INI_NO_ENTRY},
        {"write NIL items", mini_write_longs(cache, "n4", "k", nullptr, 1), INI_NO_ROOM},
        {"rw NIL string", mini_rw_string(1, cache, "s", "k", nullptr, nullptr), INI_NO_ROOM},
        {"rw NIL long", mini_rw_long(1, cache, "s", "k", nullptr), INI_NO_ROOM},
        {"rw NIL double", mini_rw_double(0, cache, "s", "k", nullptr), INI_NO_ROOM},
        {"rw NIL longs", mini_rw_longs(1, cache, "s", "k", nullptr, &size), INI_NO_ROOM},
        {"rw NIL count", mini_rw_doubles(1, cache, "s", "k", &real, nullptr), INI_NO_ROOM},
        {"unload all NIL", mini_unload_all_sections(nullptr), INI_FAILED},
        {"unload NIL cache", mini_unload_one_section(nullptr, "s"), INI_FAILED},
        {"unload NIL section", mini_unload_one_section(cache, nullptr), INI_NO_SECTION},
        {"unload as given", mini_unload_one_section(cache, " s"), INI_NO_SECTION},
        {"unload", mini_unload_one_section(cache, "s"), INI_OK},
        {"unload again", mini_unload_one_section(cache, "s"), INI_NO_SECTION},
        {"update NIL", mini_update_file(nullptr), 0},
        {"close NIL", mini_close(nullptr), 0},
    };
    for (const Case &c : cases) EXPECT_EQ(c.status, c.expected) << c.what;
    EXPECT_EQ(size, 9);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(real, -7);
    EXPECT_EQ(keys(cache, "n1"), "<1>");
    EXPECT_EQ(keys(cache, "n2"), "<1>");
    EXPECT_EQ(keys(cache, "n3"), "");  // the section stays
    EXPECT_EQ(keys(cache, "n4"), "<1>");
    MINI *closed = nullptr;
    EXPECT_EQ(mini_close(&closed), 0);
}

TEST(MiniGet, NeverNil) {
    use_file("u=0\n[s]\nk=abc\n");
    const Cache cache;
    char buffer[10] = "#";
    int32_t size = 9;
    EXPECT_EQ(mini_get_string(cache, " s", "k", buffer, &size), buffer);
    EXPECT_STREQ(buffer, "abc");
    size = 2;
    EXPECT_STREQ(mini_get_string(cache, "s", "k", buffer, &size), "");  // cut, and so not given
    EXPECT_STREQ(mini_get_string(cache, "s", "k", buffer, nullptr), "");
    EXPECT_STREQ(mini_get_string(nullptr, "s", "k", buffer, &size), "");
    EXPECT_STREQ(mini_get_string(cache, "s", "k", nullptr, nullptr), "abc");
    EXPECT_STREQ(mini_get_string(cache, "", "u", nullptr, nullptr), "0");
    EXPECT_STREQ(mini_get_string(cache, " s", "k", nullptr, nullptr), "");  // compared as given
    EXPECT_STREQ(mini_get_string(cache, "s", "x", nullptr, nullptr), "");
    EXPECT_STREQ(mini_get_string(cache, "t", "k", nullptr, nullptr), "");
    EXPECT_STREQ(mini_get_string(cache, nullptr, "u", nullptr, nullptr), "");
    EXPECT_STREQ(mini_get_string(cache, "s", nullptr, nullptr, nullptr), "");
    EXPECT_STREQ(mini_get_string(nullptr, "s", "k", nullptr, nullptr), "");

    // The cache's own text as the new value: the whole, a part, and as the value of another entry.
    const char *const own = mini_get_string(cache, "s", "k", nullptr, nullptr);
    EXPECT_EQ(mini_write_string(cache, "s", "k", own), INI_OK);
    EXPECT_EQ(mini_write_string(cache, "s", "k", own + 1), INI_OK);
    EXPECT_EQ(value(cache, "s", "k"), "bc");
    EXPECT_EQ(mini_write_string(cache, "s", "k", std::string(1000, 'y').c_str()), INI_OK);
    EXPECT_EQ(mini_write_string(cache, "s", "l", mini_get_string(cache, "s", "k", nullptr, nullptr)),
              INI_OK);
    EXPECT_EQ(value(cache, "s", "l"), std::string(1000, 'y'));
}

TEST(MiniNumbers, RoundTrips) {
    use_file("");
    const Cache cache;
    const int32_t longs[] = {1, -2, INT32_MIN};
    const double doubles[] = {0.1, 2, 1234567, 1e-9};
    int32_t number = 7;
    double real = 0.1;
    EXPECT_EQ(mini_write_long(cache, "s", "l", INT32_MAX), INI_OK);
    EXPECT_EQ(mini_write_double(cache, "s", "d", 0.1), INI_OK);
    EXPECT_EQ(mini_write_longs(cache, "s", "ls", longs, 3), INI_OK);
    EXPECT_EQ(mini_write_doubles(cache, "s", "ds", doubles, 4), INI_OK);
    EXPECT_EQ(mini_write_doubles(cache, "s", "none", nullptr, 0), INI_OK);
    EXPECT_EQ(value(cache, "s", "l"), "2147483647");
    EXPECT_EQ(value(cache, "s", "d"), "0.1");
    EXPECT_EQ(value(cache, "s", "ls"), "1,-2,-2147483648");
    EXPECT_EQ(value(cache, "s", "ds"), "0.1,2,1.23457e+06,1e-09");
    EXPECT_EQ(value(cache, "s", "none"), "");
    EXPECT_EQ(mini_rw_long(0, cache, "s", "l", &number), INI_OK);
    EXPECT_EQ(number, INT32_MAX);
    EXPECT_EQ(mini_rw_double(0, cache, "s", "ds", &real), INI_OK);
    EXPECT_EQ(real, 0.1);
    number = 5;
    EXPECT_EQ(mini_rw_long(1, cache, "s", "l", &number), INI_OK);
    real = 2.5;
    EXPECT_EQ(mini_rw_double(-1, cache, "s", "d", &real), INI_OK);
    char text[] = "txt";
    EXPECT_EQ(mini_rw_string(1, cache, "s", "t", text, nullptr), INI_OK);
    char back[8] = "";
    int32_t size = sizeof back;
    EXPECT_EQ(mini_rw_string(0, cache, "s", "t", back, &size), INI_OK);
    EXPECT_STREQ(back, text);
    double pair[] = {0.5, -3};
    int32_t pair_count = 2;
    EXPECT_EQ(mini_rw_doubles(1, cache, "s", "pair", pair, &pair_count), INI_OK);
    pair[0] = pair[1] = 0;
    EXPECT_EQ(mini_rw_doubles(0, cache, "s", "pair", pair, &pair_count), INI_OK);
    EXPECT_EQ(pair[0], 0.5);
    EXPECT_EQ(pair[1], -3);
    EXPECT_EQ(value(cache, "s", "l") + value(cache, "s", "d") + value(cache, "s", "t"), "52.5txt");

    int32_t items[4] = {9, 9, 9, 9};
    struct Case {
        const char *text;
        int32_t room;
        int32_t status;
        std::vector<int32_t> items;
        int32_t count;
    };
    for (const Case &c : {Case{"1,2,3", 2, INI_NO_ROOM, {1, 2}, 2}, Case{"1,2,", 4, INI_OK, {1, 2}, 2},
                          Case{"", 4, INI_OK, {}, 0}, Case{"1,,x,4y", 4, INI_OK, {1, 0, 0, 4}, 4},
                          Case{"1", 0, INI_NO_ROOM, {}, 0}, Case{",", 1, INI_OK, {0}, 1}}) {
        mini_write_string(cache, "s", "list", c.text);
        int32_t count = c.room;
        EXPECT_EQ(mini_rw_longs(0, cache, "s", "list", items, &count), c.status) << c.text;
        EXPECT_EQ(count, c.count) << c.text;
        EXPECT_EQ(std::vector<int32_t>(items, items + c.items.size()), c.items) << c.text;
    }
    double reals[2];
    int32_t count = 2;
    EXPECT_EQ(mini_read_doubles(cache, "s", "ls", reals, &count), INI_NO_ROOM);
    EXPECT_EQ(mini_write_longs(cache, "s", "two", std::vector<int32_t>(600, 1).data(), 256), INI_OK);
    EXPECT_EQ(value(cache, "s", "two").size(), 511U);
    EXPECT_EQ(mini_write_longs(cache, "s", "two", std::vector<int32_t>(600, 2).data(), 257), INI_NO_ROOM);
    EXPECT_EQ(value(cache, "s", "two").substr(0, 4), "1,1,");
}

// A read error or a lost right is no missing section: nothing may be written over the entries there.
TEST(MiniRead, FilesThatCannotBeRead) {
    std::filesystem::remove(cache_file());
    std::filesystem::create_directory(cache_file());
    {
        const Cache cache;
        EXPECT_EQ(value(cache, "s", "k"), "<-1>");
        EXPECT_EQ(mini_write_string(cache, "s", "k", "v"), INI_FAILED);
        EXPECT_EQ(mini_update_file(cache), 0);
    }
    std::filesystem::remove(cache_file());
    EXPECT_EQ(mini_open(nullptr, kCacheFile, MINI_READONLY), nullptr);
    const Cache cache;
    EXPECT_EQ(value(cache, "s", "k"), "<1>");
    EXPECT_EQ(value(cache, "", "k"), "<1>");
}

}  // namespace

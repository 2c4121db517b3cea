// Reading INI files: the format, the buffers, the numbers.
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

constexpr char kFile[] = "C:\\test.ini";
constexpr int32_t kUntouched = -77;

void use(const std::string &content) {
    write_file(drive_c() / "test.ini", content);
    clear_log();
}

// The value with its status if that is not 0.
std::string read(const char *section, const char *entry, int32_t size = 600) {
    std::string buffer(static_cast<std::size_t>(size) + 1, '#');
    int32_t most = size;
    const int32_t status = ini_read_string(kFile, section, entry, buffer.data(), &most);
    EXPECT_EQ(most, size);
    if (status == INI_OK || status == INI_NO_ROOM) buffer.resize(std::strlen(buffer.c_str()));
    if (status == INI_OK) return buffer;
    if (status == INI_NO_ROOM) return "3:" + buffer;
    EXPECT_EQ(buffer, std::string(buffer.size(), '#'));
    return std::to_string(status);
}

TEST(IniRead, Format) {
    const std::string k511(508, 'v');  // with "k=" and the line feed 511 characters
    struct Case {
        std::string file;
        const char *section;
        const char *entry;
        std::string value;
    };
    const Case cases[] = {
        {"a = 1\r\n[S]\r\n b=  2 \r\n", "", "a", " 1"},
        {"a = 1\r\n[S]\r\n b=  2 \r\n", "S", "b", "  2"},
        {"a = 1\n[S]\n b=  2 \n", "S", "b", "  2"},
        {"a=1\n[S]\nb=2", "   ", "a", "1"},
        {"a=1\n[S]\nb=2", nullptr, "b", "2"},  // the status: the unnamed section has no b
        {"a=1\n[S]\nb=2", "s", "b", "1"},
        {"a=1\n[S]\nb=2", "S", "B", "2"},
        {"a=1\n[ S ] ; more ]\nb=2", "S", "b", "2"},
        {"[S]\nb=2", " S ", "b", "1"},
        {"[S\nb=2", "S", "b", "2"},
        {"[ S\t]\nb=2", "S\t", "b", "2"},
        {"\t[S]\v\f\r\nb=2", "S", "b", "2"},
        {"[S]\nb=x=y; no comment", "S", "b", "x=y; no comment"},
        {"[S]\n;b=1\n  ;b=2\n b =3", "S", "b", "3"},
        {"[S]\n b b\t =3", "S", "b b\t", "3"},
        {"[S]\n=3\nb=", "S", "", "3"},
        {"[S]\n=3\nb=", "S", "b", ""},
        {"[S]\nb=1\nb=2\n[T]\n[S]\nb=3\nc=4", "S", "b", "1"},
        {"[S]\nb=1\nb=2\n[T]\n[S]\nb=3\nc=4", "S", "c", "2"},
        {"[]\nb=1\n[S]\nb=2", "S", "b", "2"},
        {"[S]\nb=\xFF\x80 \xA0", "S", "b", "\xFF\x80 \xA0"},
        {"[S]\r\r\nb=1\r2\r\r\n", "S", "b", "1\r2"},
        {"[S]\nb=12\0 3\nc=4"s, "S", "b", "12"},
        {"[S]\nb=12\0 3\nc=4"s, "S", "c", "4"},
        {"[S]\n \0b=12\nb=4"s, "S", "b", "4"},
        {"[S\0T]\nb=12"s, "S", "b", "12"},
        {"[S]\nb=1\n\x1A\nc=2\n", "S", "c", "2"},
        {"[S]\nb=1\n\x1A\nc=2\n", "S", "b", "1"},
        {"[S]\nb=1\x1A"
         "2\n",
         "S", "b", "1"},
        {"", "", "a", "2"},
        {"", "S", "a", "1"},
        {"k=" + k511 + "\r\nl=1", "", "k", k511},
        {"k=" + k511 + "x\r\nl=1", "", "k", k511 + "x"},
        {"k=" + k511 + "xl=1\r\n", "", "l", "1"},
        {std::string(511, ' ') + "l=1\r\n", "", "l", "1"},
        {std::string(505, ' ') + "[S]\nl=1\r\n", "S", "l", "1"},
        {std::string(509, ' ') + "[S]\nl=1\r\n", "S", "l", "1"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.file.substr(0, 80));
        use(c.file);
        EXPECT_EQ(read(c.section, c.entry), c.value);
    }
}

TEST(IniRead, LinesAcrossTheBlocksOfAFile) {
    // Every place of the line ends relative to a block, also of the two characters of one.
    for (std::size_t filler = 8000; filler < 8250; ++filler) {
        std::string text;
        while (text.size() < filler)
            text += "; " + std::string(std::min<std::size_t>(filler - text.size(), 90), 'x') + "\r\n";
        use(text + "[Sect]\r\nkey=" + std::string(400, 'v') + "\r\nlast=1\r\n");
        ASSERT_EQ(read("Sect", "key"), std::string(400, 'v')) << filler;
        ASSERT_EQ(read("Sect", "last"), "1") << filler;
    }
}

TEST(IniRead, LinesWithoutAnEqualsSign) {
    use("bad\n[S]\nbad\nb=1\n[T]\nbad too\nbad\nc=1\n" + std::string(100000, 'x'));
    EXPECT_EQ(read("S", "b"), "1");
    EXPECT_EQ(count_in_log("Incorrect entry's format. '=' is not found."), 1);
    EXPECT_EQ(count_in_log("\"Ini\""), 1);
    clear_log();
    EXPECT_EQ(read("T", "c"), "1");
    EXPECT_EQ(count_in_log("Incorrect entry's format. '=' is not found."), 2);
    clear_log();
    EXPECT_EQ(read("T", "d"), "2");
    EXPECT_EQ(count_in_log("Incorrect entry's format. '=' is not found."), 2 + 100000 / 511 + 1);
}

TEST(IniRead, Sizes) {
    use("a=abcdef\n");
    EXPECT_EQ(read("", "a", 3), "3:abc");
    EXPECT_EQ(read("", "a", 6), "abcdef");
    EXPECT_EQ(read("", "a", 5), "3:abcde");
    EXPECT_EQ(read("", "a", 0), "3:");
}

TEST(IniRead, KeyLists) {
    use("[T]\n[S]\n a =1\nbad\n;c=1\nbc=2\n[U]\nd=1");
    struct Case {
        int32_t capacity;
        int32_t status;
        std::string list;
    };
    const Case cases[] = {
        {10, INI_OK, "a\0bc\0"s}, {6, INI_OK, "a\0bc\0"s},  {5, INI_NO_ROOM, "a\0"s},
        {4, INI_NO_ROOM, "a\0"s}, {3, INI_NO_ROOM, "a\0"s}, {2, INI_NO_ROOM, ""s},
        {1, INI_NO_ROOM, ""s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.capacity);
        std::string buffer(12, '#');
        int32_t size = c.capacity;
        EXPECT_EQ(ini_read_string(kFile, "S", nullptr, buffer.data(), &size), c.status);
        EXPECT_EQ(size, static_cast<int32_t>(c.list.size()));
        std::string expected = c.list + '\0';
        expected.resize(12, '#');
        EXPECT_EQ(buffer, expected);
    }
    char buffer[4] = "##";
    int32_t size = 4;
    EXPECT_EQ(ini_read_string(kFile, "T", nullptr, buffer, &size), INI_OK);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(buffer[0], '\0');
    size = 0;
    EXPECT_EQ(ini_read_string(kFile, "S", nullptr, nullptr, &size), INI_NO_ROOM);
    EXPECT_EQ(ini_read_string(kFile, "X", nullptr, buffer, &size), INI_NO_SECTION);
}

TEST(IniRead, Numbers) {
    use("l= 12abc\nn=none\nbig=99999999999\nd= 1.5e3x\nempty=\n");
    int32_t whole = kUntouched;
    EXPECT_EQ(ini_read_long(kFile, "", "l", &whole), INI_OK);
    EXPECT_EQ(whole, 12);
    EXPECT_EQ(ini_read_long(kFile, "", "n", &whole), INI_OK);
    EXPECT_EQ(whole, 0);
    EXPECT_EQ(ini_read_long(kFile, "", "big", &whole), INI_OK);
    EXPECT_EQ(whole, INT32_MAX);
    double real = kUntouched;
    EXPECT_EQ(ini_read_double(kFile, "", "d", &real), INI_OK);
    EXPECT_EQ(real, 1500);
    EXPECT_EQ(ini_read_double(kFile, "", "empty", &real), INI_OK);
    EXPECT_EQ(real, 0);
    whole = kUntouched;
    real = kUntouched;
    EXPECT_EQ(ini_read_long(kFile, "", "x", &whole), INI_NO_ENTRY);
    EXPECT_EQ(ini_read_double(kFile, "X", "x", &real), INI_NO_SECTION);
    EXPECT_EQ(ini_read_long("C:\\missing.ini", "", "l", &whole), INI_FAILED);
    EXPECT_EQ(whole, kUntouched);
    EXPECT_EQ(real, kUntouched);
}

TEST(IniRead, Lists) {
    use("three=1,2,3\ncomma=1,2,\nempty=\ngap= 1,,x, -4 z,5\nonly=,\n");
    struct Case {
        const char *entry;
        int32_t capacity;
        int32_t status;
        int32_t count;
        std::vector<int32_t> items;
    };
    const Case cases[] = {
        {"three", 2, INI_NO_ROOM, 2, {1, 2}},
        {"three", 3, INI_OK, 3, {1, 2, 3}},
        {"three", 0, INI_NO_ROOM, 0, {}},
        {"comma", 2, INI_OK, 2, {1, 2}},
        {"empty", 0, INI_OK, 0, {}},
        {"empty", 3, INI_OK, 0, {}},
        {"gap", 9, INI_OK, 5, {1, 0, 0, -4, 5}},
        {"only", 9, INI_OK, 1, {0}},
        {"missing", 9, INI_NO_ENTRY, 0, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.entry << " into " << c.capacity);
        std::vector<int32_t> longs(9, kUntouched);
        std::vector<double> doubles(9, kUntouched);
        int32_t count = c.capacity;
        EXPECT_EQ(ini_read_longs(kFile, "", c.entry, longs.data(), &count), c.status);
        EXPECT_EQ(count, c.count);
        count = c.capacity;
        EXPECT_EQ(ini_read_doubles(kFile, nullptr, c.entry, doubles.data(), &count), c.status);
        EXPECT_EQ(count, c.count);
        std::vector<int32_t> expected = c.items;
        expected.resize(9, kUntouched);
        EXPECT_EQ(longs, expected);
        EXPECT_EQ(doubles, std::vector<double>(expected.begin(), expected.end()));
    }
    use("d=0.5,1e3,.25\n");
    double reals[3];
    int32_t count = 3;
    EXPECT_EQ(ini_read_doubles(kFile, "", "d", reals, &count), INI_OK);
    EXPECT_EQ((std::vector<double>(reals, reals + 3)), (std::vector<double>{0.5, 1000, 0.25}));
    EXPECT_EQ(ini_read_doubles(kFile, "X", "d", reals, &count), INI_NO_SECTION);
    EXPECT_EQ(count, 0);
}

TEST(IniRead, FilesThatCannotBeRead) {
    char buffer[8] = "#";
    int32_t size = 7;
    for (const char *path : {"C:\\missing.ini", "C:\\", "Q:\\x.ini", "C:\\test.ini\\x"}) {
        EXPECT_EQ(ini_read_string(path, "", "a", buffer, &size), INI_FAILED) << path;
    }
    EXPECT_STREQ(buffer, "#");
}

}  // namespace

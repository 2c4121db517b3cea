// SPDX-License-Identifier: MIT
// Reading INI files, by each call and through caches: the format, buffers, lists of keys.
#include <optional>

#include "tests/config/ini_files.hpp"
#include "tests/config/settings.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

constexpr char kReport[] = "Incorrect entry's format. '=' is not found.";
constexpr int32_t kReaders[] = {Settings::kNoCache, MINI_READONLY, MINI_READONLY | MINI_LOADALL};

struct Case {
    std::string file;
    const char *section, *entry;
    std::string value;
    std::optional<std::string> in_cache = {};  // what a cache gives, if that is another value
};

TEST(Reading, Format) {
    const std::string long_value(508, 'v');  // with "k=" and the line feed 511 characters
    const Case cases[] = {
        {"a = 1\n[S]\n b=  2 \n", "", "a", " 1"},
        {"a = 1\n[S]\n b=  2 \n", "S", "b", "  2"},
        {"a=1\n[S]\nb=2", nullptr, "b", "<2>"},
        {"a=1\n[S]\nb=2", "S", "B", "<2>"},
        {"[ S ] ; more ]\nb=2", "S", "b", "2"},
        {"[S]\nb=2", " S ", "b", "<1>", "2"},  // compared as it stands, unless by a cache
        {"[ S\t]\nb=2", "S\t", "b", "2"},
        {"[S]\nb=x=y; no comment", "S", "b", "x=y; no comment"},
        {"[S]\n b b\t =\t3\x01\n", "S", "b b\t", "\t3"},
        {"[S]\n=3\nb=", "S", "", "3"},
        {"[S]\nb=1\nb=2\n[T]\n[S]\nb=3\nc=4", "S", "c", "<2>"},
        {"[S]\r\nb=1\r2\r\n", "S", "b", "1\r2"},
        {"[S]\nb=1\n\x1A\nc=2\n", "S", "c", "<2>"},
        {"", "S", "a", "<1>"},
        // A zero byte ends what is read of its line; to a cache it ends the line.
        {"[S]\nb=12\0 3=5\nc=4"s, "S", "b", "12"},
        {"[S]\nb=12\0 3=5\nc=4"s, "S", "3", "<2>", "5"},
        {"[S]\n \0b=12\nb=4"s, "S", "b", "4", "12"},
        {"[S\0T]\nb=12"s, "S", "b", "12"},
        // A line of more than 511 characters comes as several, to a cache one of more than 512.
        {"k=" + long_value + "\nl=1", "", "k", long_value},
        {"k=" + long_value + "xl=1\n", "", "l", "1", "<2>"},
        {"k=" + long_value + "xxl=1\n", "", "l", "<2>", "1"},
        {"k=" + long_value + "xxl=1\n", "", "k", long_value + "x", long_value + "xx"},
        {std::string(509, ' ') + "[S]\nl=1\n", "S", "l", "1"},
        {std::string(100'000, 'x') + "=1\nk=2\n", "", "k", "2"},
    };
    for (const int32_t flags : kReaders) {
        for (const Case &c : cases) {
            for (const std::string &content : {c.file, crlf(c.file)}) {
                SCOPED_TRACE(testing::PrintToString(content.substr(0, 80)) + std::to_string(flags));
                Settings::use(content);
                const Settings settings(flags);
                EXPECT_EQ(settings.read(c.section, c.entry),
                          settings.is_cache() ? c.in_cache.value_or(c.value) : c.value);
            }
        }
    }
}

TEST(Reading, Buffers) {
    Settings::use("a=abcdef\n[T]\n[S]\n a =1\nbad\n;c=1\nbc=2\n[U]\nd=1");
    const struct {
        int32_t capacity;
        int32_t status;
        std::string list;
    } lists[] = {
        {10, INI_OK, "a\0bc\0\0"s}, {6, INI_OK, "a\0bc\0\0"s}, {5, INI_NO_ROOM, "a\0\0"s},
        {3, INI_NO_ROOM, "a\0\0"s}, {2, INI_NO_ROOM, "\0"s},   {1, INI_NO_ROOM, "\0"s},
    };
    for (const int32_t flags : kReaders) {
        const Settings settings(flags);
        SCOPED_TRACE(flags);
        EXPECT_EQ(settings.read("", "a", 6), "abcdef");
        EXPECT_EQ(settings.read("", "a", 5), "<3>abcde");
        EXPECT_EQ(settings.read("", "a", 0), "<3>");
        int32_t size = 0;
        for (const auto &list : lists) {
            std::string buffer(12, '#');
            size = list.capacity;
            EXPECT_EQ(settings.text("S", nullptr, buffer.data(), &size), list.status) << list.capacity;
            EXPECT_EQ(size, static_cast<int32_t>(list.list.size()) - 1);
            EXPECT_EQ(buffer, list.list + std::string(12 - list.list.size(), '#'));
        }
        char buffer[4] = "##";
        EXPECT_EQ(settings.text("T", nullptr, buffer, &(size = 4)), INI_OK);
        EXPECT_EQ(size, 0);
        EXPECT_EQ(buffer[0], '\0');
        EXPECT_EQ(settings.text("S", nullptr, buffer, &(size = 0)), INI_NO_ROOM);
        EXPECT_EQ(settings.text("X", nullptr, buffer, &(size = 4)), INI_NO_SECTION);
        EXPECT_EQ(size, 4);
    }
}

// At every place relative to the blocks that the file is read in, also between the characters of a line
// end.
TEST(Reading, LinesAcrossBlocks) {
    for (const std::size_t block : {8192U, 16384U}) {
        for (std::size_t filler = block - 200; filler < block + 60; ++filler) {
            std::string text;
            while (text.size() < filler)
                text += "; " + std::string(std::min<std::size_t>(filler - text.size(), 90), 'x') + "\r\n";
            Settings::use(text + "[Sect]\r\nkey=" + std::string(100, 'v') + "\r\nlast=1\r\n");
            const Settings settings(block == 8192 ? Settings::kNoCache : MINI_READONLY);
            ASSERT_EQ(settings.read("Sect", "key"), std::string(100, 'v')) << filler;
            ASSERT_EQ(settings.read("Sect", "last"), "1") << filler;
        }
    }
}

TEST(Reading, LinesWithoutAnEqualsSign) {
    Settings::use("bad\n[S]\nbad\nb=1\n[T]\nbad too\nbad\nc=1\n" + std::string(100000, 'x') + "\n[]\nlost");
    const auto reports = [](int32_t flags, const char *section, const char *entry, const char *value) {
        clear_log();
        const Settings settings(flags);
        for (int i = 0; i < 2; ++i) EXPECT_EQ(settings.read(section, entry), value);
        return count_in_log(kReport);
    };
    EXPECT_EQ(reports(Settings::kNoCache, "S", "b", "1"), 2);
    EXPECT_EQ(count_in_log("\"Ini\""), 2);
    EXPECT_EQ(reports(Settings::kNoCache, "T", "c", "1"), 4);
    EXPECT_EQ(reports(Settings::kNoCache, "T", "d", "<2>"), 2 * (2 + 100000 / 511 + 1));
    EXPECT_EQ(reports(MINI_READONLY, "S", "b", "1"), 1);  // when it is loaded, once
    EXPECT_EQ(count_in_log("\"Mini\""), 1);
    EXPECT_EQ(reports(MINI_READONLY | MINI_LOADALL, "S", "b", "1"), 2 + 2 + 100000 / 512 + 1);
    EXPECT_EQ(count_in_log("Section's name is not defined. Description is ignored"), 1);
}

TEST(Reading, SectionsAreListed) {
    Settings::use("a=1\n[S]\n[]\n[ T ]x\nbad\n[S]");
    char buffer[16];
    int32_t size = sizeof buffer;
    EXPECT_EQ(ini_read_sections(Settings::kFile, buffer, &size), INI_OK);
    EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(size) + 1), "S\0T\0S\0\0"s);
    size = 5;
    EXPECT_EQ(ini_read_sections(Settings::kFile, buffer, &size), INI_NO_ROOM);
    EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(size) + 1), "S\0T\0\0"s);
    EXPECT_EQ(ini_read_sections("C:\\missing.ini", buffer, &size), INI_FAILED);
}

// A read error or a lost right is no missing section: nothing may be written over the entries there.
TEST(Reading, FilesThatCannotBeRead) {
    for (const char *path : {"C:\\missing.ini", "C:\\", "Q:\\x.ini"}) {
        int32_t number = 7;
        EXPECT_EQ(ini_read_long(path, "", "a", &number), INI_FAILED) << path;
        EXPECT_EQ(number, 7);
    }
    std::filesystem::remove(drive_c() / "test.ini");
    EXPECT_EQ(mini_open(nullptr, Settings::kFile, MINI_READONLY), nullptr);
    EXPECT_EQ(Settings(0).read("", "a"), "<1>");
    std::filesystem::remove(drive_c() / "test.ini");
    std::filesystem::create_directory(drive_c() / "test.ini");
    {
        const Settings settings(0);
        EXPECT_EQ(settings.read("", "a"), "<-1>");
        EXPECT_EQ((settings.call<ini_write_long, mini_write_long>("", "a", 1)), INI_FAILED);
    }
    std::filesystem::remove(drive_c() / "test.ini");
}

}  // namespace

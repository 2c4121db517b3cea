// Joining, splitting and full paths; the test of names.
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kv/fio.h"

namespace {

std::string joined(const char *base, const char *dir, const char *name) {
    char out[256];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(fio_makepath(out, base, dir, name), out);
    return out;
}

TEST(Paths, PartsAreJoined) {
    const struct {
        const char *base;
        const char *dir;
        const char *name;
        const char *path;
    } cases[] = {
        {"", "C:\\data", "x.ini", "C:\\data\\x.ini"},
        {"", "C:\\data\\", "x.ini", "C:\\data\\x.ini"},
        {"C:\\base", "C:\\data", "D:\\y.ini", "D:\\y.ini"},
        {"", "dir/sub/", "", "dir\\sub"},
        {"", "C:\\", "", "C:\\"},
        {"", "C:\\d", "\\x\\y.ini", "C:\\d\\x\\y.ini"},
        {nullptr, "C:\\d/", "/x", "C:\\d\\x"},
        {nullptr, nullptr, nullptr, ""},
        {"c:", "\\x\\", "f", "c:\\x\\f"},  // a drive alone gets no separator
        {"c:", nullptr, "f", "c:f"},
        {"base", "dir", "name", "base\\dir\\name"},
        {"base", "D:dir", "name", "D:dir\\name"},
        {"base\\", "", "name", "base\\name"},
        {"base", "dir", "", "base\\dir"},
        {nullptr, nullptr, "a\\", "a\\"},
        {nullptr, nullptr, "ab\\", "ab"},
        {nullptr, nullptr, "C:a\\", "C:a\\"},
        {nullptr, nullptr, "C:\\a\\", "C:\\a"},
        {nullptr, nullptr, "/", "\\"},
        {nullptr, "d", "\\", "d\\"},
        {nullptr, "a", "\\\\b", "a\\\\b"},  // one separator goes, not all
        {nullptr, "dir", "1:x", "dir\\1:x"},
        {nullptr, "/home/me", "x.env", "\\home\\me\\x.env"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(joined(row.base, row.dir, row.name), row.path)
            << (row.base ? row.base : "-") << '+' << (row.dir ? row.dir : "-") << '+'
            << (row.name ? row.name : "-");
    }
    EXPECT_EQ(fio_makepath(nullptr, "a", "b", "c"), nullptr);
    char part[256] = "dir";
    EXPECT_STREQ(fio_makepath(part, nullptr, part, part), "dir\\dir");
}

TEST(Paths, TooLongPathsAreNeitherCutNorWrittenBeyondTheBuffer) {
    const std::string longest(255, 'n');
    const std::string separated = '/' + std::string(253, 'n') + '/';
    EXPECT_EQ(joined("", "", longest.c_str()), longest);
    EXPECT_EQ(joined("", "", (longest + 'n').c_str()), "");
    EXPECT_EQ(joined("", "", (longest + '\\').c_str()), longest);
    EXPECT_EQ(joined("", "d", longest.c_str()), "");
    EXPECT_EQ(joined("", "d/", separated.c_str()), "d\\" + std::string(253, 'n'));
    EXPECT_EQ(joined("", std::string(5000, 'n').c_str(), "x"), "");
    EXPECT_EQ(joined(std::string(5000, 'n').c_str(), "", "C:x"), "C:x");  // the base does not matter
    EXPECT_EQ(fio_exist(longest.c_str(), ".."), 0);
    EXPECT_EQ(fio_access(longest.c_str(), "..", 0), 0);
    EXPECT_EQ(fio_ispath((longest + "\\..").c_str()), 0);
    EXPECT_EQ(fio_chdir((longest + "\\..").c_str()), -1);
    char full[256];
    EXPECT_STREQ(fio_make_fullpath(full, nullptr, nullptr, longest.c_str()), "");
    EXPECT_STREQ(fio_make_fullpath(full, nullptr, nullptr, ("C:\\" + std::string(252, 'n')).c_str()),
                 ("C:\\" + std::string(252, 'n')).c_str());
    EXPECT_STREQ(fio_make_fullpath(full, nullptr, "C:\\\\", nullptr),
                 "C:\\");  // a root keeps one separator
}

TEST(Paths, PathsAreTakenApart) {
    const struct {
        std::string path;
        std::string drive;
        std::string dir;
        std::string name;
    } cases[] = {
        {"C:\\a\\b.txt", "C:", "\\a\\", "b.txt"},
        {"c:b.tar.gz", "c:", "", "b.tar.gz"},
        {"a/b\\c/", "", "a/b\\c/", ""},
        {"\\", "", "\\", ""},
        {"", "", "", ""},
        {"..", "", "", ".."},
        {"1:x", "", "", "1:x"},
        {":", "", "", ":"},
        {std::string(400, 'n'), "", "", std::string(255, 'n')},
        {"z:" + std::string(400, 'd') + "/x", "z:", std::string(255, 'd'), "x"},
    };
    for (const auto &row : cases) {
        char drive[3];
        char dir[256];
        char name[256];
        fio_divide(row.path.c_str(), drive, dir, name);
        EXPECT_EQ(drive, row.drive) << row.path;
        EXPECT_EQ(dir, row.dir) << row.path;
        EXPECT_EQ(name, row.name) << row.path;
    }
}

TEST(Names, TheExtensionIsBehindTheLastPoint) {
    const struct {
        const char *name;
        int32_t position;
    } cases[] = {{"data.ini", 4}, {".ini", -1}, {"a", -1},    {"", -1},      {".", -1},
                 {"..", 1},       {"a.b.c", 3}, {"d.x/f", 1}, {nullptr, -1}, {"a.", 1}};
    for (const auto &[name, position] : cases) {
        EXPECT_EQ(fio_get_extention_pos(name), position) << (name ? name : "-");
    }
}

TEST(Names, AreTestedAgainstTheRulesOfDos) {
    const struct {
        const char *name;
        int32_t result;
    } cases[] = {
        {"README.TXT", 0}, {"*.PRO", 2},   {"LONGFILENAME.TXT", 1},
        {"A.TEXT", 1},     {"A+B.TXT", 1}, {"", 1},
        {nullptr, 1},      {"ABC.", 0},    {".", 0},
        {"..", 1},         {".PRO", 0},    {"12345678", 0},
        {"123456789", 1},  {"A.B.C", 1},   {"A.B?", 2},
        {"*", 2},          {"A.1234", 1},  {"\x01\xFC.\xE4", 0},
        {"A .B", 1},       {"A.B ", 1},    {"12345678.*", 2},
        {"A~1-_#.$%&", 0},
    };
    for (const auto &[name, result] : cases) {
        EXPECT_EQ(fio_test_filename(name), result) << (name ? name : "-");
    }
    for (const char c : std::string(" \"+,/:;<=>[\\]^|")) {
        EXPECT_EQ(fio_test_filename((std::string("A") + c).c_str()), 1) << c;
        EXPECT_EQ(fio_test_filename((std::string("A.") + c).c_str()), 1) << c;
    }
}

}  // namespace

// SPDX-License-Identifier: MIT
// Joining, splitting and full paths; the test of names. The models of the fuzz targets compare many more.
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "kv/fio.h"

namespace {

std::string joined(const char *base, const char *dir, const std::string &name) {
    char out[256];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(fio_makepath(out, base, dir, name.c_str()), out);
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
        {"C:\\base", "C:\\data", "D:\\y.ini", "D:\\y.ini"},
        {nullptr, "dir/sub/", "", "dir\\sub"},
        {"", "C:\\", "", "C:\\"},
        {"", "C:\\d/", "\\x\\y.ini", "C:\\d\\x\\y.ini"},
        {"c:", "\\x\\", "f", "c:\\x\\f"},  // a drive alone gets no separator
        {nullptr, nullptr, "a\\", "a\\"},
        {nullptr, "a", "\\\\b", "a\\\\b"},  // one separator goes, not all
    };
    for (const auto &row : cases) EXPECT_EQ(joined(row.base, row.dir, row.name), row.path) << row.path;
    EXPECT_EQ(fio_makepath(nullptr, "a", "b", "c"), nullptr);
    char part[256] = "dir";
    EXPECT_STREQ(fio_makepath(part, nullptr, part, part), "dir\\dir");
    EXPECT_STREQ(fio_makepath(part, nullptr, nullptr, nullptr), "");
}

TEST(Paths, TooLongPathsAreNeitherCutNorWrittenBeyondTheBuffer) {
    const std::string longest(255, 'n');
    EXPECT_EQ(joined("", "", longest + '\\'), longest);
    EXPECT_EQ(joined("", "d", longest), "");
    EXPECT_EQ(joined(std::string(5000, 'n').c_str(), "", "C:x"), "C:x");  // the base does not matter
    EXPECT_EQ(fio_exist(longest.c_str(), ".."), 0);
    EXPECT_EQ(fio_access(longest.c_str(), "..", 0), 0);
    EXPECT_EQ(fio_ispath((longest + "\\..").c_str()), 0);
    EXPECT_EQ(fio_chdir((longest + "\\..").c_str()), -1);
    char full[256];
    EXPECT_STREQ(fio_make_fullpath(full, nullptr, nullptr, longest.c_str()), "");
    EXPECT_STREQ(fio_make_fullpath(full, nullptr, "C:\\\\", nullptr),
                 "C:\\");  // a root keeps one separator
}

TEST(Names, Rules) {
    const struct {
        const char *name;
        int32_t extension;
        int32_t dos;
    } cases[] = {
        {"README.TXT", 6, 0}, {"*.PRO", 1, 2},  {"LONGFILENAME.TXT", 12, 1},
        {"A.TEXT", 1, 1},     {"", -1, 1},      {".ini", -1, 0},
        {"ABC.", 3, 0},       {"a.b.c", 3, 1},  {"d.x/f", 1, 1},
        {"a", -1, 0},         {nullptr, -1, 1},
    };
    for (const auto &[name, extension, dos] : cases) {
        EXPECT_EQ(fio_get_extention_pos(name), extension) << (name ? name : "-");
        EXPECT_EQ(fio_test_filename(name), dos) << (name ? name : "-");
    }
}

}  // namespace

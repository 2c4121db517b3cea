// SPDX-License-Identifier: MIT
// Joining and full paths: NIL and limits. The rest, and the test of names, the models compare.
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

TEST(Paths, NilPartsAndTheBufferAsAPart) {
    EXPECT_EQ(joined(nullptr, "dir/sub/", ""), "dir\\sub");
    EXPECT_EQ(joined(nullptr, nullptr, "a\\"), "a\\");
    EXPECT_EQ(fio_makepath(nullptr, "a", "b", "c"), nullptr);
    char part[256] = "dir";
    EXPECT_STREQ(fio_makepath(part, nullptr, part, part), "dir\\dir");
    EXPECT_STREQ(fio_makepath(part, nullptr, nullptr, nullptr), "");
    EXPECT_EQ(fio_get_extention_pos(nullptr), -1);
    EXPECT_EQ(fio_test_filename(nullptr), 1);
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

}  // namespace

// SPDX-License-Identifier: MIT
// What only caches have: statuses for NIL, and values that are given without a copy.
#include <vector>

#include "tests/config/mini_caches.hpp"

namespace {

using namespace kvtest;

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
        {"read entry", mini_read_string(cache, "s", " k", buffer, &size), INI_NO_ENTRY},
        {"long NIL cache", mini_read_long(nullptr, "s", "k", &number), INI_FAILED},
        {"long NIL value", mini_read_long(nullptr, "s", nullptr, nullptr), INI_NO_ROOM},
        {"long section", mini_read_long(cache, "t", "k", &number), INI_NO_SECTION},
        {"longs NIL items", mini_read_longs(cache, "s", "k", nullptr, &size), INI_NO_ROOM},
        {"longs NIL count", mini_read_longs(cache, "s", "k", &number, nullptr), INI_NO_ROOM},
        {"write NIL cache", mini_write_string(nullptr, "s", nullptr, nullptr), INI_FAILED},
        {"write NIL entry", mini_write_string(cache, "n1", nullptr, "v"), INI_NO_ENTRY},
        {"write NIL value", mini_write_string(cache, "n2", "k", nullptr), INI_NO_ROOM},
        {"write blank entry", mini_write_string(cache, "n3", "  ", "v"), INI_NO_ENTRY},
        {"write NIL items", mini_write_longs(cache, "n4", "k", nullptr, 1), INI_NO_ROOM},
        {"unload all NIL", mini_unload_all_sections(nullptr), INI_FAILED},
        {"unload NIL cache", mini_unload_one_section(nullptr, "s"), INI_FAILED},
        {"unload as given", mini_unload_one_section(cache, " s"), INI_NO_SECTION},
        {"unload", mini_unload_one_section(cache, "s"), INI_OK},
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

}  // namespace

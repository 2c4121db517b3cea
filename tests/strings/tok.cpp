// Taking apart, in both ways.
#include <gtest/gtest.h>

#include "kv/strings.h"

#include "tests/support/support.hpp"

namespace {

constexpr const char *kReport = "The str_tok was called with wrong parameter <source>.";

// One test, since it begins with what a fresh process does.
TEST(Tok, ListsAndTexts) {
    EXPECT_EQ(str_tok(nullptr, nullptr), nullptr);
    EXPECT_EQ(kvtest::count_in_log(kReport), 1);

    char list[] = "a\0bc\0";  // and the terminator of the literal
    char text[] = ",,x;y,";
    EXPECT_STREQ(str_tok(list, nullptr), "a");
    EXPECT_STREQ(str_tok(text, ",;"), "x");  // the two positions do not disturb each other
    EXPECT_STREQ(str_tok(nullptr, nullptr), "bc");
    EXPECT_STREQ(str_tok(nullptr, ";,"), "y");
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(str_tok(nullptr, nullptr), nullptr);
        EXPECT_EQ(str_tok(nullptr, ";,"), nullptr);
    }
    EXPECT_EQ(list[1], '\0');

    char empty[] = "";
    EXPECT_EQ(str_tok(empty, nullptr), nullptr);
    EXPECT_EQ(str_tok(nullptr, nullptr), nullptr);
    EXPECT_EQ(str_tok(list, nullptr), list);  // from the start again
    EXPECT_EQ(kvtest::count_in_log(kReport), 1);
}

}  // namespace

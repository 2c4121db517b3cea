// Changes in place, and the repeated character.
#include <gtest/gtest.h>
#include <string>

#include "kv/strings.h"

namespace {

TEST(InPlace, Changes) {
    struct Case {
        char *(*change)(char *);
        const char *before, *after;
    };
    for (const auto &[change, before, after] :
         {Case{str_trim, " a b ", "a b"}, Case{str_trim, "   ", ""}, Case{str_trim, " \ta\t ", "\ta\t"},
          Case{str_ltrim, " a b ", "a b "}, Case{str_rtrim, " a b ", " a b"}, Case{str_ltrim, "  ", ""},
          Case{str_rtrim, "  ", ""}, Case{str_cap, "@az[`AZ{\xe4", "@AZ[`AZ{\xe4"},
          Case{str_low, "@az[`AZ{\xc4", "@az[`az{\xc4"}}) {
        std::string s = before;
        EXPECT_EQ(change(s.data()), s.data());
        EXPECT_STREQ(s.c_str(), after);
    }
}

TEST(InPlace, Repeat) {
    EXPECT_EQ(str_rpt('-', 300), std::string(255, '-'));
    EXPECT_STREQ(str_rpt('x', 3), "xxx");
    EXPECT_STREQ(str_rpt('x', INT32_MIN), "");
}

TEST(InPlace, DosToWin) {
    std::string text = "\x81\x84\x8e\x94\x99\x9a\xe1 a\x82\xff";
    EXPECT_STREQ(dos_to_win(text.data(), 1), "\x81\x84\x8e\x94\x99\x9a\xe1 a\x82\xff");
    EXPECT_STREQ(dos_to_win(text.data(), 0), "\xfc\xe4\xc4\xf6\xd6\xdc\xdf a\x82\xff");
}

}  // namespace

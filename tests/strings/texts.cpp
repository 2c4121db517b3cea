// SPDX-License-Identifier: MIT
// Texts: comparing, searching, changing in place, taking apart.
#include <gtest/gtest.h>
#include <string>
#include <tuple>

#include "kv/strings.h"

#include "strings/state.hpp"
#include "tests/support/support.hpp"

namespace {

int sign(int32_t order) {
    return (order > 0) - (order < 0);
}

TEST(Texts, Compare) {
    struct Case {
        const char *a, *b;
        int exact, any_case, first_two;
    };
    for (const auto &[a, b, exact, any_case, first_two] :
         {Case{"", "", 0, 0, 0}, Case{"a", "b", -1, -1, -1}, Case{"ab", "abc", -1, -1, 0},
          Case{"aB", "Ab", 1, 0, 1}, Case{"AZaz", "azAZ", -1, 0, -1}, Case{"_", "A", 1, -1, 1},
          Case{"\xe4", "z", 1, 1, 1}, Case{"\xc4", "\xe4", -1, -1, -1}, Case{"@[", "`{", -1, -1, -1}}) {
        for (const int direction : {1, -1}) {
            const char *left = direction > 0 ? a : b;
            const char *right = direction > 0 ? b : a;
            SCOPED_TRACE(testing::Message() << left << " | " << right);
            EXPECT_EQ(str_cmp(left, right), exact * direction);
            EXPECT_EQ(str_eq(left, right), exact == 0);
            EXPECT_EQ(sign(str_icmp(left, right)), any_case * direction);
            EXPECT_EQ(str_ieq(left, right), any_case == 0);
            EXPECT_EQ(sign(str_ncmp(left, right, 2)), first_two * direction);
            EXPECT_EQ(sign(str_ncmp(left, right, UINT32_MAX)), exact * direction);
        }
    }
}

TEST(Texts, Search) {
    const char *s = "abcbc";
    EXPECT_EQ(str_ichr(s, 'b'), 1);
    EXPECT_EQ(str_irchr(s, 'b'), 3);
    EXPECT_EQ(str_ipos(s, "bc"), 1);
    EXPECT_EQ(str_rchr(s, '\0'), s + str_len(s));
    EXPECT_EQ(str_pos(s, "cb"), s + 2);
    EXPECT_EQ(str_ichr(s, 'x') + str_irchr(s, 'x') + str_ipos(s, "x"), -3);
    EXPECT_EQ(str_chr(s, 'x'), nullptr);
}

TEST(Texts, ChangeInPlace) {
    const auto from_dos = [](char *s) { return dos_to_win(s, 0); };
    const auto from_windows = [](char *s) { return dos_to_win(s, 1); };
    using Change = char *(*)(char *);
    using Case = std::tuple<Change, const char *, const char *>;
    for (const auto &[change, before, after] :
         {Case{str_trim, " a b ", "a b"}, Case{str_trim, "   ", ""}, Case{str_trim, " \ta\t ", "\ta\t"},
          Case{str_ltrim, " a b ", "a b "}, Case{str_rtrim, " a b ", " a b"},
          Case{str_cap, "@az[`AZ{\xe4", "@AZ[`AZ{\xe4"}, Case{str_low, "@az[`AZ{\xc4", "@az[`az{\xc4"},
          Case{from_dos, "\x81\x84\x8e\x94\x99\x9a\xe1 a\x82\xff",
               "\xfc\xe4\xc4\xf6\xd6\xdc\xdf a\x82\xff"},
          Case{from_windows, "\x81\x84\xe1 a", "\x81\x84\xe1 a"}}) {
        std::string s = before;
        EXPECT_EQ(change(s.data()), s.data());
        EXPECT_STREQ(s.c_str(), after);
    }
    EXPECT_EQ(str_rpt('-', 300), std::string(255, '-'));
    EXPECT_STREQ(str_rpt('x', 3), "xxx");
    EXPECT_STREQ(str_rpt('x', INT32_MIN), "");
}

TEST(Texts, TakeApart) {
    constexpr const char *kReport = "The str_tok was called with wrong parameter <source>.";
    kvtest::clear_log();
    kv::strings::state.list_position = nullptr;  // as in a fresh process
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
    char empty[] = "";
    EXPECT_EQ(str_tok(empty, nullptr), nullptr);
    EXPECT_EQ(str_tok(list, nullptr), list);  // from the start again
    EXPECT_EQ(kvtest::count_in_log(kReport), 1);
}

}  // namespace

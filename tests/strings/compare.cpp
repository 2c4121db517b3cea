// Comparisons and searches.
#include <gtest/gtest.h>

#include "kv/strings.h"

namespace {

int sign(int32_t order) {
    return (order > 0) - (order < 0);
}

TEST(Compare, Orders) {
    struct Case {
        const char *a, *b;
        int exact, any_case, first_two;
    };
    for (const auto &[a, b, exact, any_case, first_two] :
         {Case{"", "", 0, 0, 0}, Case{"ab", "abc", -1, -1, 0}, Case{"aB", "Ab", 1, 0, 1},
          Case{"\xe4", "z", 1, 1, 1}, Case{"\xc4", "\xe4", -1, -1, -1}, Case{"_", "A", 1, -1, 1},
          Case{"@[", "`{", -1, -1, -1}}) {
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

TEST(Compare, Searches) {
    const char *s = "abcbc";
    EXPECT_EQ(str_ichr(s, 'b'), 1);
    EXPECT_EQ(str_irchr(s, 'b'), 3);
    EXPECT_EQ(str_ipos(s, "bc"), 1);
    EXPECT_EQ(str_rchr(s, '\0'), s + str_len(s));
    EXPECT_EQ(str_pos(s, "cb"), s + 2);
    EXPECT_EQ(str_ichr(s, 'x') + str_irchr(s, 'x') + str_ipos(s, "x"), -3);
    EXPECT_EQ(str_chr(s, 'x'), nullptr);
}

}  // namespace

// Numbers and text.
#include <cfloat>
#include <gtest/gtest.h>
#include <string>

#include "kv/strings.h"

namespace {

TEST(Convert, DoubleToText) {
    struct Case {
        double value;
        int32_t width, decimals;
        const char *text;
    };
    char dst[400];
    for (const auto &[value, width, decimals, text] :
         {Case{3.14159, 8, 2, "    3.14"}, Case{3.14159, -8, 2, "3.14    "}, Case{-0.5, 0, 3, "-0.500"},
          Case{1234567.0, 3, 0, "1234567"}, Case{2.75, 6, -1, "     3"}, Case{2.75, 0, INT32_MIN, "3"}}) {
        convert_dtos(value, width, decimals, dst);
        EXPECT_STREQ(dst, text);
    }
    convert_dtos(-DBL_MAX, 0, 2, dst);
    EXPECT_EQ(std::string(dst).size(), 1U + 309 + 1 + 2);
}

TEST(Convert, LongToText) {
    char dst[16];
    convert_ltos(42, 5, dst);
    EXPECT_STREQ(dst, "   42");
    convert_ltos(-42, -5, dst);
    EXPECT_STREQ(dst, "-42  ");
    convert_ltos(INT32_MIN, 0, dst);
    EXPECT_STREQ(dst, "-2147483648");
}

TEST(Convert, TextToLong) {
    struct Case {
        const char *text;
        int32_t value;
    };
    for (const auto &[text, value] :
         {Case{"12abc", 12}, Case{"abc", 0}, Case{"", 0}, Case{" \t\n\v\f\r+7", 7}, Case{"-7-", -7},
          Case{"- 7", 0}, Case{"+-7", 0}, Case{"0x10", 0}, Case{"007", 7}, Case{"2147483647", INT32_MAX},
          Case{"2147483648", INT32_MAX}, Case{"-2147483648", INT32_MIN}, Case{"-2147483649", INT32_MIN},
          Case{"99999999999999999999999", INT32_MAX}, Case{"-99999999999999999999999", INT32_MIN}}) {
        EXPECT_EQ(convert_stol(text), value) << text;
    }
}

TEST(Convert, TextToDouble) {
    struct Case {
        const char *text;
        double value;
    };
    for (const auto &[text, value] : {Case{" 1.5e3", 1500}, Case{"abc", 0}, Case{"", 0}, Case{"-.5x", -0.5},
                                      Case{"1,5", 1}, Case{"1e", 1}, Case{"\t+2.", 2}}) {
        EXPECT_EQ(convert_stod(text), value) << text;
    }
}

}  // namespace

// The application's locale changes nothing: German has a decimal comma, and letters beyond ASCII.
#include <clocale>
#include <gtest/gtest.h>

#include "kv/strings.h"

#include "tests/support/support.hpp"

namespace {

TEST(Locale, NumbersAndCase) {
    ASSERT_TRUE(kvtest::use_german_locale(KV_TEST_LOCALES));
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");

    char dst[16];
    convert_dtos(1234.5, 8, 2, dst);
    EXPECT_STREQ(dst, " 1234.50");
    EXPECT_EQ(convert_stod("1.5"), 1.5);
    EXPECT_EQ(convert_stod("1,5"), 1.0);
    EXPECT_EQ(convert_stol("\xa0"
                           "7"),
              0);  // a no-break space
    char text[] = "\xe4z\xc4Z";
    EXPECT_STREQ(str_cap(text), "\xe4Z\xc4Z");
    EXPECT_STREQ(str_low(text), "\xe4z\xc4z");
    EXPECT_EQ(str_ieq("\xe4", "\xc4"), 0);

    std::setlocale(LC_ALL, "C");
}

}  // namespace

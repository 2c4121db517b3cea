// SPDX-License-Identifier: MIT
// The application's locale has a decimal comma: numbers keep their point.
#include <clocale>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

TEST(Locale, DecimalComma) {
    ASSERT_TRUE(use_german_locale(KV_TEST_LOCALES));
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    {
        const Env env = open_env();
        ENV *const e = env.get();
        const double values[] = {1.5, -2.25e-7};
        EXPECT_EQ(env_put_double(e, "s", "d", 0.5), ENV_OK);
        EXPECT_EQ(env_put_doubles(e, "s", "l", 2, values), ENV_OK);
        EXPECT_EQ(env_put_format(e, "s", "f", "%.2f %g|%s", 2.5, 1e-7, "1,5"), ENV_OK);
        EXPECT_EQ(dump(e), "[s] d=0.5 l=1.5,-2.25e-07 f=2.50 1e-07|1,5");
        double value = 0, list[2] = {};
        int32_t count = 2;
        EXPECT_EQ(env_get_double(e, "s", "d", 1, &value), 0);
        EXPECT_EQ(value, 0.5);
        EXPECT_EQ(env_get_doubles(e, "s", "l", 1, &count, list), 0);
        EXPECT_EQ(list[1], -2.25e-7);
        EXPECT_EQ(env_put(e, "s", "d", "1,5"), ENV_OK);
        EXPECT_EQ(env_get_double(e, "s", "d", 1, &value), ENV_SYNTAX);
    }
    std::setlocale(LC_ALL, "C");
}

}  // namespace

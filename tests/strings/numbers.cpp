// SPDX-License-Identifier: MIT
// Numbers: as text, in every locale; rounded, and in degrees.
#include <cfloat>
#include <clocale>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Numbers, ToText) {
    const struct {
        double value;
        int32_t width, decimals;
        const char *text;
    } rows[] = {{3.14159, 8, 2, "    3.14"},  {3.14159, -8, 2, "3.14    "}, {-0.5, 0, 3, "-0.500"},
                {1234567.0, 3, 0, "1234567"}, {2.75, 6, -1, "     3"},      {2.75, 0, INT32_MIN, "3"}};
    char dst[400];
    for (const auto &[value, width, decimals, text] : rows) {
        convert_dtos(value, width, decimals, dst);
        EXPECT_STREQ(dst, text);
    }
    convert_dtos(-DBL_MAX, 0, 2, dst);
    EXPECT_EQ(std::string(dst).size(), 1U + 309 + 1 + 2);
    convert_ltos(42, 5, dst);
    EXPECT_STREQ(dst, "   42");
    convert_ltos(-42, -5, dst);
    EXPECT_STREQ(dst, "-42  ");
    convert_ltos(INT32_MIN, 0, dst);
    EXPECT_STREQ(dst, "-2147483648");
}

TEST(Numbers, FromText) {
    using Long = std::pair<const char *, int32_t>;
    for (const auto &[text, value] :
         {Long{"12abc", 12}, Long{"abc", 0}, Long{"", 0}, Long{" \t\n\v\f\r+7", 7}, Long{"\x0e 7", 0},
          Long{"\b7", 0}, Long{"-7-", -7}, Long{"- 7", 0}, Long{"+-7", 0}, Long{"0x10", 0},
          Long{"0019:/", 19}, Long{"2147483647", INT32_MAX}, Long{"2147483648", INT32_MAX},
          Long{"-2147483648", INT32_MIN}, Long{"-2147483649", INT32_MIN},
          Long{"99999999999999999999999", INT32_MAX}, Long{"-99999999999999999999999", INT32_MIN}})
        EXPECT_EQ(convert_stol(text), value) << text;
    using Double = std::pair<const char *, double>;
    for (const auto &[text, value] :
         {Double{" 1.5e3", 1500}, Double{"abc", 0}, Double{"", 0}, Double{"-.5x", -0.5}, Double{"1,5", 1},
          Double{"1e", 1}, Double{"\t+2.", 2}})
        EXPECT_EQ(convert_stod(text), value) << text;
}

// German has a decimal comma, and letters beyond ASCII.
TEST(Numbers, AndCaseAreTheSameInEveryLocale) {
    if (!kvtest::use_german_locale(KV_TEST_LOCALES)) GTEST_SKIP() << "no German locale can be made here";
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
    ENV *env = env_open(0, nullptr);
    const double values[] = {1.5, -2.25e-7};
    EXPECT_EQ(env_put_doubles(env, "s", "l", 2, values), ENV_OK);
    EXPECT_EQ(env_put_format(env, "s", "f", "%.2f %g|%s", 2.5, 1e-7, "1,5"), ENV_OK);
    const char *list = "", *formatted = "";
    env_get_reference(env, "s", "l", 1, &list);
    env_get_reference(env, "s", "f", 1, &formatted);
    EXPECT_STREQ(list, "1.5,-2.25e-07");
    EXPECT_STREQ(formatted, "2.50 1e-07|1,5");
    double value = 0;
    int32_t count = 2;
    double back[2] = {};
    EXPECT_EQ(env_get_doubles(env, "s", "l", 1, &count, back), 0);
    EXPECT_EQ(back[1], values[1]);
    EXPECT_EQ(env_get_double(env, "s", "f", 1, &value), ENV_SYNTAX);
    env_close(env, 0);
    std::setlocale(LC_ALL, "C");
}

TEST(Numbers, Round) {
    const struct {
        double x;
        int32_t n;
        double expected;
    } rows[] = {{3.14159, -2, 3.14}, {1250.0, 2, 1300}, {-0.5, 0, 0},    {-2.5, 0, -2},
                {2.5, 0, 3},         {-2.51, 0, -3},    {1499, 3, 1000}, {kInfinity, 0, kInfinity}};
    for (const auto &[x, n, expected] : rows) EXPECT_DOUBLE_EQ(pround(x, n), expected) << x << ", " << n;
    EXPECT_TRUE(std::isnan(pround(1, INT32_MAX)) && std::isnan(pround(1, INT32_MIN)));
    const std::pair<int32_t, int32_t> signs[] = {{INT32_MIN, -1}, {-1, -1}, {0, 0}, {1, 1}, {INT32_MAX, 1}};
    for (const auto &[v, expected] : signs) {
        EXPECT_EQ(lsgn(v), expected) << v;
        EXPECT_EQ(fsgn(v), expected) << v;
    }
    EXPECT_EQ(fsgn(-std::numeric_limits<double>::denorm_min()), -1.0);
    EXPECT_FALSE(std::signbit(fsgn(-0.0)));
    EXPECT_EQ(fsgn(kNotANumber), -1.0);
}

double reduce_step_by_step(double angle) {
    while (angle >= 360) angle -= 360;
    while (angle < 0) angle += 360;
    return angle * 0.017453292519943295;
}

// Bit for bit what subtracting and adding 360 step by step gives.
TEST(Numbers, InDegrees) {
    std::vector<double> angles{0,      -0.0,    30,       390, -330, 360, -360, -720, 359.99999999999994,
                               1e-300, -1e-300, 1e7 + 0.1};
    for (double angle = -4000.37; angle < 4000; angle += 1.618033) angles.push_back(angle);
    for (const double angle : angles) {
        const double radians = reduce_step_by_step(angle);
        for (const auto &[ours, expected] : {std::pair{sin_deg(angle), std::sin(radians)},
                                             {cos_deg(angle), std::cos(radians)},
                                             {tan_deg(angle), std::tan(radians)}}) {
            EXPECT_EQ(ours, expected) << angle;
            EXPECT_EQ(std::signbit(ours), std::signbit(expected)) << angle;
        }
    }
    for (const double angle : {1e17, -1e300, std::numeric_limits<double>::max()}) {
        EXPECT_LE(std::abs(sin_deg(angle)), 1.0) << angle;
    }
    for (const double angle : {kInfinity, -kInfinity, kNotANumber}) {
        EXPECT_TRUE(std::isnan(sin_deg(angle)) && std::isnan(cos_deg(angle)) && std::isnan(tan_deg(angle)));
    }
    EXPECT_DOUBLE_EQ(sin_deg(30), 0.5);
    EXPECT_TRUE(std::isfinite(tan_deg(90)) && tan_deg(90) > 1e15);
    EXPECT_TRUE(std::isnan(asin_deg(1.5)) && std::isnan(acos_deg(-1.5)));
    for (const auto &[ours, expected] : {std::pair{asin_deg(0.5), 30.0},
                                         {acos_deg(-1), 180.0},
                                         {atan_deg(-kInfinity), -90.0},
                                         {atan2_deg(1, -1), 135.0},
                                         {atan2_deg(-1, -1), -135.0},
                                         {atan2_deg(-0.0, -1), -180.0}}) {
        EXPECT_DOUBLE_EQ(ours, expected);
    }
}

}  // namespace

// SPDX-License-Identifier: MIT
// The calculator's settings in the main configuration file.
#include <gtest/gtest.h>
#include <tuple>

#include "kv.h"

#include "tests/models/calc.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::Evaluation;

TEST(CalcSettings, RoundToPlaces) {
    using Row = std::tuple<int32_t, const char *, double>;
    for (const auto &[places, expression, value] :
         {Row{2, "2/3", 0.67}, Row{2, "-2/3", -0.67}, Row{-2, "1250", 1300}, Row{-3, "1499", 1000},
          Row{1, "-0.25", -0.2}, Row{0, "0.123456789", 0.123456789}}) {
        calc_init(places);
        EXPECT_DOUBLE_EQ(Evaluation(expression).value, value) << expression << " to " << places;
    }
    calc_init(INT32_MIN);
    Evaluation("1");
    calc_init(0);
}

TEST(CalcSettings, ComeFromTheMainFile) {
    kvtest::remove_variable("kv");
    calc_init(3);
    calc_init(-1);  // there is no such file: stays
    EXPECT_DOUBLE_EQ(Evaluation("2/3").value, 0.667);
    EXPECT_STREQ(Evaluation("1/0").message, "Error in expression");

    const std::string text(150, 'x');
    kvtest::write_file(
        kvtest::drive_c() / "kv3.ini",
        "[Calculator]\r\nNachkommastellen=1\r\nf16=Division durch Null\r\nf1=" + text + "\r\n");
    calc_init(-1);
    EXPECT_DOUBLE_EQ(Evaluation("2/3").value, 0.7);
    using Row = std::tuple<const char *, int32_t, std::string>;
    for (const auto &[expression, status, message] :
         {Row{"1/0", 0, "Division durch Null"}, Row{"x", 3, text.substr(0, 100)},
          Row{"(1", 2, "Error in expression"}}) {
        const Evaluation result(expression);
        EXPECT_EQ(result.message_status, status);
        EXPECT_EQ(result.message, message);
    }
    std::filesystem::remove(kvtest::drive_c() / "kv3.ini");
    calc_init(0);
}

}  // namespace

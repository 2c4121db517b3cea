// The calculator's settings in the main configuration file.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

double value_of(const char *expression) {
    double value = 0;
    char ok = 0;
    EXPECT_EQ(calc_expression(expression, &value, &ok), 1) << expression;
    return value;
}

TEST(CalcSettings, RoundToPlaces) {
    const struct {
        int32_t places;
        const char *expression;
        double value;
    } rows[] = {{2, "2/3", 0.67},   {2, "-2/3", -0.67}, {-2, "1250", 1300},
                {-3, "1499", 1000}, {1, "-0.25", -0.2}, {0, "0.123456789", 0.123456789}};
    for (const auto &row : rows) {
        calc_init(row.places);
        EXPECT_DOUBLE_EQ(value_of(row.expression), row.value) << row.expression << " to " << row.places;
    }
    calc_init(INT32_MIN);
    value_of("1");
    calc_init(0);
}

TEST(CalcSettings, ComeFromTheMainFile) {
    kvtest::remove_variable("kv");
    calc_init(3);
    calc_init(-1);  // there is no such file: stays
    EXPECT_DOUBLE_EQ(value_of("2/3"), 0.667);

    const std::string text(150, 'x');
    kvtest::write_file(
        kvtest::drive_c() / "kv3.ini",
        "[Calculator]\r\nNachkommastellen=1\r\nf16=Division durch Null\r\nf1=" + text + "\r\n");
    calc_init(-1);
    EXPECT_DOUBLE_EQ(value_of("2/3"), 0.7);

    double value = 0;
    char ok = 0;
    int32_t code = 0;
    int32_t line = 0;
    int32_t column = 0;
    char message[101];
    calc_expression("1/0", &value, &ok);
    EXPECT_EQ(calc_error(&code, &line, &column, message), 0);
    EXPECT_STREQ(message, "Division durch Null");
    calc_expression("x", &value, &ok);
    EXPECT_EQ(calc_error(&code, &line, &column, message), 3);
    EXPECT_EQ(message, text.substr(0, 100));
    calc_expression("(1", &value, &ok);
    EXPECT_EQ(calc_error(&code, &line, &column, message), 2);
    EXPECT_STREQ(message, "Error in expression");
    std::filesystem::remove(kvtest::drive_c() / "kv3.ini");
    calc_init(0);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Expressions: one row each, with the value, or the error and its place. The model of the fuzz target has
// the operators.
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

#include "kv.h"

#include "tests/models/calc.hpp"
#include "tests/support/small_stack.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::Evaluation;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Calc, Values) {
    using Row = std::pair<const char *, double>;
    for (const auto &[expression, value] :
         {Row{"-2^2", 4}, Row{"2^-1^2", 2}, Row{"- -3+1", 4}, Row{"1e3+.5", 1000.5}, Row{" 1 +\t2 ", 3},
          // Functions, in degrees, in either case.
          Row{"sin(30)", 0.5}, Row{"Cos(60)", 0.5}, Row{"TAN(45)", 1}, Row{"COT(45)", 1},
          Row{"ASN(0.5)", 30}, Row{"ACS(0.5)", 60}, Row{"ATN(1)", 45}, Row{"ACT(1)", 45}, Row{"ACT(0)", 90},
          Row{"ACT(-0.0)", 90}, Row{"PI", 3.141592653589793}, Row{"abs(-7.5)", 7.5}, Row{"SQRT(16)", 4},
          Row{"SQRT(0)", 0}, Row{"EXP(0)", 1}, Row{"LGT(EXP(2))", 2}, Row{"LOG(1000)", 3},
          Row{"LOG(0)", -kInfinity}, Row{"MIN(4)", 4}, Row{"-SIN(30)^2", 0.25},
          // Comparisons, logic and conditions; what is not computed has no errors.
          Row{"1 AND 0 OR 1", 1}, Row{"1 OR 1 AND 0", 0}, Row{"NOT 0 and 0", 0}, Row{"-NOT 0", -1},
          Row{"0 ? 1/0 : 3", 3}, Row{"1 ? 3 : SQRT(-1)", 3}, Row{"0 ? (-8)^.5 : 3", 3},
          Row{"0 ? MAX(1/0,0^-1) : 3", 3}, Row{"0 ? (1 ? 1/0 : 1/0) : 4", 4},
          Row{"0 ? 0 ? 1/0 : 2/0 : 1 ? 5 : 6/0", 5}, Row{"(1?2:3)+1", 3},
          // Whole exponents of negative numbers have 32 bits, whole numbers as many digits as they like.
          Row{"(-1)^2147483647", -1}, Row{"(-1)^-2147483648", 1}, Row{"2147483647", 2147483647.0},
          Row{"2147483648+1", 2147483649.0}, Row{"99999999999-1", 99999999998.0},
          Row{"-99999999999", -99999999999.0}, Row{"1+99999999999 ", 100000000000.0}}) {
        const Evaluation result(expression);
        EXPECT_EQ(result.code, CALC_OK) << expression;
        EXPECT_DOUBLE_EQ(result.value, value) << expression;
        EXPECT_TRUE(result.consistent) << expression;
    }
    EXPECT_TRUE(std::isnan(Evaluation("ASN(2)").value));
    EXPECT_EQ(Evaluation("1" + std::string(300, '0')).value, 1e300);
    EXPECT_EQ(Evaluation("1" + std::string(400, '0')).value, kInfinity);
}

TEST(Calc, Errors) {
    using Row = std::tuple<const char *, int32_t, int32_t>;
    for (const auto &[expression, code, column] :
         {Row{"", CALC_SYNTAX, 0}, Row{"   ", CALC_SYNTAX, 3}, Row{"x+1", CALC_SYNTAX, 0},
          Row{"1 2", CALC_SYNTAX, 2}, Row{"+1", CALC_SYNTAX, 0}, Row{"1+", CALC_SYNTAX, 2},
          Row{"\"a\"", CALC_SYNTAX, 0}, Row{"1)", CALC_SYNTAX, 1}, Row{"1:2", CALC_SYNTAX, 1},
          Row{"()", CALC_SYNTAX, 1}, Row{"AND(1)", CALC_SYNTAX, 0}, Row{"1+OR(1,2)", CALC_SYNTAX, 2},
          Row{"1 AND OR 2", CALC_NO_ARGUMENT, 9}, Row{"1 AND", CALC_SYNTAX, 5},
          Row{"1\xFF", CALC_SYNTAX, 1}, Row{"\xE4", CALC_SYNTAX, 0}, Row{"2 3 /0", CALC_SYNTAX, 2},
          Row{"1 NOT 2", CALC_SYNTAX, 2}, Row{"1 SIN", CALC_SYNTAX, 2}, Row{"2 PI", CALC_SYNTAX, 2},
          Row{"1,2", CALC_SYNTAX, 1}, Row{"SIN 30", CALC_NO_ARGUMENT, 4}, Row{"MAX", CALC_NO_ARGUMENT, 3},
          // What is missing, and what cannot be computed.
          Row{"(1+2", CALC_UNCLOSED, 4}, Row{"SIN(1,2)", CALC_UNCLOSED, 5},
          Row{"MAX(1;2)", CALC_UNCLOSED, 5}, Row{"(1:2)", CALC_UNCLOSED, 2},
          Row{"1 ? 2", CALC_NO_ALTERNATIVE, 5}, Row{"1?2)", CALC_NO_ALTERNATIVE, 3},
          Row{"(1?2)", CALC_NO_ALTERNATIVE, 4}, Row{"1?2,3", CALC_NO_ALTERNATIVE, 3},
          Row{"(-8)^(1/3)", CALC_FRACTIONAL_POWER, 10}, Row{"(-2)^99999999999", CALC_FRACTIONAL_POWER, 16},
          Row{"(-1)^2147483648", CALC_FRACTIONAL_POWER, 15},
          Row{"(-1)^-2147483649", CALC_FRACTIONAL_POWER, 16}, Row{"0^-1", CALC_INFINITE_POWER, 4},
          Row{"10^999", CALC_INFINITE_POWER, 6}, Row{"1+10^999*0", CALC_INFINITE_POWER, 8},
          Row{"7/0", CALC_DIVISION_BY_ZERO, 3}, Row{"(7/0 + 1", CALC_DIVISION_BY_ZERO, 5},
          Row{"SQRT(-4)", CALC_NEGATIVE_ROOT, 8}, Row{"1 ? 1/0 : 2", CALC_DIVISION_BY_ZERO, 8},
          Row{"0 ? 1/0 : x", CALC_SYNTAX, 10}, Row{"1+\n\n 2+", CALC_SYNTAX, 3}}) {
        const Evaluation result(expression);
        EXPECT_EQ(result.code, code) << expression;
        EXPECT_EQ(result.column, column) << expression;
        EXPECT_TRUE(result.consistent) << expression;
    }
    EXPECT_EQ(Evaluation("1+\n\n 2+").line, 2);
    for (int byte = 1; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        const Evaluation result(std::string(1, c));
        const bool goes_on = byte <= ' ' || c == '-' || c == '(';
        EXPECT_EQ(result.code, c >= '0' && c <= '9' ? CALC_OK : CALC_SYNTAX) << byte;
        EXPECT_EQ(result.line, c == '\n' ? 1 : 0) << byte;
        EXPECT_EQ(result.column, result.code == CALC_OK || (goes_on && c != '\n') ? 1 : 0) << byte;
    }
}

std::string repeated(const char *text, std::size_t count) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
}

// Depth and length cost heap, not stack: the value, or the error and its column.
TEST(Calc, LongExpressions) {
    constexpr int32_t kMany = 50000;
    const std::string megabyte(1'000'000, '9');
    using Row = std::tuple<std::string, double, int32_t, int32_t>;
    kvtest::on_small_stack([&] {
        for (const auto &[expression, value, code, column] :
             {Row{repeated("(", 4 * kMany) + "7" + repeated(")", 4 * kMany), 7, 0, 8 * kMany + 1},
              Row{repeated("-", 4 * kMany) + "7", 7, 0, 4 * kMany + 1},
              Row{repeated("1+", 2 * kMany) + "1", 2 * kMany + 1, 0, 4 * kMany + 1},
              Row{repeated("0?1:", kMany) + "7", 7, 0, 4 * kMany + 1},
              Row{repeated("1?", kMany) + "7" + repeated(":1", kMany), 7, 0, 4 * kMany + 1},
              Row{repeated("MAX(1,", kMany) + "7" + repeated(")", kMany), 7, 0, 7 * kMany + 1},
              Row{"MAX(7" + repeated(",1", 2 * kMany) + ")", 7, 0, 4 * kMany + 6},
              Row{repeated("1+2*3^4<5 AND ", kMany) + "1", 0, 0, 14 * kMany + 1},
              Row{std::string(1'000'000, '0') + "2147483649", 2147483649.0, 0, 1'000'010},
              Row{megabyte, kInfinity, 0, 1'000'000},
              Row{"." + std::string(1'000'000, '0') + "7e1000001", 7, 0, 1'000'010},
              Row{repeated("(", 4 * kMany), 0, CALC_SYNTAX, 4 * kMany},
              Row{repeated("1?", kMany) + "1", 0, CALC_NO_ALTERNATIVE, 2 * kMany + 1},
              Row{repeated("SIN(", kMany) + "1", 0, CALC_UNCLOSED, 4 * kMany + 1},
              Row{"1+\"" + megabyte, 0, CALC_SYNTAX, 2}}) {
            const Evaluation result(expression);
            EXPECT_EQ(result.code, code) << expression.substr(0, 20);
            EXPECT_EQ(result.column, column) << expression.substr(0, 20);
            EXPECT_TRUE(code != CALC_OK || result.value == value)
                << expression.substr(0, 20) << result.value;
        }
    });
}

TEST(Calc, ExhaustedHeap) {
    int refused = 0;
    kvtest::sweep_allocation_failures([&](std::int64_t) {
        double value = 0;
        char ok = 0;
        calc_expression((std::string(200, '(') + "1" + std::string(200, ')')).c_str(), &value, &ok);
        int32_t code = 0, line = 0, column = 0;
        char message[101];
        calc_error(&code, &line, &column, message);
        EXPECT_EQ(code, ok == 1 ? CALC_OK : CALC_OUT_OF_MEMORY);
        EXPECT_TRUE(ok == 0 || value == 1);
        refused += ok == 0 ? 1 : 0;
    });
    EXPECT_GT(refused, 0);
}

}  // namespace

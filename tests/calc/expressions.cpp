// Expressions: one row each, with the value, or the error and its column.
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "kv.h"

#include "tests/support/small_stack.hpp"
#include "tests/support/support.hpp"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Result {
    double value;
    int32_t code;
    int32_t line;
    int32_t column;
};

Result evaluate(const std::string &expression) {
    Result result{};
    char ok = 77;
    char message[101];
    const int32_t done = calc_expression(expression.c_str(), &result.value, &ok);
    EXPECT_EQ(done, ok);
    calc_error(&result.code, &result.line, &result.column, message);
    EXPECT_EQ(done == 1, result.code == CALC_OK);
    EXPECT_STREQ(message, "Error in expression");
    return result;
}

TEST(Calc, Values) {
    const struct {
        const char *expression;
        double value;
    } rows[] = {
        {"2+3*4", 14},
        {"(2+3)*4", 20},
        {"10/4", 2.5},
        {"7-2-1", 4},
        {"2^3^2", 512},
        {"-2^2", 4},
        {"2^-2", 0.25},
        {"2*-3", -6},
        {"--3", 3},
        {"- -3+1", 4},
        {"2^-1^2", 2},
        {"(-8)^3", -512},
        {"24/4/3*2", 4},
        {"2-3+4", 3},
        {"1e3+.5", 1000.5},
        {" 1 +\t2 ", 3},
        {"((((7))))", 7},
        // Functions, in degrees.
        {"sin(30)", 0.5},
        {"SIN(30)", 0.5},
        {"Cos(60)", 0.5},
        {"TAN(45)", 1},
        {"COT(45)", 1},
        {"ASN(0.5)", 30},
        {"ACS(0.5)", 60},
        {"ATN(1)", 45},
        {"ACT(1)", 45},
        {"ACT(0)", 90},
        {"ACT(-0.0)", 90},
        {"PI", 3.141592653589793},
        {"ABS(-7.5)", 7.5},
        {"SQRT(16)", 4},
        {"EXP(0)", 1},
        {"LGT(EXP(2))", 2},
        {"LOG(1000)", 3},
        {"LOG(0)", -kInfinity},
        {"MAX(1,5,3)", 5},
        {"MIN(4)", 4},
        {"MIN(3,1+1,7)", 2},
        {"MAX(MIN(1,2),MIN(3,4))", 3},
        {"-SIN(30)^2", 0.25},
        // Comparisons and logic.
        {"3<>3", 0},
        {"3#4", 1},
        {"3><4", 1},
        {"2=<2", 1},
        {"2<=1", 0},
        {"2=>3", 0},
        {"2>=2", 1},
        {"2==2", 1},
        {"1<2<3", 1},
        {"3>2>1", 0},
        {"1+1=2", 1},
        {"1 AND 0 OR 1", 1},
        {"1 OR 1 AND 0", 0},
        {"NOT 0", 1},
        {"NOT 5", 0},
        {"NOT NOT 5", 1},
        {"NOT 0 AND 0", 0},
        {"-NOT 0", -1},
        {"NOT -1", 0},
        {"2 and 3", 1},
        {"1<2 AND 2<3", 1},
        // Conditionals.
        {"2 ? 5 : 7", 5},
        {"0 ? 5 : 7", 7},
        {"0 ? 1/0 : 3", 3},
        {"1 ? 3 : SQRT(-1)", 3},
        {"0 ? 1 : 0 ? 2 : 3", 3},
        {"1 ? 0 ? 1 : 2 : 3", 2},
        {"0 ? (1 ? 1/0 : 1/0) : 4", 4},
        {"(1?2:3)+1", 3},
        {"1>2 ? 10 : 20", 20},
        {"0 ? 0 ? 1/0 : 2/0 : 1 ? 5 : 6/0", 5},
        {"(1+2)*3-4/5^2 > 2 ? 10 : 20", 10},
        {"MAX(1?2:3,0?9:1)", 2},
        // Whole numbers beyond 32 bits.
        {"2147483647", 2147483647.0},
        {"2147483648+1", 2147483649.0},
        {"99999999999", 99999999999.0},
        {"99999999999-1", 99999999998.0},
        {"-99999999999", -99999999999.0},
        {"1+99999999999 ", 100000000000.0},
        {"2*SIN(30)+MAX(1,4,2)", 5},
    };
    for (const auto &row : rows) {
        const Result result = evaluate(row.expression);
        EXPECT_EQ(result.code, CALC_OK) << row.expression;
        EXPECT_DOUBLE_EQ(result.value, row.value) << row.expression;
    }
    EXPECT_TRUE(std::isnan(evaluate("ASN(2)").value));
    EXPECT_EQ(evaluate("1" + std::string(300, '0')).value, 1e300);
    EXPECT_EQ(evaluate("1" + std::string(400, '0')).value, kInfinity);
}

TEST(Calc, Errors) {
    const struct {
        const char *expression;
        int32_t code;
        int32_t line;
        int32_t column;
    } rows[] = {
        {"", CALC_SYNTAX, 0, 0},
        {"   ", CALC_SYNTAX, 0, 3},
        {"x+1", CALC_SYNTAX, 0, 0},
        {"1 2", CALC_SYNTAX, 0, 2},
        {"+1", CALC_SYNTAX, 0, 0},
        {"1+", CALC_SYNTAX, 0, 2},
        {"\"a\"", CALC_SYNTAX, 0, 0},
        {"1)", CALC_SYNTAX, 0, 1},
        {"1:2", CALC_SYNTAX, 0, 1},
        {"()", CALC_SYNTAX, 0, 1},
        {"AND(1)", CALC_SYNTAX, 0, 0},
        {"1+OR(1,2)", CALC_SYNTAX, 0, 2},
        {"1 AND OR 2", CALC_NO_ARGUMENT, 0, 9},
        {"1 AND", CALC_SYNTAX, 0, 5},
        {"1\xFF", CALC_SYNTAX, 0, 1},
        {"\xE4", CALC_SYNTAX, 0, 0},
        {"2 3 /0", CALC_SYNTAX, 0, 2},
        {"1 NOT 2", CALC_SYNTAX, 0, 2},
        {"1 SIN", CALC_SYNTAX, 0, 2},
        {"2 PI", CALC_SYNTAX, 0, 2},
        {"1,2", CALC_SYNTAX, 0, 1},
        {"SIN 30", CALC_NO_ARGUMENT, 0, 4},
        {"MAX", CALC_NO_ARGUMENT, 0, 3},
        {"ABS", CALC_NO_ARGUMENT, 0, 3},
        {"(1+2", CALC_UNCLOSED, 0, 4},
        {"SIN(1,2)", CALC_UNCLOSED, 0, 5},
        {"MAX(1;2)", CALC_UNCLOSED, 0, 5},
        {"(1:2)", CALC_UNCLOSED, 0, 2},
        {"1 ? 2", CALC_NO_ALTERNATIVE, 0, 5},
        {"1?2)", CALC_NO_ALTERNATIVE, 0, 3},
        {"(1?2)", CALC_NO_ALTERNATIVE, 0, 4},
        {"1?2,3", CALC_NO_ALTERNATIVE, 0, 3},
        {"(-8)^(1/3)", CALC_FRACTIONAL_POWER, 0, 10},
        {"(-2)^99999999999", CALC_FRACTIONAL_POWER, 0, 16},
        {"0^-1", CALC_INFINITE_POWER, 0, 4},
        {"10^999", CALC_INFINITE_POWER, 0, 6},
        {"1+10^999*0", CALC_INFINITE_POWER, 0, 8},
        {"7/0", CALC_DIVISION_BY_ZERO, 0, 3},
        {"(7/0 + 1", CALC_DIVISION_BY_ZERO, 0, 5},
        {"SQRT(-4)", CALC_NEGATIVE_ROOT, 0, 8},
        {"1 ? 1/0 : 2", CALC_DIVISION_BY_ZERO, 0, 8},
        {"1+\n\n 2+", CALC_SYNTAX, 2, 3},
        {"0 ? 1/0 : x", CALC_SYNTAX, 0, 10},
    };
    for (const auto &row : rows) {
        const Result result = evaluate(row.expression);
        EXPECT_EQ(result.code, row.code) << row.expression;
        EXPECT_EQ(result.line, row.line) << row.expression;
        EXPECT_EQ(result.column, row.column) << row.expression;
    }
}

TEST(Calc, SingleBytes) {
    for (int byte = 1; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        const Result result = evaluate(std::string(1, c));
        const bool goes_on = byte <= ' ' || c == '-' || c == '(';
        EXPECT_EQ(result.code, c >= '0' && c <= '9' ? CALC_OK : CALC_SYNTAX) << byte;
        EXPECT_EQ(result.line, c == '\n' ? 1 : 0) << byte;
        EXPECT_EQ(result.column, result.code == CALC_OK || (goes_on && c != '\n') ? 1 : 0) << byte;
    }
}

// Every byte, and every pair of symbols, gives a value or an error; nothing is reported.
TEST(Calc, EveryByteAndEveryPair) {
    kvtest::clear_log();
    double value = 0;
    char ok = 0;
    for (int a = 1; a < 256; ++a) {
        for (int b = 1; b < 256; ++b) {
            const char text[] = {static_cast<char>(a), static_cast<char>(b), '\0'};
            const std::string read(text);
            const bool number = read.find_first_of("0123456789") != std::string::npos;
            const bool pi = str_ieq(text, "PI") == 1;
            const bool done = calc_expression(text, &value, &ok) == 1;
            EXPECT_FALSE(done && !number && !pi) << read;
        }
    }
    EXPECT_EQ(kvtest::read_log(), "");
}

std::string repeated(const char *text, std::size_t count) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
}

// Depth and length cost heap, not stack.
TEST(Calc, LongExpressions) {
    constexpr std::size_t kMany = 250000;
    constexpr std::size_t kTenMegabytes = 10000000;
    const struct {
        std::string expression;
        double value;
    } values[] = {
        {repeated("(", 4 * kMany) + "7" + repeated(")", 4 * kMany), 7},
        {repeated("-", 4 * kMany) + "7", 7},
        {repeated("NOT ", kMany) + "7", 1},
        {repeated("1+", 2 * kMany) + "1", 2 * kMany + 1},
        {repeated("1^", 2 * kMany) + "1", 1},
        {repeated("0?1:", kMany) + "7", 7},
        {repeated("1?", kMany) + "7" + repeated(":1", kMany), 7},
        {repeated("ABS(", kMany) + "7" + repeated(")", kMany), 7},
        {repeated("MAX(1,", kMany / 2) + "7" + repeated(")", kMany / 2), 7},
        {"MAX(7" + repeated(",1", 2 * kMany) + ")", 7},
        {repeated("1+2*3^4<5 AND ", kMany / 4) + "1", 0},
        {std::string(kTenMegabytes, '0') + "2147483649", 2147483649.0},
        {std::string(kTenMegabytes, '9'), kInfinity},
        {"." + std::string(kTenMegabytes, '0') + "7e10000001", 7},
    };
    const struct {
        std::string expression;
        int32_t code;
        int32_t column;
    } errors[] = {
        {repeated("(", 4 * kMany), CALC_SYNTAX, 4 * kMany},
        {repeated("2^(", kMany), CALC_SYNTAX, 3 * kMany},
        {repeated("1?", kMany) + "1", CALC_NO_ALTERNATIVE, 2 * kMany + 1},
        {repeated("SIN(", kMany) + "1", CALC_UNCLOSED, 4 * kMany + 1},
        {"1+" + std::string(kTenMegabytes, 'x'), CALC_SYNTAX, 2},
        {"1+\"" + std::string(kTenMegabytes, 'x'), CALC_SYNTAX, 2},
    };
    kvtest::on_small_stack([&] {
        for (const auto &row : values)
            EXPECT_EQ(evaluate(row.expression).value, row.value) << row.expression.substr(0, 20);
        for (const auto &row : errors) {
            const Result result = evaluate(row.expression);
            EXPECT_EQ(result.code, row.code) << row.expression.substr(0, 20);
            EXPECT_EQ(result.column, row.column) << row.expression.substr(0, 20);
        }
    });
}

TEST(Calc, ExhaustedHeap) {
    const std::string deep = std::string(200, '(') + "1" + std::string(200, ')');
    bool refused = false;
    kvtest::sweep_allocation_failures([&](std::int64_t) {
        double value = 0;
        char ok = 0;
        if (calc_expression(deep.c_str(), &value, &ok) == 1) {
            EXPECT_EQ(value, 1);
            return;
        }
        int32_t code = 0;
        int32_t line = 0;
        int32_t column = 0;
        char message[101];
        calc_error(&code, &line, &column, message);
        EXPECT_EQ(code, CALC_OUT_OF_MEMORY);
        refused = true;
    });
    EXPECT_TRUE(refused);
}

}  // namespace

// Rounding, signs and trigonometry in degrees.
#include "kv/numeric.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Numeric, Rounds) {
    const struct {
        double x;
        int32_t n;
        double expected;
    } rows[] = {
        {3.14159, -2, 3.14}, {1250.0, 2, 1300}, {-0.5, 0, 0},    {-2.5, 0, -2},
        {2.5, 0, 3},         {-2.51, 0, -3},    {1499, 3, 1000}, {kInfinity, 0, kInfinity},
    };
    for (const auto &row : rows) {
        EXPECT_DOUBLE_EQ(pround(row.x, row.n), row.expected) << row.x << " to 10^" << row.n;
    }
    EXPECT_TRUE(std::isnan(pround(1, INT32_MAX)));
    EXPECT_TRUE(std::isnan(pround(1, INT32_MIN)));
}

TEST(Numeric, Signs) {
    EXPECT_EQ(lsgn(INT32_MIN), -1);
    EXPECT_EQ(lsgn(0), 0);
    EXPECT_EQ(lsgn(INT32_MAX), 1);
    EXPECT_EQ(fsgn(-std::numeric_limits<double>::denorm_min()), -1.0);
    EXPECT_EQ(fsgn(-0.0), 0.0);
    EXPECT_FALSE(std::signbit(fsgn(-0.0)));
    EXPECT_EQ(fsgn(kInfinity), 1.0);
    EXPECT_EQ(fsgn(kNotANumber), -1.0);
}

double reduce_step_by_step(double angle) {
    while (angle >= 360) angle -= 360;
    while (angle < 0) angle += 360;
    return angle * 0.017453292519943295;
}

// Bit for bit what taking off and adding 360 step by step gives.
TEST(Numeric, ReducesAngles) {
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
}

TEST(Numeric, Trigonometry) {
    EXPECT_DOUBLE_EQ(sin_deg(30), 0.5);
    EXPECT_EQ(cos_deg(360), 1.0);
    EXPECT_DOUBLE_EQ(tan_deg(45), 1.0);
    EXPECT_TRUE(std::isfinite(tan_deg(90)));
    EXPECT_GT(tan_deg(90), 1e15);
    EXPECT_DOUBLE_EQ(asin_deg(0.5), 30.0);
    EXPECT_DOUBLE_EQ(acos_deg(-1), 180.0);
    EXPECT_TRUE(std::isnan(asin_deg(1.5)) && std::isnan(acos_deg(-1.5)));
    EXPECT_DOUBLE_EQ(atan_deg(-kInfinity), -90.0);
    EXPECT_DOUBLE_EQ(atan2_deg(1, -1), 135.0);
    EXPECT_DOUBLE_EQ(atan2_deg(-1, -1), -135.0);
    EXPECT_DOUBLE_EQ(atan2_deg(-0.0, -1), -180.0);
}

}  // namespace

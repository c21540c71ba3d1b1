#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwoPi = 6.283185307179586;

using Conversion = double (*)(double);

struct ConversionCase {
    const char* name;
    Conversion function;
    double argument;
    double expected;
    double tolerance;
};
void PrintTo(const ConversionCase& c, std::ostream* out) {
    *out << c.name;
}

// Packed numbers: 1e-12 is 1e-8 seconds of arc, the rounding of the fields.
constexpr ConversionCase kConversions[] = {
    {"half_a_degree_is_30_minutes", deg_dms, 30.5, 30.3, 1e-12},
    {"negative_keeps_its_magnitude", deg_dms, -30.5, -30.3, 1e-12},
    {"seconds_behind_the_second_decimal_pair", deg_dms, 30.257638888888889, 30.15275, 1e-12},
    {"full_second_carries_through_minute_into_degree", deg_dms, 29.99999999999, 30.0, 0.0},
    {"full_second_carries_into_the_minute", deg_dms, 10.1 - 1e-11, 10.06, 1e-15},
    {"seconds_below_the_threshold_stay", deg_dms, 29.9999999, 29.5959999640, 1e-11},
    {"thirty_packed_minutes_are_half_a_degree", dms_deg, 30.3, 30.5, 1e-13},
    {"negative_packed_number", dms_deg, -30.15275, -30.257638888888889, 1e-13},
    {"field_just_under_the_next_minute_is_repaired", dms_deg, 30.29999999999999, 30.5, 1e-12},
    {"seconds_of_an_hour_and_more", dms_sec, 30.15275, 108927.5, 1e-8},
    {"packed_half_degree_in_radians", dms_rad, 30.3, 0.53232542185827052, 1e-15},
    {"half_a_radian", rad_dms, 0.5, 28.38524031236, 1e-10},
    {"radians_round_up_from_a_hundredth_below_the_minute", rad_dms, 0.17627825050, 10.06, 1e-12},
};

class PackedAngle : public testing::TestWithParam<ConversionCase> {};
TEST_P(PackedAngle, Converts) {
    const ConversionCase& c = GetParam();
    EXPECT_NEAR(c.function(c.argument), c.expected, c.tolerance);
}
INSTANTIATE_TEST_SUITE_P(Cases, PackedAngle, testing::ValuesIn(kConversions),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PackedAngles, ZeroYieldsNegativeZero) {
    for (const Conversion f : {deg_dms, dms_deg, dms_sec, dms_rad, rad_dms}) {
        for (const double zero : {0.0, -0.0}) {
            EXPECT_EQ(f(zero), 0.0);
            EXPECT_TRUE(std::signbit(f(zero)));
        }
    }
}

TEST(PackedAngles, DegreesAndRadiansTakeAFullSecondsFieldDifferently) {
    // A seconds field of 99.95: below the threshold of dms_deg, above that of dms_rad.
    EXPECT_NEAR(dms_deg(10.009995), 10.0 + 99.95 / 3600.0, 1e-12);
    EXPECT_NEAR(dms_rad(10.009995), (10.0 + 60.0 / 3600.0) / 57.29577951308232, 1e-15);
    EXPECT_NEAR(dms_deg(10.00999950), 10.0 + 99.995 / 3600.0 - 0.0, 1e-9);
    EXPECT_NEAR(dms_deg(10.0099999999), 10.0 + 60.0 / 3600.0, 1e-12);
}

TEST(PackedAngles, RadiansRoundUpNearAFullMinuteAndDegreesDoNot) {
    const double degrees = 10.0 + 59.995 / 3600.0;
    EXPECT_NEAR(deg_dms(degrees), 10.0059995, 1e-11);
    EXPECT_NEAR(rad_dms(degrees / 57.29577951308232), 10.01, 1e-15);
}

TEST(PackedAngles, ThereAndBackWithinATenthOfAMillionthSecond) {
    ZM_TRACE_SEED();
    zm::test::Random random(1);
    for (int i = 0; i < 20000; ++i) {
        const double degrees = random.Real(-720.0, 720.0);
        EXPECT_NEAR(dms_deg(deg_dms(degrees)), degrees, 3e-10);  // the carry moves up to 1e-6 seconds
    }
}

TEST(PackedAngles, NotANumberAndInfinityComeThrough) {
    for (const Conversion f : {deg_dms, dms_deg, dms_sec, dms_rad, rad_dms}) {
        EXPECT_TRUE(std::isnan(f(kNaN)));
        EXPECT_EQ(f(kInfinity), kInfinity);
        EXPECT_EQ(f(-kInfinity), -kInfinity);
        EXPECT_GT(f(1e300), 1e290);
    }
}

double Adjusted(double angle) {
    _ADJUSTANGLE(angle);
    return angle;
}

TEST(AdjustAngle, SnapsBothEndsToZero) {
    EXPECT_EQ(Adjusted(-1e-06), 0.0);
    EXPECT_EQ(Adjusted(6.2831853), 0.0);
    EXPECT_EQ(Adjusted(9e-06), 0.0);
    EXPECT_EQ(Adjusted(1.1e-05), 1.1e-05);
}

TEST(AdjustAngle, TurnsIntoOneRound) {
    EXPECT_EQ(Adjusted(7.0), 7.0 - kTwoPi);
    EXPECT_EQ(Adjusted(-1.0), kTwoPi - 1.0);
    EXPECT_NEAR(Adjusted(1000.0), 1000.0 - 159.0 * kTwoPi, 1e-11);  // 159 roundings
    EXPECT_NEAR(Adjusted(-1000.0), 160.0 * kTwoPi - 1000.0, 1e-11);
}

TEST(AdjustAngle, ResultLiesInOneRound) {
    ZM_TRACE_SEED();
    zm::test::Random random(2);
    for (int i = 0; i < 20000; ++i) {
        const double result = Adjusted(random.Real(-1e4, 1e4));
        EXPECT_GE(result, 0.0);
        EXPECT_LT(result, kTwoPi);
    }
}

TEST(AdjustAngle, EndsOnHugeAndInfiniteAngles) {
    EXPECT_EQ(Adjusted(kInfinity), kInfinity);
    EXPECT_EQ(Adjusted(-kInfinity), -kInfinity);
    EXPECT_TRUE(std::isnan(Adjusted(kNaN)));
    EXPECT_EQ(Adjusted(1e300), 1e300);  // a full turn is below its last bit
    EXPECT_EQ(Adjusted(-1e300), -1e300);
    EXPECT_NEAR(Adjusted(1e9), 1e9 - 1e7 * kTwoPi, 1.0);  // the count ends it, with the last value
}

struct LineCase {
    const char* name;
    double x1, y1, x2, y2, expected;
};
void PrintTo(const LineCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr LineCase kLines[] = {
    {"east", 0, 0, 1, 0, 0.0},
    {"north_east", 0, 0, 1, 1, 0.7853981633974483},
    {"north", 5, 0, 5, 1, 1.5707963267948966},
    {"west", 0, 0, -1, 0, 3.141592653589793},
    {"south_west", 0, 0, -1, -1, 3.9269908169872414},
    {"south", 5, 0, 5, -1, 4.71238898038469},
    {"south_east", 0, 0, 1, -1, 5.497787143782138},
    {"coincident_points_point_up", 3, 4, 3, 4, 1.5707963267948966},
    {"just_below_the_vertical_threshold_is_straight_down", 0, 0, 9.9e-08, -1e-07, 4.71238898038469},
    {"just_below_the_vertical_threshold_is_straight_up", 0, 0, -9.9e-08, 1e-09, 1.5707963267948966},
    {"just_above_the_vertical_threshold_has_its_slope", 0, 0, 1.01e-07, -1.01e-07, 5.497787143782138},
};
class Bearing : public testing::TestWithParam<LineCase> {};
TEST_P(Bearing, CountsFromTheFirstAxis) {
    const LineCase& c = GetParam();
    EXPECT_NEAR(_BEARING(c.x1, c.y1, c.x2, c.y2), c.expected, 1e-15);
    EXPECT_EQ(bearing(c.x1, c.y1, c.x2, c.y2), _BEARING(c.x1, c.y1, c.x2, c.y2));
}
INSTANTIATE_TEST_SUITE_P(Lines, Bearing, testing::ValuesIn(kLines),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Bearings, AgreeWithTheArcTangentOfTwoArguments) {
    ZM_TRACE_SEED();
    zm::test::Random random(3);
    for (int i = 0; i < 20000; ++i) {
        const double dx = random.Real(-10.0, 10.0);
        const double dy = random.Real(-10.0, 10.0);
        double expected = std::atan2(dy, dx);
        if (expected < 0.0) expected += kTwoPi;
        EXPECT_NEAR(_BEARING(0.0, 0.0, dx, dy), expected, 2e-15);
    }
}

TEST(Bearings, NotANumberComesThrough) {
    EXPECT_TRUE(std::isnan(_BEARING(0.0, 0.0, kNaN, 1.0)));
    EXPECT_TRUE(std::isnan(_BEARING(0.0, 0.0, kInfinity, kInfinity)));
}

TEST(AngleValue, KnowsRadiansInEveryUnit) {
    EXPECT_EQ(AngleValue(0.5, 0).radians, 0.5);
    EXPECT_NEAR(AngleValue(180.0, 1).radians, 3.141592653589793, 1e-15);
    EXPECT_NEAR(AngleValue(30.3, 2).radians, 0.53232542185827052, 1e-15);
    EXPECT_EQ(AngleValue(0.5, 7).radians, 0.5);  // an unknown unit is read as radians
    EXPECT_EQ(AngleValue(0.5, -1).radians, 0.5);
}

TEST(AngleValue, RewritesItselfInPlace) {
    AngleValue angle(30.3, 2);
    angle.ToDegrees();
    EXPECT_NEAR(angle.value, 30.5, 1e-13);
    EXPECT_EQ(angle.unit, 1);
    EXPECT_EQ(angle.ToRadians(), angle.radians);
    EXPECT_EQ(angle.value, angle.radians);
    EXPECT_EQ(angle.unit, 0);
}

}  // namespace

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "geodesy/zone_ellipsoids.h"
#include "geodesy/zone_series.h"
#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

znCoordSysTypeConstants System(int code) {
    return static_cast<znCoordSysTypeConstants>(code);
}

struct SystemCase {
    const char* name;
    int code;
    double a, e2;
    int width;
};
void PrintTo(const SystemCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr SystemCase kSystems[] = {
    {"none", 0, 0.0, 0.0, 0},
    {"family_54", 10054, 6378245.0, 0.00669342162296594, 6},
    {"family_54_6_degrees", 10154, 6378245.0, 0.00669342162296594, 6},
    {"family_54_3_degrees", 10354, 6378245.0, 0.00669342162296594, 3},
    {"family_80", 10080, 6378140.0, 0.006694384999588, 6},
    {"family_80_6_degrees", 10180, 6378140.0, 0.006694384999588, 6},
    {"family_80_3_degrees", 10380, 6378140.0, 0.006694384999588, 3},
    {"family_84_3_degrees_is_10084", 10084, 6378137.0, 0.0066943800229, 3},
    {"family_84_6_degrees", 10184, 6378137.0, 0.0066943800229, 6},
    {"unknown_10384_has_width_6", 10384, 6378137.0, 0.0066943800229, 6},
    {"unknown_negative", -7, 6378137.0, 0.0066943800229, 6},
};
class CoordinateSystems : public testing::TestWithParam<SystemCase> {};
TEST_P(CoordinateSystems, SetEllipsoidAndZoneWidth) {
    const SystemCase& c = GetParam();
    Coordinate_2Dsys point;
    point.setL0(42);
    point.setEllipse(System(c.code));
    EXPECT_EQ(point.geta(), c.a);
    EXPECT_EQ(point.gete2(), c.e2);
    EXPECT_EQ(point.getGSwidth(), c.width);
    EXPECT_EQ(point.getEllipseFlag(), System(c.code));
    EXPECT_EQ(point.getL0(), 42);
}
INSTANTIATE_TEST_SUITE_P(All, CoordinateSystems, testing::ValuesIn(kSystems),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Coordinate2D, DefaultObjectStandsOnTheDefaultSystem) {
    const Coordinate_2Dsys point;
    EXPECT_EQ(point.geta(), 6378137.0);
    EXPECT_EQ(point.getGSwidth(), 6);
    EXPECT_EQ(point.getL0(), 0);
    EXPECT_EQ(point.getEllipseFlag(), znCoord84G6);
    EXPECT_EQ(point.getB(), 0.0);
    EXPECT_EQ(point.getL(), 0.0);
    EXPECT_EQ(point.getGX(), 0.0);
    EXPECT_EQ(point.getGY(), 0.0);
}

TEST(Coordinate2D, WithoutEllipsoidNothingIsConverted) {
    Coordinate_2Dsys point;
    point.setEllipse(znCoordNone);
    point.setGX(1.0);
    point.setGY(2.0);
    point.B = 0.5;
    point.L = 0.25;
    EXPECT_EQ(point.UTMtoGS(), 0);
    EXPECT_EQ(point.GStoUTM(), 0);
    EXPECT_EQ(point.getGX(), 1.0);
    EXPECT_EQ(point.getGY(), 2.0);
    EXPECT_EQ(point.getB(), 0.5);
    EXPECT_EQ(point.getL(), 0.25);
}

TEST(Coordinate2D, ZeroEccentricityAloneAlsoStopsTheConversion) {
    Coordinate_2Dsys point;
    point.e2 = 0.0;
    EXPECT_EQ(point.UTMtoGS(), 0);
    EXPECT_EQ(point.GStoUTM(), 0);
}

TEST(Coordinate2D, SetEllipseAfterSetLKeepsTheOldMeridian) {
    Coordinate_2Dsys point;
    point.setL(119.0 * kDegree);
    EXPECT_EQ(point.getL0(), 117);
    point.setEllipse(znCoord84G3);
    EXPECT_EQ(point.getGSwidth(), 3);
    EXPECT_EQ(point.getL0(), 117);
}

struct ZoneCase {
    const char* name;
    int system;
    double longitude;  // degrees
    int meridian;
};
void PrintTo(const ZoneCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr ZoneCase kZones[] = {
    {"six_degrees_inside", 10184, 117.5, 117},
    {"six_degrees_behind_the_border", 10184, 120.1, 123},
    {"six_degrees_zero", 10184, 0.0, 3},
    {"six_degrees_minus_1_truncates_to_3", 10184, -1.0, 3},
    {"six_degrees_minus_7", 10184, -7.0, -3},
    {"three_degrees_inside", 10084, 117.5, 117},
    {"three_degrees_border_belongs_to_the_east", 10084, 118.5, 120},
    {"three_degrees_of_1_is_0", 10084, 1.0, 0},
    {"three_degrees_of_minus_1_is_0", 10084, -1.0, 0},
    {"three_degrees_of_minus_4_truncates_to_0", 10084, -4.0, 0},
    {"three_degrees_of_minus_5", 10084, -5.0, -3},
};
class Zones : public testing::TestWithParam<ZoneCase> {};
TEST_P(Zones, GiveTheCentralMeridian) {
    const ZoneCase& c = GetParam();
    Coordinate_2Dsys point;
    point.setEllipse(System(c.system));
    point.setL(c.longitude * 3.141592653589793 / 180.0);
    EXPECT_EQ(point.getL0(), c.meridian);
    Coordinate_2Dsys both;
    both.setEllipse(System(c.system));
    both.setBL(0.5, c.longitude * 3.141592653589793 / 180.0);
    EXPECT_EQ(both.getL0(), c.meridian);
    const Coordinate_2Dsys built(0.5, c.longitude * 3.141592653589793 / 180.0, System(c.system));
    EXPECT_EQ(built.getL0(), c.meridian);
}
INSTANTIATE_TEST_SUITE_P(All, Zones, testing::ValuesIn(kZones),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Zones, BorderBelongsToTheZoneInTheEast) {
    EXPECT_EQ(zm::geodesy::SixDegreeMeridian(120.0), 123);
    EXPECT_EQ(zm::geodesy::SixDegreeMeridian(119.99999999999999), 117);
    EXPECT_EQ(zm::geodesy::ThreeDegreeMeridian(118.5), 120);
    EXPECT_EQ(zm::geodesy::ThreeDegreeMeridian(118.49999999999999), 117);
}

TEST(Zones, ThreeDegreeZoneNumberOfLongitudeOneIsZero) {
    Coordinate_2Dsys point;
    point.setEllipse(znCoord84G3);
    point.setL(1.0 * kDegree);
    EXPECT_EQ(point.getStandardGY(), 500000.0);
}

TEST(Zones, WithoutWidthSetBLTakesTheSixDegreeRuleAndSetLNone) {
    Coordinate_2Dsys point;
    point.setEllipse(znCoordNone);
    point.setL(117.5 * kDegree);
    EXPECT_EQ(point.getL0(), 0);
    point.setBL(0.5, 117.5 * kDegree);
    EXPECT_EQ(point.getL0(), 117);
}

TEST(Zones, AbsurdLongitudesGiveANumberThatFits) {
    Coordinate_2Dsys point;
    point.setL(kNaN);
    EXPECT_EQ(point.getL0(), 0);
    point.setL(kInfinity);
    EXPECT_EQ(point.getL0(), std::numeric_limits<int>::max());
    point.setL(-1e300);
    EXPECT_EQ(point.getL0(), std::numeric_limits<int>::min());
    point.setStandardGY(1e300);
    EXPECT_EQ(point.getL0(), std::numeric_limits<int>::max());
    point.setL0(std::numeric_limits<int>::max());
    EXPECT_GT(point.getStandardGY(), 3e14);
}

TEST(StandardEasting, SplitsIntoZoneAndEasting) {
    Coordinate_2Dsys point;
    point.setStandardGY(20500000.0);
    EXPECT_EQ(point.getGY(), 0.0);
    EXPECT_EQ(point.getL0(), 117);
    EXPECT_EQ(point.getStandardGY(), 20500000.0);
}

TEST(StandardEasting, WithoutZoneDigitsHasZoneZero) {
    Coordinate_2Dsys point;
    point.setStandardGY(400000.0);
    EXPECT_EQ(point.getGY(), -100000.0);
    EXPECT_EQ(point.getL0(), -3);
}

TEST(StandardEasting, ZoneOfThreeDegrees) {
    Coordinate_2Dsys point;
    point.setEllipse(znCoord84G3);
    point.setStandardGY(39512345.5);
    EXPECT_EQ(point.getGY(), 12345.5);
    EXPECT_EQ(point.getL0(), 117);
    EXPECT_EQ(point.getStandardGY(), 39512345.5);
}

TEST(StandardEasting, OtherWidthsKeepTheMeridianAndCountInSixDegreeZones) {
    Coordinate_2Dsys point;
    point.setGSwidth(0);
    point.setL0(117);
    point.setStandardGY(39512345.5);
    EXPECT_EQ(point.getL0(), 117);
    EXPECT_EQ(point.getStandardGY(), 20512345.5);
}

TEST(StandardEasting, ZoneNumbersOfNegativeMeridiansTruncateTowardsZero) {
    Coordinate_2Dsys point;
    point.setL0(-5);
    EXPECT_EQ(point.getStandardGY(), 500000.0);  // (-5 + 3) / 6
    point.setGSwidth(3);
    EXPECT_EQ(point.getStandardGY(), -500000.0);  // -5 / 3 = -1
}

TEST(Coordinate2D, PlaneConstructorSplitsTheEasting) {
    const Coordinate_2Dsys point(3000000.0, 20501000.0);
    EXPECT_EQ(point.getGX(), 3000000.0);
    EXPECT_EQ(point.getGY(), 1000.0);
    EXPECT_EQ(point.getL0(), 117);
    EXPECT_EQ(point.getEllipseFlag(), znCoord84G6);
}

TEST(UTMtoGS, OriginOfAZoneIsZero) {
    Coordinate_2Dsys point;
    point.setL0(117);
    point.B = 0.0;
    point.L = 117 * 3.141592653589793 / 180.0;
    EXPECT_EQ(point.UTMtoGS(), 1);
    EXPECT_EQ(point.getGX(), 0.0);
    EXPECT_EQ(point.getGY(), 0.0);
}

TEST(UTMtoGS, KeepsTheMeridian) {
    Coordinate_2Dsys point;
    point.setL0(111);
    point.B = 0.5;
    point.L = 2.0;
    EXPECT_EQ(point.UTMtoGS(), 1);
    EXPECT_EQ(point.getL0(), 111);
}

TEST(UTMtoGS, WorksOnAnEllipsoidOfItsOwn) {
    // The 54 family by its numbers, once prepared and once as fields changed in the last place.
    Coordinate_2Dsys family;
    family.setEllipse(znCoord54);
    family.setBL(0.6, 2.05);
    family.UTMtoGS();
    Coordinate_2Dsys own = family;
    own.e2 = std::nextafter(own.e2, 1.0);
    own.UTMtoGS();
    EXPECT_NEAR(own.getGX(), family.getGX(), 1e-7);
    EXPECT_NEAR(own.getGY(), family.getGY(), 1e-7);
    own.GStoUTM();
    family.GStoUTM();
    EXPECT_NEAR(own.getB(), family.getB(), 1e-14);
}

// The signs of the closed footpoint expansion are kept as they came down, so that the way back departs by up to
// 0.1 m in latitude. 1.6e-8 rad are 0.1 m.
TEST(GStoUTM, ReturnsWithinATenthOfAMetre) {
    ZM_TRACE_SEED();
    zm::test::Random random(4);
    for (const int system : {10054, 10080, 10084, 10184}) {
        double worst = 0.0;
        for (int i = 0; i < 20000; ++i) {
            const double B = random.Real(-80.0, 80.0) * kDegree;
            const double L = random.Real(73.0, 135.0) * kDegree;
            Coordinate_2Dsys point(B, L, System(system));
            ASSERT_EQ(point.UTMtoGS(), 1);
            ASSERT_EQ(point.GStoUTM(), 1);
            EXPECT_NEAR(point.getL(), L, 1.6e-8 / std::cos(B));
            worst = std::max(worst, std::abs(point.getB() - B));
        }
        EXPECT_LT(worst, 1.7e-8);
        EXPECT_GT(worst, 1e-9);  // it is a real departure, which a repaired sign would take away
    }
}

// One entry of the series of (1 - e2 sin^2 B)^(-3/2) in multiple angles, in exact fractions of 64-bit integers:
// sum over n of c_n e2^n sin^2n B with c_n = (2n + 1)!! / (2n)!!, and sin^2n B = 2^(1-2n) sum (-1)^j C(2n, n-j) cos
// 2jB.
double BinomialEntry(int j, int n) {
    if (n < j) return 0.0;
    long numerator = 1;
    long denominator = 1;
    for (int i = 1; i <= n; ++i) {
        numerator *= 2 * i + 1;
        denominator *= 2 * i;
    }
    long choose = 1;  // C(2n, n - j)
    for (int i = 1; i <= n - j; ++i) choose = choose * (2 * n + 1 - i) / i;
    const double power = std::ldexp(1.0, j == 0 ? -2 * n : 1 - 2 * n);
    return static_cast<double>(numerator) / static_cast<double>(denominator) * static_cast<double>(choose) * power;
}

TEST(ZoneArc, TableFollowsTheBinomialSeries) {
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 6; ++column) {
            if (row == 3 && column == 5) continue;
            EXPECT_DOUBLE_EQ(zm::geodesy::kArcSeries[row][column], BinomialEntry(row, column)) << row << ' ' << column;
        }
}

TEST(ZoneArc, LastDenominatorIs13072) {
    EXPECT_EQ(zm::geodesy::kArcSeries[3][5], 31185.0 / 13072.0);
    EXPECT_DOUBLE_EQ(BinomialEntry(3, 5), 31185.0 / 131072.0);
}

TEST(Coordinate2D, AssignmentCopiesAllFields) {
    Coordinate_2Dsys point(0.5, 2.0, znCoord54G3);
    point.UTMtoGS();
    Coordinate_2Dsys copy;
    copy = point;
    EXPECT_EQ(copy.GX, point.GX);
    EXPECT_EQ(copy.GY, point.GY);
    EXPECT_EQ(copy.B, point.B);
    EXPECT_EQ(copy.L, point.L);
    EXPECT_EQ(copy.GSwidth, point.GSwidth);
    EXPECT_EQ(copy.L0, point.L0);
    EXPECT_EQ(copy.EllipseFlag, point.EllipseFlag);
    EXPECT_EQ(copy.a, point.a);
    EXPECT_EQ(copy.e2, point.e2);
}

TEST(Coordinate2D, NotANumberInfinityAndBeyondThePoleComeThrough) {
    for (const double bad : {kNaN, kInfinity, -kInfinity, 1e300}) {
        Coordinate_2Dsys point;
        point.B = bad;
        point.L = bad;
        EXPECT_EQ(point.UTMtoGS(), 1);
        point.GX = bad;
        point.GY = bad;
        EXPECT_EQ(point.GStoUTM(), 1);
        if (!(std::abs(bad) < kInfinity)) {
            EXPECT_TRUE(std::isnan(point.B));
        }
    }
    Coordinate_2Dsys beyond(2.0, 2.0, znCoord84G6);
    EXPECT_EQ(beyond.UTMtoGS(), 1);
    EXPECT_TRUE(std::isfinite(beyond.getGX()));
}

}  // namespace

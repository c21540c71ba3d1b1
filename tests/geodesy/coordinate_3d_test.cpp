#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Coordinate3D, DefaultObjectIsZeroOnTheDefaultSystem) {
    const Coordinate_3Dsys point;
    EXPECT_EQ(point.getEllipseFlag(), znCoord84G6);
    EXPECT_EQ(point.getX(), 0.0);
    EXPECT_EQ(point.getY(), 0.0);
    EXPECT_EQ(point.getZ(), 0.0);
    EXPECT_EQ(point.getH(), 0.0);
    EXPECT_EQ(point.getL0(), 0);
}

TEST(Coordinate3D, OriginOfLongitudeOnTheEquatorIsTheFirstAxis) {
    Coordinate_3Dsys point(0.0, 0.0, 0.0, znCoord84G6);
    EXPECT_EQ(point.BLHtoXYZ(), 1);
    EXPECT_EQ(point.getX(), 6378137.0);
    EXPECT_EQ(point.getY(), 0.0);
    EXPECT_EQ(point.getZ(), 0.0);
    point.setBLH(1.0, 1.0, 1.0);
    EXPECT_EQ(point.XYZtoBLH(), 1);
    EXPECT_EQ(point.getB(), 0.0);
    EXPECT_EQ(point.getH(), 0.0);
}

TEST(Coordinate3D, WayBackLosesTheHalfPlane) {
    Coordinate_3Dsys point(30.0 * kDegree, 120.0 * kDegree, 10.0, znCoord84G6);
    point.BLHtoXYZ();
    EXPECT_LT(point.getX(), 0.0);
    point.XYZtoBLH();
    EXPECT_NEAR(point.getL(), -60.0 * kDegree, 1e-15);
    EXPECT_NEAR(point.getB(), 30.0 * kDegree, 5e-9);
}

TEST(Coordinate3D, IterationEndsWithStepsOf5e9Radians) {
    ZM_TRACE_SEED();
    zm::test::Random random(21);
    for (int i = 0; i < 20000; ++i) {
        const double B = random.Real(-89.9, 89.9) * kDegree;
        const double L = random.Real(-89.9, 89.9) * kDegree;
        const double H = random.Real(-1000.0, 9000.0);
        Coordinate_3Dsys point(B, L, H, znCoord54);
        point.BLHtoXYZ();
        point.XYZtoBLH();
        EXPECT_NEAR(point.getB(), B, 5e-11);  // the last step is 1/150 of the one before
        EXPECT_NEAR(point.getL(), L, 1e-14);
        // H takes N of the latitude before and r / cos B, both of which magnify the rest near the pole.
        EXPECT_NEAR(point.getH(), H, 0.001 + 5e-11 * 6.4e6 * std::abs(std::tan(B)));
    }
}

TEST(Coordinate3D, SetBLHMakesThreeDegreeZonesOfAnySystem) {
    Coordinate_3Dsys point;
    point.setEllipse(znCoord54G6);
    point.setBLH(0.5, 118.6 * kDegree, 0.0);
    EXPECT_EQ(point.getGSwidth(), 3);
    EXPECT_EQ(point.getL0(), 120);
    EXPECT_EQ(point.getEllipseFlag(), znCoord54G6);
}

TEST(Coordinate3D, GeodeticConstructorChoosesNoZone) {
    const Coordinate_3Dsys point(0.5, 2.0, 100.0, znCoord80G6);
    EXPECT_EQ(point.getL0(), 0);
    EXPECT_EQ(point.getGSwidth(), 6);
    EXPECT_EQ(point.getH(), 100.0);
    EXPECT_EQ(point.geta(), 6378140.0);
}

TEST(Coordinate3D, CartesianConstructorKeepsTheThree) {
    Coordinate_3Dsys point(1.0, 2.0, 3.0);
    EXPECT_EQ(point.getX(), 1.0);
    EXPECT_EQ(point.getY(), 2.0);
    EXPECT_EQ(point.getZ(), 3.0);
    EXPECT_EQ(point.getEllipseFlag(), znCoord84G6);
    point.setXYZ(4.0, 5.0, 6.0);
    point.setX(point.getX() + 1.0);
    point.setY(point.getY() + 1.0);
    point.setZ(point.getZ() + 1.0);
    point.setH(9.0);
    EXPECT_EQ(point.X, 5.0);
    EXPECT_EQ(point.Y, 6.0);
    EXPECT_EQ(point.Z, 7.0);
    EXPECT_EQ(point.H, 9.0);
}

TEST(Coordinate3D, WithoutSystemNothingIsConvertedWhateverAHolds) {
    Coordinate_3Dsys point(0.5, 2.0, 100.0, znCoordNone);
    point.a = 6378137.0;
    point.e2 = 0.0066943800229;
    point.setXYZ(1.0, 2.0, 3.0);
    EXPECT_EQ(point.BLHtoXYZ(), 0);
    EXPECT_EQ(point.XYZtoBLH(), 0);
    EXPECT_EQ(point.getX(), 1.0);
    EXPECT_EQ(point.getB(), 0.5);
}

TEST(Coordinate3D, PolarAxisEndsAtThePole) {
    Coordinate_3Dsys point(0.0, 0.0, 6356752.0);
    EXPECT_EQ(point.XYZtoBLH(), 1);
    EXPECT_NEAR(point.getB(), 90.0 * kDegree, 1e-15);
    EXPECT_TRUE(std::isnan(point.getL()));  // 0 / 0
}

TEST(Coordinate3D, CentreOfTheEarthEndsWithNotANumber) {
    Coordinate_3Dsys point(0.0, 0.0, 0.0);
    EXPECT_EQ(point.XYZtoBLH(), 1);
    EXPECT_TRUE(std::isnan(point.getB()));
    Coordinate_3Dsys inside(1e-3, 0.0, 1e-3);  // the iteration has no fixed point nearby
    EXPECT_EQ(inside.XYZtoBLH(), 1);
}

TEST(Coordinate3D, NotANumberAndInfinityComeThrough) {
    for (const double bad : {kNaN, kInfinity, -kInfinity}) {
        Coordinate_3Dsys point(bad, bad, bad, znCoord84G6);
        EXPECT_EQ(point.BLHtoXYZ(), 1);
        EXPECT_TRUE(std::isnan(point.getX()));
        point.setXYZ(bad, bad, bad);
        EXPECT_EQ(point.XYZtoBLH(), 1);
        EXPECT_TRUE(std::isnan(point.getB()));
    }
}

}  // namespace

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "geodesy/state.h"
#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kRadianDegrees = 57.29577951308;

class Inquiry : public testing::Test {
 protected:
    void SetUp() override { zm::geodesy::ResetState(); }
    void TearDown() override { zm::geodesy::ResetState(); }
};

DistandAreaInquiry Of(const std::vector<Point3D>& points, short method) {
    return DistandAreaInquiry(points.data(), static_cast<int>(points.size()), method);
}

TEST_F(Inquiry, KnowsTheSystemsOfTheCoordinateClassButForE2OfThe80Family) {
    auto inquiry = Of({{110, 30, 0}}, 0);
    EXPECT_EQ(inquiry.GetEllipse(), znCoord84G6);
    EXPECT_EQ(inquiry.a, 6378137.0);
    EXPECT_EQ(inquiry.e2, 0.0066943800229);
    inquiry.SetEllipse(znCoord80G3);
    EXPECT_EQ(inquiry.GetEllipse(), znCoord80G3);
    EXPECT_EQ(inquiry.a, 6378140.0);
    EXPECT_EQ(inquiry.e2, 0.00669438499958795);
    inquiry.SetEllipse(znCoord54);
    EXPECT_EQ(inquiry.a, 6378245.0);
    EXPECT_EQ(inquiry.e2, 0.00669342162296594);
    inquiry.SetEllipse(znCoordNone);
    EXPECT_EQ(inquiry.a, 0.0);
    EXPECT_EQ(inquiry.e2, 0.0);
}

TEST_F(Inquiry, VerticesAreConvertedWithTheShortDivisor) {
    const auto inquiry = Of({{110, 30, 0}, {111, 31, 5}}, 1);
    EXPECT_EQ(inquiry.count, 2);
    EXPECT_EQ(inquiry.coords[0], 30 / kRadianDegrees);
    EXPECT_EQ(inquiry.coords[1], 31 / kRadianDegrees);
    EXPECT_EQ(inquiry.coords[2], 110 / kRadianDegrees);
    EXPECT_EQ(inquiry.coords[3], 111 / kRadianDegrees);
    EXPECT_NE(30 / kRadianDegrees, 30 / 57.29577951308232);
}

TEST_F(Inquiry, DistanceLosesTheSenseOfTravel) {
    EXPECT_NEAR(Of({{110, 30, 0}, {111, 31, 0}}, 1).GetDist(), 146730.257, 5e-4);
    EXPECT_NEAR(Of({{111, 31, 0}, {110, 30, 0}}, 1).GetDist(), 146647.199, 5e-4);
}

TEST_F(Inquiry, ClosedDistanceAddsTheLastEdge) {
    const auto line = Of({{110, 30, 0}, {111, 31, 0}, {110, 31, 0}}, 1);
    const double closing = Of({{110, 31, 0}, {110, 30, 0}}, 1).GetDist();
    EXPECT_DOUBLE_EQ(line.GetCloseDist(), line.GetDist() + closing);
}

// Reference: GeodSolve -i -e 6378137 1/298.257222101.
TEST_F(Inquiry, DistanceAlongAMeridian) {
    EXPECT_NEAR(Of({{110, 30, 0}, {110, 31, 0}}, 1).GetDist(), 110860.925564, 1e-5);
}

TEST_F(Inquiry, PointsNearInLatitudeTakeTheParallel) {
    const double apart = 8e-10 * kRadianDegrees;
    const double onParallel = Of({{110, 30, 0}, {111, 30, 0}}, 1).GetDist();
    const double nearly = Of({{110, 30, 0}, {111, 30 + apart, 0}}, 1).GetDist();
    // a cos B / sqrt(1 - e2 sin^2 B) dL; the line of the auxiliary sphere would be 1.8 m shorter.
    EXPECT_NEAR(onParallel, 96486.28, 0.01);
    EXPECT_NEAR(nearly, onParallel, 1e-3);
}

TEST_F(Inquiry, DistanceOnThePlaneMixesZones) {
    // One degree on either side of 120: the two ends lie in the zones of 117 and 123.
    const double across = Of({{119.5, 30, 0}, {120.5, 30, 0}}, 0).GetDist();
    const double inside = Of({{117.5, 30, 0}, {118.5, 30, 0}}, 0).GetDist();
    EXPECT_NEAR(inside, 96500.0, 100.0);
    EXPECT_GT(across, 400000.0);
}

TEST_F(Inquiry, DistanceNeverHangs) {
    const double antipodes[][4] = {{0, 0, 180, 0.1},  {0, 10, 180, -10}, {0, 0.3, 179.7, -0.3}, {10, 30, 190, -30.0001},
                                   {0, 90, 180, -90}, {0, 89, 179, 89},  {0, 1e-9, 179.999, 0}, {0, -45, 179.5, 45.2}};
    for (const auto& line : antipodes) {
        const double d = Of({{line[0], line[1], 0}, {line[2], line[3], 0}}, 1).GetDist();
        EXPECT_TRUE(std::isnan(d) || (d >= 0.0 && d < 5e7)) << d;
    }
    for (const double bad : {kNaN, kInfinity, 1e300, 200.0}) {
        Of({{bad, 30, 0}, {110, 31, 0}}, 1).GetDist();
        Of({{110, bad, 0}, {111, 31, 0}}, 1).GetDist();
        Of({{bad, bad, 0}, {111, 31, 0}}, 0).GetDist();
        auto area = Of({{bad, 30, 0}, {111, bad, 0}, {112, 33, 0}, {110, 31, 0}}, 1);
        area.GetArea();
        area.method = 0;
        area.GetArea();
    }
}

const std::vector<Point3D> kSquare = {{117.1, 30.1, 0}, {117.2, 30.1, 0}, {117.2, 30.2, 0}, {117.1, 30.2, 0}};

// Reference: Planimeter over the boundary in 10,000 pieces, 106,792,260.1 m2 on the ellipsoid.
TEST_F(Inquiry, PlaneAreaClosesTheRingAndEllipsoidAreaDoesNot) {
    auto plane = Of(kSquare, 0);
    EXPECT_NEAR(plane.GetArea(), 1.068e8, 2e5);
    auto open = Of(kSquare, 1);
    auto ring = kSquare;
    ring.push_back(kSquare[0]);
    auto closed = Of(ring, 1);
    EXPECT_NEAR(closed.GetArea(), 1.068e8, 2e5);
    // The edges along the meridians contribute nothing, so that only the open ring's missing one shows elsewhere.
    const std::vector<Point3D> slanted = {{117.1, 30.1, 0}, {117.2, 30.15, 0}, {117.25, 30.2, 0}, {117.05, 30.25, 0}};
    auto slantedRing = slanted;
    slantedRing.push_back(slanted[0]);
    auto slantedOpen = Of(slanted, 1);
    auto slantedClosed = Of(slantedRing, 1);
    EXPECT_GT(std::abs(slantedOpen.GetArea() - slantedClosed.GetArea()), 1e9);
    EXPECT_GT(open.GetArea(), 0.0);
}

TEST_F(Inquiry, FewVerticesMeasureNothing) {
    for (const short method : {short{0}, short{1}}) {
        const auto one = Of({{110, 30, 0}}, method);
        EXPECT_EQ(one.GetDist(), 0.0);
        EXPECT_EQ(one.GetCloseDist(), 0.0);
        EXPECT_EQ(Of({{110, 30, 0}}, method).GetArea(), 0.0);
        EXPECT_EQ(Of({{110, 30, 0}, {111, 31, 0}}, 0).GetArea(), 0.0);
    }
}

TEST_F(Inquiry, NoVerticesMeasureNothing) {
    const Point3D point{110, 30, 0};
    for (const short method : {short{0}, short{1}}) {
        for (const int n : {0, -1, std::numeric_limits<int>::min()}) {
            DistandAreaInquiry none(&point, n, method);
            EXPECT_EQ(none.count, 0);
            EXPECT_EQ(none.GetDist(), 0.0);
            EXPECT_EQ(none.GetCloseDist(), 0.0);
            EXPECT_EQ(none.GetArea(), 0.0);
        }
        DistandAreaInquiry null(nullptr, 5, method);
        EXPECT_EQ(null.count, 0);
        EXPECT_EQ(null.GetArea(), 0.0);
        EXPECT_EQ(DistandAreaInquiry(nullptr, 0, method).GetDist(), 0.0);
    }
}

TEST_F(Inquiry, AreaGoesIntoTheOwnedRecordInItsUnit) {
    auto inquiry = Of(kSquare, 0);
    EXPECT_EQ(inquiry.area->value, 0.0);
    EXPECT_EQ(inquiry.area->unit, 21);
    EXPECT_EQ(inquiry.area->metres, 0.0);
    const double area = inquiry.GetArea();
    EXPECT_EQ(inquiry.area->value, area);
    EXPECT_EQ(inquiry.area->metres, area);
    inquiry.area->unit = znAreaHectare;  // the result counts in the record's unit
    inquiry.GetArea();
    EXPECT_EQ(inquiry.area->value, area);
    EXPECT_EQ(inquiry.area->unit, 29);
    EXPECT_DOUBLE_EQ(inquiry.area->metres, area * 10000.0);
}

TEST_F(Inquiry, LongMeridianEdgeContributesNothing) {
    EXPECT_EQ(Of({{110, -60, 0}, {110, 80, 0}}, 1).GetArea(), 0.0);
}

TEST_F(Inquiry, PrecisionZeroMakesOnePieceOfEachEdge) {
    SetEllipsePrecision(0.0);
    const double B0 = 30 / kRadianDegrees, B1 = 31 / kRadianDegrees;
    const double L0 = 110 / kRadianDegrees, L1 = 111 / kRadianDegrees;
    const double e2 = 0.0066943800229;
    const double s = std::sin((B0 + B1) / 2);
    const double F = s + 2.0 / 3 * e2 * std::pow(s, 3) + 3.0 / 5 * e2 * e2 * std::pow(s, 5) +
                     4.0 / 7 * std::pow(e2, 3) * std::pow(s, 7) + 5.0 / 9 * std::pow(e2, 4) * std::pow(s, 9);
    const double expected = F * 6378137.0 * 6378137.0 * (1 - e2) * (L1 - L0);
    EXPECT_NEAR(Of({{110, 30, 0}, {111, 31, 0}}, 1).GetArea(), expected, 1e-13 * expected);
}

TEST_F(Inquiry, PlaneAreaTakesThreeDegreeZonesWhateverTheSystem) {
    const std::vector<Point3D> inside = {{118.6, 30, 0}, {118.8, 30, 0}, {118.8, 30.1, 0}, {118.6, 30.1, 0}};
    auto six = Of(inside, 0);
    six.SetEllipse(znCoord84G6);
    auto three = Of(inside, 0);
    three.SetEllipse(znCoord84G3);
    EXPECT_EQ(six.GetArea(), three.GetArea());
}

TEST_F(Inquiry, PlaneAreaAcrossAZoneBorderMixesTwoMeridians) {
    const std::vector<Point3D> across = {{118.4, 30, 0}, {118.6, 30, 0}, {118.6, 30.1, 0}, {118.4, 30.1, 0}};
    EXPECT_GT(Of(across, 0).GetArea(), 1e9);  // 2.1e8 m2 in truth
}

TEST_F(Inquiry, PlaneAreaDoesNotDependOnTheFirstVertex) {
    ZM_TRACE_SEED();
    zm::test::Random random(41);
    for (int round = 0; round < 200; ++round) {
        std::vector<Point3D> ring;
        const int n = random.Int(3, 30);
        for (int i = 0; i < n; ++i) ring.push_back({random.Real(116.0, 118.0), random.Real(30.0, 31.0), 0.0});
        const double area = Of(ring, 0).GetArea();
        std::rotate(ring.begin(), ring.begin() + random.Int(1, n - 1), ring.end());
        EXPECT_NEAR(Of(ring, 0).GetArea(), area, 1e-3);  // 1e-13 of the products that are summed
        std::reverse(ring.begin(), ring.end());
        EXPECT_NEAR(Of(ring, 0).GetArea(), area, 1e-3);
    }
}

TEST_F(Inquiry, CopiesShareTheirVerticesAndArea) {
    auto first = Of(kSquare, 0);
    const DistandAreaInquiry second = first;
    EXPECT_EQ(second.coords, first.coords);
    EXPECT_EQ(second.area, first.area);
    EXPECT_EQ(second.count, first.count);
    EXPECT_EQ(second.method, first.method);
    EXPECT_EQ(second.ellipse, first.ellipse);
    const double area = first.GetArea();
    EXPECT_EQ(second.area->value, area);
}

TEST_F(Inquiry, NoCopyFreesTwiceOrReadsWhatIsFreed) {
    auto first = std::make_unique<DistandAreaInquiry>(kSquare.data(), 4, short{0});
    const double area = first->GetArea();
    std::optional<DistandAreaInquiry> second(*first);
    auto other = Of({{1, 2, 0}, {3, 4, 0}, {5, 1, 0}}, 0);
    const DistandAreaInquiry third = other;
    first.reset();
    EXPECT_EQ(second->GetArea(), area);
    other = *second;
    second.reset();
    EXPECT_EQ(other.GetArea(), area);
    const DistandAreaInquiry& itself = other;
    other = itself;
    EXPECT_EQ(other.GetArea(), area);
    EXPECT_GT(third.GetDist(), 0.0);
    auto moved = std::move(other);
    EXPECT_EQ(moved.GetArea(), area);
}

TEST_F(Inquiry, SystemWithoutEllipsoidGivesZeroOnThePlane) {
    auto inquiry = Of(kSquare, 0);
    inquiry.SetEllipse(znCoordNone);
    EXPECT_EQ(inquiry.GetDist(), 0.0);
    EXPECT_EQ(inquiry.GetArea(), 0.0);
    auto onEllipsoid = Of(kSquare, 1);
    onEllipsoid.SetEllipse(znCoordNone);
    EXPECT_EQ(onEllipsoid.GetArea(), 0.0);
}

TEST_F(Inquiry, SettingsReturnThePreviousValue) {
    EXPECT_EQ(GetEllipsePrecision(), 0.00027778);
    EXPECT_EQ(SetEllipseBLsecPrec(0.5), 1e-06);
    EXPECT_EQ(SetEllipseBLsecPrec(0.0), 0.5);
    EXPECT_EQ(SetEllipseXYmeterPrec(0.1), 0.0);
    EXPECT_EQ(SetEllipseXYmeterPrec(0.0), 0.1);
    SetEllipsePrecision(0.5);
    EXPECT_EQ(GetEllipsePrecision(), 0.5);
}

double SurveyArea(const std::vector<Point3D>& points, bool isBL, double a = 6378137.0, double second = 298.257222101,
                  bool secondIsB = false) {
    return TestmyCalEllipseArea(points.data(), static_cast<int>(points.size()), isBL, a, second, secondIsB);
}

std::vector<Point3D> Ring(std::vector<Point3D> points) {
    points.push_back(points.front());
    return points;
}

TEST_F(Inquiry, SurveyAreaAgreesWithTheEllipsoidArea) {
    const std::vector<Point3D> ring =
        Ring({{117.1, 30.1, 0}, {117.2, 30.15, 0}, {117.25, 30.2, 0}, {117.05, 30.25, 0}});
    auto inquiry = Of(ring, 1);
    const double expected = inquiry.GetArea();
    EXPECT_NEAR(SurveyArea(ring, true), expected, 2e-8 * expected);
}

TEST_F(Inquiry, SurveyAreaTakesFixedNumbersNearTheirEllipsoid) {
    // b of a and inverse flattening differs from the fixed one below 1e-5 m, so that both calls are one.
    EXPECT_LT(std::abs(6378137.0 - 6378137.0 / 298.257222101 - 6356752.31414036), 1e-5);
    const auto ring = Ring(kSquare);
    EXPECT_EQ(SurveyArea(ring, true), SurveyArea(ring, true, 6378137.0, 6356752.31414036, true));
    EXPECT_EQ(SurveyArea(ring, true), SurveyArea(ring, true, 6378137.00005, 6356752.314145, true));
    EXPECT_NE(SurveyArea(ring, true), SurveyArea(ring, true, 6378137.0, 6356752.32, true));
}

// With all digits of pi this area, of angles that are not rounded, is 1.06e-5 larger; libraries of sines differ by less.
TEST_F(Inquiry, SurveyAreaCountsWithItsShorterPi) {
    SetEllipseBLsecPrec(0.0);
    const std::vector<Point3D> ring = {
        {500001, 5000000, 0}, {510000, 5000000, 0}, {510000, 5010000, 0}, {500001, 5010000, 0}};
    EXPECT_NEAR(SurveyArea(ring, false, 6378140.0, 298.257), 99999938.959522232, 3e-6);
}

TEST_F(Inquiry, SurveyAreaRemovesZoneDigits) {
    const std::vector<Point3D> plain =
        Ring({{345678.9, 3330000, 0}, {355678.9, 3330000, 0}, {355678.9, 3340000, 0}, {345678.9, 3341000, 0}});
    std::vector<Point3D> zoned = plain;
    for (Point3D& p : zoned) p.x += 20000000.0;
    // The digits cost the easting 4e-9 m, the products 1e-13 of themselves.
    EXPECT_NEAR(SurveyArea(zoned, false), SurveyArea(plain, false), 0.05);
    // On the 80 ellipsoid too, by its own series.
    EXPECT_NEAR(SurveyArea(zoned, false, 6378140.0, 298.257), SurveyArea(plain, false, 6378140.0, 298.257), 0.05);
    EXPECT_NEAR(SurveyArea(plain, false, 6378140.0, 298.257), SurveyArea(plain, false), 300.0);
}

TEST_F(Inquiry, SurveyAreaRoundsPlaneCoordinatesBetweenZeroAndOneMetre) {
    const std::vector<Point3D> fine =
        Ring({{500000.04, 3330000.04, 0}, {501000.03, 3330000.02, 0}, {500500.01, 3331000.04, 0}});
    const std::vector<Point3D> coarse = Ring({{500000, 3330000, 0}, {501000, 3330000, 0}, {500500, 3331000, 0}});
    const double unrounded = SurveyArea(fine, false);
    SetEllipseXYmeterPrec(0.1);
    EXPECT_EQ(SurveyArea(fine, false), SurveyArea(coarse, false));
    SetEllipseXYmeterPrec(1.0);  // no longer below 1
    EXPECT_EQ(SurveyArea(fine, false), unrounded);
}

TEST_F(Inquiry, SurveyAreaOfThe80FamilyIgnoresThePlaneRounding) {
    const std::vector<Point3D> fine =
        Ring({{500000.04, 3330000.04, 0}, {501000.03, 3330000.02, 0}, {500500.01, 3331000.04, 0}});
    const double unrounded = SurveyArea(fine, false, 6378140.0, 298.257);
    SetEllipseXYmeterPrec(0.1);
    EXPECT_EQ(SurveyArea(fine, false, 6378140.0, 298.257), unrounded);
}

TEST_F(Inquiry, SurveyAreaRoundsAnglesToTheSetting) {
    SetEllipseBLsecPrec(1.0);
    const std::vector<Point3D> fine = Ring({{117.10003, 30.10003, 0}, {117.20001, 30.10002, 0}, {117.15, 30.20004, 0}});
    const std::vector<Point3D> coarse = Ring({{117.1, 30.1, 0}, {117.2, 30.1, 0}, {117.15, 30.2, 0}});
    EXPECT_NEAR(SurveyArea(fine, true), SurveyArea(coarse, true), 1e-3);
    SetEllipseBLsecPrec(0.0);
    EXPECT_GT(std::abs(SurveyArea(fine, true) - SurveyArea(coarse, true)), 100.0);
}

TEST_F(Inquiry, SurveyAreaOfFewVerticesIsZero) {
    EXPECT_EQ(TestmyCalEllipseArea(nullptr, 0, true, 6378137.0, 298.257222101, false), 0.0);
    EXPECT_EQ(TestmyCalEllipseArea(nullptr, 9, true, 6378137.0, 298.257222101, false), 0.0);
    EXPECT_EQ(TestmyCalEllipseArea(kSquare.data(), 1, true, 6378137.0, 298.257222101, false), 0.0);
    EXPECT_EQ(TestmyCalEllipseArea(kSquare.data(), -3, false, 6378137.0, 298.257222101, false), 0.0);
}

TEST_F(Inquiry, SurveyAreaEndsOnAnyInput) {
    for (const double bad : {kNaN, kInfinity, 1e300, -1e18}) {
        SurveyArea({{bad, 30, 0}, {111, bad, 0}, {bad, 33, 0}, {110, 31, 0}}, true);
        SurveyArea({{bad, 30, 0}, {111, bad, 0}, {bad, 33, 0}, {110, 31, 0}}, false);
        SurveyArea({{bad, 30, 0}, {111, bad, 0}, {bad, 33, 0}, {110, 31, 0}}, false, 6378140.0, 298.257);
        SurveyArea(kSquare, true, bad, 298.0);
        SurveyArea(kSquare, false, 6378137.0, bad);
        SurveyArea(kSquare, true, 6378137.0, 0.0);
    }
}

}  // namespace

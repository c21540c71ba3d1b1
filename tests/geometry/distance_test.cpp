// Distances from a point to lines, segments and polylines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "geometry/lines.h"
#include "geometry/state.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

TEST(PtDist2Line, IsThePerpendicularBetweenTheEndsAndTheNearerEndElsewhere) {
    EXPECT_EQ(PtDist2Line(5, 3, 0, 0, 10, 0), 3.0);
    EXPECT_EQ(PtDist2Line(-3, 4, 0, 0, 10, 0), 5.0);
    EXPECT_EQ(PtDist2Line(13, 4, 0, 0, 10, 0), 5.0);
}

TEST(PtDist2Line, OfASegmentWithoutLengthIsTheDistanceToItsPoint) {
    EXPECT_EQ(PtDist2Line(3, 4, 0, 0, 0, 0), 5.0);
}

TEST(LineDist, GoesToTheInfiniteLineAndToThePointOfAShortOne) {
    EXPECT_EQ(zm::geometry::LineDist(50, 3, 0, 0, 1, 0), 3.0);
    EXPECT_EQ(zm::geometry::LineDist(3, 4, 0, 0, 9e-6, 0), 5.0);  // squared length 8.1e-11
    EXPECT_EQ(zm::geometry::LineDist(3, 4, 0, 0, 1e-3, 0), 4.0);
}

TEST(LineHeight, ComesFromTheSidesOfTheTriangle) {
    zm::geometry::ResetState();
    EXPECT_DOUBLE_EQ(zm::geometry::LineHeight(1, 3, 0, 0, 4, 0), 3.0);
    EXPECT_EQ(zm::geometry::LineHeight(1, 3, 0, 0, 5e-9, 0), 0.0);
}

TEST(Getdist, IsTheLeastOverAllSegments) {
    double x[] = {0, 10, 10};
    double y[] = {0, 0, 10};
    EXPECT_EQ(getdist(12, 7, 3, x, y), 2.0);
    EXPECT_EQ(getdist(3, 4, 1, x, y), 5.0);
}

TEST(Getdist, OfNoPointsIsZero) {
    double v[] = {1};
    EXPECT_EQ(getdist(3, 4, 0, v, v), 0.0);
    EXPECT_EQ(getdist(3, 4, -5, v, v), 0.0);
    EXPECT_EQ(getdist(3, 4, 1, nullptr, v), 0.0);
}

// The distance of a point to points spread along the line, close enough to bound the answer from both sides.
TEST(Getdist, LiesBesideTheDistanceToADenseRowOfPoints) {
    ZM_TRACE_SEED();
    zm::test::Random random(2);
    for (int run = 0; run < 300; ++run) {
        const int n = random.Int(2, 12);
        std::vector<double> x, y;
        for (int i = 0; i < n; ++i) {
            x.push_back(random.Real(-50, 50));
            y.push_back(random.Real(-50, 50));
        }
        const double px = random.Real(-80, 80);
        const double py = random.Real(-80, 80);
        const double found = getdist(px, py, n, x.data(), y.data());
        double least = 1e300;
        double longest = 0.0;
        for (int i = 0; i + 1 < n; ++i) {
            longest = std::max(longest, std::hypot(x[i + 1] - x[i], y[i + 1] - y[i]));
            for (int k = 0; k <= 200; ++k)
                least = std::min(least, std::hypot(x[i] + (x[i + 1] - x[i]) * k / 200 - px,
                                                   y[i] + (y[i + 1] - y[i]) * k / 200 - py));
        }
        ASSERT_LE(found, least + 1e-12);
        ASSERT_GE(found, least - longest / 400 - 1e-12);
    }
}

struct Nearest {
    double distance;
    int index;
    int side;
};
Nearest Ask(double px, double py, std::vector<double> x, std::vector<double> y) {
    Nearest answer{0.0, -99, 7};
    answer.distance = GetDistBering(px, py, static_cast<int>(x.size()), x.data(), y.data(), answer.index, answer.side);
    return answer;
}

TEST(GetDistBering, OfOnePointIsZeroAndLeavesTheSide) {
    const Nearest answer = Ask(3, 4, {1}, {1});
    EXPECT_EQ(answer.distance, 0.0);
    EXPECT_EQ(answer.index, 0);
    EXPECT_EQ(answer.side, 7);
}

TEST(GetDistBering, OfNullArraysIsZero) {
    int index = 5;
    int side = 7;
    EXPECT_EQ(GetDistBering(0, 0, 4, nullptr, nullptr, index, side), 0.0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(side, 7);
}

TEST(GetDistBering, SideIsOneToTheLeft) {
    EXPECT_EQ(Ask(2, 1, {0, 10}, {0, 0}).side, 1);
    EXPECT_EQ(Ask(2, -1, {0, 10}, {0, 0}).side, 0);
    EXPECT_EQ(Ask(2, 0, {0, 10}, {0, 0}).side, 0);
}

TEST(GetDistBering, IndexIsTheNearerVertexAndTheLaterOfTwoAsNear) {
    EXPECT_EQ(Ask(2, 1, {0, 10}, {0, 0}).index, 0);
    EXPECT_EQ(Ask(8, 1, {0, 10}, {0, 0}).index, 1);
    EXPECT_EQ(Ask(5, 1, {0, 10}, {0, 0}).index, 1);
}

TEST(GetDistBering, ATieOfSegmentsGoesToTheLaterOne) {
    // As far from the first leg as from the second: the side is that of the second.
    const Nearest answer = Ask(8, 2, {0, 10, 10}, {0, 0, 10});
    EXPECT_EQ(answer.distance, 2.0);
    EXPECT_EQ(answer.index, 1);
    EXPECT_EQ(answer.side, 1);
}

// Outside a right angle the bisector parts the plane: beyond it the point faces the other leg.
TEST(GetDistBering, BisectorDecidesWhichLegAPointOutsideTheCornerFaces) {
    const std::vector<double> x = {0, 10, 10};
    const std::vector<double> y = {0, 0, 10};
    EXPECT_EQ(Ask(11, -3, x, y).distance, 3.0);
    EXPECT_EQ(Ask(13, -1, x, y).distance, 3.0);
}

TEST(GetDistBering, InsideTheCornersTriangleTheNearestSegmentCounts) {
    const Nearest answer = Ask(9, 2, {0, 10, 10}, {0, 0, 10});
    EXPECT_EQ(answer.distance, 1.0);
    EXPECT_EQ(answer.index, 1);
}

// Inside the triangle of the corner, nearer to the line of the short leg, but beyond its end: the long leg is the nearest
// segment, and counts against the bisector.
TEST(GetDistBering, InsideTheCornersTriangleTheBisectorDoesNotDecide) {
    const Nearest answer = Ask(1.5, 0.19, {10, 0, 1}, {3, 0, 0});
    EXPECT_EQ(answer.index, 1);
    EXPECT_NEAR(answer.distance, 0.2490348341575, 1e-12);  // |1.5 * 3 - 0.19 * 10| / sqrt(109), not 0.19
}

// To the right of the nearest segment, but to the left of the first one.
TEST(GetDistBering, FartherThanItsSearchItTakesTheFirstSegment) {
    EXPECT_EQ(Ask(0.9e10, 5, {0, 10, 10}, {0, 0, 10}).side, 0);
    EXPECT_EQ(Ask(3e10, 5, {0, 10, 10}, {0, 0, 10}).side, 1);
}

TEST(GetDistBering, ACornerWithoutANextLegKeepsTheNearestSegment) {
    const Nearest answer = Ask(12, 1, {0, 10, 10}, {0, 0, 0});
    EXPECT_EQ(answer.index, 2);
    EXPECT_DOUBLE_EQ(answer.distance, 2.23606797749979);  // the last segment has no length: distance to its point
}

TEST(GetDistBering, StandsBadNumbers) {
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308};
    for (double v : bad) {
        const Nearest answer = Ask(v, 1, {0, v, 3, 4}, {v, 1, 2, v});
        EXPECT_GE(answer.index, 0);
        EXPECT_LE(answer.index, 3);
    }
}

}  // namespace

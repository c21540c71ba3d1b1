// Curve fitting.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "geometry/state.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Curve {
    int count = -1;
    std::vector<double> pairs;
    double X(int i) const { return pairs[2 * static_cast<std::size_t>(i)]; }
    double Y(int i) const { return pairs[2 * static_cast<std::size_t>(i) + 1]; }
};

Curve Goto(int kind, std::vector<double> x, std::vector<double> y, double prec = 1000) {
    Curve c;
    c.pairs.assign(2 * std::max<std::size_t>(4001, 5 * x.size() + 1), -77.0);
    GOTOPOINTS(static_cast<int>(x.size()), kind, x.data(), y.data(), c.pairs.data(), &c.count, prec);
    return c;
}

// In exactly the room that the curve may use.
Curve Spline(std::vector<double> x, std::vector<double> y) {
    Curve c;
    c.pairs.assign(x.empty() ? 0 : 2 * (1 + 5 * (x.size() - 1)), -77.0);
    SplineToPoints(static_cast<int>(x.size()), x.data(), y.data(), c.pairs.data(), &c.count);
    return c;
}

class Curves : public testing::Test {
 protected:
    void SetUp() override { zm::geometry::ResetState(); }
};

TEST_F(Curves, ACurveThroughThreePointsHas11PointsAndPassesThroughThem) {
    const Curve c = Spline({0, 4, 10}, {0, 8, -2});
    EXPECT_EQ(c.count, 11);
    EXPECT_EQ(c.X(0), 0.0);
    EXPECT_NEAR(c.X(5), 4.0, 1e-14);
    EXPECT_NEAR(c.Y(5), 8.0, 1e-14);
    EXPECT_NEAR(c.X(10), 10.0, 1e-14);
    EXPECT_NEAR(c.Y(10), -2.0, 1e-14);
}

TEST_F(Curves, EndsAHundredthApartMakeAClosedCurveWithOneTangent) {
    const Curve c = Spline({0, 10, 10, 0, 0.01}, {0, 0, 10, 10, 0.01});
    EXPECT_EQ(c.count, 21);
    // The first and the last steps are chords on either side of the seam, nearly in line; an open curve turns there.
    const auto turn = [](const Curve& curve) {
        const double ux = curve.X(1) - curve.X(0), uy = curve.Y(1) - curve.Y(0);
        const double vx = curve.X(20) - curve.X(19), vy = curve.Y(20) - curve.Y(19);
        return std::fabs(std::atan2(ux * vy - uy * vx, ux * vx + uy * vy));
    };
    EXPECT_LT(turn(c), 0.5);
    EXPECT_GT(turn(Spline({0, 10, 10, 0, 0.03}, {0, 0, 10, 10, 0.01})), 1.0);
}

TEST_F(Curves, ClosingTakesLessThanTwoHundredthsInBothCoordinates) {
    // A closed curve through a symmetric square leaves its corner; the open one starts straight at it.
    const Curve open = Spline({0, 10, 10, 0, 0.02}, {0, 0, 10, 10, 0});
    const Curve closed = Spline({0, 10, 10, 0, 0.0199}, {0, 0, 10, 10, 0});
    EXPECT_NE(open.X(1), closed.X(1));
    EXPECT_GT(std::fabs(open.Y(1) - closed.Y(1)), 0.3);
}

TEST_F(Curves, EvenlySpacedPointsOnALineStayOnIt) {
    const Curve c = Spline({0, 10, 20, 30}, {0, 5, 10, 15});
    EXPECT_EQ(c.count, 16);
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(c.X(i), 2.0 * i, 1e-13);
        EXPECT_NEAR(c.Y(i), 1.0 * i, 1e-13);
    }
}

TEST_F(Curves, TwoPointsAreAStraightPieceAndOneIsNothing) {
    const Curve two = Spline({1, 2}, {3, 4});
    EXPECT_EQ(two.count, 2);
    EXPECT_EQ(two.X(1), 2.0);
    EXPECT_EQ(two.Y(1), 4.0);
    const Curve one = Spline({1}, {3});
    EXPECT_EQ(one.count, 0);
    EXPECT_EQ(one.X(0), 1.0);
    EXPECT_EQ(Spline({}, {}).count, 0);
}

TEST_F(Curves, GotoPointsKind2OfOnePointHasCount0AndAnyOtherKind1) {
    EXPECT_EQ(Goto(2, {1}, {2}).count, 0);
    for (int kind : {-1, 0, 1, 3, 4, 5, 6, 9}) EXPECT_EQ(Goto(kind, {1}, {2}).count, 1) << kind;
}

TEST_F(Curves, GotoPointsLeavesAListTooShortForItsKind) {
    const Curve arc = Goto(3, {1, 2}, {3, 4});
    EXPECT_EQ(arc.count, 2);
    EXPECT_EQ(arc.X(1), 2.0);
    const Curve circle = Goto(4, {1}, {3});
    EXPECT_EQ(circle.count, 1);
    EXPECT_EQ(circle.X(0), 1.0);
    EXPECT_EQ(Goto(5, {1}, {3}).count, 1);
}

TEST_F(Curves, GotoPointsLeavesAnArcThroughCollinearPoints) {
    const Curve c = Goto(3, {0, 1, 2, 3}, {0, 1, 2, 3});
    EXPECT_EQ(c.count, 4);
    EXPECT_EQ(c.X(3), 3.0);
}

TEST_F(Curves, GotoPointsTakesPrec0As1000) {
    const Curve none = Goto(3, {10, 0, -10}, {0, 10, 0}, 0);
    const Curve thousand = Goto(3, {10, 0, -10}, {0, 10, 0}, 1000);
    EXPECT_EQ(none.count, 17);
    EXPECT_EQ(none.pairs, thousand.pairs);
    EXPECT_EQ(Goto(3, {10, 0, -10}, {0, 10, 0}, -4).pairs, thousand.pairs);
    EXPECT_EQ(Goto(3, {10, 0, -10}, {0, 10, 0}, kNan).pairs, thousand.pairs);
}

TEST_F(Curves, GotoPointsComparesPrecWithTheToleranceItself) {
    const zm::test::ScopedTolerance tolerance(500.0);
    const Curve same = Goto(4, {0, 1000}, {0, 0}, 500);
    const Curve below = Goto(4, {0, 1000}, {0, 0}, std::nextafter(500.0, 0.0));
    EXPECT_EQ(same.count, 4000);   // 6283 steps of 1 are too many
    EXPECT_EQ(below.count, 3143);  // steps of 2
}

TEST_F(Curves, GotoPointsWithAnUnknownKindCopies) {
    for (int kind : {0, 1, 9, -5, 53}) {
        const Curve c = Goto(kind, {1, 2, 3}, {4, 5, 6});
        EXPECT_EQ(c.count, 3);
        EXPECT_EQ(c.X(2), 3.0);
        EXPECT_EQ(c.Y(2), 6.0);
        EXPECT_EQ(c.pairs[6], -77.0);
    }
}

TEST_F(Curves, GotoPointsOfNothingHasCount0) {
    double v[] = {1, 2, 3, 4};
    int count = 9;
    GOTOPOINTS(0, 1, v, v, v, &count, 1000);
    EXPECT_EQ(count, 0);
    count = 9;
    GOTOPOINTS(-3, 2, v, v, v, &count, 1000);
    EXPECT_EQ(count, 0);
    count = 9;
    GOTOPOINTS(2, 1, nullptr, v, v, &count, 1000);
    EXPECT_EQ(count, 0);
    GOTOPOINTS(2, 1, v, v, v, nullptr, 1000);
    EXPECT_EQ(v[0], 1.0);
}

TEST_F(Curves, BsplineLeavesElement0AndTheEnds) {
    double x[] = {-5, 1, 2, 4, 8};
    double y[] = {-6, 3, 3, 3, 3};
    bspline(x, y, 4);
    EXPECT_EQ(x[0], -5.0);
    EXPECT_EQ(y[0], -6.0);
    EXPECT_EQ(x[1], 1.0);
    EXPECT_EQ(x[4], 8.0);
    EXPECT_NEAR(y[2], 3.0, 1e-15);
}

TEST_F(Curves, BsplineOfFewerThanThreeOrNullIsUnchanged) {
    double x[] = {-5, 1, 2};
    double y[] = {-6, 3, 4};
    for (int n : {2, 1, 0, -4}) bspline(x, y, n);
    bspline(nullptr, y, 2);
    EXPECT_EQ(x[1], 1.0);
    EXPECT_EQ(y[2], 4.0);
}

// The plain form: the six arrays of the textbook elimination.
void PlainBspline(std::vector<double>& v, int n) {
    std::vector<double> upper(static_cast<std::size_t>(n) + 1), value(static_cast<std::size_t>(n) + 1);
    upper[1] = 0.0;
    value[1] = v[1];
    for (int i = 2; i < n; ++i) {
        const double divisor = 2.0 / 3.0 - 1.0 / 6.0 * upper[i - 1];
        upper[i] = 1.0 / 6.0 / divisor;
        value[i] = (v[i] - 1.0 / 6.0 * value[i - 1]) / divisor;
    }
    for (int i = n - 1; i > 1; --i) v[i] = value[i] - upper[i] * v[i + 1];
}

TEST_F(Curves, BsplineGivesTheBitsOfThePlainElimination) {
    ZM_TRACE_SEED();
    zm::test::Random random(6);
    for (int run = 0; run < 300; ++run) {
        const int n = run < 80 ? run + 1 : random.Int(3, 3000);
        std::vector<double> x(static_cast<std::size_t>(n) + 1), y(x.size());
        for (double& v : x) v = random.Real(-1e6, 1e6);
        for (double& v : y) v = random.Real(-1e6, 1e6);
        std::vector<double> plainX = x, plainY = y;
        bspline(x.data(), y.data(), n);
        PlainBspline(plainX, n);
        PlainBspline(plainY, n);
        ASSERT_EQ(x, plainX) << n;
        ASSERT_EQ(y, plainY) << n;
    }
}

TEST_F(Curves, BsplineControlPointsMeetThePointsAtTheKnots) {
    ZM_TRACE_SEED();
    zm::test::Random random(7);
    std::vector<double> x(5001), y(5001);
    for (double& v : x) v = random.Real(-100, 100);
    for (double& v : y) v = random.Real(-100, 100);
    const std::vector<double> pointsX = x, pointsY = y;
    bspline(x.data(), y.data(), 5000);
    for (std::size_t i = 2; i < 5000; ++i) {
        ASSERT_NEAR((x[i - 1] + 4 * x[i] + x[i + 1]) / 6, pointsX[i], 2e-13);  // a few last digits of 4 * 300
        ASSERT_NEAR((y[i - 1] + 4 * y[i] + y[i + 1]) / 6, pointsY[i], 2e-13);
    }
}

TEST_F(Curves, SplinePassesThroughEveryPointAndUsesItsRoomOnly) {
    ZM_TRACE_SEED();
    zm::test::Random random(8);
    for (int n = 3; n < 60; ++n) {
        std::vector<double> x(static_cast<std::size_t>(n)), y(x.size());
        for (double& v : x) v = random.Real(-1000, 1000);
        for (double& v : y) v = random.Real(-1000, 1000);
        if (random.Int(0, 1) == 1) {
            x.back() = x.front() + 0.01;
            y.back() = y.front() - 0.01;
        }
        const Curve c = Spline(x, y);  // the sanitizers watch the room
        ASSERT_EQ(c.count, 1 + 5 * (n - 1));
        for (int i = 0; i < n; ++i) {
            ASSERT_NEAR(c.X(5 * i), x[static_cast<std::size_t>(i)], 2e-12);
            ASSERT_NEAR(c.Y(5 * i), y[static_cast<std::size_t>(i)], 2e-12);
        }
    }
}

TEST_F(Curves, SplineStandsBadNumbers) {
    for (double v : {kNan, kInf, -kInf, 1e308}) EXPECT_EQ(Spline({0, v, 2, 3}, {v, 1, 2, 3}).count, 16);
    double pairs[4] = {};
    int count = 9;
    SplineToPoints(3, nullptr, pairs, pairs, &count);
    EXPECT_EQ(count, 0);
    SplineToPoints(3, pairs, pairs, pairs, nullptr);
    EXPECT_EQ(pairs[0], 0.0);
}

}  // namespace

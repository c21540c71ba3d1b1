// Where a point lies with respect to a polygon.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

struct Ring {
    std::vector<double> x, y;
    int n() const { return static_cast<int>(x.size()); }
    int Parity(double px, double py) { return PtInPoly(x.data(), y.data(), n(), px, py); }
    int Edge(double px, double py) { return PtInPolyEdge(n(), x.data(), y.data(), px, py); }
};

Ring Square() {
    return {{0, 10, 10, 0}, {0, 0, 10, 10}};
}
Ring Diamond() {
    return {{0, 10, 0, -10}, {-10, 0, 10, 0}};
}

TEST(PtInPoly, TheCentreOfASquareIsInside) {
    EXPECT_EQ(Square().Parity(5, 5), 1);
}

TEST(PtInPoly, TheCentreOfADiamondIsOutsideSinceARayThroughAVertexMeetsBothEdges) {
    EXPECT_EQ(Diamond().Parity(0, 0), 0);
    EXPECT_EQ(Diamond().Parity(0, 1), 1);
}

TEST(PtInPoly, EdgesFlatterThanATenthOfAMillimetreAreLeftOut) {
    // A sliver whose long edges rise by less than 0.0001.
    Ring sliver{{0, 10, 10, 0}, {0, 0.00009, 1.00009, 1}};
    EXPECT_EQ(sliver.Parity(5, 0.5), 1);
    Ring flat{{0, 10, 0}, {0, 0.00005, 0.00009}};
    EXPECT_EQ(flat.Parity(0.1, 0.00004), 0);
}

TEST(PtInPoly, OfNoVerticesIsZero) {
    double v = 0.0;
    EXPECT_EQ(PtInPoly(&v, &v, 0, 0, 0), 0);
    EXPECT_EQ(PtInPoly(&v, &v, -4, 0, 0), 0);
    EXPECT_EQ(PtInPoly(nullptr, nullptr, 4, 0, 0), 0);
    EXPECT_EQ(PtInPoly(&v, &v, 1, 0, 0), 0);
}

TEST(PtInPolyEdge, KnowsInsideOutsideAndBoundary) {
    EXPECT_EQ(Square().Edge(5, 5), 1);
    EXPECT_EQ(Square().Edge(15, 5), 0);
    EXPECT_EQ(Square().Edge(5, 10), -1);
}

TEST(PtInPolyEdge, AVertexIsOnTheBoundary) {
    for (int i = 0; i < 4; ++i) EXPECT_EQ(Diamond().Edge(Diamond().x[i], Diamond().y[i]), -1);
}

TEST(PtInPolyEdge, TwoTenMillionthsOutsideAnEdgeIsOutside) {
    EXPECT_EQ(Square().Edge(10 + 2e-7, 5), 0);
    EXPECT_EQ(Square().Edge(10 + 5e-8, 5), -1);
    EXPECT_EQ(Square().Edge(10 - 5e-8, 5), -1);
    EXPECT_EQ(Square().Edge(10 - 2e-7, 5), 1);
}

TEST(PtInPolyEdge, AVertexOnTheRayCountsOnce) {
    EXPECT_EQ(Diamond().Edge(0, 0), 1);
    EXPECT_EQ(Diamond().Edge(-11, 0), 0);
    Ring spikes{{0, 2, 4, 6, 8, 8, 0}, {0, 5, 0, 5, 0, 9, 9}};
    EXPECT_EQ(spikes.Edge(1, 5), 1);  // the ray passes the tips from above
    EXPECT_EQ(spikes.Edge(-1, 5), 0);
    EXPECT_EQ(spikes.Edge(-1, 0), 0);
}

TEST(PtInPolyEdge, OfFewerThanThreeVerticesIsZero) {
    Ring two{{0, 10}, {0, 0}};
    EXPECT_EQ(two.Edge(0, 0), 0);
    double v = 0.0;
    EXPECT_EQ(PtInPolyEdge(-1, &v, &v, 0, 0), 0);
    EXPECT_EQ(PtInPolyEdge(5, nullptr, nullptr, 0, 0), 0);
}

TEST(PtInPolyEdge, APolygonOfOneRepeatedPointIsItsBoundary) {
    Ring point{{3, 3, 3, 3, 3}, {4, 4, 4, 4, 4}};
    EXPECT_EQ(point.Edge(3, 4), -1);
    EXPECT_EQ(point.Edge(3, 5), 0);
}

TEST(PtInPolyEdge, StandsBadNumbers) {
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308};
    for (double v : bad) {
        Ring ring{{0, v, 3, 4}, {v, 1, 2, 5}};
        const int edge = ring.Edge(1, 1);
        EXPECT_TRUE(edge == 0 || edge == 1 || edge == -1);
        EXPECT_GE(Square().Edge(v, 5), -1);
        EXPECT_GE(ring.Parity(v, v), 0);
    }
}

// Away from vertices and edges the two tests and the winding angle agree.
TEST(PtInPolyEdge, AgreesWithTheWindingAngleAwayFromTheBoundary) {
    ZM_TRACE_SEED();
    zm::test::Random random(3);
    int inside = 0;
    for (int run = 0; run < 20000; ++run) {
        const int n = random.Int(3, 20);
        Ring ring;
        for (int i = 0; i < n; ++i) {  // a star, so that the winding is 0 or 1
            const double angle = 6.283185307179586 * (i + random.Real(0.0, 0.9)) / n;
            const double r = random.Real(1, 10);
            ring.x.push_back(r * std::cos(angle));
            ring.y.push_back(r * std::sin(angle));
        }
        const double px = random.Real(-10, 10);
        const double py = random.Real(-10, 10);
        double turn = 0.0;
        for (int i = 0; i < n; ++i) {
            const int j = (i + 1) % n;
            const double ax = ring.x[i] - px, ay = ring.y[i] - py, bx = ring.x[j] - px, by = ring.y[j] - py;
            turn += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
        }
        if (getdist(px, py, n, ring.x.data(), ring.y.data()) < 1e-3) continue;
        if (PtDist2Line(px, py, ring.x[n - 1], ring.y[n - 1], ring.x[0], ring.y[0]) < 1e-3) continue;
        const int expected = std::fabs(turn) > 3.0 ? 1 : 0;
        ASSERT_EQ(ring.Edge(px, py), expected);
        inside += expected;
    }
    EXPECT_GT(inside, 1000);
}

}  // namespace

// Where a point lies with respect to a polygon.
#include <gtest/gtest.h>

#include <algorithm>
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

// The plain form: all vertices for the box, every edge by all its tests.
int PlainPtInPolyEdge(const Ring& ring, double px, double py) {
    const double e = 1e-7, small = 1e-8;
    const std::size_t n = ring.x.size();
    if (n < 3) return 0;
    double xmin = ring.x[0], xmax = ring.x[0], ymin = ring.y[0], ymax = ring.y[0];
    for (std::size_t i = 0; i < n; ++i) {
        const double x1 = ring.x[i], y1 = ring.y[i], x2 = ring.x[(i + 1) % n], y2 = ring.y[(i + 1) % n];
        xmin = std::min(xmin, x1), xmax = std::max(xmax, x1);
        ymin = std::min(ymin, y1), ymax = std::max(ymax, y1);
        if (px < std::min(x1, x2) - e || px > std::max(x1, x2) + e) continue;
        if (py < std::min(y1, y2) - e || py > std::max(y1, y2) + e) continue;
        double line[6] = {x1, y1, x2, y2, px, py};
        double foot[2];
        CHUIZU(line, foot);
        if ((foot[0] - px) * (foot[0] - px) + (foot[1] - py) * (foot[1] - py) < 9.999999999999998e-15) return -1;
    }
    if (px < xmin || px > xmax || py < ymin || py > ymax) return 0;
    const double qx = xmax + 1e-5;
    int count = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const double x1 = ring.x[i], y1 = ring.y[i], x2 = ring.x[(i + 1) % n], y2 = ring.y[(i + 1) % n];
        const double low = std::min(y1, y2), high = std::max(y1, y2);
        if (std::fabs(y1 - y2) < small || low - e > py || py > high + e) continue;
        if ((std::fabs(py - y1) < e || std::fabs(py - y2) < e) && (py - small < low || py - small > high)) continue;
        const double p = (x2 - x1) * (py - y1) - (px - x1) * (y2 - y1);
        const double q = (x2 - x1) * (py - y1) - (qx - x1) * (y2 - y1);
        if ((p > 0) != (q > 0)) ++count;
    }
    return count % 2;
}

TEST(PtInPolyEdge, AnswersAsAllTestsOfEveryEdgeDo) {
    ZM_TRACE_SEED();
    zm::test::Random random(22);
    const double kInf = std::numeric_limits<double>::infinity();
    int results[3] = {};
    for (int run = 0; run < 100000; ++run) {
        const int hardness = run % 6;
        const double offset = run % 3 == 0 ? 0.0 : run % 3 == 1 ? 3300000.0 : 3e9;
        // Coordinates that often agree, or differ by about one of the tolerances.
        const auto coordinate = [&]() {
            const double grid = offset + random.Int(-3, 3);
            const double steps[] = {1e-7, -1e-7, 1e-8, -1e-8, 2e-7, 4e-7, -4e-7, 5e-9};
            switch (random.Int(0, hardness)) {
                case 0:
                    return offset + random.Real(-3, 3);
                case 1:
                    return grid;
                case 2:
                    return grid + steps[random.Int(0, 7)];
                case 3:
                    return std::nextafter(grid + steps[random.Int(0, 7)], random.Int(0, 1) == 1 ? kInf : -kInf);
                case 4:
                    return grid;
                default: {
                    const double odd[] = {std::numeric_limits<double>::quiet_NaN(), kInf, -kInf, 1e308, -1e308};
                    return odd[random.Int(0, 4)];
                }
            }
        };
        Ring ring;
        for (int i = random.Int(0, 14); i > 0; --i) {
            ring.x.push_back(coordinate());
            ring.y.push_back(coordinate());
        }
        const double px = coordinate();
        const double py = coordinate();
        const int found = ring.Edge(px, py);
        ASSERT_EQ(found, PlainPtInPolyEdge(ring, px, py));
        ++results[found + 1];
    }
    for (int count : results) EXPECT_GT(count, 1000);
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

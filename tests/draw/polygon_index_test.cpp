// The index of a polygon clip area gives the answers of the plain order of edges, bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "draw/access.h"
#include "draw/clip/polygon_index.h"
#include "geometry/state.h"
#include "tests/draw/fixture.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::draw::Access;
using zm::test::Random;

struct Ring {
    std::vector<double> x, y;
    int n() const { return static_cast<int>(x.size()); }
};

// The clip as its definition walks it: every edge, in order.
class PlainClip {
 public:
    explicit PlainClip(Ring& ring) : m_ring(ring) {}

    int Point(double px, double py) {
        double xmin = 1e300, xmax = -1e300, ymin = 1e300, ymax = -1e300;
        for (int i = 0; i < m_ring.n(); ++i) {
            const auto k = static_cast<std::size_t>(i);
            xmin = std::min(xmin, m_ring.x[k]);
            xmax = std::max(xmax, m_ring.x[k]);
            ymin = std::min(ymin, m_ring.y[k]);
            ymax = std::max(ymax, m_ring.y[k]);
        }
        if (px < xmin || px > xmax || py < ymin || py > ymax) return 0;
        return PtInPolyEdge(m_ring.n(), m_ring.x.data(), m_ring.y.data(), px, py);
    }

    int Segment(double& x1, double& y1, double& x2, double& y2) {
        const int in1 = Point(x1, y1);
        const int in2 = Point(x2, y2);
        const double ax = x1, ay = y1, bx = x2, by = y2;
        bool kept = false;
        for (int i = 0; i < m_ring.n(); ++i) {
            const auto k = static_cast<std::size_t>(i);
            const auto next = static_cast<std::size_t>((i + 1) % m_ring.n());
            double cx = 0, cy = 0;
            if (Cross_P(cx, cy, ax, ay, bx, by, m_ring.x[k], m_ring.y[k], m_ring.x[next], m_ring.y[next]) != 0)
                continue;
            if (in1 != 0 && in2 == 0) {
                x2 = cx;
                y2 = cy;
                return 1;
            }
            if (in1 == 0 && in2 != 0) {
                x1 = cx;
                y1 = cy;
                return 1;
            }
            if (!kept) {
                x1 = cx;
                y1 = cy;
                kept = true;
            } else if (std::fabs(cx - x1) >= 1e-8 || std::fabs(cy - y1) >= 1e-8) {
                x2 = cx;
                y2 = cy;
                return 1;
            }
        }
        return in1 & in2;
    }

 private:
    Ring& m_ring;
};

bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

class PolygonIndex : public zm::test::DrawTest {
 protected:
    void Set(Ring& ring) { area.setcutarea(ring.n(), ring.x.data(), ring.y.data()); }

    void ComparePoint(PlainClip& plain, double x, double y) {
        ASSERT_EQ(area.cutpoint(x, y), plain.Point(x, y)) << zm::numbers::Text("at %.17g %.17g", x, y);
    }
    void CompareSegment(PlainClip& plain, double x1, double y1, double x2, double y2) {
        double a[4] = {x1, y1, x2, y2};
        double b[4] = {x1, y1, x2, y2};
        const int found = area.cutline(a[0], a[1], a[2], a[3]);
        const int expected = plain.Segment(b[0], b[1], b[2], b[3]);
        const std::string where = zm::numbers::Text("of %.17g %.17g %.17g %.17g", x1, y1, x2, y2);
        ASSERT_EQ(found, expected) << where;
        for (int i = 0; i < 4; ++i) ASSERT_TRUE(SameBits(a[i], b[i])) << where;
    }

    // Random points and segments, and such that start from vertices, run along edges, and lie beside them.
    void CompareAll(Ring& ring, Random& random, int rounds) {
        Set(ring);
        PlainClip plain(ring);
        double left = 1e300, right = -1e300, bottom = 1e300, top = -1e300;
        for (std::size_t i = 0; i < ring.x.size(); ++i) {
            left = std::min(left, ring.x[i]);
            right = std::max(right, ring.x[i]);
            bottom = std::min(bottom, ring.y[i]);
            top = std::max(top, ring.y[i]);
        }
        const double w = right - left;
        const double h = top - bottom;
        const double shifts[] = {0.0, 1e-8, -1e-8, 1e-7, -1e-7, 9.99e-8, 1.01e-7, 5e-7, 1e-6, 1e-3, -1e-3};
        const auto anyShift = [&] { return shifts[random.Int(0, 10)]; };
        for (int round = 0; round < rounds; ++round) {
            const double x = random.Real(left - 0.1 * w, right + 0.1 * w);
            const double y = random.Real(bottom - 0.1 * h, top + 0.1 * h);
            ComparePoint(plain, x, y);
            const auto vertex = static_cast<std::size_t>(random.Int(0, ring.n() - 1));
            const auto next = (vertex + 1) % ring.x.size();
            ComparePoint(plain, ring.x[vertex] + anyShift(), ring.y[vertex] + anyShift());
            ComparePoint(plain, x, ring.y[vertex] + anyShift());
            const double along = random.Real(0.0, 1.0);
            ComparePoint(plain, ring.x[vertex] + along * (ring.x[next] - ring.x[vertex]) + anyShift(),
                         ring.y[vertex] + along * (ring.y[next] - ring.y[vertex]) + anyShift());
            const double reach = random.Int(0, 2) == 0 ? 1.5 : 0.03;
            CompareSegment(plain, x, y, x + random.Real(-reach, reach) * w, y + random.Real(-reach, reach) * h);
            CompareSegment(plain, ring.x[vertex], ring.y[vertex], x, y);
            CompareSegment(plain, ring.x[vertex] + anyShift(), ring.y[vertex] + anyShift(), ring.x[next] + anyShift(),
                           ring.y[next] + anyShift());
            CompareSegment(plain, x, ring.y[vertex], x + random.Real(-1.0, 1.0) * w, ring.y[vertex]);
            if (HasFatalFailure()) return;
        }
    }

    CCutArea area{1};
};

Ring Star(int n, double noise, double centre, Random& random) {
    Ring ring;
    for (int i = 0; i < n; ++i) {
        const double a = 6.283185307179586 * i / n;
        const double r = 500.0 * (1.0 + 0.3 * std::sin(5 * a) + random.Real(-noise, noise));
        ring.x.push_back(centre + r * std::cos(a));
        ring.y.push_back(centre + r * std::sin(a));
    }
    return ring;
}

TEST_F(PolygonIndex, IsBuiltForAPolygonOfManyVerticesOnly) {
    Random random;
    Ring small = Star(10, 0.1, 0.0, random);
    Set(small);
    EXPECT_EQ(Access::Index(area), nullptr);
    Ring large = Star(100, 0.1, 0.0, random);
    Set(large);
    EXPECT_NE(Access::Index(area), nullptr);
    area.setcutarea(0, 0, 1, 1);
    EXPECT_EQ(Access::Index(area), nullptr);
}

TEST_F(PolygonIndex, AnswersLikeThePlainOrderOnStars) {
    ZM_TRACE_SEED();
    Random random(1);
    for (const int n : {24, 100, 1000, 5000})
        for (const double noise : {0.0, 0.002, 0.3}) {
            Ring ring = Star(n, noise, 0.0, random);
            CompareAll(ring, random, 30000 / n + 20);
            if (HasFatalFailure()) return;
        }
}

TEST_F(PolygonIndex, AnswersLikeThePlainOrderOnLargeCoordinates) {
    ZM_TRACE_SEED();
    Random random(2);
    for (const double centre : {4.5e5, 4.2e6, 3.85e7}) {
        Ring ring = Star(600, 0.01, centre, random);
        CompareAll(ring, random, 150);
        if (HasFatalFailure()) return;
    }
}

TEST_F(PolygonIndex, AnswersLikeThePlainOrderOnWholeNumbersAndRepeatedPoints) {
    ZM_TRACE_SEED();
    Random random(3);
    for (int round = 0; round < 12; ++round) {
        Ring ring;
        for (int i = 0; i < 120; ++i) {
            ring.x.push_back(random.Int(0, 12));
            ring.y.push_back(random.Int(0, 12));
            if (i % 7 == 0) {
                ring.x.push_back(ring.x.back());
                ring.y.push_back(ring.y.back());
            }
        }
        Set(ring);
        PlainClip plain(ring);
        for (int k = 0; k < 400; ++k) {
            const double x1 = random.Int(-2, 28) / 2.0, y1 = random.Int(-2, 28) / 2.0;
            const double x2 = random.Int(-2, 28) / 2.0, y2 = random.Int(-2, 28) / 2.0;
            ComparePoint(plain, x1, y1);
            CompareSegment(plain, x1, y1, x2, y2);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(PolygonIndex, AnswersLikeThePlainOrderOnAStaircaseOfShortSteps) {
    ZM_TRACE_SEED();
    Random random(4);
    Ring ring;
    double x = 0.0;
    for (int i = 0; i < 200; ++i) {
        const double steps[] = {1e-9, 1e-8, 5e-8, 1e-7, 3e-7, 1e-3, 1.0};
        ring.x.push_back(x);
        ring.y.push_back(i % 2 == 0 ? 0.0 : steps[random.Int(0, 6)]);
        x += steps[random.Int(0, 6)];
    }
    ring.x.insert(ring.x.end(), {x, 0.0});
    ring.y.insert(ring.y.end(), {10.0, 10.0});
    CompareAll(ring, random, 400);
}

TEST_F(PolygonIndex, FollowsAChangeOfTheTolerance) {
    ZM_TRACE_SEED();
    Random random(5);
    Ring ring = Star(500, 0.01, 0.0, random);
    for (const double mini : {1e-3, 1e-6, 0.0, 5.0}) {
        SetMINI(mini);
        CompareAll(ring, random, 60);
        if (HasFatalFailure()) return;
    }
}

TEST_F(PolygonIndex, LeavesPolygonsWithWildCoordinatesToThePlainOrder) {
    ZM_TRACE_SEED();
    Random random(6);
    for (const double wild : {1e12, 1e300, std::nan(""), HUGE_VAL}) {
        Ring ring = Star(60, 0.1, 0.0, random);
        ring.x[7] = wild;
        Set(ring);
        EXPECT_EQ(Access::Index(area), nullptr);
        double x1 = -600, y1 = 3, x2 = 600, y2 = 4;
        area.cutline(x1, y1, x2, y2);
        area.cutpoint(1.0, 1.0);
    }
}

TEST_F(PolygonIndex, AFlatPolygonHasNone) {
    Ring ring;
    for (int i = 0; i < 50; ++i) {
        ring.x.push_back(i);
        ring.y.push_back(0.0);
    }
    Set(ring);
    EXPECT_EQ(Access::Index(area), nullptr);
    EXPECT_EQ(area.cutpoint(25.0, 0.0), -1);
}

}  // namespace

// Hatch lines against the plain form: every edge against every line, line after line.
#include "symbol/area/hatch_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "symbol/paper.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::symbol::Point;

struct Result {
    int ret = 0;
    int count = 0;
    std::vector<double> out;
};

Result Fast(const std::vector<double>& xy, double a1, double d1, double a2, double d2, int type) {
    Result r;
    r.out.resize(static_cast<std::size_t>(zm::symbol::HatchRoom(4000)));
    r.count = 4000;
    zm::symbol::LeftOut leftOut;
    r.ret = zm::symbol::GenerateHatchLines(static_cast<int>(xy.size() / 2), xy.data(), a1, d1, a2, d2, type, r.count,
                                           r.out.data(), leftOut);
    return r;
}

// The families line by line, without any index; for directions that are no multiple of 90 degrees.
class Plain {
 public:
    explicit Plain(std::vector<double> xy) : m_xy(std::move(xy)) {
        m_left = m_right = m_xy[0];
        m_bottom = m_top = m_xy[1];
        for (std::size_t i = 0; i < m_xy.size(); i += 2) {
            m_left = std::min(m_left, m_xy[i]);
            m_right = std::max(m_right, m_xy[i]);
            m_bottom = std::min(m_bottom, m_xy[i + 1]);
            m_top = std::max(m_top, m_xy[i + 1]);
        }
        m_left -= 1.3;
        m_bottom -= 1.3;
        m_right += 1.3;
        m_top += 1.3;
    }

    std::vector<double> FamilyA(double a, double d) {
        const double c = std::cos(a) * (m_top - m_bottom) / std::sin(a);
        return Run((m_left + m_right) / 2.0, d / std::fabs(std::sin(a)), c, m_left, m_right, [&](double u) {
            return std::pair(Point{u, m_bottom}, Point{u + c, m_top});
        });
    }
    std::vector<double> FamilyB(double a, double d) {
        const double c = std::sin(a) * (m_right - m_left) / std::cos(a);
        return Run((m_bottom + m_top) / 2.0, d / std::fabs(std::cos(a)), c, m_bottom, m_top, [&](double v) {
            return std::pair(Point{m_left, v}, Point{m_right, v + c});
        });
    }

 private:
    template <class Ends>
    std::vector<double> Run(double middle, double step, double c, double low, double high, Ends ends) {
        std::vector<double> store;
        int hits = 0;
        for (int k = 0; hits < 494; ++k) {
            const double u = middle + k * -step;
            if (Clip(ends(u), store))
                ++hits;
            else if (u + c < low)
                break;
        }
        for (int k = 0; hits < 494; ++k) {
            const double u = middle + (k + 1) * step;
            if (Clip(ends(u), store))
                ++hits;
            else if (u + c > high)
                break;
        }
        return store;
    }

    bool Clip(const std::pair<Point, Point>& line, std::vector<double>& store) {
        const auto& [p0, p1] = line;
        std::vector<Point> met;
        const std::size_t n = m_xy.size() / 2;
        for (std::size_t i = 0; i < n && met.size() < 18; ++i) {
            const std::size_t j = (i + 1) % n;
            Point p;
            if (Cross_P(p.x, p.y, p0.x, p0.y, p1.x, p1.y, m_xy[2 * i], m_xy[2 * i + 1], m_xy[2 * j], m_xy[2 * j + 1]) ==
                0)
                met.push_back(p);
        }
        if (met.empty()) return false;
        // The rule of order among neighbours, which a crossing ahead of the line's first point can upset.
        for (std::size_t left = met.size(); left > 1; --left)
            for (std::size_t i = 0; i + 1 < left; ++i)
                if ((met[i].x - p0.x) * (met[i + 1].x - met[i].x) < 0.0 ||
                    (met[i].y - p0.y) * (met[i + 1].y - met[i].y) < 0.0)
                    std::swap(met[i], met[i + 1]);
        for (std::size_t i = 0; i + 1 < met.size() && store.size() < 4 * 495; i += 2)
            store.insert(store.end(), {met[i].x, met[i].y, met[i + 1].x, met[i + 1].y});
        return true;
    }

    std::vector<double> m_xy;
    double m_left, m_right, m_bottom, m_top;
};

std::vector<double> Star(zm::test::Random& random, int n, double cx, double cy, double r) {
    std::vector<double> xy;
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * std::numbers::pi * i / n;
        const double at = r * random.Real(0.3, 1.0);
        xy.insert(xy.end(), {cx + at * std::cos(a), cy + at * std::sin(a)});
    }
    return xy;
}

void ExpectSame(const std::vector<double>& wanted, const double* found, double count) {
    ASSERT_EQ(wanted.size(), static_cast<std::size_t>(4 * count));
    for (std::size_t i = 0; i < wanted.size(); ++i) ASSERT_EQ(wanted[i], found[i]) << "number " << i;
}

TEST(GenerateHatchLines, GivesTheLinesOfThePlainFormBitForBit) {
    ZM_TRACE_SEED();
    zm::test::Random random(51);
    for (int round = 0; round < 400; ++round) {
        const int n = random.Int(3, round % 20 == 0 ? 1000 : 60);
        const double away = round % 3 == 0 ? 500000.0 : 0.0;
        const auto xy = Star(random, n, away, 3.0 * away, random.Real(1.0, 200.0));
        const double a1 = random.Real(0.02, 1.5) + (round % 2 == 0 ? 1.6 : 0.0);
        const double a2 = random.Real(0.02, 1.5);
        const double d1 = random.Real(0.2, 5.0);
        const double d2 = random.Real(0.2, 5.0);
        const Result single = Fast(xy, a1, d1, 0.0, 0.0, 2);
        ASSERT_EQ(1, single.ret);
        const auto b = Plain(xy).FamilyB(a1, d1);
        ASSERT_EQ(0.0, single.out[static_cast<std::size_t>(2 * single.count)]);
        ExpectSame(b, single.out.data(), single.out[static_cast<std::size_t>(2 * single.count) + 1]);

        const Result grid = Fast(xy, a1, d1, a2, d2, 1);
        ASSERT_EQ(1, grid.ret);
        const double first = grid.out[static_cast<std::size_t>(2 * grid.count)];
        ExpectSame(Plain(xy).FamilyA(a1, d1), grid.out.data(), first);
        ExpectSame(Plain(xy).FamilyB(a2, d2), grid.out.data() + static_cast<std::ptrdiff_t>(4 * first),
                   grid.out[static_cast<std::size_t>(2 * grid.count) + 1]);
        if (HasFatalFailure()) FAIL() << "round " << round << ", " << n << " points";
    }
}

TEST(GenerateHatchLines, GivesThePlainLinesWithACoarseToleranceToo) {
    ZM_TRACE_SEED();
    zm::test::Random random(53);
    for (const double tolerance : {1e-3, 0.1, 5.0, 1e4}) {
        const double before = SetMINI(tolerance);
        for (int round = 0; round < 40; ++round) {
            const auto xy = Star(random, random.Int(3, 60), 0.0, 0.0, random.Real(1.0, 200.0));
            const double a = random.Real(0.02, 1.5);
            const double d = random.Real(0.3, 5.0);
            const Result r = Fast(xy, a, d, 0.0, 0.0, 2);
            ExpectSame(Plain(xy).FamilyB(a, d), r.out.data(), r.out[static_cast<std::size_t>(2 * r.count) + 1]);
        }
        SetMINI(before);
        if (HasFatalFailure()) FAIL() << "tolerance " << tolerance;
    }
}

TEST(GenerateHatchLines, GivesThePlainLinesUpToTheCapToo) {
    ZM_TRACE_SEED();
    zm::test::Random random(52);
    for (int round = 0; round < 20; ++round) {
        const auto xy = Star(random, random.Int(3, 40), 0.0, 0.0, 100.0);
        const double a = random.Real(0.1, 1.4);
        const Result r = Fast(xy, a, 0.05, 0.0, 0.0, 2);
        EXPECT_GE(r.count, 2 * 494);
        ExpectSame(Plain(xy).FamilyB(a, 0.05), r.out.data(), r.out[static_cast<std::size_t>(2 * r.count) + 1]);
    }
}

TEST(GenerateHatchLines, StopsAtTheCapacityOfItsOutput) {
    const std::vector<double> square = {0, 0, 40, 0, 40, 40, 0, 40};
    std::vector<double> out(static_cast<std::size_t>(zm::symbol::HatchRoom(30)), -1.0);
    zm::symbol::LeftOut leftOut;
    int count = 30;
    EXPECT_EQ(1, zm::symbol::GenerateHatchLines(4, square.data(), 0.3, 1.0, 1.2, 1.0, 1, count, out.data(), leftOut));
    // The first family ends once 30 - 12 points are written, the second once 30 - 8 are.
    EXPECT_EQ(22, count);
}

TEST(GenerateHatchLines, OddCrossingIsLeftWithoutPartner) {
    // The line at 45 degrees through the box's middle passes through the corner (10, 10) and one edge of the triangle.
    const std::vector<double> triangle = {0, 0, 10, 0, 10, 10};
    const Result r = Fast(triangle, std::numbers::pi / 4, 100.0, 0.0, 0.0, 2);
    EXPECT_EQ(0, r.count % 2);
}

TEST(GenerateHatchLines, OfAPolygonOfSeamsFillsEvenOdd) {
    // A square of 40 with a square hole of 20, joined by a seam.
    const std::vector<double> ring = {0, 0, 40, 0, 40, 40, 0, 40, 0, 0, 10, 10, 10, 30, 30, 30, 30, 10, 10, 10};
    const Result r = Fast(ring, 0.0, 15.0, 0.0, 0.0, 2);
    ASSERT_EQ(1, r.ret);
    // At 20 two pieces beside the hole, at 5 and 35 one each, with the seam crossed at 5.
    EXPECT_EQ(0.0, r.out[0]);
    EXPECT_NEAR(10.0, r.out[2], 1e-12);
    EXPECT_NEAR(30.0, r.out[4], 1e-12);
    EXPECT_NEAR(40.0, r.out[6], 1e-12);
}

TEST(GenerateHatchLines, WithoutPointsReturnsZero) {
    std::vector<double> out(100);
    zm::symbol::LeftOut leftOut;
    int count = 20;
    EXPECT_EQ(0, zm::symbol::GenerateHatchLines(0, nullptr, 1.0, 1.0, 0.0, 0.0, 2, count, out.data(), leftOut));
    EXPECT_EQ(0, count);
}

}  // namespace

// The height table and the elevation of DWG output.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "geometry/elevation.h"
#include "geometry/height_grid.h"
#include "geometry/state.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Points {
    std::vector<double> x, y, h;
    void Add(double px, double py, double ph) {
        x.push_back(px);
        y.push_back(py);
        h.push_back(ph);
    }
    int n() const { return static_cast<int>(x.size()); }
    Find4H Table() { return Find4H(n(), x.data(), y.data(), h.data()); }
    // What a plain scan answers.
    double Scan(double px, double py) const {
        for (std::size_t i = 0; i < x.size(); ++i)
            if (std::fabs(y[i] - py) + std::fabs(x[i] - px) < 0.1) return h[i] > 9000.0 ? 0.0 : h[i];
        return 0.0;
    }
};

class HeightSearch : public testing::Test {
 protected:
    void SetUp() override {
        zm::geometry::ResetState();
        SetDwgElevation(0.0);
    }
    void TearDown() override { SetDwgElevation(0.0); }
    static double Synced(double x, double y) {
        _LDBsyncelev(x, y);
        return zm::dwg::CurrentElevation();
    }
};

TEST_F(HeightSearch, FindsTheHeightOfAPointNearby) {
    Points p{{10}, {20}, {123.5}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(10, 20), 123.5);
    EXPECT_EQ(table.FindH(10.05, 20.04), 123.5);
}

TEST_F(HeightSearch, TheSumOfBothDifferencesDecides) {
    Points p{{10}, {20}, {123.5}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(10.05, 20.06), 0.0);  // 0.11
    EXPECT_EQ(table.FindH(10.09, 20.0), 123.5);
}

TEST_F(HeightSearch, TheSumHasToBeLessThanATenth) {
    Points p{{0}, {0}, {5}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(0.1, 0), 0.0);
    EXPECT_EQ(table.FindH(std::nextafter(0.1, 0.0), 0), 5.0);
    EXPECT_EQ(table.FindH(0.0625, 0.0375), 0.0);
}

TEST_F(HeightSearch, TheFirstStoredPointWinsAndNotTheNearest) {
    Points p{{0.09, 0.0}, {0, 0}, {1, 2}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(0, 0), 1.0);
}

TEST_F(HeightSearch, AHeightOf9000IsReturnedAndAGreaterOneIsZero) {
    Points p{{0, 10}, {0, 0}, {9000.0, 9000.5}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(0, 0), 9000.0);
    EXPECT_EQ(table.FindH(10, 0), 0.0);
}

TEST_F(HeightSearch, AHeightAbove9000HidesThePointsBehindIt) {
    Points p{{0, 0}, {0, 0}, {9000.5, 7}};
    Find4H table = p.Table();
    EXPECT_EQ(table.FindH(0, 0), 0.0);
}

TEST_F(HeightSearch, AnEmptyTableArmsWithItsFirstPointsOnly) {
    SetDwgElevation(50.0);
    Find4H table(0, nullptr, nullptr, nullptr);
    EXPECT_EQ(Synced(0, 0), 50.0);
    Points p{{1}, {1}, {30}};
    EXPECT_EQ(table.AppendDate(1, p.x.data(), p.y.data(), p.h.data()), 1);
    EXPECT_EQ(Synced(1, 1), 30.0);
    EXPECT_EQ(Synced(5, 5), 0.0);
}

TEST_F(HeightSearch, WithoutATableTheElevationStays) {
    SetDwgElevation(12.0);
    EXPECT_EQ(Synced(0, 0), 12.0);
}

TEST_F(HeightSearch, TheEndOfATableRestoresTheElevationHeldWhenItWasMade) {
    SetDwgElevation(7.5);
    {
        Points p{{1}, {1}, {30}};
        Find4H table = p.Table();
        EXPECT_EQ(Synced(1, 1), 30.0);
        SetDwgElevation(99.0);
    }
    EXPECT_EQ(zm::dwg::CurrentElevation(), 7.5);
    EXPECT_EQ(Synced(1, 1), 7.5);
}

TEST_F(HeightSearch, ANewerTableTakesOverAndTheEndOfAnyDisarms) {
    Points p{{1}, {1}, {30}};
    Points q{{1}, {1}, {40}};
    auto older = std::make_unique<Find4H>(1, p.x.data(), p.y.data(), p.h.data());
    Find4H newer = q.Table();
    EXPECT_EQ(Synced(1, 1), 40.0);
    older.reset();
    SetDwgElevation(5.0);
    EXPECT_EQ(Synced(1, 1), 5.0);
    EXPECT_EQ(newer.AppendDate(0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(Synced(1, 1), 40.0);
}

TEST_F(HeightSearch, AppendingToAnOlderTableAfterTheNewerOneEndedIsHarmless) {
    Points p{{1}, {1}, {30}};
    Find4H older = p.Table();
    { Find4H newer = p.Table(); }
    EXPECT_EQ(older.AppendDate(1, p.x.data(), p.y.data(), p.h.data()), 1);
    SetDwgElevation(5.0);
    EXPECT_EQ(Synced(1, 1), 5.0);
}

TEST_F(HeightSearch, AppendedPointsAreFoundBehindTheOthers) {
    Points p{{0, 5}, {0, 5}, {1, 2}};
    Find4H table = p.Table();
    Points more{{0, 9}, {0, 9}, {3, 4}};
    EXPECT_EQ(table.FindH(9, 9), 0.0);
    EXPECT_EQ(table.AppendDate(2, more.x.data(), more.y.data(), more.h.data()), 1);
    EXPECT_EQ(table.FindH(0, 0), 1.0);
    EXPECT_EQ(table.FindH(9, 9), 4.0);
}

TEST_F(HeightSearch, NullArraysLeaveTheTableAsItWas) {
    Points p{{0}, {0}, {1}};
    Find4H table = p.Table();
    EXPECT_EQ(table.AppendDate(3, nullptr, p.y.data(), p.h.data()), 0);
    EXPECT_EQ(table.AppendDate(2147483647, p.x.data(), p.y.data(), p.h.data()), 0);
    EXPECT_EQ(table.FindH(0, 0), 1.0);
    Find4H none(5, nullptr, nullptr, nullptr);
    EXPECT_EQ(none.FindH(0, 0), 0.0);
    Find4H negative(-5, p.x.data(), p.y.data(), p.h.data());
    EXPECT_EQ(negative.FindH(0, 0), 0.0);
}

// Point sets that are hard on a grid.
Points Scattered(zm::test::Random& random, int kind, int n) {
    Points p;
    for (int i = 0; i < n; ++i) {
        double x = 0, y = 0;
        switch (kind) {
            case 0:  // even
                x = random.Real(0, 30), y = random.Real(0, 30);
                break;
            case 1:  // crowded far from the origin, with the origin in it
                x = i == 7 ? 0 : 500000 + random.Real(0, 5), y = i == 7 ? 0 : 3300000 + random.Real(0, 5);
                break;
            case 2:  // on a line
                x = 3, y = random.Real(-20, 20);
                break;
            case 3:  // at one place, and a few beside it
                x = i % 50 == 0 ? 1 + random.Real(-0.2, 0.2) : 1, y = 2;
                break;
            case 4:  // rows a tenth apart, so that sums lie on the threshold
                x = 0.1 * random.Int(0, 40), y = 0.1 * random.Int(0, 40);
                break;
            case 5:  // crowds within crowds
                x = std::pow(10.0, -random.Int(0, 12)) * random.Real(1, 9), y = std::pow(10.0, random.Int(-3, 9));
                break;
            default:  // what is no number, and what is too far out for differences
                x = random.Int(0, 9) == 0 ? kNan : random.Int(0, 9) == 0 ? 1e200 : random.Real(0, 3);
                y = random.Int(0, 9) == 0 ? -kInf : random.Int(0, 9) == 0 ? -1e300 : random.Real(0, 3);
        }
        p.Add(x, y, random.Int(0, 20) == 0 ? 9001.0 : i + 1.0);
    }
    return p;
}

class HeightGridKinds : public testing::TestWithParam<int> {};

TEST_P(HeightGridKinds, AnswersAsThePlainScanDoes) {
    ZM_TRACE_SEED();
    zm::test::Random random(12 + static_cast<std::uint64_t>(GetParam()));
    int found = 0;
    for (int n : {1, 2, 31, 33, 500, 3000}) {
        const Points p = Scattered(random, GetParam(), n);
        const zm::geometry::HeightGrid grid(p.x.data(), p.y.data(), p.h.data(), n);
        for (int i = 0; i < 4000; ++i) {
            const auto at = static_cast<std::size_t>(random.Int(0, n - 1));
            const double px = p.x[at] + random.Real(-0.11, 0.11) * random.Int(0, 1);
            const double py = p.y[at] + random.Real(-0.11, 0.11) * random.Int(0, 1);
            const auto* entry = grid.First(px, py);
            const double height = entry == nullptr || entry->h > 9000.0 ? 0.0 : entry->h;
            ASSERT_EQ(height, p.Scan(px, py)) << px << ' ' << py;
            found += entry != nullptr ? 1 : 0;
        }
    }
    EXPECT_GT(found, 1000);
}

INSTANTIATE_TEST_SUITE_P(Kinds, HeightGridKinds, testing::Range(0, 7));

TEST_F(HeightSearch, ManyQuestionsBetweenManyAppendsAnswerAsThePlainScanDoes) {
    ZM_TRACE_SEED();
    zm::test::Random random(20);
    Points all;
    Find4H table(0, nullptr, nullptr, nullptr);
    for (int round = 0; round < 60; ++round) {
        Points more = Scattered(random, 0, random.Int(1, 80));
        for (int i = 0; i < more.n(); ++i) all.Add(more.x[i], more.y[i], more.h[i]);
        ASSERT_EQ(table.AppendDate(more.n(), more.x.data(), more.y.data(), more.h.data()), 1);
        for (int i = 0; i < 200; ++i) {
            const double x = random.Real(0, 30), y = random.Real(0, 30);
            ASSERT_EQ(table.FindH(x, y), all.Scan(x, y));
        }
    }
}

TEST_F(HeightSearch, QuestionsThatAreNoNumbersFindNothing) {
    Points p;
    for (int i = 0; i < 1000; ++i) p.Add(i, i, 5);
    Find4H table = p.Table();
    for (int i = 0; i < 20; ++i)
        for (double v : {kNan, kInf, -kInf, 1e308}) {
            EXPECT_EQ(table.FindH(v, 1), 0.0);
            EXPECT_EQ(table.FindH(1, v), 0.0);
        }
    EXPECT_EQ(table.FindH(7, 7), 5.0);
}

}  // namespace

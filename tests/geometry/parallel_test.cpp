// Parallel lines.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "geometry/lines.h"
#include "geometry/state.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

struct Offset {
    int ret;
    std::vector<double> x, y;
};
Offset Parallel(std::vector<double> x, std::vector<double> y, double dist, int side) {
    Offset o{-1, std::vector<double>(x.size(), -77.0), std::vector<double>(y.size(), -77.0)};
    o.ret = parallel(static_cast<int>(x.size()), x.data(), y.data(), o.x.data(), o.y.data(), dist, side);
    return o;
}

constexpr double kRounding = 1e-14;  // bearings pass arc cosine, sine and cosine

void ExpectPoint(const Offset& o, std::size_t i, double x, double y) {
    EXPECT_NEAR(o.x[i], x, kRounding) << i;
    EXPECT_NEAR(o.y[i], y, kRounding) << i;
}

class ParallelLine : public testing::Test {
 protected:
    void SetUp() override { zm::geometry::ResetState(); }
};

TEST_F(ParallelLine, TwoPointsAreMovedSquareToTheSegment) {
    const Offset right = Parallel({0, 10}, {0, 0}, 2, 1);
    EXPECT_EQ(right.ret, 1);
    ExpectPoint(right, 0, 0, -2);
    ExpectPoint(right, 1, 10, -2);
    const Offset left = Parallel({0, 10}, {0, 0}, 2, 0);
    ExpectPoint(left, 0, 0, 2);
    ExpectPoint(left, 1, 10, 2);
}

TEST_F(ParallelLine, ANegativeDistanceChangesTheSide) {
    const Offset o = Parallel({0, 5, 10}, {0, 0, 0}, -2, 1);
    for (std::size_t i = 0; i < 3; ++i) ExpectPoint(o, i, 5.0 * static_cast<double>(i), 2);
}

TEST_F(ParallelLine, AStraightVertexIsMovedByTheDistance) {
    ExpectPoint(Parallel({0, 5, 10}, {0, 0, 0}, 2, 1), 1, 5, -2);
    ExpectPoint(Parallel({0, 5, 10}, {0, 0, 0}, 2, 7), 1, 5, 2);
}

TEST_F(ParallelLine, ARightAngleIsMitred) {
    ExpectPoint(Parallel({0, 10, 10}, {0, 0, 10}, 2, 1), 1, 12, -2);
    ExpectPoint(Parallel({0, 10, 10}, {0, 0, 10}, 2, 2), 1, 8, 2);
}

TEST_F(ParallelLine, AMitreIsAtMostFiveDistancesLong) {
    // A half-angle of 0.1: its sine is below 0.2.
    const Offset o = Parallel({0, 10, 10 - 10 * std::cos(0.2)}, {0, 0, 10 * std::sin(0.2)}, 1, 1);
    EXPECT_NEAR(std::hypot(o.x[1] - 10, o.y[1]), 5.0, 1e-13);
    // A half-angle of 0.21 is mitred in full: 1 / sin 0.21 is 4.797.
    const Offset wide = Parallel({0, 10, 10 - 10 * std::cos(0.42)}, {0, 0, 10 * std::sin(0.42)}, 1, 1);
    EXPECT_NEAR(std::hypot(wide.x[1] - 10, wide.y[1]), 4.7970, 1e-4);
}

TEST_F(ParallelLine, ALineThatDoublesBackHasALengthOfFiveDistances) {
    const Offset o = Parallel({0, 10, 0}, {0, 0, 0}, 1, 1);
    EXPECT_NEAR(std::hypot(o.x[1] - 10, o.y[1]), 5.0, 1e-13);
}

TEST_F(ParallelLine, AClosedSquareStaysClosedWithAllCornersMitred) {
    const Offset o = Parallel({0, 10, 10, 0, 0}, {0, 0, 10, 10, 0}, 1, 1);
    ExpectPoint(o, 0, -1, -1);
    ExpectPoint(o, 1, 11, -1);
    ExpectPoint(o, 2, 11, 11);
    ExpectPoint(o, 3, -1, 11);
    EXPECT_EQ(o.x[0], o.x[4]);
    EXPECT_EQ(o.y[0], o.y[4]);
}

TEST_F(ParallelLine, EndsTwoHundredMillionthsApartAreOpen) {
    const Offset open = Parallel({0, 10, 10, 0, 2e-8}, {0, 0, 10, 10, 0}, 1, 1);
    EXPECT_NEAR(open.x[0], 0, kRounding);
    EXPECT_NEAR(open.y[0], -1, kRounding);
    const Offset closed = Parallel({0, 10, 10, 0, 5e-9}, {0, 0, 10, 10, 0}, 1, 1);
    EXPECT_NEAR(closed.x[0], -1, 1e-7);
}

TEST_F(ParallelLine, ClosingKnowsNoMini) {
    SetMINI(1e-3);
    const Offset open = Parallel({0, 10, 10, 0, 2e-8}, {0, 0, 10, 10, 0}, 1, 1);
    SetMINI(1e-8);
    EXPECT_NEAR(open.x[0], 0, kRounding);
}

TEST_F(ParallelLine, DistanceZeroGivesTheInput) {
    const Offset o = Parallel({0, 10, 13, 2}, {0, 3, 10, 10}, 0, 1);
    EXPECT_EQ(o.x, (std::vector<double>{0, 10, 13, 2}));
    EXPECT_EQ(o.y, (std::vector<double>{0, 3, 10, 10}));
}

TEST_F(ParallelLine, ALegWithoutLengthCountsAsBearingZero) {
    // The doubled vertex: the leg behind it has bearing 0, so its corner is that of a line coming from the left.
    const Offset o = Parallel({0, 10, 10, 20}, {0, 0, 0, 0}, 1, 1);
    EXPECT_NEAR(o.y[1], -1, kRounding);
    EXPECT_NEAR(std::hypot(o.x[2] - 10, o.y[2]), 5.0, 1e-13);
}

TEST_F(ParallelLine, FewerThanTwoPointsWriteNothing) {
    const Offset one = Parallel({1}, {2}, 1, 1);
    EXPECT_EQ(one.ret, 0);
    EXPECT_EQ(one.x[0], -77.0);
    double v[] = {1, 2};
    EXPECT_EQ(parallel(-3, v, v, v, v, 1, 1), 0);
    EXPECT_EQ(parallel(2, nullptr, v, v, v, 1, 1), 0);
    EXPECT_EQ(parallel(2, v, v, v, nullptr, 1, 1), 0);
}

TEST_F(ParallelLine, MitredCornersLieAtTheDistanceFromBothLegs) {
    ZM_TRACE_SEED();
    zm::test::Random random(9);
    for (int run = 0; run < 2000; ++run) {
        std::vector<double> x = {0}, y = {0};
        double bearing = random.Real(0, 6.28);
        for (int i = 0; i < 10; ++i) {
            x.push_back(x.back() + 10 * std::cos(bearing));
            y.push_back(y.back() + 10 * std::sin(bearing));
            bearing += random.Real(-2.6, 2.6);  // half-angles of at least 0.27
        }
        const Offset o = Parallel(x, y, 1.5, random.Int(0, 2));
        for (std::size_t i = 1; i + 1 < x.size(); ++i)
            for (std::size_t j : {i - 1, i})
                ASSERT_NEAR(zm::geometry::LineDist(o.x[i], o.y[i], x[j], y[j], x[j + 1], y[j + 1]), 1.5, 1e-6);
    }
}

TEST_F(ParallelLine, StandsBadNumbers) {
    const double kInf = std::numeric_limits<double>::infinity();
    for (double v : {std::numeric_limits<double>::quiet_NaN(), kInf, -kInf, 1e308})
        EXPECT_EQ(Parallel({0, v, 3, 4, v}, {0, 1, v, 2, v}, v, 1).ret, 1);
}

}  // namespace

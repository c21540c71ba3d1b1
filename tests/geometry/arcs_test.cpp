// Arcs and circles.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "geometry/state.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "tests/support/test_host.h"
#include "zenromath/geometry.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

class Arcs : public testing::Test {
 protected:
    void SetUp() override { zm::geometry::ResetState(); }
    void TearDown() override { zm::geometry::ResetState(); }
};

struct Flat {
    int count = -1;
    std::vector<double> pairs = std::vector<double>(2 * 4002, -77.0);
    double X(int i) const { return pairs[2 * static_cast<std::size_t>(i)]; }
    double Y(int i) const { return pairs[2 * static_cast<std::size_t>(i) + 1]; }
};

Flat Arc(std::vector<double> x, std::vector<double> y, double prec) {
    Flat flat;
    ArcToPoints(static_cast<int>(x.size()), x.data(), y.data(), flat.pairs.data(), &flat.count, prec);
    return flat;
}

Flat Circle(int direction, std::vector<double> x, std::vector<double> y, double prec) {
    Flat flat;
    CircleToPoints(direction, static_cast<int>(x.size()), x.data(), y.data(), flat.pairs.data(), &flat.count, prec);
    return flat;
}

TEST_F(Arcs, ARightAngleOnTheUnitCircleHasItsCentreAndRadius) {
    double x[] = {1, 0, -1};
    double y[] = {0, 1, 0};
    double cx = 5, cy = 5, r = 5;
    EXPECT_EQ(theerP_circle_cr(x, y, cx, cy, r), 1);
    EXPECT_NEAR(cx, 0.0, 5e-16);  // the bearings pass an arc cosine
    EXPECT_NEAR(cy, 0.0, 5e-16);
    EXPECT_NEAR(r, 1.0, 5e-16);
}

TEST_F(Arcs, CollinearAndCoincidentPointsHaveNoCircle) {
    double x[] = {0, 1, 2};
    double y[] = {0, 1, 2};
    double same[] = {3, 3, 3};
    double cx = 5, cy = 6, r = 7;
    EXPECT_EQ(theerP_circle_cr(x, y, cx, cy, r), 0);
    EXPECT_EQ(theerP_circle_cr(same, same, cx, cy, r), 0);
    EXPECT_EQ(theerP_circle_cr(nullptr, y, cx, cy, r), 0);
    EXPECT_EQ(cx, 5.0);
    EXPECT_EQ(cy, 6.0);
    EXPECT_EQ(r, 7.0);
}

TEST_F(Arcs, DrawArc1KeepsTheEndsOfACounterClockwiseArc) {
    double v[7] = {1, 0, 0, 1, -1, 0, 9};
    EXPECT_EQ(DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]), 1);
    const double expected[7] = {0, 0, 1, 0, -1, 0, 1};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(v[i], expected[i]) << i;
}

TEST_F(Arcs, DrawArc1SwapsTheEndsOfAClockwiseArc) {
    double v[7] = {-1, 0, 0, 1, 1, 0, 9};
    EXPECT_EQ(DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]), 1);
    const double expected[7] = {0, 0, 1, 0, -1, 0, 1};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(v[i], expected[i]) << i;
}

TEST_F(Arcs, DrawArc1OfCollinearPointsChangesNothing) {
    double v[7] = {0, 0, 1, 1, 2, 2, 9};
    EXPECT_EQ(DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]), 0);
    const double expected[7] = {0, 0, 1, 1, 2, 2, 9};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(v[i], expected[i]) << i;
    EXPECT_EQ(DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], nullptr), 0);
}

TEST_F(Arcs, DrawArc1GivesBackTheCircleThatThePointsWereTakenFrom) {
    ZM_TRACE_SEED();
    zm::test::Random random(4);
    for (int i = 0; i < 20000; ++i) {
        const double cx = random.Real(-100, 100), cy = random.Real(-100, 100), r = random.Real(1, 50);
        const double a1 = random.Real(0, 6.28);
        const double d2 = random.Real(0.3, 3.0);
        const double d3 = d2 + random.Real(0.3, 2.9);
        const bool clockwise = random.Int(0, 1) == 1;
        const double sign = clockwise ? -1.0 : 1.0;
        double v[7] = {cx + r * std::cos(a1),
                       cy + r * std::sin(a1),
                       cx + r * std::cos(a1 + sign * d2),
                       cy + r * std::sin(a1 + sign * d2),
                       cx + r * std::cos(a1 + sign * d3),
                       cy + r * std::sin(a1 + sign * d3),
                       0};
        const double first[2] = {v[0], v[1]};
        const double last[2] = {v[4], v[5]};
        ASSERT_EQ(DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]), 1);
        // Squares of 150 have last digits of 4e-12; a triangle of at least 0.04 square metres divides them.
        ASSERT_NEAR(v[0], cx, 1e-9);
        ASSERT_NEAR(v[1], cy, 1e-9);
        ASSERT_NEAR(v[6], r, 1e-9);
        ASSERT_EQ(v[2], clockwise ? last[0] : first[0]);
        ASSERT_EQ(v[5], clockwise ? first[1] : last[1]);
    }
}

struct StepCase {
    const char* name;
    double prec, radius, sweep;
    int result, count;
    double step;
};
void PrintTo(const StepCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr double kCap = 0.2617993877991494;
constexpr double kTurn = 6.283185307179586;
const StepCase kSteps[] = {
    {"a_step_of_2_radians_is_capped_to_15_degrees", 1000, 1, 3.141592653589793, 12, 12, kCap},
    {"radius_0_takes_the_greatest_step", 1000, 0, kTurn, 24, 24, kCap},
    {"sweep_0_has_no_step", 1000, 100, 0, 0, 0, 0.02},
    {"a_negative_sweep_counts_by_its_magnitude", 1000, 100, -1, 50, 50, 0.02},
    {"a_count_of_3999_is_kept", 500, 1000, 3.999, 3999, 3999, 0.001},
    {"a_count_of_4000_becomes_3999", 500, 1000, 4.0, 4000, 3999, 0.00100025006251562890},
    {"prec_0_has_as_many_steps_as_there_are", 0, 100, 1, 2147483647, 3999, 0.00025006251562890724},
    {"a_tiny_prec_leaves_32_bits_unharmed", 1e-8, 100, 6, 2147483647, 3999, 0.00150037509377344341},
    {"a_negative_prec_counts_backwards", -1000, 100, 1, -49, -49, -0.02},
};
class ArcSteps : public testing::TestWithParam<StepCase> {};
TEST_P(ArcSteps, CountsAndLimits) {
    const StepCase& c = GetParam();
    double step = -1;
    int count = -1;
    EXPECT_EQ(ArcStepCount(c.prec, c.radius, c.sweep, &step, &count), c.result);
    EXPECT_EQ(count, c.count);
    EXPECT_DOUBLE_EQ(step, c.step);
}
INSTANTIATE_TEST_SUITE_P(Steps, ArcSteps, testing::ValuesIn(kSteps),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Arcs, ACountThatIsNoNumberIsZero) {
    int count = -1;
    EXPECT_EQ(ArcStepCount(kNan, 1, 1, nullptr, &count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(ArcStepCount(0, 0, 1, nullptr, nullptr), 0);
}

TEST_F(Arcs, AHalfCircleOfRadius1Has13Points) {
    const Flat flat = Arc({1, 0, -1}, {0, 1, 0}, 1000);
    EXPECT_EQ(flat.count, 13);
    EXPECT_NEAR(flat.X(6), 0.0, 1e-15);
    EXPECT_NEAR(flat.Y(6), 1.0, 1e-15);
    EXPECT_EQ(flat.X(12), -1.0);
    EXPECT_EQ(flat.Y(12), 0.0);
}

TEST_F(Arcs, AVeryLargeArcHas4000Points) {
    const Flat flat = Arc({1e5, 0, -1e5}, {0, 1e5, 0}, 1000);
    EXPECT_EQ(flat.count, 4000);
    EXPECT_EQ(flat.X(3999), -1e5);
    EXPECT_EQ(flat.X(4000), -77.0);
}

// Seen from nearer than the tolerance all bearings are 0, so the sweep is 0.
TEST_F(Arcs, ASweepOfZeroGivesTheEndPointOnly) {
    const zm::test::ScopedTolerance wide(1.0);
    const Flat flat = Arc({0.9, 0, -0.9}, {0, 0.9, 0}, 1000);
    EXPECT_EQ(flat.count, 1);
    EXPECT_EQ(flat.X(0), -0.9);
    EXPECT_EQ(flat.Y(0), 0.0);
    EXPECT_EQ(flat.X(1), -77.0);
}

TEST_F(Arcs, AnArcRunsThroughItsMiddlePointWhicheverWayItIsGiven) {
    ZM_TRACE_SEED();
    zm::test::Random random(5);
    for (int run = 0; run < 3000; ++run) {
        const double start = random.Real(0, 6.28);
        const double sign = random.Int(0, 1) == 1 ? -1.0 : 1.0;
        const double toMiddle = random.Real(0.5, 2.5);
        const double toEnd = toMiddle + random.Real(0.5, 3.0);
        std::vector<double> x, y;
        for (double d : {0.0, toMiddle, toEnd}) {
            x.push_back(30 + 10 * std::cos(start + sign * d));
            y.push_back(40 + 10 * std::sin(start + sign * d));
        }
        const Flat flat = Arc(x, y, 50);
        ASSERT_GE(flat.count, 3);
        double nearest = 1e9;
        for (int i = 0; i < flat.count; ++i) {
            ASSERT_NEAR(std::hypot(flat.X(i) - 30, flat.Y(i) - 40), 10.0, 1e-6);
            nearest = std::min(nearest, std::hypot(flat.X(i) - x[1], flat.Y(i) - y[1]));
        }
        ASSERT_LT(nearest, 0.06);  // steps are 0.1 long, the one before the end up to half as long again
        ASSERT_NEAR(flat.X(0), x[0], 1e-6);
        ASSERT_EQ(flat.X(flat.count - 1), x[2]);
    }
}

TEST_F(Arcs, ACircleOfCoincidentPointsIs24PointsAtOnePlaceAndTheClosure) {
    const Flat flat = Circle(1, {3, 3}, {4, 4}, 1000);
    EXPECT_EQ(flat.count, 25);
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(flat.X(i), 3.0);
        EXPECT_EQ(flat.Y(i), 4.0);
    }
}

TEST_F(Arcs, DirectionMinus1GoesClockwiseFromTheSameFirstPoint) {
    const Flat left = Circle(1, {3, 0}, {0, 0}, 1000);
    const Flat right = Circle(-1, {3, 0}, {0, 0}, 1000);
    EXPECT_EQ(left.count, 25);
    EXPECT_EQ(right.count, 25);
    EXPECT_EQ(left.X(0), 3.0);
    EXPECT_EQ(right.X(0), 3.0);
    EXPECT_GT(left.Y(1), 0.0);
    EXPECT_EQ(right.Y(1), -left.Y(1));
    EXPECT_EQ(left.X(24), left.X(0));
}

TEST_F(Arcs, ACircleStartsAtBearingZeroAndNotAtAnInputPoint) {
    const Flat flat = Circle(1, {0, 10}, {7, 7}, 1000);  // the centre is the second point
    EXPECT_EQ(flat.X(0), 20.0);
    EXPECT_EQ(flat.Y(0), 7.0);
}

TEST_F(Arcs, ACircleOfOnePointOrThreeOnALineWritesNothing) {
    EXPECT_EQ(Circle(1, {3}, {4}, 1000).count, -1);
    EXPECT_EQ(Circle(1, {0, 1, 2}, {0, 1, 2}, 1000).count, -1);
    EXPECT_EQ(Arc({0, 1}, {0, 1}, 1000).count, -1);
}

TEST_F(Arcs, BadPrecAndCoordinatesStayWithinTheRoom) {
    for (double prec : {0.0, -1000.0, 1e-8, 1e-300, kNan, kInf, -kInf}) {
        for (double v : {1.0, 1e300, kNan, kInf}) {
            const Flat arc = Arc({v, 0, -1}, {0, 1, 0}, prec);
            EXPECT_LE(arc.count, 4000);
            EXPECT_NE(arc.count, 0);
            const Flat circle = Circle(1, {v, 0}, {0, 1}, prec);
            EXPECT_LE(circle.count, 4000);
            EXPECT_GE(circle.count, 1);
        }
    }
}

struct Straight {
    int count;
    std::vector<double> pairs;
};
Straight Straighten(std::vector<double> x, std::vector<double> y, const char* codes, double prec = 1000) {
    Straight s{0, std::vector<double>(2 * 4001 * (x.size() + 1))};
    s.count = MulArc2Straight(static_cast<int>(x.size()), x.data(), y.data(), codes, s.pairs.data(), prec);
    return s;
}

TEST_F(Arcs, MulArc2StraightWithAllCodes1CopiesTheList) {
    const Straight s = Straighten({1, 2, 3, 4}, {5, 6, 7, 8}, "1111");
    EXPECT_EQ(s.count, 4);
    const std::vector<double> expected = {1, 5, 2, 6, 3, 7, 4, 8};
    EXPECT_EQ(std::vector<double>(s.pairs.begin(), s.pairs.begin() + 8), expected);
}

TEST_F(Arcs, MulArc2StraightJoinsAStraightRunAndAnArcWithoutDoublingTheirPoint) {
    // Straight to (1, 0), then the half circle through (0, 1): its 13 points begin with the end of the straight run.
    const Straight s = Straighten({3, 2, 1, 0, -1}, {0, 0, 0, 1, 0}, "11333");
    EXPECT_EQ(s.count, 15);
    EXPECT_EQ(s.pairs[0], 3.0);
    EXPECT_EQ(s.pairs[2], 2.0);
    EXPECT_NEAR(s.pairs[4], 1.0, 1e-15);  // written once, as the arc's first point
    EXPECT_NEAR(s.pairs[16], 0.0, 1e-15);
    EXPECT_NEAR(s.pairs[17], 1.0, 1e-15);
    EXPECT_EQ(s.pairs[28], -1.0);
}

TEST_F(Arcs, MulArc2StraightOfTwoPointsIsOneRunWhateverTheSecondCode) {
    EXPECT_EQ(Straighten({1, 2}, {3, 4}, "19").count, 2);
    EXPECT_EQ(Straighten({1, 2}, {3, 4}, "14").count, 2);
}

TEST_F(Arcs, MulArc2StraightReportsARunOfOnePointAndGoesOn) {
    zm::test::TestHost host;
    const zm::test::ScopedTolerance wide(1.0);  // an arc of no sweep, as above
    const Straight s = Straighten({0.9, 0, -0.9, 5}, {0, 0.9, 0, 6}, "3311");
    EXPECT_EQ(s.count, 2);
    EXPECT_EQ(s.pairs[0], -0.9);
    EXPECT_EQ(s.pairs[2], 5.0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_NE(host.boxes[0].text.find("Segment fitting points<2"), std::string::npos);
    EXPECT_NE(host.boxes[0].text.find("MulArc2Straight"), std::string::npos);
}

TEST_F(Arcs, MulArc2StraightEndsTheProcessWhenTheReportIsAnsweredYes) {
    zm::test::TestHost host;
    host.answers = {IDYES};
    const zm::test::ScopedTolerance wide(1.0);
    EXPECT_THROW(Straighten({0.9, 0, -0.9, 5}, {0, 0.9, 0, 6}, "3311"), zm::test::ProcessEnded);
}

TEST_F(Arcs, MulArc2StraightOfFewerThanTwoPointsIsZero) {
    EXPECT_EQ(Straighten({1}, {2}, "1").count, 0);
    double v[] = {1, 2};
    EXPECT_EQ(MulArc2Straight(-2, v, v, "11", v, 1000), 0);
    EXPECT_EQ(MulArc2Straight(2, v, v, nullptr, v, 1000), 0);
    EXPECT_EQ(MulArc2Straight(2, nullptr, v, "11", v, 1000), 0);
}

TEST_F(Arcs, MulArc2StraightIntoTwoArraysGivesTheSamePoints) {
    double x[] = {3, 2, 1, 0, -1};
    double y[] = {0, 0, 0, 1, 0};
    const Straight s = Straighten({3, 2, 1, 0, -1}, {0, 0, 0, 1, 0}, "11333");
    double outX[15];
    double outY[15];
    ASSERT_EQ(MulArc2Straight(5, x, y, "11333", 15, outX, outY, 1000), 15);
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(outX[i], s.pairs[2 * static_cast<std::size_t>(i)]);
        EXPECT_EQ(outY[i], s.pairs[2 * static_cast<std::size_t>(i) + 1]);
    }
}

TEST_F(Arcs, MulArc2StraightIntoTwoArraysStopsAtTheirRoomAndSaysSo) {
    zm::test::TestHost host;
    double x[] = {3, 2, 1, 0, -1};
    double y[] = {0, 0, 0, 1, 0};
    double outX[5] = {0, 0, 0, 0, -77};
    double outY[5] = {0, 0, 0, 0, -77};
    EXPECT_EQ(MulArc2Straight(5, x, y, "11333", 4, outX, outY, 1000), 4);
    EXPECT_EQ(outX[4], -77.0);
    EXPECT_EQ(outY[4], -77.0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_NE(host.boxes[0].text.find("maxOut"), std::string::npos);
    EXPECT_EQ(MulArc2Straight(5, x, y, "11333", 0, outX, outY, 1000), 0);
    EXPECT_EQ(MulArc2Straight(5, x, y, "11333", -7, outX, outY, 1000), 0);
}

TEST_F(Arcs, MulArc2StraightLeavesItsScratchSpaceForTheNextCall) {
    double x[] = {1, 2};
    double y[] = {3, 4};
    double outX[2];
    double outY[2];
    EXPECT_EQ(zm::geometry::state().straightened.values, nullptr);
    ASSERT_EQ(MulArc2Straight(2, x, y, "11", 2, outX, outY, 1000), 2);
    const double* left = zm::geometry::state().straightened.values;
    ASSERT_NE(left, nullptr);
    ASSERT_EQ(MulArc2Straight(2, x, y, "11", 2, outX, outY, 1000), 2);
    EXPECT_EQ(zm::geometry::state().straightened.values, left);
}

}  // namespace

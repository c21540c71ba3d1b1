// The short forms of geometry are taken where they should be, and the full ones where these cannot be sure.
#include "runtime/uses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "geometry/exact/course.h"
#include "geometry/state.h"
#include "zenromath/geometry.h"

namespace {

using namespace zm::uses;
using zm::geometry::Legs;
using zm::geometry::Pair;

class Uses : public testing::Test {
 protected:
    void SetUp() override {
        zm::geometry::ResetState();
        Clear();
    }
    static void Clear() { std::fill(std::begin(counts), std::end(counts), 0); }
};

TEST_F(Uses, StepsOnTheSheetOfAProjectionNeedNoBearing) {
    for (int i = 0; i < 1000; ++i) {
        const double angle = 0.1 + 0.006 * i;
        const Pair at = {512340.25 + i, 3391230.5};
        const Legs legs(at, at + 30.0 * Pair{std::cos(angle), std::sin(angle)});
        legs.Ahead(1.7);
    }
    EXPECT_GE(counts[stepSure], 990u);
    EXPECT_LE(counts[stepByBearing], 10u);
}

TEST_F(Uses, StepsFromTheOriginAreTakenByTheBearing) {
    // All digits of the offset are digits of the sum.
    for (int i = 0; i < 1000; ++i) {
        const double angle = 0.1 + 0.006 * i;
        const Legs legs(Pair{0.0, 0.0}, 30.0 * Pair{std::cos(angle), std::sin(angle)});
        legs.Ahead(1.7);
    }
    EXPECT_EQ(counts[stepSure], 0u);
    EXPECT_EQ(counts[stepByBearing], 1000u);
}

TEST_F(Uses, ALevelStepNeedsNoBearingAndAShortLegHasNone) {
    EXPECT_EQ(Legs(Pair{5.0, 5.0}, Pair{3.0, 5.0}).Ahead(0.5)[0], 4.5);
    EXPECT_EQ(counts[stepSure], 1u);
    EXPECT_EQ(counts[stepByBearing], 0u);
    const Legs none(Pair{5.0, 5.0}, Pair{5.0, 5.0 + 1e-9});  // within the tolerance: its bearing is 0
    EXPECT_EQ(none.Ahead(1.0)[0], 6.0);
    EXPECT_EQ(counts[stepByBearing], 1u);
}

// A line of 1000 segments that one segment crosses once.
TEST_F(Uses, OfALongLineOnlySegmentsNearTheOtherAreAsked) {
    std::vector<double> line;
    for (int i = 0; i <= 1000; ++i) line.insert(line.end(), {1.0 * i, 0.25 * (i % 2)});
    double x = 0.0, y = 0.0;
    EXPECT_EQ(norm_intersect(990.5, -3.0, 990.5, 3.0, line.data(), 1001, x, y), 991);
    EXPECT_EQ(counts[crossingMissed], 990u);
    EXPECT_EQ(counts[crossingAsked], 1u);
    Clear();
    line[1] = 1e101;  // a coordinate of which no side is sure
    EXPECT_EQ(norm_intersect(990.5, -3.0, 990.5, 3.0, line.data(), 1001, x, y), 991);
    EXPECT_EQ(counts[crossingMissed], 989u);
    EXPECT_EQ(counts[crossingAsked], 2u);
    Clear();
    SetMINI(-1.0);
    norm_intersect(990.5, -3.0, 990.5, 3.0, line.data(), 1001, x, y);
    EXPECT_EQ(counts[crossingMissed], 0u);
    EXPECT_EQ(counts[crossingAsked], 1000u);
}

TEST_F(Uses, HeightsAreLookedUpInTheGridOnceItPays) {
    std::vector<double> x, y, h;
    for (int i = 0; i < 10000; ++i) {
        x.push_back(i % 100);
        y.push_back(i / 100);
        h.push_back(i);
    }
    Find4H table(10000, x.data(), y.data(), h.data());
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(table.FindH(i % 100, 50.0), 5000.0 + i % 100);
    EXPECT_EQ(counts[heightByScan], 8u);
    EXPECT_EQ(counts[heightByGrid], 992u);
    // A point that came later is looked at by itself, where the grid has none there.
    double more[] = {500.0};
    table.AppendDate(1, more, more, more);
    EXPECT_EQ(table.FindH(3.0, 50.0), 5003.0);
    EXPECT_EQ(counts[heightByGrid], 993u);
    EXPECT_EQ(table.FindH(500.0, 500.0), 500.0);
    EXPECT_EQ(counts[heightByScan], 9u);
}

TEST_F(Uses, EdgesWellAboveAndBelowAPointAreNotTested) {
    // A comb of 100 teeth that stand on a long base.
    std::vector<double> x, y;
    for (int i = 0; i < 100; ++i) {
        x.insert(x.end(), {1.0 * i, i + 0.2, i + 0.4, i + 0.6});
        y.insert(y.end(), {10.0, 12.0, 12.0, 10.0});
    }
    x.insert(x.end(), {100.0, 0.0});
    y.insert(y.end(), {0.0, 0.0});
    EXPECT_EQ(PtInPolyEdge(static_cast<int>(x.size()), x.data(), y.data(), 50.0, 5.0), 1);
    EXPECT_EQ(counts[edgePassed], 400u);
    EXPECT_EQ(counts[edgeTested], 2u);
    Clear();
    EXPECT_EQ(PtInPolyEdge(static_cast<int>(x.size()), x.data(), y.data(), 50.3, 12.0), -1);
    EXPECT_EQ(counts[edgePassed], 50u);  // between the teeth, up to the one it lies on
    EXPECT_GT(counts[edgeTested], 100u);
}

}  // namespace

// Ways in steps: every place and every distance is that of XYSA, step by step, bit for bit.
#include "geometry/exact/course.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "tests/geometry/bits.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::geometry::Course;
using zm::geometry::Legs;
using zm::geometry::Pair;
using zm::test::Bits;
using zm::test::Random;
using zm::test::ScopedTolerance;

struct Line {
    double x, y, toX, toY;
};
void PrintTo(const Line& line, std::ostream* out) {
    *out << line.x << ' ' << line.y << ' ' << line.toX << ' ' << line.toY;
}

// Goes along a line in these steps, as far as it reaches, and a step beyond.
template <class Way>
void ExpectTheStepsOfXysa(const Line& line, const std::vector<double>& steps) {
    Way way(Pair{line.x, line.y}, Pair{line.toX, line.toY});
    double x = line.x, y = line.y;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        double toX = line.toX, toY = line.toY, distance = 0.0, bearing = 0.0;
        XYSA(x, y, &toX, &toY, &distance, &bearing, 0);
        ASSERT_EQ(Bits(way.distance()), Bits(distance)) << testing::PrintToString(line) << " step " << i;
        if (way.HasDirection()) {
            ASSERT_NEAR(way.direction()[0], std::cos(bearing), 1e-7) << testing::PrintToString(line) << " step " << i;
            ASSERT_NEAR(way.direction()[1], std::sin(bearing), 1e-7) << testing::PrintToString(line) << " step " << i;
        }
        double step = steps[i], nextX = 0.0, nextY = 0.0;
        XYSA(x, y, &nextX, &nextY, &step, &bearing, 1);
        const Pair ahead = way.Ahead(step);
        ASSERT_EQ(Bits(ahead[0]), Bits(nextX)) << testing::PrintToString(line) << " step " << i << ": " << step;
        ASSERT_EQ(Bits(ahead[1]), Bits(nextY)) << testing::PrintToString(line) << " step " << i << ": " << step;
        if (!(distance >= step)) break;
        way.GoTo(ahead, step);
        x = nextX;
        y = nextY;
    }
}

void ExpectBothWays(const Line& line, const std::vector<double>& steps) {
    ExpectTheStepsOfXysa<Course>(line, steps);
    if (!testing::Test::HasFatalFailure()) ExpectTheStepsOfXysa<Legs>(line, steps);
}

std::vector<double> RandomSteps(Random& random, double length) {
    std::vector<double> steps;
    const double mean = length * std::pow(10.0, random.Real(-2.0, 0.0));
    for (int i = 0; i < 60; ++i) steps.push_back(mean * random.Real(0.0, 2.0));
    return steps;
}

TEST(Ways, HaveTheBitsOfEachStepAtAllSizesAndDirections) {
    ZM_TRACE_SEED();
    Random random(91);
    for (int round = 0; round < 30000; ++round) {
        const double origin = std::pow(10.0, random.Real(-3.0, 8.0));
        const double length = std::pow(10.0, random.Real(-8.0, 6.0));
        const double angle = random.Real(0.0, 6.3);
        const Line line = {random.Real(-origin, origin), random.Real(-origin, origin), 0.0, 0.0};
        ExpectBothWays({line.x, line.y, line.x + length * std::cos(angle), line.y + length * std::sin(angle)},
                       RandomSteps(random, length));
        if (HasFatalFailure()) return;
    }
}

// Where maps are: a projected sheet, a local system, and a line of even length whose pattern ends on its vertex.
TEST(Ways, HaveTheBitsOfEachStepOnMaps) {
    ZM_TRACE_SEED();
    Random random(92);
    for (const Line& corner : {Line{512000.0, 3391000.0, 0, 0}, Line{1000.0, 2000.0, 0, 0}, Line{0.0, 0.0, 0, 0}})
        for (int round = 0; round < 5000; ++round) {
            const double x = corner.x + random.Real(0.0, 100.0), y = corner.y + random.Real(0.0, 100.0);
            const double angle = random.Real(0.0, 6.3);
            ExpectBothWays({x, y, x + 10.0 * std::cos(angle), y + 10.0 * std::sin(angle)},
                           std::vector<double>(60, 0.2));
            if (HasFatalFailure()) return;
        }
}

// The course that was aimed for is lost where roundings are large against what is left.
TEST(Ways, HaveTheBitsOfEachStepFarOutAndNearTheGoal) {
    ZM_TRACE_SEED();
    Random random(93);
    for (int round = 0; round < 20000; ++round) {
        const double origin = std::pow(10.0, random.Real(6.0, 13.0));
        const double x = random.Real(-origin, origin), y = random.Real(-origin, origin);
        const double angle = random.Real(0.0, 6.3);
        std::vector<double> steps;
        for (double left = 10.0; steps.size() < 40; left /= 2.0) steps.push_back(left / 2.0);
        ExpectBothWays({x, y, x + 10.0 * std::cos(angle), y + 10.0 * std::sin(angle)}, steps);
        if (HasFatalFailure()) return;
    }
}

TEST(Ways, HaveTheBitsOfEachStepWhereNearlyLevelOrAlongAnAxis) {
    ZM_TRACE_SEED();
    Random random(94);
    for (int round = 0; round < 20000; ++round) {
        const double origin = std::pow(10.0, random.Real(-1.0, 7.0));
        const double x = random.Real(0.0, origin), y = random.Int(0, 3) == 0 ? 0.0 : random.Real(0.0, origin);
        const double along = random.Int(0, 1) * 40.0 - 20.0;
        const double across =
            random.Int(0, 2) == 0 ? 0.0 : (random.Int(0, 1) * 2.0 - 1.0) * std::pow(10.0, random.Real(-12.0, 0.0));
        ExpectBothWays({x, y, x + along, y + across}, RandomSteps(random, 20.0));
        ExpectBothWays({x, y, x + across, y + along}, RandomSteps(random, 20.0));
        if (HasFatalFailure()) return;
    }
}

TEST(Ways, BackAndOverTheGoalHaveTheBitsOfEachStep) {
    for (const double angle : {0.0, 0.7, 2.5, std::numbers::pi, 4.0, 6.0})
        for (const double x : {0.0, 3.0, 512000.0})
            ExpectBothWays({x, x, x + 10.0 * std::cos(angle), x + 10.0 * std::sin(angle)},
                           {1.0, -3.0, 0.0, 5.0, -0.5, 6.9, 0.6, 1e-12, -1e-12, 3.0});
}

TEST(Ways, OfNumbersThatAreNoLengthsGiveWhatXysaGives) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    for (const double dx : {0.0, 5.0, 1e-200, 1e-9, 1e160, 1e308, kInf, -kInf, kNan})
        for (const double dy : {0.0, -5.0, 1e-200, 1e-9, 1e160, -1e308, kInf, -kInf, kNan})
            for (const double step : {1.0, 0.0, -1.0, 1e-201, 1e300, kInf, kNan}) {
                ExpectBothWays({0.0, 0.0, dx, dy}, {step, step, step});
                ExpectBothWays({kNan, kInf, dx, dy}, {step, step});
            }
}

TEST(Ways, WithinTheToleranceHaveTheBearingOfNone) {
    for (const double tolerance : {0.5, 0.0, -1.0}) {
        const ScopedTolerance scoped(tolerance);
        ExpectBothWays({1.0, 2.0, 1.3, 2.4}, {0.1, 0.1});
        ExpectBothWays({1.0, 2.0, 4.0, 6.0}, {1.0, 2.0, 1.75, 0.125, 0.0625, 0.0625, 1.0});
        ExpectBothWays({1.0, 2.0, 6.0, 2.0}, {1.0, 2.0, 1.75, 0.125, 0.0625, 0.0625, 1.0});
        ExpectBothWays({1.0, 2.0, 1.0, 2.0}, {2.0, 0.0});
    }
}

TEST(Ways, KnowTheirDirectionWhereTheyAreNoLessThanFlat) {
    const auto hasDirection = [](double dx, double dy) {
        const Pair from = {100.0, 200.0};
        const bool course = Course(from, from + Pair{dx, dy}).HasDirection();
        EXPECT_EQ(course, Legs(from, from + Pair{dx, dy}).HasDirection());
        return course;
    };
    EXPECT_TRUE(hasDirection(3.0, 4.0));
    EXPECT_TRUE(hasDirection(-3.0, 0.0));
    EXPECT_TRUE(hasDirection(0.0, 4.0));
    EXPECT_FALSE(hasDirection(10.0, 1e-6));
    EXPECT_FALSE(hasDirection(0.0, 0.0));
}

}  // namespace

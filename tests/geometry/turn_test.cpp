// Turns: every result is that of the bearing's own cosine and sine, bit for bit.
#include "geometry/exact/turn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/geometry/bits.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::geometry::Pair;
using zm::geometry::Turn;
using zm::geometry::TurnedFigure;
using zm::test::Bits;
using zm::test::Random;
using zm::test::ScopedTolerance;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Ends {
    double x, y, toX, toY;
};

// What a turn gives for a leg against XYSA and the plain formula of a turned figure.
void ExpectTheBitsOfTheBearing(const Ends& leg, double step, double u, double v) {
    double toX = leg.toX, toY = leg.toY, distance = 0.0, bearing = 0.0;
    XYSA(leg.x, leg.y, &toX, &toY, &distance, &bearing, 0);
    double x = 0.0, y = 0.0;
    XYSA(leg.x, leg.y, &x, &y, &step, &bearing, 1);

    const zm::geometry::Leg ahead(leg.toX - leg.x, leg.toY - leg.y);
    ASSERT_EQ(Bits(ahead.distance()), Bits(distance));
    const Pair stepped = Step(ahead, Pair{leg.x, leg.y}, step);
    ASSERT_EQ(Bits(stepped[0]), Bits(x)) << leg.x << ' ' << leg.y << ' ' << leg.toX << ' ' << leg.toY << ' ' << step;
    ASSERT_EQ(Bits(stepped[1]), Bits(y)) << leg.x << ' ' << leg.y << ' ' << leg.toX << ' ' << leg.toY << ' ' << step;

    const double c = std::cos(bearing);
    const double s = std::sin(bearing);
    Turn fresh(ahead);
    const Pair turned = TurnedFigure(fresh, leg.x, leg.y, 0.5).Of(u, v);
    ASSERT_EQ(Bits(turned[0]), Bits(leg.x + (u * c - v * s) * 0.5));
    ASSERT_EQ(Bits(turned[1]), Bits(leg.y + (v * c + u * s) * 0.5));
    ASSERT_EQ(fresh.IsBelow(1e-6), std::fabs(bearing) < 1e-6);
    ASSERT_EQ(Bits(fresh.Angle()), Bits(bearing));
}

TEST(Turn, OfALegGivesTheBitsOfItsBearingAtAllSizesAndDirections) {
    ZM_TRACE_SEED();
    Random random(61);
    for (int round = 0; round < 300000; ++round) {
        const double origin = std::pow(10.0, random.Real(-3.0, 8.0));
        const double length = std::pow(10.0, random.Real(-10.0, 6.0));
        const double angle = random.Real(0.0, 6.3);
        Ends leg{random.Real(-origin, origin), random.Real(-origin, origin), 0.0, 0.0};
        leg.toX = leg.x + length * std::cos(angle);
        leg.toY = leg.y + length * std::sin(angle);
        const double step = length * random.Real(-0.1, 1.1);
        ExpectTheBitsOfTheBearing(leg, step, random.Real(-1.0, 1.0), random.Real(-1.0, 1.0));
        if (HasFatalFailure()) return;
    }
}

// Where the arc cosine tells least of the sine.
TEST(Turn, OfALegThatIsNearlyLevelGivesTheBitsOfItsBearing) {
    ZM_TRACE_SEED();
    Random random(62);
    for (int round = 0; round < 300000; ++round) {
        Ends leg{random.Real(0.0, 1e5), random.Real(0.0, 1e5), 0.0, 0.0};
        leg.toX = leg.x + random.Int(0, 1) * 40.0 - 20.0;
        leg.toY = leg.y + (random.Int(0, 1) * 2.0 - 1.0) * std::pow(10.0, random.Real(-12.0, 0.0));
        ExpectTheBitsOfTheBearing(leg, random.Real(0.0, 20.0), random.Real(-1.0, 1.0), random.Real(-1.0, 1.0));
        if (HasFatalFailure()) return;
    }
}

TEST(Turn, OfALegAlongAnAxisGivesTheBitsOfItsBearing) {
    for (const double at : {0.0, 1.0, 1000.0, 512345.678, -7.25})
        for (const double dx : {-3.0, 0.0, 3.0})
            for (const double dy : {-3.0, 0.0, 3.0})
                ExpectTheBitsOfTheBearing({at, at, at + dx, at + dy}, 1.5, 0.3, 0.2);
}

TEST(Turn, OfALegOfNumbersThatAreNoLengthsGivesWhatTheBearingGives) {
    for (const double dx : {0.0, 5.0, 1e-200, 1e-9, 1e160, 1e308, kInf, -kInf, kNan})
        for (const double dy : {0.0, -5.0, 1e-200, 1e-9, 1e160, -1e308, kInf, -kInf, kNan}) {
            ExpectTheBitsOfTheBearing({0.0, 0.0, dx, dy}, 1.0, 0.5, 0.5);
            ExpectTheBitsOfTheBearing({0.0, 0.0, dx, dy}, kInf, kInf, 0.5);
            ExpectTheBitsOfTheBearing({kInf, kNan, dx, dy}, 1.0, kNan, 0.5);
        }
}

TEST(Turn, OfALegWithinTheToleranceIsNone) {
    const ScopedTolerance coarse(0.5);
    ExpectTheBitsOfTheBearing({1.0, 2.0, 1.3, 2.4}, 2.0, 0.3, 0.2);
    ExpectTheBitsOfTheBearing({1.0, 2.0, 1.0, 2.6}, 2.0, 0.3, 0.2);
    const ScopedTolerance none(-1.0);
    ExpectTheBitsOfTheBearing({1.0, 2.0, 1.0, 2.0}, 2.0, 0.3, 0.2);
}

TEST(Turn, ByAnAngleGivesTheBitsOfItsCosineAndSine) {
    ZM_TRACE_SEED();
    Random random(63);
    for (int round = 0; round < 1000; ++round) {
        const double angle = round == 0 ? 3.141592653589793 : round == 1 ? 0.0 : random.Real(-20.0, 20.0);
        Turn turn(angle);
        const Pair place = TurnedFigure(turn, 10.0, 20.0, 2.0).Of(0.3, -0.7);
        const double c = std::cos(angle), s = std::sin(angle);
        ASSERT_EQ(Bits(place[0]), Bits(10.0 + (0.3 * c - -0.7 * s) * 2.0));
        ASSERT_EQ(Bits(place[1]), Bits(20.0 + (-0.7 * c + 0.3 * s) * 2.0));
        ASSERT_EQ(turn.Angle(), angle);
        ASSERT_EQ(turn.IsBelow(1e-6), angle == 0.0);
    }
}

}  // namespace

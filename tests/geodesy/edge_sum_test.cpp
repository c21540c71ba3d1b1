#include "geodesy/edge_sum.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/random.h"

namespace {

using zm::geodesy::Edge;
using zm::geodesy::EquatorSum;
using zm::geodesy::MeridianSum;

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kA = 6378137.0;
constexpr double kE2 = 0.0066943800229;
constexpr double kMultiples[5] = {1.0033640898209764, -0.0011240254364, 1.6989886e-06, -2.7162e-09, 4.36e-12};

// The defining sums over the pieces in long double, and the sum of the pieces' magnitudes.
struct Reference {
    long double sum = 0.0L;
    long double magnitude = 0.0L;
};

Reference EquatorPieces(const Edge& edge) {
    const long double e2 = kE2;
    const long double G = static_cast<long double>(kA) * kA * (1.0L - e2);
    const long double d = (static_cast<long double>(edge.B1) - edge.B0) / edge.pieces;
    const long double width = (static_cast<long double>(edge.L1) - edge.L0) / edge.pieces;
    Reference r;
    for (long j = 0; j < static_cast<long>(edge.pieces); ++j) {
        const long double s = std::sin(edge.B0 + (j + 0.5L) * d);
        const long double s2 = s * s;
        const long double F =
            s + s * s2 *
                    (2.0L / 3 * e2 +
                     s2 * (3.0L / 5 * e2 * e2 + s2 * (4.0L / 7 * e2 * e2 * e2 + s2 * 5.0L / 9 * e2 * e2 * e2 * e2)));
        r.sum += F * G * width;
        r.magnitude += std::abs(F * G * width);
    }
    return r;
}

Reference MeridianPieces(const Edge& edge, double b) {
    const long double factor = 2.0L * b * b;
    const long double d = (static_cast<long double>(edge.B1) - edge.B0) / edge.pieces;
    const long double width = (static_cast<long double>(edge.L1) - edge.L0) / edge.pieces;
    Reference r;
    for (long j = 0; j < static_cast<long>(edge.pieces); ++j) {
        const long double B = edge.B0 + (j + 0.5L) * d;
        long double T = 0.0L;
        for (int i = 0; i < 5; ++i) {
            const int q = 2 * i + 1;
            T += kMultiples[i] * std::sin(q * d / 2) * std::cos(q * B);
        }
        const long double piece = T * factor * (edge.L0 + (j + 0.5L) * width);
        r.sum += piece;
        r.magnitude += std::abs(piece);
    }
    return r;
}

Edge RandomEdge(zm::test::Random& random, double length, const zm::geodesy::PieceRule& rule) {
    Edge e{};
    e.B0 = random.Real(-80.0, 80.0) * kDegree;
    e.L0 = random.Real(-3.0, 135.0) * kDegree;
    e.B1 = e.B0 + random.Real(-length, length) * kDegree;
    e.L1 = e.L0 + random.Real(-length, length) * kDegree;
    e.pieces = zm::geodesy::PieceCount(rule, e.B1 - e.B0, e.L1 - e.L0);
    return e;
}

// 100,000 edges at the standard step: closed form and plain loop agree within 1e-12 of the sum of the magnitudes.
TEST(EdgeSums, ClosedFormAgreesWithTheLoopAtTheStandardStep) {
    ZM_TRACE_SEED();
    zm::test::Random random(31);
    const auto rule = zm::geodesy::PieceRuleOf(kA, kE2, 0.00027778);
    const double b = kA * std::sqrt(1.0 - kE2);
    const EquatorSum equator(kA, kE2);
    const MeridianSum meridian(kMultiples, b);
    for (int i = 0; i < 100000; ++i) {
        const double lengths[] = {0.0005, 0.005, 0.02, 0.1};
        const Edge e = RandomEdge(random, lengths[i % 4], rule);
        const double equatorLoop = equator.Loop(e);
        const double meridianLoop = meridian.Loop(e);
        // Along such short edges the pieces have one sign, except beside equator and meridian.
        const double sinB = std::max(std::abs(std::sin(e.B0)), std::abs(std::sin(e.B1)));
        const double farL = std::max(std::abs(e.L0), std::abs(e.L1));
        const double equatorMagnitude = kA * kA * std::abs(e.L1 - e.L0) * sinB;
        const double meridianMagnitude = kA * kA * std::abs(std::sin(e.B1) - std::sin(e.B0)) * farL;
        ASSERT_NEAR(equator.Of(e), equatorLoop, 1e-12 * equatorMagnitude) << i;
        ASSERT_NEAR(meridian.Of(e), meridianLoop, 1e-12 * meridianMagnitude + 1e-9) << i;
        if (zm::geodesy::HasClosedForm(e.pieces, e.B1 - e.B0)) {
            ASSERT_NEAR(equator.Closed(e), equatorLoop, 1e-12 * equatorMagnitude) << i;
            ASSERT_NEAR(meridian.Closed(e), meridianLoop, 1e-12 * meridianMagnitude + 1e-9) << i;
        }
    }
}

// Extreme edges, where the loop itself loses more, against a sum in long double.
TEST(EdgeSums, ClosedFormAgreesWithLongDoubleOnExtremeEdges) {
    ZM_TRACE_SEED();
    zm::test::Random random(32);
    const double b = kA * std::sqrt(1.0 - kE2);
    const EquatorSum equator(kA, kE2);
    const MeridianSum meridian(kMultiples, b);
    for (int i = 0; i < 600; ++i) {
        Edge e{};
        e.pieces = std::floor(std::exp(random.Real(std::log(8.0), std::log(20000.0))));
        e.B0 = random.Real(-1.5, 1.5);
        e.L0 = random.Real(-1.0, 2.5);
        switch (i % 6) {
            case 0:
                e.B1 = random.Real(-1.5, 1.5);
                break;
            case 1:
                e.B1 = -e.B0 * (1.0 + random.Real(-1e-12, 1e-12));
                break;  // centred on the equator
            case 2:
                e.B1 = std::nextafter(e.B0, 9.0);
                break;
            case 3:
                e.B1 = e.B0 + random.Real(-1e-12, 1e-12);
                break;
            case 4:
                e.B1 = e.B0 + random.Real(-0.06, 0.06);
                break;  // about the border of the small-angle series
            default:
                e.B1 = e.B0 + random.Real(-0.3, 0.3);
                break;
        }
        e.L1 = i % 5 == 0 ? -e.L0 * (1.0 + random.Real(-1e-12, 1e-12)) : random.Real(-1.0, 2.5);
        if (!zm::geodesy::HasClosedForm(e.pieces, e.B1 - e.B0)) continue;
        const Reference equatorSum = EquatorPieces(e);
        const Reference meridianSum = MeridianPieces(e, b);
        EXPECT_NEAR(equator.Closed(e), static_cast<double>(equatorSum.sum),
                    3e-15 * static_cast<double>(equatorSum.magnitude))
            << i;
        EXPECT_NEAR(meridian.Closed(e), static_cast<double>(meridianSum.sum),
                    4e-15 * static_cast<double>(meridianSum.magnitude))
            << i;
    }
}

TEST(EdgeSums, SpecialEdges) {
    const EquatorSum equator(kA, kE2);
    EXPECT_EQ(equator.Of({0.1, 0.5, 1.2, 0.5, 100.0}), 0.0);  // along a meridian
    // Along a parallel: F(sin B) G dL, the area of a zone strip; 30 degrees north, a radian wide.
    const double s = 0.5;
    const double F = s + 2.0 / 3 * kE2 * s * s * s + 3.0 / 5 * kE2 * kE2 * std::pow(s, 5) +
                     4.0 / 7 * std::pow(kE2, 3) * std::pow(s, 7) + 5.0 / 9 * std::pow(kE2, 4) * std::pow(s, 9);
    EXPECT_NEAR(equator.Of({30.0 * kDegree, 0.0, 30.0 * kDegree, 1.0, 1e5}), F * kA * kA * (1.0 - kE2), 0.05);
    const MeridianSum meridian(kMultiples, 6356752.0);
    EXPECT_EQ(meridian.Of({0.5, 0.1, 0.5, 0.7, 100.0}), 0.0);  // along a parallel
}

// Beside every threshold that chooses a form the result stays that of the loop.
TEST(EdgeSums, BothFormsMeetAtTheirThresholds) {
    const EquatorSum equator(kA, kE2);
    const MeridianSum meridian(kMultiples, 6356752.0);
    const double kChanges[] = {1e-9, 0.5, 0.5 / 3, 0.5 / 5, 0.5 / 7, 0.5 / 9, 1.0};  // |X|, where forms change
    for (const double X : kChanges) {
        for (const double beside : {std::nextafter(X, 0.0), X, std::nextafter(X, 9.0)}) {
            for (const double pieces : {1.0, 2.0, 7.0, 8.0, 9.0, 17.0, 1000.0}) {
                const Edge e{0.3, 0.2, 0.3 + 2.0 * beside, 0.25, pieces};
                const double equatorLoop = equator.Loop(e);
                const double meridianLoop = meridian.Loop(e);
                EXPECT_NEAR(equator.Of(e), equatorLoop, 1e-13 * std::abs(equatorLoop)) << X << ' ' << pieces;
                EXPECT_NEAR(meridian.Of(e), meridianLoop, 1e-13 * std::abs(meridianLoop)) << X << ' ' << pieces;
            }
        }
    }
    // Nine halves of a piece's latitude about 1 radian, with 8 pieces: the loop above it, the closed form below.
    for (const double dB : {1.7777, 1.7778, 1.778}) {
        const Edge e{-0.8, 0.2, -0.8 + dB, 0.25, 8.0};
        EXPECT_NEAR(equator.Of(e), equator.Loop(e), 1e-12 * kA * kA * 0.05);
        EXPECT_NEAR(meridian.Of(e), meridian.Loop(e), 1e-12 * std::abs(meridian.Loop(e)));
    }
    EXPECT_TRUE(zm::geodesy::HasClosedForm(8.0, 1.7777));
    EXPECT_FALSE(zm::geodesy::HasClosedForm(8.0, 1.7778));
    EXPECT_FALSE(zm::geodesy::HasClosedForm(7.0, 0.1));
}

TEST(PieceCount, FollowsTheRules) {
    const auto plain = zm::geodesy::PieceRuleOf(kA, kE2, 1.0);
    EXPECT_EQ(zm::geodesy::PieceCount(plain, 2.5 * kDegree, 0.0), 3.0);
    EXPECT_EQ(zm::geodesy::PieceCount(plain, 3.0 * kDegree, 4.5 * kDegree), 6.0);
    EXPECT_EQ(zm::geodesy::PieceCount(plain, 0.0, 0.0), 1.0);
    const auto family80 = zm::geodesy::PieceRuleOf(6378140.0, 0.00669438499958795, 1.0);
    EXPECT_EQ(zm::geodesy::PieceCount(family80, 2.5 * kDegree, 50.0 * kDegree), 3.0);
    EXPECT_EQ(zm::geodesy::PieceCount(zm::geodesy::PieceRuleOf(kA, kE2, 0.0), 1.0, 1.0), 1.0);
    EXPECT_EQ(zm::geodesy::PieceCount(zm::geodesy::PieceRuleOf(kA, kE2, -1.0), 1.0, 1.0), 1.0);
}

TEST(PieceRule, StandardStepIsWidenedForThe80FamilyAlone) {
    EXPECT_DOUBLE_EQ(zm::geodesy::PieceRuleOf(6378140.0, 0.00669438499958795, 0.00027778).step, 0.001 * kDegree);
    EXPECT_DOUBLE_EQ(zm::geodesy::PieceRuleOf(6378140.0, 0.00669438499958795, 0.0002).step, 0.0002 * kDegree);
    EXPECT_DOUBLE_EQ(zm::geodesy::PieceRuleOf(kA, kE2, 0.00027778).step, 0.00027778 * kDegree);
}

TEST(EdgeSums, AbsurdCountsEnd) {
    const EquatorSum equator(kA, kE2);
    const MeridianSum meridian(kMultiples, 6356752.0);
    for (const double pieces : {1e6, 1e7, 1e300, std::nan("")}) {
        const Edge wild{0.0, 0.0, 1e290, 1e290, pieces};
        equator.Of(wild);
        meridian.Of(wild);
        const Edge infinite{0.0, 0.0, HUGE_VAL, HUGE_VAL, pieces};
        EXPECT_TRUE(std::isnan(equator.Of(infinite)));
        meridian.Of(infinite);
    }
}

}  // namespace

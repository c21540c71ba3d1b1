#include "geodesy/gauss_series.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/random.h"
#include "zenromath/geodesy.h"

namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kSelectors[] = {54, 80, 84};

struct RoundTrip {
    double B, l;
};

RoundTrip ThereAndBack(int ell, double B, double l) {
    double x = 0.0, y = 0.0;
    forward(ell, B, l, &x, &y, nullptr);
    RoundTrip back{};
    backward(ell, x, y, &back.B, &back.l, nullptr);
    return back;
}

// The historic signs of the last terms bound the way back: 1e-10 rad up to 1.5 degrees, 2e-9 up to 3.
TEST(ForwardAndBackward, ReturnWithinTheBoundOfTheirSeries) {
    ZM_TRACE_SEED();
    zm::test::Random random(11);
    for (const int ell : kSelectors) {
        for (int i = 0; i < 20000; ++i) {
            const double B = random.Real(0.0, 60.0) * kDegree;
            const double narrow = random.Real(-1.5, 1.5) * kDegree;
            const double wide = random.Real(-3.0, 3.0) * kDegree;
            const RoundTrip nearBack = ThereAndBack(ell, B, narrow);
            EXPECT_NEAR(nearBack.B, B, 1e-10);
            EXPECT_NEAR(nearBack.l, narrow, 1e-10);
            const RoundTrip farBack = ThereAndBack(ell, B, wide);
            EXPECT_NEAR(farBack.B, B, 2e-9);
            EXPECT_NEAR(farBack.l, wide, 2e-9);
        }
    }
}

TEST(Selector, ChoosesTheEllipsoid) {
    double x1 = 0.0, x54 = 0.0, x0 = 0.0, x80 = 0.0, x84 = 0.0, other = 0.0, y = 0.0;
    forward(1, 0.5, 0.01, &x1, &y, nullptr);
    forward(54, 0.5, 0.01, &x54, &y, nullptr);
    forward(0, 0.5, 0.01, &x0, &y, nullptr);
    forward(80, 0.5, 0.01, &x80, &y, nullptr);
    forward(84, 0.5, 0.01, &x84, &y, nullptr);
    forward(10054, 0.5, 0.01, &other, &y, nullptr);  // not a coordinate system
    EXPECT_EQ(x1, x54);
    EXPECT_EQ(x0, x80);
    EXPECT_EQ(x84, other);
    // Reference: TransverseMercatorProj -l 0 -k 1 at 0.5 and 0.01 rad on the three ellipsoids.
    EXPECT_NEAR(x54, 3170434.599314, 1e-5);
    EXPECT_NEAR(x80, 3170379.695940, 1e-5);
    EXPECT_NEAR(x84, 3170378.218736, 1e-5);
    EXPECT_NEAR(y, 56017.039031, 1e-6);
}

TEST(Forward, NullConvergenceIsSkipped) {
    double x = 0.0, y = 0.0, gamma = 7.0, x2 = 0.0, y2 = 0.0;
    forward(84, 0.5, 0.02, &x, &y, &gamma);
    forward(84, 0.5, 0.02, &x2, &y2, nullptr);
    EXPECT_EQ(x, x2);
    EXPECT_EQ(y, y2);
    EXPECT_NEAR(gamma, 0.02 * std::sin(0.5), 1e-5);
}

TEST(Backward, ConvergenceIsThatOfForward) {
    double x = 0.0, y = 0.0, gamma = 0.0, B = 0.0, l = 0.0, back = 0.0;
    forward(84, 0.6, 0.03, &x, &y, &gamma);
    backward(84, x, y, &B, &l, &back);
    EXPECT_NEAR(back, gamma, 2e-8);  // both series end with the fifth order
    backward(84, x, y, &B, &l, nullptr);
    EXPECT_NEAR(B, 0.6, 1e-9);
}

TEST(Backward, SixthOrderTermOfTheLatitudeIsAdded) {
    // The true latitude lies below by twice the term; pinned on a point far from the meridian, where it is 1.6e-7.
    double x = 0.0, y = 0.0, B = 0.0, l = 0.0;
    forward(84, 40.0 * kDegree, 6.0 * kDegree, &x, &y, nullptr);
    backward(84, x, y, &B, &l, nullptr);
    double trueB = 0.0, truel = 0.0;
    zm::InverseOfForward(84, x, y, trueB, truel);
    const double u = y / 6378137.0;
    const double t2 = std::tan(trueB) * std::tan(trueB);
    const double twice = 2.0 * std::tan(trueB) * std::pow(u, 6) * (61.0 + 90.0 * t2 + 45.0 * t2 * t2) / 720.0;
    EXPECT_NEAR(B - trueB, twice, 0.1 * twice);
}

TEST(Wrappers, TurnLongitudesIntoDifferences) {
    const double L0 = 117.0 * kDegree;
    double x = 0.0, y = 0.0, x2 = 0.0, y2 = 0.0;
    JWD_to_Gaosi(80, 0.5, L0 + 0.02, L0, x, y);
    forward(80, 0.5, (L0 + 0.02) - L0, &x2, &y2, nullptr);
    EXPECT_EQ(x, x2);
    EXPECT_EQ(y, y2);
    double B = 0.0, L = 0.0, B2 = 0.0, l2 = 0.0;
    Gaosi_to_JWD(80, x, y, L0, B, L);
    backward(80, x, y, &B2, &l2, nullptr);
    EXPECT_EQ(B, B2);
    EXPECT_EQ(L, l2 + L0);
}

TEST(GaosiExcange, EqualZonesOnlyRound) {
    double x = 3320113.4, y = 48210.0;
    GaosiExcange(54, x, y, 117.0 * kDegree, 117.0 * kDegree);
    EXPECT_NEAR(x, 3320113.4, 1e-6);
    EXPECT_NEAR(y, 48210.0, 1e-6);
}

TEST(GaosiExcange, ThereAndBackBetweenNeighbouringZones) {
    ZM_TRACE_SEED();
    zm::test::Random random(12);
    for (int i = 0; i < 10000; ++i) {
        const double B = random.Real(18.0, 54.0) * kDegree;
        const double l = random.Real(0.0, 1.5) * kDegree;
        double x0 = 0.0, y0 = 0.0;
        forward(84, B, l, &x0, &y0, nullptr);
        double x = x0, y = y0;
        GaosiExcange(84, x, y, 117.0 * kDegree, 120.0 * kDegree);
        GaosiExcange(84, x, y, 120.0 * kDegree, 117.0 * kDegree);
        EXPECT_NEAR(x, x0, 0.03);  // the way back over 3 degrees costs up to 2e-9 rad twice
        EXPECT_NEAR(y, y0, 0.03);
    }
}

TEST(Footpoint, ExpansionEndsWhereTheIterationEnds) {
    ZM_TRACE_SEED();
    zm::test::Random random(13);
    for (const int ell : kSelectors) {
        const auto& g = zm::geodesy::SelectedEllipsoid(ell);
        int quick = 0;
        for (int i = 0; i < 100000; ++i) {
            const double x = random.Real(-1.05e7, 1.05e7);
            const auto iterated = zm::geodesy::IteratedFootpoint(g, x);
            const auto expanded = zm::geodesy::ExpandedFootpoint(g, x);
            const auto found = zm::geodesy::FootpointOf(g, x);
            quick += expanded.holds != 0.0 ? 1 : 0;
            // Two last bits; a stop one step apart would be up to 2.5e-15.
            EXPECT_NEAR(found.latitude, iterated.latitude, 6e-16) << x;
            EXPECT_NEAR(found.at.sin, iterated.at.sin, 6e-16) << x;
            EXPECT_NEAR(found.at.cos, iterated.at.cos, 6e-16) << x;
        }
        EXPECT_GT(quick, 99900);
    }
}

TEST(Footpoint, StandsOnTheSpotAtTheEquator) {
    const auto& g = zm::geodesy::SelectedEllipsoid(84);
    EXPECT_EQ(zm::geodesy::FootpointOf(g, 0.0).latitude, 0.0);
    EXPECT_EQ(zm::geodesy::FootpointOf(g, 1e-6).latitude, 1e-6 / g.arcUnit);  // below 5e-13 rad
}

TEST(Footpoint, EndsForAnyNorthing) {
    const auto& g = zm::geodesy::SelectedEllipsoid(84);
    for (const double x : {1e20, -1e20, 1e300, 5e-324})
        EXPECT_TRUE(std::isfinite(zm::geodesy::FootpointOf(g, x).latitude));
    for (const double x : {kNaN, kInfinity, -kInfinity})
        EXPECT_FALSE(std::isfinite(zm::geodesy::FootpointOf(g, x).latitude));
    // Ellipsoids that are far from the earth's take the plain iteration.
    const zm::geodesy::GaussEllipsoid flat(6378137.0, 5000000.0);
    for (const double x : {1e5, 3e6, -7e6}) {
        const auto iterated = zm::geodesy::IteratedFootpoint(flat, x);
        EXPECT_EQ(zm::geodesy::FootpointOf(flat, x).latitude, iterated.latitude);
    }
}

TEST(InverseOfForward, UndoesForwardTo4Degrees) {
    ZM_TRACE_SEED();
    zm::test::Random random(14);
    for (const int ell : kSelectors) {
        for (int i = 0; i < 50000; ++i) {
            const double B = random.Real(-89.0, 89.0) * kDegree;
            const double l = random.Real(-4.0, 4.0) * kDegree;
            double x = 0.0, y = 0.0, backB = 0.0, backl = 0.0;
            forward(ell, B, l, &x, &y, nullptr);
            zm::InverseOfForward(ell, x, y, backB, backl);
            EXPECT_NEAR(backB, B, 1e-12);
            EXPECT_NEAR(backl, l, 1e-12);
        }
    }
}

TEST(InverseOfForward, EndsForAnyInput) {
    for (const double bad : {kNaN, kInfinity, 1e300, 1e8}) {
        double B = 0.0, l = 0.0;
        zm::InverseOfForward(84, bad, 1.0, B, l);
        zm::InverseOfForward(84, 1.0, bad, B, l);
    }
    double B = 1.0, l = 1.0;
    zm::InverseOfForward(84, 0.0, 0.0, B, l);
    EXPECT_EQ(B, 0.0);
    EXPECT_EQ(l, 0.0);
}

TEST(GaussFunctions, NotANumberInfinityAndBeyondThePoleComeThrough) {
    for (const double bad : {kNaN, kInfinity, -kInfinity}) {
        double x = 0.0, y = 0.0, gamma = 0.0;
        forward(84, bad, 0.01, &x, &y, &gamma);
        EXPECT_TRUE(std::isnan(x));
        backward(84, 3e6, bad, &x, &y, &gamma);
        EXPECT_FALSE(std::isfinite(x));
        backward(84, bad, 1.0, &x, &y, &gamma);
        EXPECT_FALSE(std::isfinite(x));
    }
    double x = 0.0, y = 0.0;
    forward(84, 100.0 * kDegree, 0.01, &x, &y, nullptr);
    EXPECT_NEAR(x, 11000000.0, 200000.0);
}

// The array forms give the bits of the scalar forms, whatever lies among the usual positions.
class Arrays : public testing::Test {
 protected:
    void SetUp() override {
        zm::test::Random random(15);
        for (int i = 0; i < 1000; ++i) {
            B.push_back(random.Real(-1.57, 1.57));
            l.push_back(random.Real(-0.1, 0.1));
            x.push_back(random.Real(-1e7, 1e7));
            y.push_back(random.Real(-4e5, 4e5));
        }
        const double odd[] = {0.0,   -0.0, 1e-7, kNaN, kInfinity, -kInfinity, 1e300, 1e6, 3.9, 1.5707963267948966,
                              5e-324};
        for (std::size_t i = 0; i < std::size(odd); ++i) {
            B[i * 37] = odd[i];
            l[i * 41 + 5] = odd[i];
            x[i * 43 + 1] = odd[i];
            y[i * 47 + 2] = odd[i];
        }
        out1.resize(B.size());
        out2.resize(B.size());
        out3.resize(B.size());
    }
    static void ExpectSame(double found, double expected, std::size_t at) {
        if (std::isnan(expected))
            EXPECT_TRUE(std::isnan(found)) << at;
        else
            EXPECT_EQ(found, expected) << at;
    }
    std::vector<double> B, l, x, y, out1, out2, out3;
};

TEST_F(Arrays, ForwardHasTheBitsOfTheScalarForm) {
    for (const int ell : kSelectors) {
        zm::ForwardArray(ell, B.size(), B.data(), l.data(), out1.data(), out2.data(), out3.data());
        for (std::size_t i = 0; i < B.size(); ++i) {
            double x1 = 0.0, y1 = 0.0, gamma = 0.0;
            forward(ell, B[i], l[i], &x1, &y1, &gamma);
            ExpectSame(out1[i], x1, i);
            ExpectSame(out2[i], y1, i);
            ExpectSame(out3[i], gamma, i);
        }
    }
}

TEST_F(Arrays, BackwardHasTheBitsOfTheScalarForm) {
    for (const int ell : kSelectors) {
        zm::BackwardArray(ell, x.size(), x.data(), y.data(), out1.data(), out2.data(), out3.data());
        for (std::size_t i = 0; i < x.size(); ++i) {
            double B1 = 0.0, l1 = 0.0, gamma = 0.0;
            backward(ell, x[i], y[i], &B1, &l1, &gamma);
            ExpectSame(out1[i], B1, i);
            ExpectSame(out2[i], l1, i);
            ExpectSame(out3[i], gamma, i);
        }
    }
}

TEST_F(Arrays, ZoneFormsHaveTheBitsOfTheClass) {
    for (const auto system : {znCoord54, znCoord80, znCoord84G6}) {
        Coordinate_2Dsys point;
        point.setEllipse(system);
        point.setL0(-3);
        ASSERT_EQ(zm::UTMtoGSArray(system, -3, B.size(), B.data(), l.data(), out1.data(), out2.data()), 1);
        for (std::size_t i = 0; i < B.size(); ++i) {
            point.B = B[i];
            point.L = l[i];
            point.UTMtoGS();
            ExpectSame(out1[i], point.GX, i);
            ExpectSame(out2[i], point.GY, i);
        }
        ASSERT_EQ(zm::GStoUTMArray(system, -3, x.size(), x.data(), y.data(), out1.data(), out2.data()), 1);
        for (std::size_t i = 0; i < x.size(); ++i) {
            point.GX = x[i];
            point.GY = y[i];
            point.GStoUTM();
            ExpectSame(out1[i], point.B, i);
            ExpectSame(out2[i], point.L, i);
        }
    }
}

TEST_F(Arrays, InverseOfForwardHasTheBitsOfTheScalarForm) {
    for (const int ell : kSelectors) {
        zm::InverseOfForwardArray(ell, x.size(), x.data(), y.data(), out1.data(), out2.data());
        for (std::size_t i = 0; i < x.size(); ++i) {
            double B1 = 0.0, l1 = 0.0;
            zm::InverseOfForward(ell, x[i], y[i], B1, l1);
            ExpectSame(out1[i], B1, i);
            ExpectSame(out2[i], l1, i);
        }
    }
}

TEST_F(Arrays, MayWriteOverTheirInput) {
    std::vector<double> first = B, second = l;
    zm::ForwardArray(84, B.size(), B.data(), l.data(), out1.data(), out2.data());
    zm::ForwardArray(84, B.size(), first.data(), second.data(), first.data(), second.data());
    for (std::size_t i = 0; i < B.size(); ++i) {
        ExpectSame(first[i], out1[i], i);
        ExpectSame(second[i], out2[i], i);
    }
}

TEST_F(Arrays, OfNoPositionsTouchNothing) {
    zm::ForwardArray(84, 0, nullptr, nullptr, nullptr, nullptr);
    zm::BackwardArray(84, 0, nullptr, nullptr, nullptr, nullptr);
    zm::InverseOfForwardArray(84, 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(zm::UTMtoGSArray(znCoord84G6, 117, 0, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(zm::GStoUTMArray(znCoord84G6, 117, 0, nullptr, nullptr, nullptr, nullptr), 1);
}

TEST_F(Arrays, WithoutEllipsoidWriteNothing) {
    double B1 = 0.5, l1 = 0.1, X1 = 7.0, Y1 = 8.0;
    EXPECT_EQ(zm::UTMtoGSArray(znCoordNone, 117, 1, &B1, &l1, &X1, &Y1), 0);
    EXPECT_EQ(zm::GStoUTMArray(znCoordNone, 117, 1, &B1, &l1, &X1, &Y1), 0);
    EXPECT_EQ(X1, 7.0);
    EXPECT_EQ(Y1, 8.0);
}

// Coefficients of the arc in powers of sin^2 B from the binomial series, by recursion of the integrals of sin^2n B.
TEST(GaussArc, CoefficientsFollowTheBinomialSeries) {
    const auto& g = zm::geodesy::SelectedEllipsoid(54);
    const double e = 1.0 - g.k / g.a;
    // c_n e^n integral of sin^2n = c_n e^n (q_n B - sin B cos B sum_m r_(n,m) sin^2m B)
    double whole = 0.0;
    double parts[4] = {};
    double c = 1.0, power = 1.0, q = 1.0;
    double r[4] = {};
    for (int n = 1; n <= 4; ++n) {
        c *= (2.0 * n + 1.0) / (2.0 * n);
        power *= e;
        const double down = (2.0 * n - 1.0) / (2.0 * n);
        q *= down;
        for (double& value : r) value *= down;
        r[n - 1] = 1.0 / (2.0 * n);
        whole += c * power * q;
        for (int m = 0; m < 4; ++m) parts[m] += c * power * r[m];
    }
    EXPECT_NEAR(g.arc.s, whole, 1e-17);
    EXPECT_NEAR(g.arc.s, parts[0], 1e-17);
    EXPECT_NEAR(g.arc.p, parts[1], 1e-19);
    EXPECT_NEAR(g.arc.q, parts[2], 1e-21);
    EXPECT_NEAR(g.arc.r, parts[3], 1e-23);
}

TEST(SinCos, LiesWithinOneLastBitOfTheLibrary) {
    ZM_TRACE_SEED();
    zm::test::Random random(16);
    for (int i = 0; i < 300000; ++i) {
        const double x = i % 3 == 0   ? random.Real(-1.6, 1.6)
                         : i % 3 == 1 ? random.Real(-100.0, 100.0)
                                      : random.Real(-1e5, 1e5);
        const auto found = zm::geodesy::SinCosNear(x);
        const double s = std::sin(x);
        const double c = std::cos(x);
        ASSERT_LE(std::abs(found.sin - s), std::abs(std::nextafter(s, 2.0) - s) * 1.01) << x;
        ASSERT_LE(std::abs(found.cos - c), std::abs(std::nextafter(c, 2.0) - c) * 1.01) << x;
    }
}

TEST(SinCos, IsExactAtTheAxes) {
    EXPECT_EQ(zm::geodesy::SinCosOf(0.0).sin, 0.0);
    EXPECT_TRUE(std::signbit(zm::geodesy::SinCosOf(-0.0).sin));
    EXPECT_EQ(zm::geodesy::SinCosOf(0.0).cos, 1.0);
    // The double nearest pi/2 lies 6.1e-17 below it.
    EXPECT_DOUBLE_EQ(zm::geodesy::SinCosOf(1.5707963267948966).cos, 6.123233995736766e-17);
    EXPECT_EQ(zm::geodesy::SinCosOf(1.5707963267948966).sin, 1.0);
    EXPECT_DOUBLE_EQ(zm::geodesy::SinCosOf(3.141592653589793).sin, 1.2246467991473532e-16);
    EXPECT_TRUE(std::isnan(zm::geodesy::SinCosOf(kNaN).sin));
    EXPECT_TRUE(std::isnan(zm::geodesy::SinCosOf(kInfinity).cos));
    EXPECT_DOUBLE_EQ(zm::geodesy::SinCosOf(1e22).sin, -0.8522008497671888);
}

}  // namespace

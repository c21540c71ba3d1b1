// Dense matrices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/random.h"
#include "tests/support/test_host.h"
#include "zenromath/geometry.h"

namespace {

TEST(Conversema, TheInverseOfTheIdentityIsTheIdentity) {
    std::vector<double> a = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    const std::vector<double> identity = a;
    EXPECT_EQ(conversema(a.data(), 3), a.data());
    EXPECT_EQ(a, identity);
}

TEST(Conversema, AnExchangeIsItsOwnInverse) {
    std::vector<double> a = {0, 1, 1, 0};
    EXPECT_EQ(conversema(a.data(), 2), a.data());
    EXPECT_EQ(a, (std::vector<double>{0, 1, 1, 0}));
}

TEST(Conversema, InvertsWhatNeedsRowAndColumnExchanges) {
    std::vector<double> a = {0, 0, 2, 4, 0, 0, 0, 8, 0};
    EXPECT_EQ(conversema(a.data(), 3), a.data());
    EXPECT_EQ(a, (std::vector<double>{0, 0.25, 0, 0, 0, 0.125, 0.5, 0, 0}));
}

void ExpectSingular(std::vector<double> a, int n) {
    zm::test::TestHost host;
    EXPECT_EQ(conversema(a.data(), n), nullptr);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "This group of data is not appropriate, matrix inversion failed!");
}

// -3, -3 and 3 are as great: with another one of them first, other bits come out.
TEST(Conversema, OfSeveralPivotsAsGreatTheFirstInRowOrderIsTaken) {
    double a[] = {1, 1, 2, 0, -3, -1, 3, -3, 2};
    ASSERT_EQ(conversema(a, 3), a);
    EXPECT_EQ(a[0], -0x1.7ffffffffffffp+0);
    EXPECT_EQ(a[1], -0x1.5555555555554p+0);
    EXPECT_EQ(a[8], -0x1.ffffffffffffep-2);
}

TEST(Conversema, AZeroMatrixFailsWithTheMessage) {
    ExpectSingular({0, 0, 0, 0}, 2);
}

TEST(Conversema, ElementsBelow1em16FailWhateverTheScale) {
    ExpectSingular({9e-17, 0, 0, 9e-17}, 2);
}

TEST(Conversema, ElementsThatMoveOneDoNotFail) {
    zm::test::TestHost host;
    std::vector<double> a = {3e-16, 0, 0, 3e-16};
    EXPECT_EQ(conversema(a.data(), 2), a.data());
    EXPECT_TRUE(host.boxes.empty());
}

TEST(Conversema, ASingularMatrixFailsAtItsSecondStepAndStaysHalfTransformed) {
    zm::test::TestHost host;
    std::vector<double> a = {1, 2, 2, 4};
    EXPECT_EQ(conversema(a.data(), 2), nullptr);
    EXPECT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(a, (std::vector<double>{0.25, 0.5, -0.5, 0}));
}

TEST(Conversema, OfSizeZeroOrNullHasNothingToDo) {
    zm::test::TestHost host;
    double one = 5.0;
    EXPECT_EQ(conversema(&one, 0), &one);
    EXPECT_EQ(conversema(&one, -3), &one);
    EXPECT_EQ(conversema(nullptr, 3), nullptr);
    EXPECT_EQ(one, 5.0);
    EXPECT_TRUE(host.boxes.empty());
}

TEST(Conversema, AMatrixOfNotANumberFails) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ExpectSingular({nan, nan, nan, nan}, 2);
}

double Norm(const std::vector<double>& a, std::size_t n) {
    double norm = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double row = 0.0;
        for (std::size_t j = 0; j < n; ++j) row += std::fabs(a[i * n + j]);
        norm = std::max(norm, row);
    }
    return norm;
}

TEST(Conversema, TheInverseTimesItsInputIsTheIdentityWithinTheCondition) {
    ZM_TRACE_SEED();
    zm::test::Random random(10);
    for (int run = 0; run < 300; ++run) {
        const int n = run < 290 ? random.Int(1, 25) : random.Int(60, 90);  // past the size that the stack holds
        const auto size = static_cast<std::size_t>(n);
        std::vector<double> a(size * size);
        for (double& v : a) v = random.Real(-10, 10);
        std::vector<double> inverse = a;
        ASSERT_EQ(conversema(inverse.data(), n), inverse.data());
        std::vector<double> product(size * size);
        mamulma(inverse.data(), n, n, a.data(), n, product.data());
        // Full pivoting keeps the residual within a small multiple of n times the condition in last digits.
        const double bound = 10.0 * n * Norm(a, size) * Norm(inverse, size) * 2.3e-16;
        for (std::size_t i = 0; i < size; ++i)
            for (std::size_t j = 0; j < size; ++j) ASSERT_NEAR(product[i * size + j], i == j ? 1.0 : 0.0, bound);
    }
}

TEST(Mamulma, MultipliesRowsByColumns) {
    double a[] = {1, 2, 3, 4, 5, 6};
    double b[] = {7, 8, 9, 10, 11, 12};
    double c[4] = {};
    EXPECT_EQ(mamulma(a, 2, 3, b, 2, c), c);
    const double expected[] = {58, 64, 139, 154};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(c[i], expected[i]);
}

TEST(Mamulma, WithNothingBetweenWritesZeros) {
    double c[] = {5, 5, 5, 5, 5};
    mamulma(nullptr, 2, 0, nullptr, 2, c);
    EXPECT_EQ(c[0], 0.0);
    EXPECT_EQ(c[3], 0.0);
    EXPECT_EQ(c[4], 5.0);
}

TEST(Mamulma, WithoutRowsOrColumnsWritesNothing) {
    double a[] = {1, 2};
    double c[] = {5};
    EXPECT_EQ(mamulma(a, 0, 2, a, 1, c), c);
    EXPECT_EQ(mamulma(a, -1, 2, a, 1, c), c);
    EXPECT_EQ(mamulma(a, 1, 2, a, 0, c), c);
    EXPECT_EQ(mamulma(nullptr, 1, 2, a, 1, c), c);
    EXPECT_EQ(c[0], 5.0);
    EXPECT_EQ(mamulma(a, 1, 2, a, 1, nullptr), nullptr);
}

// Sums run from the first product upward: 1e17 + 1 - 1e17 is 0, in any other order 1.
TEST(Mamulma, AddsItsProductsFromTheFirstUpward) {
    double a[] = {1e17, 1, -1e17};
    double b[] = {1, 1, 1};
    double c[1];
    mamulma(a, 1, 3, b, 1, c);
    EXPECT_EQ(c[0], 0.0);
}

TEST(Turnmatrix, TwoByThreeBecomesThreeByTwoInTheSameArray) {
    double a[] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(turnmatrix(a, 2, 3), a);
    const double expected[] = {1, 4, 2, 5, 3, 6};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(a[i], expected[i]);
}

TEST(Turnmatrix, TwiceGivesTheSameMatrixBack) {
    std::vector<double> a(30 * 17);
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = static_cast<double>(i);
    const std::vector<double> before = a;
    turnmatrix(a.data(), 30, 17);
    EXPECT_EQ(a[1], 17.0);
    turnmatrix(a.data(), 17, 30);
    EXPECT_EQ(a, before);
}

TEST(Turnmatrix, OfNothingDoesNothing) {
    double a[] = {1, 2};
    EXPECT_EQ(turnmatrix(a, 0, 3), a);
    EXPECT_EQ(turnmatrix(a, -2, 3), a);
    EXPECT_EQ(turnmatrix(nullptr, 2, 3), nullptr);
    EXPECT_EQ(a[1], 2.0);
}

}  // namespace

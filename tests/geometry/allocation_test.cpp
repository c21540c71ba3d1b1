// What takes memory and what does not, and what happens where memory lacks.
#include <gtest/gtest.h>

#include <vector>

#include "geometry/state.h"
#include "tests/geometry/counted_memory.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::test::Allocations;
using zm::test::WithoutMemory;

// Counts what a call takes.
template <class Call>
int AllocationsOf(Call call) {
    const int before = Allocations();
    call();
    return Allocations() - before;
}

class Allocation : public testing::Test {
 protected:
    void SetUp() override {
        zm::geometry::ResetState();
        zm::test::Random random(30);
        for (std::size_t i = 0; i < kPoints; ++i) {
            x.push_back(random.Real(0, 1000));
            y.push_back(random.Real(0, 1000));
        }
        x.front() = y.front() = x.back() = y.back() = 0.0;
        out.resize(10 * kPoints + 9000);
        out2.resize(10 * kPoints + 9000);
    }
    void TearDown() override { zm::geometry::ResetState(); }

    static constexpr std::size_t kPoints = 3000;
    int n = static_cast<int>(kPoints);
    std::vector<double> x, y, out, out2;
    int count = 0;
};

TEST_F(Allocation, DrawingFunctionsTakeNone) {
    double* px = x.data();
    double* py = y.data();
    double* to = out.data();
    EXPECT_EQ(AllocationsOf([&] { parallel(n, px, py, to, out2.data(), 5.0, 1); }), 0);
    EXPECT_EQ(AllocationsOf([&] { SplineToPoints(n, px, py, to, &count); }), 0);
    for (int kind : {1, 2, 3, 4, 5})
        EXPECT_EQ(AllocationsOf([&] { GOTOPOINTS(n, kind, px, py, to, &count, 1000); }), 0);
    EXPECT_EQ(AllocationsOf([&] { bspline(px, py, n - 1); }), 0);
    EXPECT_EQ(AllocationsOf([&] { MulArc2Straight(5, px, py, "11333", to, 1000); }), 0);
}

TEST_F(Allocation, LineFunctionsTakeNone) {
    double* px = x.data();
    double* py = y.data();
    int index = 0;
    int side = 0;
    double X = 0;
    double Y = 0;
    EXPECT_EQ(AllocationsOf([&] { getdist(5, 5, n, px, py); }), 0);
    EXPECT_EQ(AllocationsOf([&] { GetDistBering(5, 5, n, px, py, index, side); }), 0);
    EXPECT_EQ(AllocationsOf([&] { PtInPoly(px, py, n, 5, 5); }), 0);
    EXPECT_EQ(AllocationsOf([&] { PtInPolyEdge(n, px, py, 500, 500); }), 0);
    EXPECT_EQ(AllocationsOf([&] { norm_intersect(0, 0, 1, 1, px, n / 2, X, Y); }), 0);
    EXPECT_EQ(AllocationsOf([&] { reverse_line(px, n / 100, 800); }), 0);
}

TEST_F(Allocation, SmallMatricesTakeNone) {
    double a[] = {4, 1, 2, 3};
    double c[4];
    EXPECT_EQ(AllocationsOf([&] { conversema(a, 2); }), 0);
    EXPECT_EQ(AllocationsOf([&] { mamulma(a, 2, 2, a, 2, c); }), 0);
    EXPECT_EQ(AllocationsOf([&] { turnmatrix(a, 2, 2); }), 0);
}

TEST_F(Allocation, MulArc2StraightIntoTwoArraysTakesItsScratchSpaceOnce) {
    const auto call = [&] {
        count = MulArc2Straight(5, x.data(), y.data(), "11333", 5000, out.data(), out2.data(), 1000);
    };
    EXPECT_EQ(AllocationsOf(call), 1);
    EXPECT_EQ(AllocationsOf(call), 0);
    EXPECT_GT(count, 5);
}

TEST_F(Allocation, LookingUpHeightsTakesNoneOnceTheIndexIsThere) {
    Find4H table(n, x.data(), y.data(), x.data());
    for (int i = 0; i < 20; ++i) table.FindH(1, 1);
    EXPECT_EQ(AllocationsOf([&] {
                  for (int i = 0; i < n; ++i) table.FindH(x[static_cast<std::size_t>(i)], 5);
              }),
              0);
}

TEST_F(Allocation, WithoutMemoryAStripIsNullAndZero) {
    int mark = 0;
    int* triangles = &mark;
    double first[] = {0, 0, 10, 0};
    double second[] = {0, 5, 9, 5};
    int result = -1;
    {
        const WithoutMemory none;
        result = tqgettriln(triangles, first, 2, second, 2);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(triangles, nullptr);
}

TEST_F(Allocation, WithoutMemoryAppendDateLeavesTheTableAsItWas) {
    double px[] = {1, 2};
    double h[] = {10, 20};
    Find4H table(1, px, px, h);
    int result = -1;
    {
        const WithoutMemory none;
        result = table.AppendDate(2, px, px, h);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(table.FindH(1, 1), 10.0);
    EXPECT_EQ(table.FindH(2, 2), 0.0);
    EXPECT_EQ(table.AppendDate(2, px, px, h), 1);
    EXPECT_EQ(table.FindH(2, 2), 20.0);
}

TEST_F(Allocation, WithoutMemoryForItsIndexATableIsScanned) {
    for (std::size_t i = 0; i < x.size(); ++i) out[i] = static_cast<double>(i);
    x[77] = y[77] = -50;
    Find4H table(n, x.data(), y.data(), out.data());
    double found[40];
    {
        const WithoutMemory none;
        for (double& height : found) height = table.FindH(-50, -50);
    }
    for (double height : found) EXPECT_EQ(height, 77.0);
    Find4H second(n, x.data(), y.data(), out.data());
    EXPECT_EQ(second.FindH(-50, -50), 77.0);  // its index object exists
    {
        const WithoutMemory none;
        for (double& height : found) height = second.FindH(-50, -50);
    }
    for (double height : found) EXPECT_EQ(height, 77.0);
}

TEST_F(Allocation, WithoutMemoryATableIsEmptyAndNotArmed) {
    double one[] = {1};
    bool armed = true;
    double height = -1.0;
    {
        const WithoutMemory none;
        Find4H table(1, one, one, one);
        armed = zm::geometry::state().armed;
        height = table.FindH(1, 1);
    }
    EXPECT_FALSE(armed);
    EXPECT_EQ(height, 0.0);
}

TEST_F(Allocation, WithoutMemoryLargeMatricesAndTwoArrayFlatteningFail) {
    std::vector<double> a(100 * 100, 2.0);
    double* inverse = a.data();
    double* turned = a.data();
    int flattened = -1;
    {
        const WithoutMemory none;
        inverse = conversema(a.data(), 100);
        turned = turnmatrix(a.data(), 100, 100);
        flattened = MulArc2Straight(5, x.data(), y.data(), "11333", 5000, out.data(), out2.data(), 1000);
    }
    EXPECT_EQ(inverse, nullptr);
    EXPECT_EQ(turned, nullptr);
    EXPECT_EQ(flattened, 0);
    EXPECT_EQ(a[5], 2.0);
}

TEST(LargeInput, TenMillionPointsAreNoTrouble) {
    const int n = 10000000;
    std::vector<double> x(static_cast<std::size_t>(n)), y(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i);
        y[i] = i % 2 == 0 ? 0.0 : 10.0;
    }
    EXPECT_DOUBLE_EQ(getdist(-3, 4, n, x.data(), y.data()), 3.383126446713963);  // to the first leg
    int index = 0;
    int side = 7;
    EXPECT_GT(GetDistBering(1e7 + 5, 9, n, x.data(), y.data(), index, side), 0.0);
    EXPECT_EQ(index, n - 1);
    EXPECT_EQ(PtInPolyEdge(n, x.data(), y.data(), 5e6, 20), 0);
    {
        Find4H table(n, x.data(), y.data(), x.data());
        for (int i = 0; i < 50; ++i) EXPECT_EQ(table.FindH(200 * i, 0.0), i <= 45 ? 200.0 * i : 0.0);
    }
    EXPECT_EQ(reverse_line(x.data(), n, sizeof(double)), 1);
    EXPECT_EQ(x[0], 9999999.0);
}

}  // namespace

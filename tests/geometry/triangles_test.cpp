// Triangle strips.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "geometry/state.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

struct Strip {
    int count;
    std::unique_ptr<int[]> numbers;
    std::vector<int> List() const { return {numbers.get(), numbers.get() + 3 * count}; }
};
Strip Join(std::vector<double> first, std::vector<double> second) {
    int mark = 0;
    int* triangles = &mark;
    const int count = tqgettriln(triangles, first.data(), static_cast<int>(first.size() / 2), second.data(),
                                 static_cast<int>(second.size() / 2));
    return {count, std::unique_ptr<int[]>(triangles)};
}

class Tqgettriln : public testing::Test {
 protected:
    void SetUp() override { zm::geometry::ResetState(); }
};

TEST_F(Tqgettriln, TwoLinesOfTwoPointsGiveTwoTriangles) {
    const Strip s = Join({0, 0, 10, 0}, {0, 5, 9, 5});
    EXPECT_EQ(s.count, 2);
    EXPECT_EQ(s.List(), (std::vector<int>{0, 2, 3, 3, 0, 1}));
}

TEST_F(Tqgettriln, TheWiderSineDecidesBetweenTwoFreeDiagonals) {
    const Strip s = Join({0, 0, 9, 0}, {0, 5, 10, 2});
    EXPECT_EQ(s.List(), (std::vector<int>{2, 0, 1, 1, 2, 3}));
}

// The second line comes back over the diagonal from its first point, 0.9 and 1.1 mm from it (both differences summed).
TEST_F(Tqgettriln, ACrossingWithinAMillimetreOfAVertexIsTheVertex) {
    EXPECT_EQ(Join({0, 10, 2, 2}, {0, 0, 7, -9, 0.0009 - 7, 0.0009 + 9}).List(),
              (std::vector<int>{2, 0, 1, 1, 2, 3, 1, 3, 4}));
    EXPECT_EQ(Join({0, 10, 2, 2}, {0, 0, 7, -9, 0.0011 - 7, 0.0011 + 9}).count, 0);
}

TEST_F(Tqgettriln, OneAndTwoPointsGiveOneTriangle) {
    const Strip s = Join({0, 0}, {0, 5, 5, 5});
    EXPECT_EQ(s.count, 1);
    EXPECT_EQ(s.List(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(Join({0, 0, 5, 0}, {0, 5}).List(), (std::vector<int>{2, 0, 1}));
}

TEST_F(Tqgettriln, OneAndOnePointGiveNone) {
    const Strip s = Join({0, 0}, {0, 5});
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.numbers, nullptr);
}

TEST_F(Tqgettriln, TwoIdenticalLinesGiveNone) {
    const Strip s = Join({0, 0, 5, 0, 9, 4}, {0, 0, 5, 0, 9, 4});
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.numbers, nullptr);
}

TEST_F(Tqgettriln, ADegenerateCandidateLeavesTheOrientationToTheOther) {
    // The next point of the second line lies on the base edge's line; the first one's decides.
    const Strip s = Join({0, 0, 4, 0}, {0, 5, 0, 9});
    EXPECT_EQ(s.count, 2);
    EXPECT_EQ(s.List(), (std::vector<int>{2, 0, 1, 1, 2, 3}));
}

TEST_F(Tqgettriln, LinesThatBlockBothDiagonalsFail) {
    const Strip s = Join({0, 0, 10, 10, 20, 0}, {0, 5, 10, 5, 20, 5});
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.numbers, nullptr);
}

TEST_F(Tqgettriln, NoPointsNegativeCountsAndNullGiveNone) {
    double v[] = {0, 0, 1, 1, 2, 0, 3, 3};
    int mark = 0;
    int* triangles = &mark;
    EXPECT_EQ(tqgettriln(triangles, v, 0, v, 4), 0);
    EXPECT_EQ(triangles, nullptr);
    triangles = &mark;
    EXPECT_EQ(tqgettriln(triangles, v, -5, v, 2000000000), 0);
    EXPECT_EQ(triangles, nullptr);
    triangles = &mark;
    EXPECT_EQ(tqgettriln(triangles, nullptr, 3, v, 4), 0);
    EXPECT_EQ(triangles, nullptr);
}

TEST_F(Tqgettriln, StandsBadNumbers) {
    const double kInf = std::numeric_limits<double>::infinity();
    for (double v : {std::numeric_limits<double>::quiet_NaN(), kInf, -kInf, 1e308}) {
        const Strip s = Join({0, v, 5, 0, v, 4}, {0, 7, v, 8, 9, v});
        EXPECT_TRUE(s.count == 0 || s.count == 4);
    }
}

// Between two lines that each run to the right, one above the other, the strip covers the space between them once.
TEST_F(Tqgettriln, TrianglesCoverTheSpaceBetweenTwoLinesOnce) {
    ZM_TRACE_SEED();
    zm::test::Random random(11);
    int joined = 0;
    for (int run = 0; run < 500; ++run) {
        std::vector<double> lower, upper;
        const int n1 = random.Int(2, 20), n2 = random.Int(2, 20);
        for (int i = 0; i < n1; ++i) {
            lower.push_back(100.0 * i / (n1 - 1));
            lower.push_back(random.Real(-1, 0));
        }
        for (int i = 0; i < n2; ++i) {
            upper.push_back(100.0 * i / (n2 - 1));
            upper.push_back(random.Real(20, 21));
        }
        const Strip s = Join(lower, upper);
        if (s.count == 0) continue;
        ++joined;
        std::vector<double> all = lower;
        all.insert(all.end(), upper.begin(), upper.end());
        const auto doubled = [&](int a, int b, int c) {
            const double* p = all.data();
            return (p[2 * b] - p[2 * a]) * (p[2 * c + 1] - p[2 * a + 1]) -
                   (p[2 * c] - p[2 * a]) * (p[2 * b + 1] - p[2 * a + 1]);
        };
        double sum = 0.0;
        const std::vector<int> list = s.List();
        for (std::size_t t = 0; t < list.size(); t += 3) sum += std::fabs(doubled(list[t], list[t + 1], list[t + 2]));
        // Twice the area of the ring: along the lower line and back along the upper one.
        double ring = 0.0;
        std::vector<int> order;
        for (int i = 0; i < n1; ++i) order.push_back(i);
        for (int i = n2; i-- > 0;) order.push_back(n1 + i);
        for (std::size_t i = 1; i + 1 < order.size(); ++i) ring += doubled(order[0], order[i], order[i + 1]);
        ASSERT_NEAR(sum, ring, 1e-8);
    }
    EXPECT_GT(joined, 300);
}

}  // namespace

// Points, lines and angles.
#include "geometry/lines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "geometry/state.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/random.h"
#include "zenromath/geometry.h"

namespace {

using zm::test::ScopedTolerance;

class Lines : public testing::Test {
 protected:
    void SetUp() override { zm::geometry::ResetState(); }
};

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

double Up(double v) {
    return std::nextafter(v, kInf);
}
double Down(double v) {
    return std::nextafter(v, -kInf);
}

TEST_F(Lines, ToleranceStartsAt1em8AndGivesThePreviousValue) {
    EXPECT_EQ(SetMINI(1e-6), 1e-08);
    EXPECT_EQ(SetMINI(1e-8), 1e-6);
}

TEST_F(Lines, CoarserToleranceMakesAShortSegmentDegenerate) {
    double X = 0.0;
    double Y = 0.0;
    EXPECT_EQ(Cross_P(X, Y, 0.0, 0.0, 5e-7, 0.0, 0.0, -100.0, 0.0, 100.0), 0);
    const ScopedTolerance coarse(1e-6);
    EXPECT_EQ(Cross_P(X, Y, 0.0, 0.0, 5e-7, 0.0, 0.0, -100.0, 0.0, 100.0), -2);
}

TEST_F(Lines, PtorLeavesThePointForARadiusThatIsNotPositive) {
    double x = 7.0;
    double y = 8.0;
    EXPECT_EQ(ptor(x, y, 0.0, 1.0), 0);
    EXPECT_EQ(ptor(x, y, -2.0, 1.0), 0);
    EXPECT_EQ(x, 7.0);
    EXPECT_EQ(y, 8.0);
    EXPECT_EQ(ptor(x, y, 2.0, 0.0), 1);
    EXPECT_EQ(x, 2.0);
    EXPECT_EQ(y, 0.0);
}

TEST_F(Lines, RtopOfTheOriginWritesTheLengthOnly) {
    double r = 5.0;
    double angle = 9.0;
    EXPECT_EQ(rtop(0.0, 0.0, r, angle), 0);
    EXPECT_EQ(r, 0.0);
    EXPECT_EQ(angle, 9.0);
    EXPECT_EQ(rtop(-3.0, 0.0, r, angle), 1);
    EXPECT_EQ(r, 3.0);
    EXPECT_EQ(angle, 3.141592653589793);
}

struct BearingCase {
    const char* name;
    double x, y, s, a;
};
void PrintTo(const BearingCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr BearingCase kBearings[] = {
    {"east", 2.0, 0.0, 2.0, 0.0},
    {"north", 0.0, 3.0, 3.0, 1.5707963267948966},
    {"west", -4.0, 0.0, 4.0, 3.141592653589793},
    {"south_lies_at_three_quarters", 0.0, -5.0, 5.0, 4.71238898038469},
    {"no_distance_has_bearing_0", 0.0, 0.0, 0.0, 0.0},
    {"a_distance_of_the_tolerance_has_bearing_0", 0.0, 1e-8, 1e-8, 0.0},
};
class Xysa : public testing::TestWithParam<BearingCase> {};
TEST_P(Xysa, MeasuresDistanceAndBearing) {
    zm::geometry::ResetState();
    double x = GetParam().x;
    double y = GetParam().y;
    double s = -1.0;
    double a = -1.0;
    XYSA(0.0, 0.0, &x, &y, &s, &a, 0);
    EXPECT_EQ(s, GetParam().s);
    EXPECT_DOUBLE_EQ(a, GetParam().a);
}
INSTANTIATE_TEST_SUITE_P(Bearings, Xysa, testing::ValuesIn(kBearings),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Lines, XysaWithAFlagGoesTheDistanceAlongTheBearing) {
    double x = 0.0;
    double y = 0.0;
    double s = 2.0;
    double a = 1.5707963267948966;
    XYSA(10.0, 20.0, &x, &y, &s, &a, 1);
    EXPECT_NEAR(x, 10.0, 1e-15);  // the cosine of the nearest double to a quarter turn is 6e-17
    EXPECT_EQ(y, 22.0);
}

struct CrossCase {
    const char* name;
    double x1, y1, x2, y2, x3, y3, x4, y4;
    int result;
    double X, Y;
};
void PrintTo(const CrossCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr CrossCase kCrossings[] = {
    {"inside_both", 0, 0, 4, 4, 0, 4, 4, 0, 0, 2, 2},
    {"touch_in_an_end_point_counts_as_met", 0, 0, 1, 0, 1, 0, 1, 5, 0, 1, 0},
    {"outside_the_first", 0, 0, 1, 0, 3, -1, 3, 1, 4, 3, 0},
    {"outside_the_second", 0, 0, 4, 0, 3, 1, 3, 2, 4, 3, 0},
    {"collinear_is_parallel", 0, 0, 1, 1, 2, 2, 3, 3, -3, -7, -9},
    {"parallel", 0, 0, 1, 1, 0, 1, 1, 2, -3, -7, -9},
    {"first_without_length_leaves_the_point", 1, 1, 1, 1, 0, 0, 2, 0, -2, -7, -9},
    {"second_without_length_leaves_the_point", 0, 0, 2, 0, 1, 1, 1, 1, -2, -7, -9},
};
class CrossP : public testing::TestWithParam<CrossCase> {};
TEST_P(CrossP, TellsWhereTheLinesMeet) {
    zm::geometry::ResetState();
    const CrossCase& c = GetParam();
    double X = -7.0;
    double Y = -9.0;
    EXPECT_EQ(Cross_P(X, Y, c.x1, c.y1, c.x2, c.y2, c.x3, c.y3, c.x4, c.y4), c.result);
    EXPECT_EQ(X, c.X);
    EXPECT_EQ(Y, c.Y);
}
INSTANTIATE_TEST_SUITE_P(Crossings, CrossP, testing::ValuesIn(kCrossings),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Lines, CrossPCountsATouchWithinTheToleranceAndNotOneBeyond) {
    const ScopedTolerance eighth(0.125);
    double X = 0.0;
    double Y = 0.0;
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 1, 0, 1.125, -1, 1.125, 1), 0);
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 1, 0, Up(1.125), -1, Up(1.125), 1), 4);
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 1, 0, -0.125, -1, -0.125, 1), 0);
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 1, 0, Down(-0.125), -1, Down(-0.125), 1), 4);
}

TEST_F(Lines, CrossPDegenerateAndParallelTestsTakeTheToleranceIn) {
    const ScopedTolerance eighth(0.125);
    double X = 0.0;
    double Y = 0.0;
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 0.125, 0, 0, -1000, 0, 1000), -2);
    EXPECT_EQ(Cross_P(X, Y, 0, 0, Up(0.125), 0, 0, -1000, 0, 1000), 0);
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 0.5, 0, 0, 0, 0.5, 0.25), -3);  // the determinant is the tolerance
    EXPECT_EQ(Cross_P(X, Y, 0, 0, 0.5, 0, 0, 0, 0.5, Up(0.25)), 0);
}

TEST_F(Lines, CrossPMeetsWhereItWasBuiltToMeet) {
    ZM_TRACE_SEED();
    zm::test::Random random(1);
    for (int i = 0; i < 20000; ++i) {
        const double px = random.Real(-1e3, 1e3);
        const double py = random.Real(-1e3, 1e3);
        const double a = random.Real(0.0, 3.1);
        const double b = a + random.Real(0.05, 3.0);
        const double s1 = random.Real(0.5, 100.0), s2 = random.Real(0.5, 100.0);
        const double s3 = random.Real(0.5, 100.0), s4 = random.Real(0.5, 100.0);
        double X = 0.0;
        double Y = 0.0;
        ASSERT_EQ(
            Cross_P(X, Y, px - s1 * std::cos(a), py - s1 * std::sin(a), px + s2 * std::cos(a), py + s2 * std::sin(a),
                    px - s3 * std::cos(b), py - s3 * std::sin(b), px + s4 * std::cos(b), py + s4 * std::sin(b)),
            0);
        // Ends are off by a last digit of 1e3; the angle of at least 0.05 magnifies that by 20 at most.
        ASSERT_NEAR(X, px, 2e-10);
        ASSERT_NEAR(Y, py, 2e-10);
    }
}

TEST_F(Lines, NormIntersectGivesTheFirstSegmentFromOne) {
    double zigzag[] = {0, 5, 1, 3, 2, -1, 3, 4, 4, -2};
    double X = -7.0;
    double Y = -9.0;
    EXPECT_EQ(norm_intersect(-1, 0, 9, 0, zigzag, 5, X, Y), 2);
    EXPECT_EQ(X, 1.75);
    EXPECT_EQ(Y, 0.0);
}

TEST_F(Lines, NormIntersectKeepsTheLastPointComputedWhenNothingIsMet) {
    double line[] = {20, -1, 20, 1, 30, -1, 30, 1};
    double X = -7.0;
    double Y = -9.0;
    EXPECT_EQ(norm_intersect(0, 0, 1, 0, line, 4, X, Y), 0);
    EXPECT_EQ(X, 30.0);
    EXPECT_EQ(Y, 0.0);
}

TEST_F(Lines, NormIntersectOfFewerThanTwoPointsIsZero) {
    double point[] = {0, 0};
    double X = -7.0;
    double Y = -9.0;
    for (int n : {1, 0, -3}) EXPECT_EQ(norm_intersect(-1, 0, 1, 0, point, n, X, Y), 0);
    EXPECT_EQ(norm_intersect(-1, 0, 1, 0, nullptr, 5, X, Y), 0);
    EXPECT_EQ(X, -7.0);
}

// The plain form: Cross_P for each segment in turn.
int PlainNormIntersect(double x1, double y1, double x2, double y2, const std::vector<double>& pairs, double& X,
                       double& Y) {
    for (std::size_t i = 2; i < pairs.size(); i += 2)
        if (Cross_P(X, Y, x1, y1, x2, y2, pairs[i - 2], pairs[i - 1], pairs[i], pairs[i + 1]) == 0)
            return static_cast<int>(i / 2);
    return 0;
}

TEST_F(Lines, NormIntersectAnswersAsCrossPForEachSegmentInTurn) {
    ZM_TRACE_SEED();
    zm::test::Random random(21);
    // Coordinates that often agree, touch within the tolerance or one ulp beside it, or are no plain numbers.
    const auto coordinate = [&](int hardness) {
        const double grid = random.Int(-4, 4);
        switch (random.Int(0, hardness)) {
            case 0:
                return random.Real(-5, 5);
            case 1:
                return grid;
            case 2:
                return grid + 1e-8;
            case 3:
                return std::nextafter(grid + 1e-8, kInf);
            case 4:
                return std::nextafter(grid - 1e-8, -kInf);
            case 5:
                return grid * 1e9;
            default: {
                const double odd[] = {kNan, kInf, -kInf, 1e308, -1e308, 1e99, 1e101, 5e-324, -1e160};
                return odd[random.Int(0, 8)];
            }
        }
    };
    int met = 0;
    for (int run = 0; run < 60000; ++run) {
        const int hardness = run % 7;
        const double tolerances[] = {1e-8, 1e-8, 0.0, 0.125, -1.0, kNan};
        const ScopedTolerance tolerance(tolerances[random.Int(0, 5)]);
        std::vector<double> pairs;
        for (int i = 2 * random.Int(1, 9); i > 0; --i) pairs.push_back(coordinate(hardness));
        double ends[4];
        for (double& v : ends) v = coordinate(hardness);
        double X = -7.0, Y = -9.0, plainX = -7.0, plainY = -9.0;
        const int found =
            norm_intersect(ends[0], ends[1], ends[2], ends[3], pairs.data(), static_cast<int>(pairs.size() / 2), X, Y);
        ASSERT_EQ(found, PlainNormIntersect(ends[0], ends[1], ends[2], ends[3], pairs, plainX, plainY));
        ASSERT_TRUE(X == plainX || (std::isnan(X) && std::isnan(plainX))) << X << ' ' << plainX;
        ASSERT_TRUE(Y == plainY || (std::isnan(Y) && std::isnan(plainY))) << Y << ' ' << plainY;
        met += found > 0 ? 1 : 0;
    }
    EXPECT_GT(met, 10000);
}

struct BoxCase {
    const char* name;
    double x1, y1, x2, y2;
    int sides;
};
void PrintTo(const BoxCase& c, std::ostream* out) {
    *out << c.name;
}
// The box is 0, 0 to 10, 8.
constexpr BoxCase kBoxes[] = {
    {"through_the_interior", 1, 1, 2, 3, 2},
    {"level_through_the_interior", -5, 4, -4, 4, 2},
    {"upright_through_the_interior", 3, 50, 3, 60, 2},
    {"beside_the_box", 20, 0, 20, 5, 0},
    {"along_the_bottom_side", 0, 0, 10, 0, 0},
    {"along_the_top_side", 0, 8, 10, 8, 2},
    {"along_the_left_side", 0, 0, 0, 8, 2},
    {"along_the_right_side", 10, 0, 10, 8, 0},
    {"through_the_lower_left_corner", -1, 1, 1, -1, 1},
    {"through_the_upper_left_corner", -1, 7, 1, 9, 2},
    {"through_the_lower_right_corner", 9, -1, 11, 1, 0},
    {"through_the_upper_right_corner", 9, 9, 11, 7, 1},
    {"no_length", 4, 4, 4, 4, 0},
};
class MyCrossRectTest : public testing::TestWithParam<BoxCase> {};
TEST_P(MyCrossRectTest, CountsTheSidesThatTheLineMeets) {
    const BoxCase& c = GetParam();
    EXPECT_EQ(MyCrossRect(c.x1, c.y1, c.x2, c.y2, 0, 0, 10, 8), c.sides);
}
INSTANTIATE_TEST_SUITE_P(Boxes, MyCrossRectTest, testing::ValuesIn(kBoxes),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Lines, MyCrossRectCountsCornersBySidesOfTheirOwn) {
    // Diagonals of the square 0, 0 to 4, 4. The lower left corner belongs to the bottom side only, the upper right one
    // to the right side only; the upper left one to both, the lower right one to none.
    EXPECT_EQ(MyCrossRect(-1, -1, 5, 5, 0, 0, 4, 4), 2);
    EXPECT_EQ(MyCrossRect(-1, 5, 5, -1, 0, 0, 4, 4), 2);
}

TEST_F(Lines, ChuizuOfADegenerateLineIsItsFirstPoint) {
    double line[6] = {3, 4, 3 + 5e-9, 4 - 5e-9, 100, 100};
    double foot[2];
    CHUIZU(line, foot);
    EXPECT_EQ(foot[0], 3.0);
    EXPECT_EQ(foot[1], 4.0);
}

TEST_F(Lines, ChuizuTakesALineOfExactlyTheThresholdAsALine) {
    double line[6] = {0, 0, 1e-8, 0, 5, 7};
    double foot[2];
    CHUIZU(line, foot);
    EXPECT_DOUBLE_EQ(foot[0], 5.0);
    EXPECT_EQ(foot[1], 0.0);
    line[2] = Down(1e-8);
    CHUIZU(line, foot);
    EXPECT_EQ(foot[0], 0.0);
}

TEST_F(Lines, ChuizuDoesNotStopAtTheEnds) {
    double line[6] = {0, 0, 1, 0, 50, 3};
    double foot[2];
    CHUIZU(line, foot);
    EXPECT_EQ(foot[0], 50.0);
    EXPECT_EQ(foot[1], 0.0);
}

TEST_F(Lines, AbcIsClockwiseIsOneForACounterClockwiseTurn) {
    EXPECT_EQ(AbcIsClockwise(1, 0, 0, 1, 0, 0, 1e-8), 1);
    EXPECT_EQ(AbcIsClockwise(0, 1, 1, 0, 0, 0, 1e-8), -1);
    EXPECT_EQ(AbcIsClockwise(1, 1, 2, 2, 0, 0, 1e-8), 0);
}

// With a and b a million metres off, an angle of 5e-07 has a cross value of 500000.
TEST_F(Lines, AbcIsClockwiseReadsALargerToleranceAsASine) {
    EXPECT_EQ(AbcIsClockwise(1e6, 0, 1e6, 0.5, 0, 0, 1e-6), 1);
    EXPECT_EQ(AbcIsClockwise(1e6, 0, 1e6, 0.5, 0, 0, 1.1e-6), 0);
}

TEST_F(Lines, NormCrossLeavesShortVectorsAsTheyAre) {
    EXPECT_EQ(zm::geometry::NormCross(1e-3, 0, 0, 1e-3, 0, 0), 1e-6);  // the product is exactly the threshold
    EXPECT_NEAR(zm::geometry::NormCross(2e-3, 0, 0, 2e-3, 0, 0), 1.0, 1e-15);
}

TEST_F(Lines, SignOfIsZeroOnTheToleranceItself) {
    EXPECT_EQ(zm::geometry::SignOf(0.5, 0.5), 0);
    EXPECT_EQ(zm::geometry::SignOf(Up(0.5), 0.5), 1);
    EXPECT_EQ(zm::geometry::SignOf(-0.5, 0.5), 0);
    EXPECT_EQ(zm::geometry::SignOf(Down(-0.5), 0.5), -1);
    EXPECT_EQ(zm::geometry::SignOf(kNan, 0.5), 0);
}

TEST_F(Lines, ValueBetweenTakesBothEndsInEitherOrder) {
    using zm::geometry::ValueBetween;
    EXPECT_TRUE(ValueBetween(1.0, 1.0, 2.0));
    EXPECT_TRUE(ValueBetween(2.0, 1.0, 2.0));
    EXPECT_TRUE(ValueBetween(1.5, 2.0, 1.0));
    EXPECT_TRUE(ValueBetween(1.0, 1.0, 1.0));
    EXPECT_FALSE(ValueBetween(Up(2.0), 1.0, 2.0));
    EXPECT_FALSE(ValueBetween(Down(1.0), 2.0, 1.0));
}

TEST_F(Lines, VertAnglePointKeepsTheSideAndTheDistance) {
    double px = 3.0;
    double py = 4.0;
    EXPECT_EQ(VertAnglePoint(0, 0, 10, 0, &px, &py), 1);
    EXPECT_EQ(px, 0.0);
    EXPECT_EQ(py, 5.0);
    px = 3.0;
    py = -4.0;
    EXPECT_EQ(VertAnglePoint(0, 0, 10, 0, &px, &py), 1);
    EXPECT_EQ(py, -5.0);
}

TEST_F(Lines, VertAnglePointSendsAPointOnTheLineToTheNegativeSide) {
    double px = 2.0;
    double py = 0.0;
    EXPECT_EQ(VertAnglePoint(0, 0, 10, 0, &px, &py), 1);
    EXPECT_EQ(px, 0.0);
    EXPECT_EQ(py, -2.0);
}

TEST_F(Lines, VertAnglePointOfALineWithoutLengthChangesNothing) {
    double px = 2.0;
    double py = 3.0;
    EXPECT_EQ(VertAnglePoint(1, 1, 1, 1, &px, &py), 0);
    EXPECT_EQ(px, 2.0);
    EXPECT_EQ(py, 3.0);
    EXPECT_EQ(VertAnglePoint(0, 0, 1, 1, nullptr, &py), 0);
}

TEST_F(Lines, GrdbodyRotateTurnsFromTheSecondAxisTowardsTheFirst) {
    double X = 0.0;
    double Y = 0.0;
    EXPECT_EQ(GrdbodyRotate(10, 20, 1.5707963267948966, 1, 1, 1, 3, X, Y), 1);
    EXPECT_DOUBLE_EQ(X, 13.0);  // the point two above the pivot comes to lie two to its right, then the shift
    EXPECT_DOUBLE_EQ(Y, 21.0);
}

TEST_F(Lines, ReverseLineOfANullBufferIsZero) {
    EXPECT_EQ(reverse_line(nullptr, 3, 8), 0);
}

TEST_F(Lines, ReverseLineOfOneElementDoesNothing) {
    double one[] = {5.0};
    EXPECT_EQ(reverse_line(one, 1, sizeof(double)), 1);
    EXPECT_EQ(one[0], 5.0);
}

TEST_F(Lines, ReverseLineKeepsTheMiddleOfAnOddNumber) {
    char odd[] = "abcdefghi";
    EXPECT_EQ(reverse_line(odd, 3, 3), 1);
    EXPECT_STREQ(odd, "ghidefabc");
    char even[] = "aabbccdd";
    EXPECT_EQ(reverse_line(even, 4, 2), 1);
    EXPECT_STREQ(even, "ddccbbaa");
}

TEST_F(Lines, ReverseLineTakesLargeElements) {
    std::vector<char> bytes(2 * 5000, 'a');
    std::fill(bytes.begin() + 5000, bytes.end(), 'b');
    EXPECT_EQ(reverse_line(bytes.data(), 2, 5000), 1);
    EXPECT_EQ(bytes.front(), 'b');
    EXPECT_EQ(bytes.back(), 'a');
}

TEST_F(Lines, ReverseLineOfANegativeSizeIsZeroAndOfNegativeNDoesNothing) {
    char text[] = "abc";
    EXPECT_EQ(reverse_line(text, 3, -1), 0);
    EXPECT_EQ(reverse_line(text, -3, 1), 1);
    EXPECT_EQ(reverse_line(text, 3, 0), 1);
    EXPECT_STREQ(text, "abc");
}

TEST_F(Lines, NullPointersAreLeftAlone) {
    double v = 1.0;
    XYSA(0, 0, nullptr, &v, &v, &v, 0);
    XYSA(0, 0, &v, &v, nullptr, &v, 1);
    CHUIZU(nullptr, &v);
    CHUIZU(&v, nullptr);
    EXPECT_EQ(v, 1.0);
}

TEST_F(Lines, NotANumberPassesThroughWithoutHarm) {
    const double bad[] = {kNan, kInf, -kInf, 1e308, -1e308, 5e-324};
    double X = 0.0;
    double Y = 0.0;
    for (double v : bad) {
        const int result = Cross_P(X, Y, v, 0, 1, v, 0, 1, v, 2);
        EXPECT_TRUE(result == 0 || result == 4 || result == -2 || result == -3);
        const int sides = MyCrossRect(v, 0, 1, 1, -1, v, 1, 1);
        EXPECT_GE(sides, 0);
        EXPECT_LE(sides, 4);
        double s = 0.0;
        double a = 0.0;
        XYSA(0, 0, &X, &Y, &s, &a, 0);
    }
}

}  // namespace

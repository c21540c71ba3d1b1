// The clip area: points, segments, chains and arcs against a rectangle and a polygon.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "draw/access.h"
#include "tests/draw/fixture.h"
#include "tests/support/random.h"
#include "zenromath/draw.h"

namespace {

using zm::draw::Access;

class ClipArea : public zm::test::DrawTest {
 protected:
    ClipArea() { area.setcutarea(1.0, 2.0, 5.0, 9.0); }
    void SetPolygon(std::vector<double> x, std::vector<double> y) {
        area.setcutarea(static_cast<int>(x.size()), x.data(), y.data());
    }
    CCutArea area{1};
};

TEST_F(ClipArea, KeepsTheSmallerAndLargerOfAnyTwoCorners) {
    area.setcutarea(5.0, 9.0, 1.0, 2.0);
    double left = 0, top = 0, right = 0, bottom = 0;
    area.getcutarea(left, top, right, bottom);
    EXPECT_EQ(left, 1.0);
    EXPECT_EQ(top, 9.0);
    EXPECT_EQ(right, 5.0);
    EXPECT_EQ(bottom, 2.0);
}

TEST_F(ClipArea, CountsThePointsOnTheEdgeOfTheRectangleAsInside) {
    EXPECT_EQ(area.cutpoint(1.0, 5.0), 1);
    EXPECT_EQ(area.cutpoint(5.0, 9.0), 1);
    EXPECT_EQ(Access::OutCode(area, 1.0, 9.0), 0);
    EXPECT_EQ(area.cutpoint(0.999, 5.0), 0);
}

TEST_F(ClipArea, SumsTheOutcodesOfACorner) {
    EXPECT_EQ(Access::OutCode(area, 0.0, 0.0), 5);
    EXPECT_EQ(Access::OutCode(area, 6.0, 10.0), 10);
    EXPECT_EQ(Access::OutCode(area, 0.0, 10.0), 9);
    EXPECT_EQ(Access::OutCode(area, 6.0, 0.0), 6);
}

TEST_F(ClipArea, DropsAHorizontalSegmentWhollyToTheLeft) {
    double x1 = -3, y1 = 4, x2 = 0, y2 = 4;
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 0);
}

TEST_F(ClipArea, CutsASegmentFromLeftToRightOnBothVerticalSides) {
    double x1 = -1, y1 = 4, x2 = 7, y2 = 6;
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 1);
    EXPECT_DOUBLE_EQ(x1, 1.0);
    EXPECT_DOUBLE_EQ(y1, 4.5);
    EXPECT_DOUBLE_EQ(x2, 5.0);
    EXPECT_DOUBLE_EQ(y2, 5.5);
}

// The clipping to a rectangle in its plain form, side by side.
class PlainRectangle {
 public:
    int Cut(double& x1, double& y1, double& x2, double& y2) const {
        const int c1 = Code(x1, y1);
        const int c2 = Code(x2, y2);
        if ((c1 | c2) == 0) return 1;
        if ((c1 & c2) != 0) return 0;
        const bool opposite = c1 + c2 == 3 || (c1 | c2) == 12;
        if (c1 != 0 && c2 != 0 && !opposite && SidesMet(x1, y1, x2, y2) < 2) return 0;
        const double line[4] = {x1, y1, x2, y2};
        if (c1 != 0) Move(line, c1, x1, y1);
        if (c2 != 0) Move(line, c2, x2, y2);
        return 1;
    }

    static constexpr double kLeft = -7.0, kBottom = -5.0, kRight = 7.0, kTop = 5.0;

 private:
    static int Code(double x, double y) {
        return (x < kLeft ? 1 : 0) + (x > kRight ? 2 : 0) + (y < kBottom ? 4 : 0) + (y > kTop ? 8 : 0);
    }
    static int SidesMet(double x1, double y1, double x2, double y2) {
        const double dx = x2 - x1, dy = y2 - y1;
        const double l = kLeft - x1, b = kBottom - y1, r = kRight - x1, t = kTop - y1;
        int sides = 0;
        if (std::fabs(dx) > 1e-8) {
            const double k = dy / dx;
            if (l * k > b && t + 1e-8 > l * k) ++sides;
            if (r * k > b && t + 1e-8 > r * k) ++sides;
        }
        if (std::fabs(dy) > 1e-8) {
            const double h = dx / dy;
            if (b * h > l - 1e-8 && r > b * h) ++sides;
            if (t * h > l - 1e-8 && r > t * h) ++sides;
        }
        return sides;
    }
    static void Move(const double* line, int code, double& x, double& y) {
        const double dx = line[2] - line[0];
        const double dy = line[3] - line[1];
        if ((code & 3) != 0) {
            x = (code & 1) != 0 ? kLeft : kRight;
            y = (x - line[0]) * dy / dx + line[1];
            if (!(y < kBottom || y > kTop)) return;
            y = y < kBottom ? kBottom : kTop;
        } else {
            y = (code & 4) != 0 ? kBottom : kTop;
        }
        x = (y - line[1]) * dx / dy + line[0];
    }
};

TEST_F(ClipArea, HasTheBitsOfThePlainFormAtARectangle) {
    ZM_TRACE_SEED();
    zm::test::Random random(31);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double odd[] = {-7.0, 7.0, -5.0, 5.0, 0.0, -0.0, 1e-9, -7.000000001, 1e300, -1e300, kInfinity, 5.00000001};
    const auto coordinate = [&] {
        const int kind = random.Int(0, 3);
        if (kind == 0) return odd[random.Int(0, static_cast<int>(std::size(odd)) - 1)];
        return kind == 1 ? static_cast<double>(random.Int(-10, 10)) : random.Real(-15.0, 15.0);
    };
    const PlainRectangle plain;
    area.setcutarea(PlainRectangle::kLeft, PlainRectangle::kBottom, PlainRectangle::kRight, PlainRectangle::kTop);
    for (int i = 0; i < 200000; ++i) {
        const std::array<double, 4> given = {coordinate(), coordinate(), coordinate(), coordinate()};
        std::array<double, 4> found = given;
        std::array<double, 4> expected = given;
        ASSERT_EQ(area.cutline(found[0], found[1], found[2], found[3]),
                  plain.Cut(expected[0], expected[1], expected[2], expected[3]));
        for (std::size_t k = 0; k < 4; ++k) {
            if (std::isnan(expected[k]) && std::isnan(found[k])) continue;
            ASSERT_EQ(std::bit_cast<std::uint64_t>(found[k]), std::bit_cast<std::uint64_t>(expected[k]))
                << given[0] << ' ' << given[1] << ' ' << given[2] << ' ' << given[3];
        }
    }
}

TEST_F(ClipArea, LeavesASegmentThatPassesTheCornerOutsideAsItCame) {
    double x1 = 0.9, y1 = -100.0, x2 = 6.0, y2 = 9.5;  // outcodes 5 and 10, below the right lower corner
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 0);
    EXPECT_EQ(x1, 0.9);
    EXPECT_EQ(y1, -100.0);
    EXPECT_EQ(x2, 6.0);
    EXPECT_EQ(y2, 9.5);
}

TEST_F(ClipArea, LeavesEverythingAsItIsWithTheSwitchOff) {
    EXPECT_EQ(area.set_docut(0), 1);
    double x1 = -3, y1 = 4, x2 = 0, y2 = 4;
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 1);
    EXPECT_EQ(x1, -3.0);
    EXPECT_EQ(area.cutpoint(99.0, 99.0), 1);
    double angles[8] = {0.5, 0.25};
    EXPECT_EQ(area.cutarc(0, 0, 50, angles), 2);
    EXPECT_EQ(angles[0], 0.5);
    EXPECT_EQ(angles[1], 0.25);
    double x[] = {9, 8};
    EXPECT_EQ(area.cutpolygon(x, x, 1), 1);
}

TEST_F(ClipArea, RefusesAPolygonOfTwoPointsAndKeepsTheRectangle) {
    SetPolygon({10, 20}, {10, 20});
    int n = -1;
    PP* polygon = nullptr;
    EXPECT_EQ(area.getcutarea(n, polygon), 0);
    EXPECT_EQ(n, 0);
    EXPECT_EQ(polygon, nullptr);
    EXPECT_EQ(area.cutpoint(3.0, 3.0), 1);
    EXPECT_EQ(area.cutpoint(15.0, 15.0), 0);
}

TEST_F(ClipArea, APolygonOfTwoPointsLeavesTheSizeOfTheOneBefore) {
    SetPolygon({1, 9, 9, 1}, {1, 1, 7, 7});
    SetPolygon({10, 20}, {10, 20});
    int n = -1;
    PP* polygon = nullptr;
    EXPECT_EQ(area.getcutarea(n, polygon), 0);
    EXPECT_EQ(n, 4);
    EXPECT_EQ(polygon, nullptr);
    double x1 = 0, y1 = 0, x2 = 5, y2 = 5;
    area.cutline(x1, y1, x2, y2);  // nothing is read that is not there
}

TEST_F(ClipArea, HasNoRotateAngleWhereTheClosingEdgeIsParallelToAnAxis) {
    SetPolygon({1, 9, 9, 1}, {1, 1, 7, 7});
    EXPECT_EQ(area.getrotateangle(), 0.0);
}

TEST_F(ClipArea, HasTheDirectionOfTheClosingEdgeAsRotateAngle) {
    SetPolygon({0, 4, 3, 1}, {0, 0, 5, 1});
    EXPECT_NEAR(area.getrotateangle(), 45.0, 1e-12);
    area.setcutarea(0, 0, 1, 1);
    EXPECT_EQ(area.getrotateangle(), 0.0);
}

TEST_F(ClipArea, ARectangleHidesThePolygonButKeepsItAllocated) {
    SetPolygon({1, 9, 9, 1}, {1, 1, 7, 7});
    area.setcutarea(0, 0, 2, 2);
    int n = 0;
    PP* polygon = nullptr;
    EXPECT_EQ(area.getcutarea(n, polygon), 1);
    EXPECT_EQ(n, 4);
    ASSERT_NE(polygon, nullptr);
    EXPECT_EQ(polygon[2].x, 9.0);
    EXPECT_EQ(area.cutpoint(5.0, 5.0), 0);
}

TEST_F(ClipArea, ThePairFormDoesNotReadItsPoints) {
    double xy[] = {1, 1, 9, 1, 9, 7};
    area.setcutarea(3, xy);
    int n = 0;
    PP* polygon = nullptr;
    EXPECT_EQ(area.getcutarea(n, polygon), 2);
    EXPECT_EQ(n, 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(polygon[i].x, 0.0);
        EXPECT_EQ(polygon[i].y, 0.0);
    }
}

TEST_F(ClipArea, SaysMinusOneOnTheBoundaryOfAPolygon) {
    SetPolygon({1, 9, 9, 1}, {1, 1, 7, 7});
    EXPECT_EQ(area.cutpoint(1.0, 3.0), -1);
    EXPECT_EQ(area.cutpoint(2.0, 3.0), 1);
    EXPECT_EQ(area.cutpoint(0.5, 3.0), 0);
}

TEST_F(ClipArea, ReplacesASegmentInsideAConcavePolygonByThePartBetweenTheFirstTwoCrossings) {
    // A square with a notch from above; the segment runs through both its arms.
    SetPolygon({0, 30, 30, 20, 15, 10, 0}, {0, 0, 20, 20, 5, 20, 20});
    double x1 = 2, y1 = 15, x2 = 28, y2 = 15;
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 1);
    EXPECT_NEAR(x1, 18.3333333, 1e-6);  // the notch's right side comes first in the order of edges
    EXPECT_NEAR(x2, 11.6666667, 1e-6);
    EXPECT_NEAR(y1, 15.0, 1e-12);
}

TEST_F(ClipArea, MovesTheFirstEndOfASegmentOutsideThatTouchesThePolygonOnceWithTheResultZero) {
    SetPolygon({0, 10, 5}, {0, 0, 10});
    double x1 = 0, y1 = 10, x2 = 10, y2 = 10 + 1e-9;  // touches the apex
    EXPECT_EQ(area.cutline(x1, y1, x2, y2), 0);
    EXPECT_NEAR(x1, 5.0, 1e-6);
}

TEST_F(ClipArea, WritesPairsOverThePointsThatAreStillToBeRead) {
    area.setcutarea(0, 0, 10, 10);
    double x[] = {1, 2, 3, 4, 0, 0};
    double y[] = {1, 2, 1, 2, 0, 0};
    EXPECT_EQ(area.cutpolygon(x, y, 3), 3);
    // The first pair puts point 1 where it was; the second puts points 1 and 2 at places 2 and 3; the third edge then
    // runs from place 2 to place 3, which is the second edge again.
    const double expected[] = {1, 2, 2, 3, 2, 3};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(x[i], expected[i]) << i;
    EXPECT_EQ(area.cutpolygon(x, y, 0), 0);
}

TEST_F(ClipArea, KeepsAnArcWhoseBoxLiesInside) {
    double angles[8] = {0.5, 2.5};
    EXPECT_EQ(area.cutarc(3.0, 5.0, 1.0, angles), 2);
    EXPECT_EQ(angles[0], 0.5);
    EXPECT_EQ(angles[1], 2.5);
}

TEST_F(ClipArea, ACircleAroundTheWholeAreaIsInvisible) {
    double angles[8] = {0.0, 6.28};
    EXPECT_EQ(area.cutarc(3.0, 5.0, 100.0, angles), 0);
}

TEST_F(ClipArea, ALargeCircleThroughTheAreaIsInvisibleWithAllFourCornersOutside) {
    double angles[8] = {0.0, 6.28};
    EXPECT_EQ(area.cutarc(103.0, 5.0, 100.0, angles), 0);  // passes through (3, 5)
}

// The crossing lies before the sample that found it, so its angle comes out a full turn too large.
TEST_F(ClipArea, AnArcThatBeginsInsideStartsWithItsStartAngle) {
    double angles[8] = {0.3, 3.0};
    ASSERT_EQ(area.cutarc(1.5, 5.0, 2.0, angles), 2);
    EXPECT_EQ(angles[0], 0.3);
    EXPECT_NEAR(angles[1], 8.1066618891, 2e-3);  // acos(-0.25) and a turn, met by chords of ten degrees
}

TEST_F(ClipArea, AnArcThatEndsInsideGetsItsExactEndAngle) {
    double angles[8] = {1.0, 5.55};
    ASSERT_EQ(area.cutarc(1.5, 5.0, 2.0, angles), 4);
    EXPECT_EQ(angles[0], 1.0);
    EXPECT_EQ(angles[3], 5.55);
}

TEST_F(ClipArea, KeepsFourPiecesOfAnArcThroughACombAndLeavesTheRestOut) {
    // Twelve teeth cross the circle of radius 10.
    std::vector<double> x = {-12, 12};
    std::vector<double> y = {-1, -1};
    for (int i = 0; i < 12; ++i) {
        const double right = 12.0 - 2.0 * i;
        x.insert(x.end(), {right, right - 1.0, right - 1.0, right - 2.0});
        y.insert(y.end(), {12.0, 12.0, 0.0, 0.0});
    }
    SetPolygon(x, y);
    double angles[10] = {0.0, 3.14, 0, 0, 0, 0, 0, 0, 77.0, 78.0};
    const int count = area.cutarc(0.0, 0.0, 10.0, angles);
    EXPECT_EQ(count, 8);
    EXPECT_EQ(angles[8], 77.0);
    EXPECT_EQ(angles[9], 78.0);
}

}  // namespace

// The primitives: what each sink receives.
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/draw/fixture.h"

namespace {

using zm::test::Lines;

class Primitives : public zm::test::DrawTest {};

TEST_F(Primitives, ALineOutsideTheClipAreaAddsNothingButThePolylinesFrame) {
    CTqDraw& dc = MakeContext(3);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.line(20.0, 20.0, 30.0, 20.0), 0);
    double xy[] = {20, 20, 30, 20};
    EXPECT_EQ(dc.lines(2, xy), 0);
    EXPECT_EQ(Recorded(dc), (Lines{"PlineBgn", "PlineEnd"}));
}

TEST_F(Primitives, ALineRecordsSixDecimalsOfTheRotatedCoordinates) {
    CTqDraw& dc = MakeContext(3);
    dc.SetRotateMoveP(90.0, 1.0, 1.0);
    EXPECT_EQ(dc.line(2.0, 1.0, 3.5, 1.0), 1);
    EXPECT_EQ(Recorded(dc), (Lines{"Line2:1.000000:2.000000:1.000000:3.500000"}));
}

TEST_F(Primitives, ALineReachesTheDeviceInPixels) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.line(1.0, 1.0, 2.0, 3.0), 1);
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 570"}));
}

TEST_F(Primitives, AnUnknownTypeIsAColourDevice) {
    CTqDraw& dc = MakeContext(17);
    dc.line(1.0, 1.0, 2.0, 3.0);
    EXPECT_EQ(device.lines().size(), 2u);
}

TEST_F(Primitives, ALinePastACornerOfTheViewStillDrawsItsMovedEnds) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.line(1000, 700, 700, 900), 0);  // both below
    EXPECT_EQ(dc.line(-438, -33, 785, 440), 1);
    EXPECT_EQ(dc.line(1130, 394, 728, 873), 1);  // codes 2 and 8, passing the corner
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 0 136", "LineTo 785 440", "MoveToEx 958 600", "LineTo 958 600"}));
}

TEST_F(Primitives, EqualAnglesAreAWholeCircle) {
    CTqDraw& dc = MakeContext(3);
    EXPECT_EQ(dc.drawarc(5.0, 5.0, 2.0, 1.0, 1.0), 1);
    EXPECT_EQ(Recorded(dc), (Lines{"Arc:5.000000:5.000000:2.000000:57.295780:417.295780"}));
}

TEST_F(Primitives, ASmallCircleIsABlackDotOnADeviceOnly) {
    CTqDraw& dc = MakeContext(0);
    dc.drawarc(5.0, 5.0, 0.19, 1.0, 1.0);  // 1.9 pixels
    EXPECT_EQ(device.lines(), (Lines{"SetPixel 50 550 0"}));
    dc.SetTqDCType(3);
    dc.drawarc(5.0, 5.0, 0.19, 1.0, 2.0);
    EXPECT_EQ(Recorded(dc).size(), 1u);
    dc.SetTqDCType(1);
    dc.drawarc(5.0, 5.0, 0.19, 0.0, 1.0);
    EXPECT_EQ(writer.calls, (Lines{"arc 5.000000 5.000000 0.190000 0.000000 57.295780"}));
}

TEST_F(Primitives, ACircleOfExactlyTwoPixelsIsNoDot) {
    CTqDraw& dc = MakeContext(0);
    dc.drawarc(5.0, 5.0, 0.2, 1.0, 1.0);  // 0.2 units at 10 pixels each
    ASSERT_FALSE(device.lines().empty());
    EXPECT_EQ(device.lines().front().find("SetPixel"), std::string::npos) << device.lines().front();
}

TEST_F(Primitives, ACircleInsideTheClipRectangleIsOnePiece) {
    CTqDraw& dc = MakeContext(3);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.drawarc(5.0, 5.0, 2.0, 0.0, 0.0), 1);
    EXPECT_EQ(Recorded(dc).size(), 1u);
}

TEST_F(Primitives, ACircleAroundTheClipRectangleDrawsNothing) {
    CTqDraw& dc = MakeContext(3);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.drawarc(5.0, 5.0, 50.0, 0.0, 0.0), 0);
    EXPECT_TRUE(Recorded(dc).empty());
}

TEST_F(Primitives, AnArcTurnsWithTheRotation) {
    CTqDraw& dc = MakeContext(1);
    dc.SetRotateMoveP(90.0, 1.0, 1.0);
    dc.drawarc(2.0, 1.0, 3.0, 0.0, 1.0);
    EXPECT_EQ(writer.calls, (Lines{"arc 1.000000 2.000000 3.000000 90.000000 147.295780"}));
}

TEST_F(Primitives, AnArcOnADeviceGivesBoxAndRadialPoints) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.drawarc(40.03, 30.02, 5.21, 0.3, 2.0), 1);
    EXPECT_EQ(device.lines(), (Lines{"Arc 348 247 452 351 450 284 378 252"}));
}

TEST_F(Primitives, ABoxedArcTakesTheMeanOfItsTwoRadii) {
    CTqDraw& dc = MakeContext(3);
    EXPECT_EQ(dc.drawarc(0.0, 10.0, 10.0, 0.0, 9.0, 5.0, 5.0, 7.0), 1);  // 4 and 2 from the middle
    EXPECT_EQ(Recorded(dc), (Lines{"Arc:5.000000:5.000000:3.000000:0.000000:90.000000"}));
    EXPECT_EQ(dc.drawarc(0.0, 10.0, 10.0, 0.0, 5.0, 5.0, 5.0, 7.0), 0);  // a point at the centre
}

TEST_F(Primitives, AnInsidePolylineIsOnePolylineInADrawingFile) {
    CTqDraw& dc = MakeContext(1);
    double xy[] = {1, 1, 2, 1, 3, 2, 4, 1, 5, 5};
    EXPECT_EQ(dc.lines(5, xy), 5);
    EXPECT_EQ(writer.calls, (Lines{"polyline 1.000000 1.000000 2.000000 1.000000 3.000000 2.000000 4.000000 1.000000 "
                                   "5.000000 5.000000"}));
}

TEST_F(Primitives, APolylineThatEntersTheClipAreaKeepsTheClipPointInTheCallersArray) {
    CTqDraw& dc = MakeContext(1);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    double xy[] = {-5, 5, 5, 5, 6, 6};
    EXPECT_EQ(dc.lines(3, xy), 3);
    EXPECT_EQ(xy[0], 0.0);
    EXPECT_EQ(xy[1], 5.0);
    EXPECT_EQ(writer.calls, (Lines{"polyline 0.000000 5.000000 5.000000 5.000000 6.000000 6.000000"}));
}

TEST_F(Primitives, APolylineThatLeavesTheClipAreaGetsItsPointsBack) {
    CTqDraw& dc = MakeContext(1);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    double xy[] = {5, 5, 6, 6, 16, 6};
    EXPECT_EQ(dc.lines(3, xy), 3);
    EXPECT_EQ(xy[4], 16.0);
    EXPECT_EQ(writer.calls, (Lines{"polyline 5.000000 5.000000 6.000000 6.000000 10.000000 6.000000"}));
}

TEST_F(Primitives, ASegmentThroughTheAreaWithBothEndsOutsideIsALine) {
    CTqDraw& dc = MakeContext(1);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    double xy[] = {-5, 5, 15, 5};
    EXPECT_EQ(dc.lines(2, xy), 2);
    EXPECT_EQ(xy[0], -5.0);
    EXPECT_EQ(writer.calls, (Lines{"line 0.000000 5.000000 10.000000 5.000000"}));
}

TEST_F(Primitives, AVertexOnAPolygonsBoundaryIsACrossingAndClosesNoRun) {
    CTqDraw& dc = MakeContext(1);
    double x[] = {0, 10, 10, 0};
    double y[] = {0, 0, 10, 10};
    dc.SetCutArea(4, x, y);
    dc.SetDoCut(1);
    double xy[] = {5, 5, 6, 6, 10, 6};  // the last vertex is on the right side
    EXPECT_EQ(dc.lines(3, xy), 3);
    EXPECT_EQ(writer.calls.size(), 1u);  // the crossing closed the run
    writer.calls.clear();
    double along[] = {10, 2, 10, 4};  // both on the boundary: inside, and no run is closed
    EXPECT_EQ(dc.lines(2, along), 0);
    EXPECT_TRUE(writer.calls.empty());
}

TEST_F(Primitives, APolylineInADrawingFileIsNotRotated) {
    CTqDraw& dc = MakeContext(1);
    dc.SetRotateMoveP(90.0, 0.0, 0.0);
    double xy[] = {1, 1, 2, 1};
    dc.lines(2, xy);
    dc.line(1.0, 1.0, 2.0, 1.0);
    EXPECT_EQ(writer.calls,
              (Lines{"polyline 1.000000 1.000000 2.000000 1.000000", "line -1.000000 1.000000 -1.000000 2.000000"}));
}

TEST_F(Primitives, TwoArraysStayAsTheyAre) {
    CTqDraw& dc = MakeContext(1);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    double x[] = {-5, 5, 6};
    double y[] = {5, 5, 6};
    EXPECT_EQ(dc.lines(3, x, y), 3);
    EXPECT_EQ(x[0], -5.0);
}

TEST_F(Primitives, OnePointIsNoPolyline) {
    CTqDraw& dc = MakeContext(3);
    double xy[] = {1, 1};
    EXPECT_EQ(dc.lines(1, xy), 0);
    EXPECT_EQ(dc.lines(0, xy), 0);
    EXPECT_EQ(dc.lines(-3, xy, xy), 0);
    EXPECT_TRUE(Recorded(dc).empty());
}

TEST_F(Primitives, APixelOfAnUnknownSizeIsOnePixel) {
    CTqDraw& dc = MakeContext(0);
    dc.pixel(10, 10, 255u, 4);
    EXPECT_EQ(device.lines(), (Lines{"SetPixel 10 10 255"}));
}

TEST_F(Primitives, APixelOfSizeTwoIsAPlusAndOfSizeThreeACross) {
    CTqDraw& dc = MakeContext(0);
    dc.pixel(10, 10, 255u, 2);
    EXPECT_EQ(device.lines(), (Lines{"SetPixel 10 10 255", "SetPixel 9 10 255", "SetPixel 11 10 255",
                                     "SetPixel 10 9 255", "SetPixel 10 11 255"}));
    device.Clear();
    dc.pixel(10, 10, 255u, 3);
    EXPECT_EQ(device.lines(), (Lines{"SetPixel 10 10 255", "SetPixel 9 9 255", "SetPixel 11 11 255",
                                     "SetPixel 11 9 255", "SetPixel 9 11 255"}));
}

TEST_F(Primitives, APixelOutsideTheClipAreaReturnsItsColour) {
    CTqDraw& dc = MakeContext(3);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.pixel(20.0, 20.0, 77u, 1), 77u);
    EXPECT_EQ(dc.pixel(2.0, 2.0, 0xFFFFFFFFu, 1), 0xFFFFFFFFu);
    EXPECT_EQ(Recorded(dc), (Lines{"Pixel:2.000000:2.000000:-1"}));
}

TEST_F(Primitives, ARectangleThatTouchesTheViewDraws) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.rectangle(-5, -5, 0, 0), 1);
    EXPECT_EQ(dc.rectangle(-5, -5, -1, -1), 0);
    EXPECT_EQ(device.lines(), (Lines{"Rectangle -5 -5 0 0"}));
}

TEST_F(Primitives, RectangleMovetoAndLinetoDrawOnTheDeviceInEveryTypeAndAreNotClipped) {
    for (int type = 0; type < 4; ++type) {
        CTqDraw& dc = MakeContext(type);
        dc.SetCutArea(50, 50, 60, 60);
        dc.SetDoCut(1);
        device.Clear();
        dc.moveto(1.0, 1.0);
        EXPECT_EQ(dc.lineto(2.0, 1.0), 1);
        EXPECT_EQ(dc.rectangle(1.0, 2.0, 3.0, 1.0), 1);
        EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 590", "LineTo 20 590", "Rectangle 10 580 30 590"})) << type;
        EXPECT_TRUE(Recorded(dc).empty());
    }
    EXPECT_TRUE(writer.calls.empty());
}

TEST_F(Primitives, ADrawnRectangleIsFourLines) {
    CTqDraw& dc = MakeContext(3);
    EXPECT_EQ(dc.drawrect(1.0, 2.0, 3.0, 4.0), 1);
    EXPECT_EQ(Recorded(dc),
              (Lines{"Line2:1.000000:2.000000:3.000000:2.000000", "Line2:3.000000:2.000000:3.000000:4.000000",
                     "Line2:3.000000:4.000000:1.000000:4.000000", "Line2:1.000000:4.000000:1.000000:2.000000"}));
    dc.SetTqDCType(0);
    dc.drawrect(tagRECT{1, 2, 3, 4});
    EXPECT_EQ(device.lines().size(), 8u);
    EXPECT_EQ(device.lines()[1], "LineTo 3 2");
}

TEST_F(Primitives, FormattedTextGoesToTheDevice) {
    CTqDraw& dc = MakeContext(1);
    tagRECT box = {10, 10, 200, 50};
    zm::test::Writable text("ab\ncd");
    EXPECT_EQ(dc.drawtext(text, -1, &box, DT_LEFT), 32);
    EXPECT_EQ(device.lines(), (Lines{"TextOut 10 10 ab", "TextOut 10 26 cd"}));
}

// ---- Filled polygons ----

class Fills : public zm::test::DrawTest {
 protected:
    Fills() : brush(zm::device::CreateSolidBrush(0x0000FF)) {}
    ~Fills() override { zm::device::DeleteObject(brush); }
    Lines FilledBoxes() {
        Lines fills;
        for (const std::string& line : device.lines())
            if (line.rfind("FillRgn", 0) == 0) fills.push_back(line);
        device.Clear();
        return fills;
    }
    HBRUSH brush;
    double square[10] = {1, 1, 11, 1, 11, 11, 1, 11, 1, 1};
};

TEST_F(Fills, AClosedPolygonIsFilledAndOutlined) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.DrawPolygon(5, square, brush), 4);
    EXPECT_EQ(FilledBoxes(), (Lines{"FillRgn 2 10 490 110 590"}));
}

TEST_F(Fills, AnOpenPolygonIsOutlinedOnly) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.DrawPolygon(4, square, brush), 3);
    EXPECT_TRUE(FilledBoxes().empty());
    double open[] = {1, 1, 11, 1, 11, 11, 1, 1.00001};
    dc.DrawPolygon(4, open, brush);
    EXPECT_TRUE(FilledBoxes().empty());
}

TEST_F(Fills, DrawingFileAndRecordingHoldTheOutlineOnly) {
    CTqDraw& dc = MakeContext(1);
    EXPECT_EQ(dc.DrawPolygon(5, square, brush), 5);
    EXPECT_EQ(writer.calls.size(), 1u);
    dc.SetTqDCType(3);
    EXPECT_EQ(dc.DrawPolygon(5, square, brush), 4);
    EXPECT_TRUE(FilledBoxes().empty());
}

TEST_F(Fills, TheClipRectangleLimitsTheFill) {
    CTqDraw& dc = MakeContext(0);
    dc.SetCutArea(5, 5, 50, 50);
    dc.SetDoCut(1);
    dc.DrawPolygon(5, square, brush);
    EXPECT_EQ(FilledBoxes(), (Lines{"FillRgn 2 50 490 110 550"}));
    dc.SetCutArea(20, 20, 50, 50);
    dc.DrawPolygon(5, square, brush);
    EXPECT_TRUE(FilledBoxes().empty());
}

TEST_F(Fills, APolygonAreaWithTheSwitchAtOneFillsWithinItsBoundingRectangle) {
    CTqDraw& dc = MakeContext(0);
    double x[] = {0, 20, 20};
    double y[] = {0, 0, 20};
    dc.SetCutArea(3, x, y);
    dc.SetDoCut(1);
    dc.DrawPolygon(5, square, brush);
    EXPECT_EQ(FilledBoxes(), (Lines{"FillRgn 2 10 490 110 590"}));
    dc.SetDoCut(2);
    dc.DrawPolygon(5, square, brush);
    EXPECT_EQ(FilledBoxes(), (Lines{"FillRgn 3 11 491 110 590"}));
}

TEST_F(Fills, TheClipPolygonTurnsWithTheRotationAndTheClipRectangleDoesNot) {
    CTqDraw& dc = MakeContext(0);
    dc.SetRotateMoveP(90.0, 20.0, 20.0);
    double x[] = {5, 15, 15, 5};
    double y[] = {5, 5, 15, 15};
    dc.SetCutArea(4, x, y);
    dc.SetDoCut(2);
    dc.DrawPolygon(5, square, brush);
    // The square turns to 29..39, 1..11, the clip polygon to 25..35, 5..15.
    EXPECT_EQ(FilledBoxes(), (Lines{"FillRgn 2 290 490 350 550"}));
    dc.SetDoCut(1);
    dc.DrawPolygon(5, square, brush);
    EXPECT_TRUE(FilledBoxes().empty());
}

TEST_F(Fills, TheSwitchAtTwoWithoutAPolygonLeavesByAnException) {
    CTqDraw& dc = MakeContext(0);
    dc.SetCutArea(0, 0, 50, 50);
    dc.SetDoCut(2);
    EXPECT_THROW(dc.DrawPolygon(5, square, brush), std::invalid_argument);
    dc.SetTqDCType(3);
    EXPECT_EQ(dc.DrawPolygon(5, square, brush), 4);  // no fill, no exception
}

}  // namespace

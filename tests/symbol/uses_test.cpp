// The short forms are taken where they should be, and nowhere else.
#include "runtime/uses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/symbol/symbol_test.h"
#include "zenromath/geometry.h"

namespace {

using namespace zm::uses;

class Uses : public zm::test::DrawingTest {
 protected:
    Uses() {
        Load(
            "*42 G\n1 -0.2,0 0.2,0\n1 0,-0.2 0,0.2\n1 -0.2,-0.2 0.3,0.1\n"
            "*43 G\n1 0,0 2,0\n1 0,0 0,1\n3 0,0,0.5\n1 0,0 -2,0\n1 0,0 0,-1\n*80 LC\n+0.6 -0.2 G42 -0.2\n*$\n");
    }

    // A view of 80 by 60 units about the middle of a projection's sheet, clipped to itself as applications have it.
    CTqDraw& BeginSheet(int type = 0) {
        CTqDraw& dc = Begin(type);
        dc.SetViewDrawDC(&m_device, 10.0, kEast, kNorth, 800, 600, 0);
        dc.SetCutArea();
        dc.SetDoCut(1);
        return dc;
    }
    static void LayPattern() {
        double x[] = {kEast + 10.3, kEast + 60.1};
        double y[] = {kNorth + 10.2, kNorth + 40.7};
        std::fill(std::begin(counts), std::end(counts), 0);
        PROCESSALL(2, x, y, 1, 80);
    }
    static constexpr double kEast = 512340.25, kNorth = 3391230.5;
};

TEST_F(Uses, APatternInTheViewOfAClippedDeviceTakesTheShortFormsAlone) {
    BeginSheet();
    LayPattern();
    EXPECT_GE(counts[strokeInBox], 58u);  // dashes, and strokes of symbols on the edge of a pixel
    EXPECT_EQ(counts[strokeOutside], 0u);
    EXPECT_GE(counts[symbolMoved], 55u);
    EXPECT_LE(counts[symbolExact], 3u);
    EXPECT_EQ(counts[symbolAlone], 0u);
    EXPECT_GT(counts[stepByCourse], 160u);  // three for each metre
    EXPECT_LE(counts[stepByLeg], 2u);
}

TEST_F(Uses, StrokesAcrossTheClipRectangleAreClipped) {
    CTqDraw& dc = BeginSheet();
    dc.SetCutArea(kEast + 20.0, kNorth + 10.0, kEast + 40.0, kNorth + 50.0);
    LayPattern();
    EXPECT_GT(counts[strokeInBox], 10u);
    EXPECT_GT(counts[strokeOutside], 10u);
    EXPECT_GT(counts[symbolMoved], 10u);
    EXPECT_GT(counts[symbolAlone], 10u);
    EXPECT_EQ(counts[segmentGathered], 0u);  // a leg's direction is quicker than its bearing
}

TEST_F(Uses, ARotatedOrFlippedContextMovesNoSymbols) {
    CTqDraw& dc = BeginSheet();
    dc.SetRotateMoveP(1.0, kEast, kNorth);
    LayPattern();
    EXPECT_EQ(counts[symbolMoved], 0u);
    EXPECT_GT(counts[strokeInBox], 200u);  // rotated, they are still in the box
    dc.SetRotateMoveP(0.0, 0.0, 0.0);
    dc.SetViewDrawDC(&m_device, 10.0, kEast, kNorth, 800, 600, 1);
    LayPattern();
    EXPECT_EQ(counts[symbolMoved], 0u);
    EXPECT_EQ(counts[strokeInBox], 0u);
    EXPECT_GT(counts[strokeOutside], 200u);
}

TEST_F(Uses, ASymbolsSegmentsInTheViewAreGatheredBetweenWhatElseItHas) {
    BeginSheet();
    for (const double angle : {0.0, 0.7}) {
        std::fill(std::begin(counts), std::end(counts), 0);
        insert(kEast + 40.0, kNorth + 30.0, angle, 43);
        EXPECT_EQ(counts[segmentGathered], 4u);
        EXPECT_EQ(counts[strokeInBox], 0u);
        EXPECT_EQ(counts[strokeOutside], 0u);
    }
    std::fill(std::begin(counts), std::end(counts), 0);
    insert(kEast + 1.0, kNorth + 30.0, 0.0, 43);  // the stroke to the left leaves the view
    EXPECT_EQ(counts[segmentGathered], 3u);
    EXPECT_EQ(counts[strokeOutside], 1u);
}

TEST_F(Uses, ASymbolsSegmentsAreGatheredOnNoRotatedContextClipPolygonOrDrawing) {
    const auto place = [] {
        std::fill(std::begin(counts), std::end(counts), 0);
        insert(kEast + 40.0, kNorth + 30.0, 0.7, 43);
        EXPECT_EQ(counts[segmentGathered], 0u);
        return counts[strokeInBox] + counts[strokeOutside];
    };
    CTqDraw& dc = BeginSheet();
    dc.SetRotateMoveP(1.0, kEast, kNorth);
    EXPECT_EQ(place(), 4u);
    dc.SetRotateMoveP(0.0, 0.0, 0.0);
    double x[] = {kEast, kEast + 80.0, kEast + 80.0, kEast};
    double y[] = {kNorth, kNorth, kNorth + 60.0, kNorth + 60.0};
    dc.SetCutArea(4, x, y);
    EXPECT_EQ(place(), 4u);
    for (const int type : {1, 3}) {
        BeginSheet(type);
        EXPECT_EQ(place(), 4u);
    }
}

TEST_F(Uses, AClipPolygonTakesTheLongWay) {
    CTqDraw& dc = BeginSheet();
    double x[] = {kEast, kEast + 80.0, kEast + 80.0, kEast};
    double y[] = {kNorth, kNorth, kNorth + 60.0, kNorth + 60.0};
    dc.SetCutArea(4, x, y);
    LayPattern();
    EXPECT_EQ(counts[strokeInBox], 0u);
    EXPECT_EQ(counts[symbolMoved], 0u);
}

// A square with an edge that runs along the lines, and one that some lines pass at its end.
TEST_F(Uses, OfAHatchOnlyLinesBesideTheEndsOfEdgesAreAskedWhetherTheyMeetThem) {
    Load("*60 H 2\n2 30 3\n*$\n");
    BeginSheet();
    double square[] = {kEast,        kNorth,        kEast + 50.3, kNorth + 0.1,
                       kEast + 50.1, kNorth + 40.7, kEast + 0.4,  kNorth + 40.2};
    std::fill(std::begin(counts), std::end(counts), 0);
    EXPECT_NE(DrawHatch(4, square, 60), 0);
    EXPECT_GT(counts[hatchSure], 30u);
    EXPECT_LE(counts[hatchAsked], 2u);
    // Where the tolerance is metres wide, no line surely meets an edge.
    const double before = SetMINI(2.0);
    std::fill(std::begin(counts), std::end(counts), 0);
    EXPECT_NE(DrawHatch(4, square, 60), 0);
    EXPECT_EQ(counts[hatchSure], 0u);
    EXPECT_GT(counts[hatchAsked], 30u);
    SetMINI(before);
}

TEST_F(Uses, OfADrawingFileEachStrokeGoesOutAloneByTheQuickStepsAndTurns) {
    BeginSheet(1);
    LayPattern();
    EXPECT_EQ(counts[strokeInBox], 0u);
    EXPECT_GT(counts[strokeOutside], 200u);
    EXPECT_GT(counts[stepByCourse], 160u);  // three for each metre
    EXPECT_GT(counts[pointByLeg], 6u * 50u);
    EXPECT_LE(counts[pointByBearing], 6u);
}

}  // namespace

// Placing of graphic symbols.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Insert = zm::test::DrawingTest;

constexpr char kCross[] = "*12 G\n1 -1,0 1,0\n1 0,-1 0,1\n*$\n";

TEST_F(Insert, OutsideTheClipAreaReturnsZeroForAValidCode) {
    Load(kCross);
    m_dc->SetCutArea(0.0, 0.0, 10.0, 10.0);
    m_dc->SetDoCut(1);
    EXPECT_EQ(0, insert(20.0, 5.0, 0.0, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 12));
}

TEST_F(Insert, DrawsWhatAnApplicationWroteIntoTheBodyUntilItIsRebuilt) {
    Load("*12 G\n1 -1,0 1,0\n1 0,-1 0,1\n*13 G\n1 0,0 5,5\n*$\n");
    ASSERT_EQ(1, getsymbody(12));
    TheBody[2].point.x *= 2.0F;  // the first segment becomes 3 long
    Begin(1);
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("line -1.000 0.000 2.000 0.000", "line 0.000 -1.000 0.000 1.000"));
    TheBody[0].op.op = 9.0F;  // no operator that draws
    m_writer.calls.clear();
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("line 0.000 -1.000 0.000 1.000"));
    getsymbody(13);
    m_writer.calls.clear();
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("line -1.000 0.000 1.000 0.000", "line 0.000 -1.000 0.000 1.000"));
}

TEST_F(Insert, ALargerCountWrittenByAnApplicationReadsNothingThatIsNotThere) {
    Load(kCross);
    ASSERT_EQ(1, getsymbody(12));
    nBody = 100000;
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 12));
}

TEST_F(Insert, OfABodyThatTheApplicationPutsThereADeviceGetsAsManySegmentsAsTheSymbolHas) {
    Load(kCross);
    Begin(0, 1.0).SetViewDrawDC(&m_device, 1.0, -50.0, -50.0, 100, 100, 0);
    ASSERT_EQ(1, getsymbody(12));
    std::vector<SYMBODY> own;
    for (int i = 0; i < 5; ++i) own.insert(own.end(), TheBody, TheBody + 4);
    TheBody = own.data();
    nBody = 20;
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_EQ(m_device.lines, 2);
}

TEST_F(Insert, OfABodyThatTheApplicationCutsADeviceGetsWhatIsLeft) {
    Load(kCross);
    Begin(0, 1.0).SetViewDrawDC(&m_device, 1.0, -50.0, -50.0, 100, 100, 0);
    ASSERT_EQ(1, getsymbody(12));
    nBody = 4;
    EXPECT_EQ(0, insert(0.0, 0.0, 0.0, 12));
    EXPECT_EQ(m_device.lines, 1);
    EXPECT_EQ(Messages(), (std::vector<std::string>{"cID error"}));
}

TEST_F(Insert, OfMoreSegmentsThanGoOutTogetherADeviceGetsAll) {
    std::string library = "*12 G\n";
    for (int i = 0; i < 150; ++i) library += "1 -1,0 1,0\n";
    Load(library + "*$\n");
    Begin(0, 1.0).SetViewDrawDC(&m_device, 1.0, -50.0, -50.0, 100, 100, 0);
    EXPECT_EQ(1, insert(0.0, 0.0, 0.3, 12));
    EXPECT_EQ(m_device.lines, 150);
}

TEST_F(Insert, Code1000IsADotOnADeviceAndNothingInADwg) {
    Load(kCross);
    Begin(0);
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 1000));
    EXPECT_EQ(1, m_device.dots);
    Begin(1);
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, 1000));
    EXPECT_THAT(m_writer.calls, IsEmpty());
}

TEST_F(Insert, CodeOfAnotherKindReturnsZero) {
    Load("*12 L 1\n*13 H 1\n2 45 3\n*14 LC\n+5\n*$\n");
    Begin(1);
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, 12));
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, 13));
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, 14));
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, 0));
    EXPECT_EQ(0, insert(5.0, 5.0, 0.0, -4));
    EXPECT_THAT(m_writer.calls, IsEmpty());
}

TEST_F(Insert, SymbolSmallerThanAPixelAndAHalfIsADot) {
    Load(kCross);  // size 2 in millimetres of the file
    Begin(3, 0.76);
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 12));
    EXPECT_EQ(2U, Count("Line2"));
    Begin(3, 0.74);
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:5.000000:5.000000:0"));
}

TEST_F(Insert, DotLimitTakesMillimetresForGroundUnitsAtEveryScale) {
    Load(kCross);
    setgscale(10000.0);  // 2 mm are 20 units now, 15 pixels
    Begin(3, 0.74);
    EXPECT_EQ(1, insert(5.0, 5.0, 0.0, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:5.000000:5.000000:0"));
}

TEST_F(Insert, AngleOf1e7CountsAsNone) {
    Load("*12 G\n1 0,0 1000000,0\n*$\n");
    insert(0.0, 0.0, 1e-7, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:1000000.000000:0.000000"));
    insert(0.0, 0.0, 1.1e-6, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:999999.999999:1.100000"));
}

TEST_F(Insert, SymbolHasTheSameSizeOnPaperAtEveryScale) {
    Load("*12 G\n1 0,0 2,1\n*$\n");
    setgscale(500.0);
    insert(10.0, 10.0, 0.0, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:10.000000:10.000000:11.000000:10.500000"));
    setgscale(2000.0);
    insert(10.0, 10.0, 0.0, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:10.000000:10.000000:14.000000:12.000000"));
}

TEST_F(Insert, SegmentWithOnePointGoesToTheTerminator) {
    Load("*12 G\n1 1,2\n*$\n");
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:1.000000:2.000000:-100000.000000:-100000.000000"));
}

TEST_F(Insert, OperatorsDrawTheirFigures) {
    Load("*12 G\n2 0,0 1,0 1,1\n3 1,1 2\n4 0,0 2,0 0,3\n5 7,8\n*$\n");
    insert(10.0, 20.0, 0.0, 12);
    EXPECT_THAT(Recorded(),
                ElementsAre("PlineBgn", "Line2:10.000000:20.000000:11.000000:20.000000",
                            "Line2:11.000000:20.000000:11.000000:21.000000", "PlineEnd",
                            "Arc:11.000000:21.000000:2.000000:0.000000:360.000000",
                            "Arc:10.000000:20.000000:2.000000:0.000000:90.000000", "Pixel:17.000000:28.000000:0"));
}

TEST_F(Insert, ArcPolylineHasItsChordAheadOfTheArc) {
    Load("*12 G\n2 -10000000,90000 2,0 0,2\n*$\n");
    insert(0.0, 0.0, 0.0, 12);
    const auto drawn = Recorded();
    // Points A, B, then 51 along the arc from A to B.
    ASSERT_EQ(54U, drawn.size());
    EXPECT_EQ("PlineBgn", drawn.front());
    EXPECT_EQ("Line2:2.000000:0.000000:0.000000:2.000000", drawn[1]);
    EXPECT_EQ("Line2:0.000000:2.000000:2.000000:0.000000", drawn[2]);
    EXPECT_EQ("PlineEnd", drawn.back());
}

TEST_F(Insert, ArcPolylineWithoutSweepDrawsItsStrokeTwice) {
    Load("*12 G\n2 -10000000,0 0,0 1,0\n*$\n");
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:1.000000:0.000000", "PlineBgn",
                                        "Line2:0.000000:0.000000:1.000000:0.000000", "PlineEnd"));
}

TEST_F(Insert, ArcPolylineWithANegativeSweepIsTheChordAlone) {
    Load("*12 G\n2 -10000000,-90000 0,0 1,0 -10000000,-45000 1,1\n*$\n");
    insert(0.0, 0.0, 0.0, 12);
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:1.000000:0.000000",
                                        "Line2:1.000000:0.000000:1.000000:0.000000",
                                        "Line2:1.000000:0.000000:1.000000:1.000000", "PlineEnd"));
}

TEST_F(Insert, ArcPolylineThatEndsEarlyDrawsWhatItHas) {
    Load("*12 G\n2 -10000000,0 0,0\n*13 G\n2 -10000000,0\n*14 G\n2 -10000000,0 0,0 1,0 -10000000,0 5,5\n*$\n");
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 13));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 14));
    EXPECT_EQ(2U, Count("Line2"));
}

TEST_F(Insert, ArcPolylinePassesOverAPointWhereAMarkerShouldStand) {
    Load("*12 G\n2 -10000000,0 0,0 1,0 5,5 -10000000,0 2,0 3,0\n*$\n");
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_EQ(5U, Count("Line2"));  // two strokes at once, then three of the polyline
}

TEST_F(Insert, ArcPolylineIsCutAt4000PointsAndToldOnce) {
    // 80 full turns are 16001 points.
    Load("*12 G\n2 -10000000,28800000 0,0 1,0\n*$\n");
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_EQ(3999U, Count("Line2"));
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_THAT(Messages(), ElementsAre("symbol.dat code=12: an arc polyline has more than 4000 points; what comes "
                                        "after them is not drawn. Split it."));
}

TEST_F(Insert, BodyThatEndsEarlyIsToldAndWhatStandsIsDrawn) {
    // The sweep below -100 degrees takes the place of a terminator, so the second record lies beyond the body.
    Load("*12 G\n2 -10000000,-120000 0,0 1,0\n5 1,1\n*$\n");
    EXPECT_EQ(0, insert(0.0, 0.0, 0.0, 12));
    EXPECT_THAT(Messages(), ElementsAre("cID error"));
    EXPECT_EQ(1U, Count("Line2"));
}

TEST_F(Insert, OnlyRecordWithASweepBelowMinus100EndsAtItsMarker) {
    Load("*12 G\n2 -10000000,-120000 0,0 1,0\n*$\n");
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Insert, RecordLostToOperatorZeroIsNotDrawn) {
    Load("*65 G\n5 1,1\n0 2,2\n5 3,3\n*$\n");
    m_host.boxes.clear();
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 65));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:1.000000:1.000000:0"));
    EXPECT_TRUE(m_host.boxes.empty());
}

TEST_F(Insert, RecordsWithoutPointsTakeTheTerminatorOrNothing) {
    Load("*12 G\n5 9,8\n4 1,1\n*13 G\n5 9,8\n1\n*14 G\n5 9,8\n3\n5\n*$\n");
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:9.000000:8.000000:0"));
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 13));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:9.000000:8.000000:0"));
    EXPECT_EQ(1, insert(0.0, 0.0, 0.0, 14));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:9.000000:8.000000:0",
                                        "Arc:-100000.000000:-100000.000000:0.000000:"
                                        "0.000000:360.000000",
                                        "Pixel:-100000.000000:-100000.000000:0"));
}

TEST_F(Insert, BlockTableTakesThePlaceOfStrokesInADwg) {
    Load(kCross);
    Begin(1);
    std::vector<const char*> table(1000, nullptr);
    table[0] = "SYMBOLS 1.0";
    table[12] = "TREE";
    SetSymbolBlockTable(table.data());
    setgscale(500.0);
    EXPECT_EQ(1, insert(3.0, 4.0, 1.5707963267948966, 12));
    EXPECT_THAT(m_writer.calls, ElementsAre("insert 3.000 4.000 0.5 0.5 90.000 TREE"));
    table[0] = "SYMBOLS 1.0 metres";
    EXPECT_EQ(1, insert(3.0, 4.0, 0.0, 12));
    EXPECT_EQ("insert 3.000 4.000 1 1 0.000 TREE", m_writer.calls.back());
    table[0] = nullptr;
    EXPECT_EQ(1, insert(3.0, 4.0, 0.0, 12));
    EXPECT_EQ("insert 3.000 4.000 0.5 0.5 0.000 TREE", m_writer.calls.back());
}

TEST_F(Insert, ABlockThatTheClipAreaCutsIsStrokesWhereTheReachIsKnown) {
    Load(kCross);
    Begin(1);
    std::vector<const char*> table(1000, nullptr);
    table[12] = "TREE";
    SetSymbolBlockTable(table.data());
    std::vector<double> reach(1000, 0.0);
    reach[12] = 0.001;
    setgscale(1000.0);
    m_dc->SetCutArea(0.0, 0.0, 10.0, 10.0);
    m_dc->SetDoCut(1);
    insert(0.5, 5.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("insert 0.500 5.000 1 1 0.000 TREE"));
    m_writer.calls.clear();
    zm::symbol::SetSymbolBlockReach(reach.data());
    insert(0.5, 5.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("line 0.000 5.000 1.500 5.000", "line 0.500 4.000 0.500 6.000"));
    m_writer.calls.clear();
    insert(1.5, 5.0, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("insert 1.500 5.000 1 1 0.000 TREE"));
    double x[] = {0.0, 10.0, 10.0, 5.0, 0.0}, y[] = {0.0, 0.0, 10.0, 5.0, 10.0};  // a notch from above
    m_dc->SetCutArea(5, x, y);
    m_dc->SetDoCut(2);
    m_writer.calls.clear();
    insert(5.0, 4.5, 0.0, 12);
    EXPECT_THAT(m_writer.calls, ElementsAre("line 4.000 4.500 6.000 4.500", "line 5.000 3.500 5.000 5.000"));
    m_writer.calls.clear();
    insert(5.0, 3.5, 0.0, 12);
    EXPECT_EQ(1U, m_writer.calls.size());
    m_dc->SetDoCut(0);
    insert(5.0, 4.5, 0.0, 12);
    EXPECT_EQ(2U, m_writer.calls.size());
}

TEST_F(Insert, BlockTableEntryWithoutTextAndOtherSinksDrawStrokes) {
    Load(kCross);
    std::vector<const char*> table(1000, nullptr);
    table[12] = "TREE";
    SetSymbolBlockTable(table.data());
    insert(3.0, 4.0, 0.0, 12);
    EXPECT_EQ(2U, Count("Line2"));
    Begin(1);
    table[12] = "";
    insert(3.0, 4.0, 0.0, 12);
    EXPECT_EQ(2U, m_writer.calls.size());
}

TEST_F(Insert, NumbersThatAreNoneDoNoHarm) {
    Load("*12 G\n1 0,0 1,1\n2 -10000000,90000 0,0 1,0\n3 0,0 1\n4 0,0 1,0 0,1\n5 1,1\n*$\n");
    for (const double v : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e308})
        for (const int type : {0, 1, 3}) {
            Begin(type);
            insert(v, 1.0, 0.0, 12);
            insert(1.0, 1.0, v, 12);
            setgscale(v);
            insert(1.0, 1.0, 0.5, 12);
            setgscale(1000.0);
        }
    SUCCEED();
}

TEST_F(Insert, WithoutAWorkingContextReturnsZero) {
    Load(kCross);
    SelectWorkingTqDC(nullptr);
    EXPECT_EQ(0, insert(1.0, 1.0, 0.0, 12));
}

}  // namespace

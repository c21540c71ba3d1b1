// Line-class symbols: patterns, companions, vertex mode.
#include <gmock/gmock.h>

#include <limits>

#include "symbol/line/line_symbol.h"
#include "symbol/paper.h"
#include "tests/support/random.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Pattern : public zm::test::DrawingTest {
 protected:
    /// Lays code 80 with this pattern line, and header tokens, along interleaved points; the result of NewLC.
    int Lay(const std::string& pattern, std::vector<double> xy, const std::string& head = "") {
        Load("*42 G\n1 0,0 0,1\n*43 G\n5 0,0\n*44 G\n3 0,0 1\n*80 LC " + head + "\n" + pattern + "\n*$\n");
        x.clear();
        y.clear();
        for (std::size_t i = 0; i < xy.size(); i += 2) {
            x.push_back(xy[i]);
            y.push_back(xy[i + 1]);
        }
        getsymbody(80);
        return NewLC(x.data(), y.data(), static_cast<int>(x.size()), 80);
    }
    std::vector<double> x, y;
};

TEST_F(Pattern, DashesAndGapsWithALastRunToTheEnd) {
    EXPECT_EQ(2, Lay("+5 -2", {0, 0, 18, 0}));
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:5.000000:0.000000", "Line2:7.000000:0.000000:12.000000:0.000000",
                            "Line2:14.000000:0.000000:18.000000:0.000000"));
}

TEST_F(Pattern, DashesOfFiveAndGapsOfTwoOnALineOfTwenty) {
    EXPECT_EQ(2, Lay("+5 -2", {0, 0, 20, 0}));
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:5.000000:0.000000", "Line2:7.000000:0.000000:12.000000:0.000000",
                            "Line2:14.000000:0.000000:19.000000:0.000000"));
}

TEST_F(Pattern, LineThatEndsInsideAGapHasNoTail) {
    Lay("+5 -2", {0, 0, 6, 0});
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:5.000000:0.000000"));
}

TEST_F(Pattern, SolidLineIsDrawnAtOnceWithSymbolsAlongIt) {
    Lay("+5 G43", {0, 0, 12, 0});
    // The first token is no symbol, so none stands at the last vertex.
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:12.000000:0.000000", "PlineEnd",
                                        "Pixel:5.000000:0.000000:0", "Pixel:10.000000:0.000000:0"));
}

TEST_F(Pattern, SymbolFirstWithoutWidthPlacesNothingAtTheLastVertex) {
    Lay("G43 +5", {0, 0, 12, 0});
    EXPECT_THAT(Recorded(),
                ElementsAre("PlineBgn", "Line2:0.000000:0.000000:12.000000:0.000000", "PlineEnd",
                            "Pixel:0.000000:0.000000:0", "Pixel:5.000000:0.000000:0", "Pixel:10.000000:0.000000:0"));
}

TEST_F(Pattern, SymbolFirstWithAWidthStandsAtTheLastVertexToo) {
    Lay("G43 W1 +5", {0, 0, 12, 0});
    const auto drawn = Recorded();
    EXPECT_EQ("Pixel:12.000000:0.000000:0", drawn.back());
}

TEST_F(Pattern, SymbolAloneIsPlacedTenTimesThenReported) {
    EXPECT_EQ(0, Lay("G43", {0, 0, 12, 0}));
    EXPECT_THAT(Messages(), ElementsAre("80 bad LC symbol"));
    EXPECT_EQ(10U, Count("Pixel"));
}

TEST_F(Pattern, TenMarksInARowAreFineBehindTheFirstSegment) {
    EXPECT_EQ(2, Lay("+12 P P P P P P P P P P P", {0, 0, 10, 0, 20, 0}));
    EXPECT_THAT(Messages(), IsEmpty());
    EXPECT_EQ(11U, Count("Pixel"));
}

TEST_F(Pattern, CompanionOnTheRightIsMitredAtCorners) {
    Lay("L W0.5 -1 +4", {0, 0, 3, 0, 3, 10});
    const auto drawn = Recorded();
    ASSERT_THAT(drawn, SizeIs(8));
    EXPECT_EQ("Line2:1.000000:0.000000:3.000000:0.000000", drawn[0]);
    EXPECT_EQ("Line2:3.000000:0.000000:3.000000:2.000000", drawn[1]);
    EXPECT_EQ("Line2:1.000000:-0.500000:3.500000:-0.500000", drawn[2]);
    EXPECT_EQ("Line2:3.500000:-0.500000:3.500000:2.000000", drawn[3]);
    EXPECT_EQ("Line2:3.000000:3.000000:3.000000:7.000000", drawn[4]);
    EXPECT_EQ("Line2:3.500000:3.000000:3.500000:7.000000", drawn[5]);
}

TEST_F(Pattern, CompanionOnTheLeftAndOnBothSides) {
    Lay("R W0.5 +4 -9", {0, 0, 10, 0});
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:4.000000:0.000000", "Line2:0.000000:0.500000:4.000000:0.500000"));
    Lay("M W0.5 +4 -9", {0, 0, 10, 0});
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:4.000000:0.000000", "Line2:0.000000:-0.250000:4.000000:-0.250000",
                            "Line2:0.000000:0.250000:4.000000:0.250000"));
}

TEST_F(Pattern, CompanionUnderAPixelIsLeftOutExceptInADwg) {
    Begin(3, 1.9);
    Lay("L W0.5 +4 -9", {0, 0, 10, 0});
    EXPECT_EQ(1U, Count("Line2"));
    Begin(1, 1.9);
    Lay("L W0.5 +4 -9", {0, 0, 10, 0});
    EXPECT_THAT(m_writer.calls, SizeIs(2));
}

TEST_F(Pattern, BothSidesOfASolidLineAsNarrowAsHalfDrawNothing) {
    Lay("M W0.02 +5", {0, 0, 12, 0});
    EXPECT_THAT(Recorded(), IsEmpty());
    Lay("M W0.022 +5", {0, 0, 12, 0});
    EXPECT_EQ(2U, Count("Line2"));
}

TEST_F(Pattern, LastWidthWins) {
    Lay("L W0.5 W1.5 +5", {0, 0, 12, 0});
    const auto drawn = Recorded();
    EXPECT_EQ("Line2:0.000000:-1.500000:12.000000:-1.500000", drawn[4]);
}

TEST_F(Pattern, ShortLastSegmentOfARunLeavesOutTheClosingStroke) {
    // The dash ends 0.00005 behind the corner.
    Lay("L W0.5 +5.00005 -20", {0, 0, 5, 0, 5, 10});
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:5.000000:0.000000", "Line2:5.000000:0.000000:5.000000:0.000050"));
}

TEST_F(Pattern, NewLengthEqualToTheOldDistanceSkipsToTheVertex) {
    // The gap behind the first dash is as long as the whole segment.
    EXPECT_EQ(2, Lay("+4 -10", {0, 0, 10, 0, 10, 30}));
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:4.000000:0.000000",
                                        "Line2:10.000000:10.000000:10.000000:14.000000",
                                        "Line2:10.000000:24.000000:10.000000:28.000000"));
}

TEST_F(Pattern, KeepsItsPlaceInTheCallersArrays) {
    Lay("+5 -2", {0, 0, 18, 0});
    EXPECT_THAT(x, ElementsAre(14.0, 18.0));
}

TEST_F(Pattern, SymbolsTurnWithTheirSegment) {
    Lay("-5 G42", {0, 0, 8, 0, 8, 8});
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:5.000000:0.000000:5.000000:1.000000", "Line2:8.000000:2.000000:7.000000:2.000000",
                            "Line2:8.000000:7.000000:7.000000:7.000000"));
}

TEST_F(Pattern, ReplacesTheCurrentSymbolButGoesOnWithItsOwn) {
    Lay("-2 G43 -2 G44", {0, 0, 9, 0});
    EXPECT_THAT(Recorded(),
                ElementsAre("Pixel:2.000000:0.000000:0", "Arc:4.000000:0.000000:1.000000:0.000000:360.000000",
                            "Pixel:6.000000:0.000000:0", "Arc:8.000000:0.000000:1.000000:0.000000:360.000000"));
}

TEST_F(Pattern, OneTokenRepeatsItself) {
    EXPECT_EQ(2, Lay("-3", {0, 0, 10, 0}));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ(2, Lay("+3", {0, 0, 10, 0}));
    EXPECT_EQ(1U, Count("Line2"));
}

TEST_F(Pattern, WithoutTokensIsAPlainLine) {
    EXPECT_EQ(2, Lay("", {0, 0, 10, 0}));
    EXPECT_EQ(1U, Count("Line2"));
}

TEST_F(Pattern, ThatNeverAdvancesEndsAndIsToldOnce) {
    for (const char* pattern : {"-0", "+0 -0", "-0 P", "+5 --5", "--1", "+1 --1.5", "- -"}) {
        m_host.boxes.clear();
        EXPECT_EQ(0, Lay(pattern, {0, 0, 10, 0, 20, 5})) << pattern;
        EXPECT_THAT(Messages(), ElementsAre("symbol.dat code=80: the lengths of the line pattern never come forward; "
                                            "the rest of the line is not drawn."))
            << pattern;
        Recorded();
    }
}

TEST_F(Pattern, ThatAdvancesByNextToNothingEnds) {
    EXPECT_EQ(0, Lay("-0.00000001", {0, 0, 1000, 0}));
    EXPECT_EQ(0, Lay("-1", {1e16, 0, 1e16 + 1e4, 0}));  // a millimetre is lost in coordinates as large as these
    EXPECT_THAT(Messages(), SizeIs(2));
}

TEST_F(Pattern, WithAZeroLengthAmongOthersAdvances) {
    EXPECT_EQ(2, Lay("+0 -2 +1", {0, 0, 7, 0}));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(Pattern, OfAnUnknownSymbolPlacesADot) {
    Lay("-5 G500", {0, 0, 6, 0});
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:5.000000:0.000000:0"));
    Begin(1);
    Lay("-5 G500", {0, 0, 6, 0});
    EXPECT_THAT(m_writer.calls, IsEmpty());
}

TEST_F(Pattern, ThatNamesItselfOrHugeCodesDoesNoHarm) {
    EXPECT_EQ(2, Lay("-5 G80", {0, 0, 6, 0}));
    EXPECT_EQ(2, Lay("-5 G99999999999", {0, 0, 6, 0}));
    EXPECT_EQ(2, Lay("-5 G-1", {0, 0, 6, 0}));
    SUCCEED();
}

TEST_F(Pattern, VertexSymbolsThatNameThemselvesOrNothingDoNoHarm) {
    Begin(1);
    EXPECT_EQ(1, Lay("G80 G80 G80", {0, 0, 10, 0}, "D3 A1"));
    EXPECT_THAT(m_writer.calls, ElementsAre("line 0.000 0.000 10.000 0.000"));
    EXPECT_EQ(1, Lay("G1000 G-1 G99999999999", {0, 0, 10, 0}, "D3 A1"));
    EXPECT_EQ(1, Lay("G G G", {0, 0, 10, 0}, "D99999999999 A1"));
}

TEST_F(Pattern, OfFewerThanTwoPointsReturnsZero) {
    EXPECT_EQ(0, Lay("+5", {0, 0}));
    EXPECT_EQ(0, NewLC(nullptr, nullptr, 5, 80));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Pattern, FlipTurnsEverySymbolByPi) {
    Lay("-5 G42", {0, 0, 1, 0});
    Recorded();
    const LCBODY symbol = TheLCBody;
    double px[] = {0, 6};
    double py[] = {0, 0};
    EXPECT_EQ(2, zm::symbol::LayLineSymbol(symbol.value, symbol.code, 2, px, py, 2, 1, 0, 1000.0, 80));
    EXPECT_THAT(Recorded(), ElementsAre("Line2:5.000000:0.000000:5.000000:-1.000000"));
}

TEST_F(Pattern, SidesOffIgnoresCompanions) {
    Lay("L W1 +5", {0, 0, 1, 0});
    Recorded();
    const LCBODY symbol = TheLCBody;
    double px[] = {0, 6};
    double py[] = {0, 0};
    EXPECT_EQ(2, zm::symbol::LayLineSymbol(symbol.value, symbol.code, 3, px, py, 2, 0, 1, 1000.0, 80));
    EXPECT_EQ(1U, Count("Line2"));
}

TEST_F(Pattern, VertexSymbolsStandAtStartAndEndOfEachSegmentTurnedWithIt) {
    EXPECT_EQ(1, Lay("G42 G43", {0, 0, 10, 0, 10, 10}, "D2 A1"));
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:0.000000:1.000000", "Pixel:10.000000:0.000000:0",
                            "Line2:0.000000:0.000000:10.000000:0.000000", "Line2:10.000000:0.000000:9.000000:0.000000",
                            "Pixel:10.000000:10.000000:0", "Line2:10.000000:0.000000:10.000000:10.000000"));
}

TEST_F(Pattern, VertexSymbolsWithoutTurnStandUpright) {
    EXPECT_EQ(1, Lay("G42", {0, 0, 0, 10}, "D1 A0"));
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:0.000000:1.000000", "Line2:0.000000:0.000000:0.000000:10.000000"));
}

TEST_F(Pattern, ThirdVertexSymbolStandsInTheMiddle) {
    EXPECT_EQ(1, Lay("G43 G43 G43", {0, 0, 10, 0}, "D3 A0"));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:0.000000:0.000000:0", "Pixel:10.000000:0.000000:0",
                                        "Pixel:5.000000:0.000000:0", "Line2:0.000000:0.000000:10.000000:0.000000"));
}

TEST_F(Pattern, ConnectingLineIsPulledInAtBothEnds) {
    EXPECT_EQ(1, Lay("G43", {0, 0, 10, 0}, "D1 A0 I1.5"));
    EXPECT_THAT(Recorded(), ElementsAre("Pixel:0.000000:0.000000:0", "Line2:1.500000:0.000000:8.500000:0.000000"));
}

TEST_F(Pattern, ConnectingLineHasItsColourInADwg) {
    Begin(1);
    EXPECT_EQ(1, Lay("G43", {0, 0, 10, 0}, "D1 A0 I1 C3"));
    EXPECT_THAT(m_writer.calls, ElementsAre("point 0.000 0.000", "color 3", "line 1.000 0.000 9.000 0.000"));
}

TEST_F(Pattern, VertexModeWithALetterThatIsNoSymbolIsToldAndDrawsNothing) {
    EXPECT_EQ(0, Lay("G42 +5", {0, 0, 10, 0}, "D2 A0"));
    EXPECT_THAT(Messages(), ElementsAre("error LC D2 A0 "));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Pattern, VertexModeOfOnePointReturnsOne) {
    EXPECT_EQ(1, Lay("G42 G43", {0, 0}, "D2 A0"));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Pattern, VertexModePlacesBlocksOfItsOwnCodeOnAllVertices) {
    Begin(1);
    std::vector<const char*> table(1000, nullptr);
    table[0] = "SYMBOLS 1.0 ";
    table[42] = "TREE";
    Lay("G43", {0, 0, 10, 0}, "D1 A0");
    m_writer.calls.clear();
    SetSymbolBlockTable(table.data());
    // The code is that of a graphic symbol; for one of a line class insert would place nothing.
    EXPECT_EQ(1, NewLC(x.data(), y.data(), 2, 42));
    EXPECT_THAT(m_writer.calls, ElementsAre("insert 10.000 0.000 1 1 0.000 TREE", "insert 0.000 0.000 1 1 0.000 TREE",
                                            "point 0.000 0.000", "line 0.000 0.000 10.000 0.000"));
}

}  // namespace

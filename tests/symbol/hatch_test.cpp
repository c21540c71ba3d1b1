// Hatch symbols: entries, outline, fills, colours, thinning.
#include <gmock/gmock.h>

#include <limits>

#include "symbol/area/hatch_fill.h"
#include "symbol/area/hatch_statistics.h"
#include "tests/support/recorded_numbers.h"
#include "tests/symbol/symbol_test.h"
#include "zenromath/log.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Hatch : public zm::test::DrawingTest {
 protected:
    static int Draw(std::vector<double> xy, int code = 12) {
        return DrawHatch(static_cast<int>(xy.size() / 2), xy.data(), code);
    }
    // Lines ahead of the outline.
    std::vector<std::string> HatchLines() {
        std::vector<std::string> lines;
        for (const auto& c : Recorded()) {
            if (c == "PlineBgn") break;
            lines.push_back(c);
        }
        return lines;
    }
};

const std::vector<double> kSquare = {0, 0, 40, 0, 40, 40, 0, 40};
const std::vector<double> kClosedSquare = {0, 0, 40, 0, 40, 40, 0, 40, 0, 0};

TEST_F(Hatch, PolygonNarrowerThanACentimetreHasItsOutlineOnly) {
    Load("*12 H 1\n2 45 1\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 40, 0, 20, 0.009}));
    EXPECT_THAT(HatchLines(), IsEmpty());
    EXPECT_EQ(1, Draw({0, 0, 0.009, 0, 0.004, 40}));
    const auto drawn = Recorded();
    EXPECT_EQ("PlineBgn", drawn.front());
    EXPECT_THAT(drawn, SizeIs(5));
}

TEST_F(Hatch, TriangleHasLinesTheirSpacingApartAndAClosingStroke) {
    Load("*12 H 1\n2 45 10\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 100, 0, 0, 100}));
    const auto drawn = Recorded();
    std::vector<double> distances;
    for (const auto& c : drawn) {
        if (c == "PlineBgn") break;
        const auto line = zm::test::NumbersOf(c, "Line2");
        ASSERT_THAT(line, SizeIs(4));
        EXPECT_NEAR(line[2] - line[0], line[3] - line[1], 1e-5);  // 45 degrees
        distances.push_back((line[1] - line[0]) / 1.4142135623730951);
    }
    ASSERT_GT(distances.size(), 10U);
    std::sort(distances.begin(), distances.end());
    for (std::size_t i = 1; i < distances.size(); ++i) EXPECT_NEAR(10.0, distances[i] - distances[i - 1], 1e-5);
    EXPECT_EQ("Line2:0.000000:100.000000:0.000000:0.000000", drawn.back());
}

TEST_F(Hatch, PolygonThatEndsWhereItBeginsHasNoClosingStroke) {
    Load("*12 H 1\n2 45 10\n*$\n");
    EXPECT_EQ(1, Draw(kClosedSquare));
    EXPECT_EQ("PlineEnd", Recorded().back());
}

TEST_F(Hatch, OfFewerThanThreePointsOrAnotherKindReturnsZero) {
    Load("*12 H 1\n2 45 10\n*13 L 1\n*$\n");
    EXPECT_EQ(0, Draw({0, 0, 10, 10}));
    EXPECT_EQ(0, Draw(kSquare, 13));
    EXPECT_EQ(0, Draw(kSquare, 0));
    EXPECT_EQ(0, DrawHatch(4, nullptr, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Hatch, BrushTakesTheNextColourOfTheCycleEachTime) {
    Load("*12 H 1\n3 0 -1 0 0\n2 45 10\n*$\n");
    Begin(0);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(1, Draw(kClosedSquare));
    std::vector<COLORREF> colours;
    for (const auto& fill : m_device.fills) colours.push_back(fill.color);
    EXPECT_THAT(colours,
                ElementsAre(0xFF00U, 0xFF0000U, 0xFFFFU, 0xFF00FFU, 0xFFFF00U, 0x8080U, 0x5C5CC0U, 0xFFU, 0xFF00U));
    // The outline of each fill, and no second one.
    EXPECT_EQ(9 * 4, m_device.lines);
}

TEST_F(Hatch, BrushStylesArePlatformHatches) {
    Load(
        "*20 H 1\n3 0 1 2 3\n*21 H 1\n3 1 1 2 3\n*22 H 1\n3 2 1 2 3\n*23 H 1\n3 3 1 2 3\n*24 H 1\n3 4 1 2 3\n"
        "*25 H 1\n3 5 1 2 3\n*26 H 1\n3 6 1 2 3\n*27 H 1\n3 7 1 2 3\n*28 H 1\n3 -1 1 2 3\n*$\n");
    Begin(0);
    for (int code = 20; code <= 28; ++code) EXPECT_EQ(1, Draw(kClosedSquare, code));
    ASSERT_THAT(m_device.fills, SizeIs(9));
    EXPECT_EQ(zm::Fill::Kind::solid, m_device.fills[0].kind);
    std::vector<int> hatches;
    for (std::size_t i = 1; i < 9; ++i) hatches.push_back(m_device.fills[i].hatch);
    EXPECT_THAT(hatches, ElementsAre(HS_BDIAGONAL, HS_CROSS, HS_DIAGCROSS, HS_FDIAGONAL, HS_HORIZONTAL, HS_VERTICAL,
                                     HS_BDIAGONAL, HS_BDIAGONAL));
    EXPECT_EQ(0x030201U, m_device.fills[0].color);
}

TEST_F(Hatch, BitmapFillsWithItsColourAndRestoresTheTextColour) {
    Load("*12 H 1\n4 1 1 2 3\nff00ff00 aa55\n*$\n");
    Begin(0);
    EXPECT_EQ(1, Draw(kClosedSquare));
    ASSERT_THAT(m_device.fills, SizeIs(1));
    EXPECT_EQ(zm::Fill::Kind::pattern, m_device.fills[0].kind);
    EXPECT_EQ(0x030201U, m_device.fills[0].color);
    // Bytes 00 ff 00 ff 55 aa 00 00 widened to 32 bits: each fills two rows of the bitmap, its own and an empty one.
    EXPECT_THAT(m_device.fills[0].rows, ElementsAre(0x00, 0x00, 0xFF, 0x00, 0x00, 0x00, 0xFF, 0x00));
    Draw(kClosedSquare);
    EXPECT_EQ(0x030201U, m_device.fills[1].color);
}

TEST_F(Hatch, ColourOfThePenFillsWhereNoneIsGiven) {
    Begin(0);
    const CTQPen pen(0, 1, DWORD{0x123456});
    std::vector<double> xy = kClosedSquare;
    EXPECT_EQ(1, zm::symbol::FillBrushPolygon(5, xy.data(), 0, 0, zm::symbol::kPenColour));
    EXPECT_EQ(0x123456U, m_device.fills.at(0).color);
    EXPECT_EQ(1, zm::symbol::FillPatternPolygon(5, xy.data(), 0, 0, zm::symbol::kPenColour, 1, 2));
    EXPECT_EQ(0x123456U, m_device.fills.at(1).color);
}

TEST_F(Hatch, BrushAndBitmapGiveTheOutlineOnlyInADwg) {
    Load("*12 H 9\n3 2 1 2 3\n*13 H 1\n4 1 1 2 3\n1 2\n*$\n");
    Begin(1);
    EXPECT_EQ(5, Draw(kClosedSquare));
    EXPECT_THAT(m_writer.calls,
                ElementsAre("elev 12 12", "ltype 2",
                            "polyline 0.000 0.000 40.000 0.000 40.000 40.000 0.000 40.000 0.000 0.000"));
    EXPECT_EQ(5, Draw(kClosedSquare, 13));
    EXPECT_EQ("elev 13 13", m_writer.calls[3]);
}

TEST_F(Hatch, LinesAndGridsAreEntitiesInADwgWithTheCodeAsElevation) {
    Load("*42 G\n5 0,0\n*12 H 0\n1 0 12 90 12 42\n2 0 15\n*$\n");
    Begin(1);
    EXPECT_EQ(1, Draw(kClosedSquare));
    EXPECT_EQ("elev 12 12", m_writer.calls.front());
    int points = 0;
    int lines = 0;
    for (const auto& call : m_writer.calls) {
        points += call.starts_with("point") ? 1 : 0;
        lines += call.starts_with("line") ? 1 : 0;
    }
    EXPECT_EQ(9, points);
    EXPECT_EQ(3, lines);
}

TEST_F(Hatch, GridWithoutCrossingLinesPlacesNothingAndDrawsTheOutline) {
    Load("*42 G\n5 0,0\n*12 H 1\n1 30 5 30 5 42\n*13 H 1\n1 0 5 0 5 42\n*14 H 1\n1 90 5 90 5 42\n*$\n");
    for (const int code : {12, 13, 14}) {
        EXPECT_EQ(1, Draw(kSquare, code));
        EXPECT_THAT(HatchLines(), IsEmpty()) << code;
    }
}

TEST_F(Hatch, SingleFamilyAt90And270DegreesIsVertical) {
    Load("*12 H 1\n2 90 10\n*13 H 1\n2 270 10\n*14 H 1\n2 -90 10\n*$\n");
    for (const int code : {12, 13, 14}) {
        EXPECT_EQ(1, Draw(kSquare, code));
        const auto lines = HatchLines();
        ASSERT_THAT(lines, SizeIs(5)) << code;  // at 20, 10, 0, 30, 40, the edges included
        EXPECT_TRUE(lines[0] == "Line2:20.000000:0.000000:20.000000:40.000000" ||
                    lines[0] == "Line2:20.000000:40.000000:20.000000:0.000000")
            << lines[0];
    }
}

TEST_F(Hatch, SingleFamilyAtZeroAnd180DegreesIsHorizontal) {
    Load("*12 H 1\n2 0 15\n*13 H 1\n2 180 15\n*$\n");
    for (const int code : {12, 13}) {
        EXPECT_EQ(1, Draw(kSquare, code));
        ASSERT_THAT(HatchLines(), SizeIs(3)) << code;  // at 20, 5 and 35
    }
}

TEST_F(Hatch, Code824KeepsItsSpacingWhereOthersThinOut) {
    Load("*824 H 1\n2 0 8\n*12 H 1\n2 0 8\n*$\n");
    Begin(3, 0.5);
    EXPECT_EQ(1, Draw(kSquare, 824));
    EXPECT_THAT(HatchLines(), SizeIs(5));
    EXPECT_EQ(1, Draw(kSquare, 12));
    EXPECT_THAT(HatchLines(), SizeIs(3));  // 16 units apart: 8 / 0.5
    Begin(1, 0.5);
    m_writer.calls.clear();
    EXPECT_EQ(1, Draw(kSquare, 12));
    EXPECT_THAT(m_writer.calls, SizeIs(1 + 5 + 1 + 1 + 1));  // no thinning in a DWG; elevation, linetype, outline
}

TEST_F(Hatch, ThinnedLinesKeepFivePixels) {
    Load("*12 H 1\n2 0 0.4\n*$\n");
    Begin(3, 0.5);  // 0.4 / 0.5 is 0.8 units, 0.4 pixels: 10 units instead
    EXPECT_EQ(1, Draw(kSquare));
    EXPECT_THAT(HatchLines(), SizeIs(5));
}

TEST_F(Hatch, UnknownEntriesDrawNothingAndTheOthersGoOn) {
    Load("*12 H 1\n7 1 2 3\n2 0 15\n0\n2 90 15\n*$\n");
    EXPECT_EQ(1, Draw(kSquare));
    EXPECT_THAT(HatchLines(), SizeIs(6));
}

TEST_F(Hatch, BrushBehindTheFirstEntryIsPassedOver) {
    Load("*12 H 1\n2 0 15\n3 2 1 2 3\n2 90 15\n*$\n");
    EXPECT_EQ(1, Draw(kSquare));
    EXPECT_THAT(HatchLines(), SizeIs(6));
}

TEST_F(Hatch, WithoutEntriesIsItsOutline) {
    Load("*12 H 9\n*$\n");
    Begin(1);
    EXPECT_EQ(1, Draw(kClosedSquare));
    EXPECT_THAT(m_writer.calls, SizeIs(3));
    EXPECT_EQ("ltype 2", m_writer.calls[1]);  // 9 modulo 7
}

TEST_F(Hatch, BodyShorterThanItsHeadIsReported) {
    Load("*12 H 1\n2 -200 -200000\n2 0 15\n*$\n");  // the first entry's numbers count as a terminator
    EXPECT_EQ(0, Draw(kSquare));
    EXPECT_THAT(Messages(), ElementsAre("cID ERROR"));
}

TEST_F(Hatch, GridLooksItsOwnSymbolUpAgainForTheNextEntry) {
    Load("*42 G\n5 0,0\n*12 H 1\n1 0 15 90 15 42\n2 0 15\n*$\n");
    EXPECT_EQ(1, Draw(kSquare));
    const auto lines = HatchLines();
    EXPECT_THAT(lines, SizeIs(9 + 3));
}

TEST_F(Hatch, IsTheCurrentSymbolAgainWhileItsNextEntryIsDrawn) {
    Load("*12 H 1\n1 0 10 90 10 13\n2 45 10\n*13 G\n1 -1,0 1,0\n*$\n");
    EXPECT_EQ(1, Draw(kClosedSquare));
    EXPECT_EQ(5, TheHeadStatus());  // not 1, the kind of the symbols of its grid
}

TEST_F(Hatch, OutlineTakesWidthAndColourOfTheCurrentPen) {
    Load("*12 H 8\n2 0 100\n*$\n");
    Begin(1);
    EXPECT_EQ(1, Draw(kClosedSquare));
    EXPECT_EQ("ltype 1", m_writer.calls[m_writer.calls.size() - 2]);
}

TEST_F(Hatch, OutlineOfAFillHasTheWidthOfThePenOnlyWhereItIsSolid) {
    Begin(0);
    std::vector<double> square = kClosedSquare;
    const auto pensOf = [&](auto fill) {
        zm::LogDevice styles(zm::LogDevice::Detail::styles);
        TqDC->ResetHdc(&styles);
        const CTQPen wide(0, 7, DWORD{0x0000FF});
        for (const int style : {0, 1}) fill(style);
        std::vector<std::string> pens;
        for (const auto& line : styles.lines())
            if (line.starts_with("Pen ")) pens.push_back(line);
        TqDC->ResetHdc(&m_device);
        return pens;
    };
    EXPECT_THAT(pensOf([&](int style) { zm::symbol::FillBrushPolygon(5, square.data(), style, 0, 0x00FF00); }),
                ElementsAre("Pen 0 7 255", "Pen 1 1 255"));
    EXPECT_THAT(pensOf([&](int style) { zm::symbol::FillPatternPolygon(5, square.data(), style, 0, 0x00FF00, 0, 0); }),
                ElementsAre("Pen 0 7 255", "Pen 1 1 255"));
}

TEST_F(Hatch, CapsAreCountedNotReported) {
    Load("*12 H 1\n2 0 0.01\n*$\n");
    EXPECT_EQ(1, Draw(kSquare));
    EXPECT_THAT(HatchLines(), SizeIs(494));
    const auto& cut = zm::symbol::CurrentHatchCuts().codes[12];
    EXPECT_EQ(1U, cut.polygons);
    EXPECT_EQ(494U, cut.drawn);
    EXPECT_EQ(4001U, cut.wanted);
    EXPECT_EQ(0U, cut.crossings);
    EXPECT_THAT(Messages(), IsEmpty());
    zm::symbol::ResetHatchCuts();
    EXPECT_EQ(0U, zm::symbol::CurrentHatchCuts().codes[12].polygons);
}

TEST_F(Hatch, UncutPolygonsAreNotCounted) {
    Load("*12 H 1\n2 0 1\n*$\n");
    EXPECT_EQ(1, Draw(kSquare));
    EXPECT_EQ(0U, zm::symbol::CurrentHatchCuts().codes[12].polygons);
    EXPECT_EQ(0U, zm::symbol::CurrentHatchCuts().codes[12].wanted);
}

TEST_F(Hatch, LinesWithMoreThan18CrossingsAreCounted) {
    Load("*12 H 1\n2 0 20\n*$\n");
    std::vector<double> comb;
    for (int i = 0; i < 12; ++i) comb.insert(comb.end(), {2.0 * i, 0.5, 2.0 * i + 1.0, 40.0});
    comb.insert(comb.end(), {23.0, -1.0, 0.0, -1.0});
    EXPECT_EQ(1, Draw(comb));
    const auto& cut = zm::symbol::CurrentHatchCuts().codes[12];
    EXPECT_EQ(1U, cut.polygons);
    EXPECT_GE(cut.crossings, 1U);
}

TEST_F(Hatch, OddSpacingsAndNumbersEnd) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    Load(
        "*42 G\n5 0,0\n*11 H 1\n2 45 0\n*12 H 1\n2 45 -3\n*13 H 1\n2 45 0.0000000001\n*14 H 1\n1 45 0 135 0 42\n"
        "*15 H 1\n1 45 -1 135 1 42\n*16 H 1\n2 45 1e30\n*17 H 1\n2 1e30 1\n*18 H 1\n2 89.99999 1\n"
        "*19 H 1\n2 90.00001 1\n*20 H 1\n1 45 2 1e20 3 42\n*$\n");
    for (int code = 11; code <= 20; ++code) {
        EXPECT_EQ(1, Draw(kSquare, code));
        for (const double v : {kNan, kInf, -kInf, 1e308, -1e308, 1e17, 1e-300}) {
            EXPECT_EQ(1, Draw({0, 0, v, 0, 5, v, 0, 3}, code));
            setgscale(v);
            EXPECT_EQ(1, Draw(kSquare, code));
            setgscale(1000.0);
            Recorded();
        }
    }
    Begin(3, 0.0);
    EXPECT_EQ(1, Draw(kSquare, 11));
    EXPECT_EQ(1, Draw(kSquare, 18));
}

TEST_F(Hatch, SpacingsThatAreNoneDrawTheOutlineOnly) {
    Load("*11 H 1\n2 45 0\n*12 H 1\n2 45 -3\n*$\n");
    EXPECT_EQ(1, Draw(kSquare, 11));
    EXPECT_THAT(HatchLines(), IsEmpty());
    EXPECT_EQ(1, Draw(kSquare, 12));
    EXPECT_THAT(HatchLines(), IsEmpty());
}

}  // namespace

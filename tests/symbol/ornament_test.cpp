// The coded ornaments.
#include <gmock/gmock.h>

#include <limits>

#include "symbol/ornaments/ornaments.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// The codes that ornaments lean on: rails are plain lines, symbols are dots and one stroke to see their direction.
constexpr char kLibrary[] =
    "*834 L 1\n*221 L 1\n*337 L 1\n*981 L 1\n*3 G\n5 0,0\n5 8,8\n*16 G\n1 0,0 4,0\n*42 G\n1 0,0 4,0\n*54 G\n1 0,0 4,0\n"
    "*90 G\n1 0,0 4,0\n*91 G\n1 0,0 4,0\n*93 G\n1 0,0 4,0\n*95 G\n1 0,0 4,0\n*984 G\n1 0,0 4,0\n*$\n";

class Ornament : public zm::test::DrawingTest {
 protected:
    Ornament() { Load(kLibrary); }
    static int Draw(int number, std::vector<double> xy, double g = 1000.0) {
        std::vector<double> x, y;
        for (std::size_t i = 0; i < xy.size(); i += 2) {
            x.push_back(xy[i]);
            y.push_back(xy[i + 1]);
        }
        return drawcode(number, 0, static_cast<int>(x.size()), x.data(), y.data(), g);
    }
    static std::vector<double> Line(int points) {
        std::vector<double> xy;
        for (int i = 0; i < points; ++i) xy.insert(xy.end(), {10.0 * i, static_cast<double>(i % 3)});
        return xy;
    }
};

const std::vector<double> kBox = {0, 0, 20, 0, 20, 5, 0, 5};

TEST_F(Ornament, TakesThreeTo120Points) {
    EXPECT_EQ(0, Draw(18, Line(2)));
    EXPECT_EQ(0, Draw(9, Line(121)));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ(1, Draw(18, Line(3)));
    EXPECT_EQ(6U, Count("Line2"));
    EXPECT_EQ(1, Draw(9, Line(4)));
    EXPECT_EQ(1, Draw(9, Line(120)));
    EXPECT_EQ(2U + 4U + 118U + 4U + 116U, Count("Line2"));
}

TEST_F(Ornament, OfThreePointsCompletesTheParallelogram) {
    EXPECT_EQ(1, Draw(18, {0, 0, 20, 0, 20, 5}));
    EXPECT_THAT(
        Recorded(),
        ElementsAre("Line2:0.000000:0.000000:20.000000:0.000000", "Line2:20.000000:0.000000:20.000000:5.000000",
                    "Line2:20.000000:5.000000:0.000000:5.000000", "Line2:0.000000:5.000000:0.000000:0.000000",
                    "Line2:0.000000:0.000000:20.000000:5.000000", "Line2:20.000000:0.000000:0.000000:5.000000"));
}

TEST_F(Ornament, NumbersWithoutAFigureReturnOneAndDrawNothing) {
    for (const int number : {21, 27, 29, 31, 40, 0, -1, 1000}) EXPECT_EQ(1, Draw(number, kBox)) << number;
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(Ornament, LadderOfRailsShorterThanAStepIsTheRailsOnly) {
    EXPECT_EQ(1, Draw(33, {0, 0, 0.9, 0, 0.9, 5, 0, 5}));
    EXPECT_EQ(3U, Count("Line2"));
}

TEST_F(Ornament, LadderHasARungEachMillimetre) {
    EXPECT_EQ(1, Draw(33, {0, 0, 5, 0, 5, 3, 0, 3}));
    const auto drawn = Recorded();
    ASSERT_THAT(drawn, SizeIs(7));  // three rails, rungs at 1, 2, 3, 4
    EXPECT_EQ("Line2:1.000000:0.000000:1.000000:3.000000", drawn[3]);
    EXPECT_EQ("Line2:4.000000:0.000000:4.000000:3.000000", drawn[6]);
}

TEST_F(Ornament, ZigzagWithoutWidthIsTheRailsAloneAndTellsTwice) {
    EXPECT_EQ(1, Draw(36, {0, 0, 20, 0, 20, 5, 0, 0}));
    EXPECT_THAT(Messages(), ElementsAre("yacc_change two p same", "yacc_change two p same"));
    EXPECT_EQ(2U, Count("Line2"));
    m_host.boxes.clear();
    EXPECT_EQ(1, Draw(34, {0, 0, 20, 0, 20, 5, 0, 0}));
    EXPECT_THAT(Messages(), SizeIs(2));
    EXPECT_EQ(2U, Count("Line2"));
}

TEST_F(Ornament, ZigzagHasAPeriodOfTwoWidths) {
    EXPECT_EQ(1, Draw(36, kBox));
    EXPECT_THAT(
        Recorded(),
        ElementsAre("Line2:0.000000:0.000000:20.000000:0.000000", "Line2:20.000000:5.000000:0.000000:5.000000",
                    "Line2:0.000000:0.000000:5.000000:5.000000", "Line2:5.000000:5.000000:10.000000:0.000000",
                    "Line2:10.000000:0.000000:15.000000:5.000000", "Line2:15.000000:5.000000:20.000000:0.000000"));
}

TEST_F(Ornament, ZigzagOfRailsWithoutLengthEnds) {
    EXPECT_EQ(1, Draw(36, {0, 0, 0, 0, 3, 5, 3, 5}));
    EXPECT_LT(Recorded().size(), 20U);
}

TEST_F(Ornament, RungSpacingScalesWithTheMapAndRatiosDoNot) {
    const std::vector<double> bridge = {0, 0, 20, 0, 20, 5, 0, 5};
    const auto rungs = [&](double g) {
        Draw(16, bridge, g);
        std::vector<std::string> lines;
        for (const auto& c : Recorded())
            if (c.starts_with("Line2")) lines.push_back(c);
        return lines;
    };
    const auto at500 = rungs(500.0);
    const auto at2000 = rungs(2000.0);
    // The first rungs behind the two rails: 3 s from the end, then 1.6 s further.
    EXPECT_EQ("Line2:1.500000:-0.250000:1.500000:5.250000", at500[2]);
    EXPECT_EQ("Line2:2.300000:-0.250000:2.300000:5.250000", at500[3]);
    EXPECT_EQ("Line2:6.000000:-1.000000:6.000000:6.000000", at2000[2]);
    EXPECT_EQ("Line2:9.200000:-1.000000:9.200000:6.000000", at2000[3]);

    Draw(23, bridge, 500.0);
    const auto small = Recorded();
    Draw(23, bridge, 2000.0);
    EXPECT_EQ(small, Recorded());
}

TEST_F(Ornament, TwinLinesOfFivePointsLeaveOutTheFifthAndHaveNoInnerSymbols) {
    EXPECT_EQ(1, Draw(9, {0, 0, 20, 0, 0, 5, 20, 5, 99, 99}));
    EXPECT_THAT(
        Recorded(),
        ElementsAre("Line2:0.000000:0.000000:20.000000:0.000000", "Line2:0.000000:5.000000:20.000000:5.000000",
                    "Line2:0.000000:0.000000:4.000000:0.000000", "Line2:20.000000:0.000000:24.000000:0.000000",
                    "Line2:0.000000:5.000000:4.000000:5.000000", "Line2:20.000000:5.000000:24.000000:5.000000"));
}

TEST_F(Ornament, FirstPointOfThePostFrameHasBareHalfAMetre) {
    EXPECT_EQ(1, Draw(32, kBox, 2000.0));
    const auto drawn = Recorded();
    std::vector<std::string> lines;
    for (const auto& c : drawn)
        if (c.starts_with("Line2")) lines.push_back(c);
    // The other end is a millimetre of half the size in from the corner: 1 at 1:2000.
    EXPECT_EQ("Line2:0.500000:0.000000:19.000000:0.000000", lines[0]);
}

TEST_F(Ornament, DoubleRailsSendOneStrokeTwice) {
    EXPECT_EQ(1, Draw(13, {10, 10, 30, 10, 30, 15, 10, 15}));
    const auto drawn = Recorded();
    EXPECT_EQ("Line2:10.000000:9.000000:30.000000:9.000000", drawn[2]);
    EXPECT_EQ(drawn[2], drawn[4]);
}

TEST_F(Ornament, HalfCircleAnglesChangePlacesWhereTheFirstIsLess) {
    // Bearings: p2 to p3 is 90 degrees, p2 to p1 180: exchanged, the arc bulges outwards.
    EXPECT_EQ(1, Draw(38, kBox));
    EXPECT_THAT(Recorded().back(), "Arc:20.000000:2.500000:2.500000:270.000000:450.000000");
    // Mirrored: p2 to p3 is 270 degrees, p2 to p1 180: not exchanged.
    EXPECT_EQ(1, Draw(38, {0, 5, 20, 5, 20, 0, 0, 0}));
    EXPECT_THAT(Recorded().back(), "Arc:20.000000:2.500000:2.500000:270.000000:450.000000");
}

TEST_F(Ornament, ThinLineHasTheLastColourAndLeavesTheLayerAlone) {
    { const CTQPen pen(0, 0.1, DWORD{0xFF0000}); }
    Recorded();
    zm::symbol::ThinLine({0, 0}, {1, 0});
    // The explicit pen of pixels records nothing; the layer pen would record "Layer:0".
    EXPECT_THAT(Recorded(), ElementsAre("Line2:0.000000:0.000000:1.000000:0.000000"));
    Begin(1);
    m_writer.calls.clear();
    zm::symbol::ThinLine({0, 0}, {1, 0});
    EXPECT_THAT(m_writer.calls, ElementsAre("ltype 0", "line 0.000 0.000 1.000 0.000"));
}

TEST_F(Ornament, CodedSegmentTakesLineKindsOnly) {
    Load("*834 L 1\n*221 LC\n+2 -1\n*337 G\n1 0,0 1,1\n*981 E 1\n*$\n");
    EXPECT_NE(0, zm::symbol::CodedSegment({0, 0}, {5, 0}, 834));
    EXPECT_THAT(Recorded(), ElementsAre("Layer:-834", "Pen:0:0:0", "Line2:0.000000:0.000000:5.000000:0.000000"));
    EXPECT_EQ(2, zm::symbol::CodedSegment({0, 0}, {5, 0}, 221));
    EXPECT_THAT(Recorded(),
                ElementsAre("Line2:0.000000:0.000000:2.000000:0.000000", "Line2:3.000000:0.000000:5.000000:0.000000"));
    EXPECT_EQ(0, zm::symbol::CodedSegment({0, 0}, {5, 0}, 337));
    EXPECT_EQ(0, zm::symbol::CodedSegment({0, 0}, {5, 0}, 981));
    EXPECT_EQ(0, zm::symbol::CodedSegment({0, 0}, {5, 0}, 0));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(Ornament, CodedSegmentsLeaveTheCallersPointsAlone) {
    Load("*834 LC\n+2 -1\n*$\n");
    double x[] = {0, 20, 20, 0};
    double y[] = {0, 0, 5, 5};
    EXPECT_EQ(1, drawcode(1, 0, 4, x, y, 1000.0));
    EXPECT_THAT(x, ElementsAre(0, 20, 20, 0));
    EXPECT_THAT(y, ElementsAre(0, 0, 5, 5));
}

TEST_F(Ornament, AlongPointGoesAlongAndToTheLeft) {
    const auto p = zm::symbol::AlongPoint({1, 1}, {1, 9}, 2.0, 3.0);
    EXPECT_NEAR(-2.0, p.x, 1e-12);
    EXPECT_NEAR(3.0, p.y, 1e-12);
}

TEST_F(Ornament, AlongPointOfOnePlaceOrNoStepTellsTwiceAndGivesTheSecondPoint) {
    const auto p = zm::symbol::AlongPoint({1, 1}, {1.0000009, 1.0000009}, 2.0, 3.0);
    EXPECT_EQ(1.0000009, p.x);
    const auto q = zm::symbol::AlongPoint({1, 1}, {5, 1}, 0.9e-7, 0.9e-6);
    EXPECT_EQ(5.0, q.x);
    EXPECT_THAT(Messages(), SizeIs(4));
    zm::symbol::AlongPoint({1, 1}, {5, 1}, 1.1e-7, 0.0);
    EXPECT_THAT(Messages(), SizeIs(4));
}

TEST_F(Ornament, MissingCodesDrawAsPlainLinesAndDots) {
    Load("*$\n");
    EXPECT_EQ(1, Draw(3, kBox));
    const auto drawn = Recorded();
    EXPECT_EQ(3, std::count_if(drawn.begin(), drawn.end(), [](const auto& c) { return c.starts_with("Line2"); }));
    EXPECT_EQ(4, std::count_if(drawn.begin(), drawn.end(), [](const auto& c) { return c.starts_with("Pixel"); }));
}

TEST_F(Ornament, CoincidentPointsAndOddScalesEnd) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    for (int number = 1; number <= 39; ++number)
        for (const double g : {1000.0, 0.0, -1000.0, 1e-9, 1e300, kNan}) {
            if (number == 33 && !(g > 0.0)) continue;  // see below
            m_host.boxes.clear();
            EXPECT_EQ(1, Draw(number, {1, 1, 1, 1, 1, 1, 1, 1}, g));
            EXPECT_EQ(1, Draw(number, {0, 0, 0, 0, 3, 3, 3, 3}, g));
            Recorded();
        }
    SUCCEED();
}

TEST_F(Ornament, StepsWithoutEndStopAt100000) {
    EXPECT_EQ(1, Draw(33, {0, 0, 20, 0, 20, 5, 0, 5}, -1000.0));
    EXPECT_EQ(3U + 100000U, Count("Line2"));
    EXPECT_EQ(1, Draw(16, {0, 0, 20, 0, 20, 5, 0, 5}, 1e-2));
    EXPECT_EQ(2U + 100000U, Count("Line2"));
}

TEST_F(Ornament, NumbersThatAreNoneDoNoHarm) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (int number = 1; number <= 39; ++number) {
        if (number == 16 || (number >= 33 && number <= 36)) continue;  // loops, each of 100000 strokes
        for (const double v : {kNan, kInf, -1e308}) EXPECT_EQ(1, Draw(number, {0, v, 20, 0, v, 5, 0, 5}));
    }
    EXPECT_EQ(1, Draw(16, {0, kNan, 20, 0, 20, 5, 0, 5}));
    EXPECT_EQ(1, Draw(34, {0, 0, 20, kInf, 20, 5, 0, 5}));
    EXPECT_EQ(0, drawcode(1, 0, 4, nullptr, nullptr, 1000.0));
}

}  // namespace

// Line and area symbols: dispatch by kind, line types, special lines.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include <algorithm>
#include "symbol/line/expanded_line.h"
#include "tests/symbol/symbol_test.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t kRoom = 4000;

// A caller's point list with the room that curves need.
struct Points {
    explicit Points(const std::vector<double>& xy) : n(static_cast<int>(xy.size() / 2)) {
        for (std::size_t i = 0; i < xy.size(); i += 2) {
            x.push_back(xy[i]);
            y.push_back(xy[i + 1]);
        }
        x.resize(std::max(kRoom, x.size()));
        y.resize(x.size());
    }
    int n;
    std::vector<double> x;
    std::vector<double> y;
};

class ProcessAll : public zm::test::DrawingTest {
 protected:
    static int Draw(Points& p, int lineType, int code) {
        return PROCESSALL(p.n, p.x.data(), p.y.data(), lineType, code);
    }
    static int Draw(const std::vector<double>& xy, int lineType, int code) {
        Points p(xy);
        return Draw(p, lineType, code);
    }
};

TEST_F(ProcessAll, ASmoothCurveComesBackInTheCallersArraysUpTo665Points) {
    Load("*12 L 0\n*$\n");
    for (const int n : {665, 666}) {
        std::vector<double> xy;
        for (int i = 0; i < n; ++i) xy.insert(xy.end(), {10.0 * i, i % 2 == 0 ? 0.0 : 8.0});
        Points p(xy);
        p.x.resize(200000);
        p.y.resize(200000);
        EXPECT_EQ(1, Draw(p, 2, 12));
        EXPECT_EQ(n == 666, p.x[1] == 10.0) << n;
    }
}

TEST_F(ProcessAll, CodeOfAGraphicSymbolReturnsZeroAndDrawsNothing) {
    Load("*12 G\n1 0,0 1,1\n*$\n");
    EXPECT_EQ(0, Draw({0, 0, 10, 0}, 1, 12));
    EXPECT_EQ(0, Draw({0, 0, 10, 0}, 1, 0));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(ProcessAll, UnknownCodeIsAPlainLine) {
    Load("*$\n");
    EXPECT_EQ(1, Draw({0, 0, 10, 0}, 1, 500));
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:10.000000:0.000000", "PlineEnd"));
}

TEST_F(ProcessAll, PlainCircleOfTwoPointsIsAboutTheSecond) {
    Load("*12 L 1\n*$\n");
    EXPECT_EQ(1, Draw({8, 4, 5, 0}, 4, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Arc:5.000000:0.000000:5.000000:0.000000:360.000000"));
    EXPECT_EQ(1, Draw({8, 4, 5, 0}, 5, 12));
    EXPECT_EQ(1U, Count("Arc"));
}

TEST_F(ProcessAll, PlainCircleOfThreePointsIsATrueCircle) {
    Load("*12 L 1\n*$\n");
    EXPECT_EQ(1, Draw({6, 5, 5, 6, 4, 5, 7, 7}, 4, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Arc:5.000000:5.000000:1.000000:0.000000:360.000000"));
}

TEST_F(ProcessAll, PlainCircleOfCollinearPointsIsAPolyline) {
    Load("*12 L 1\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 5, 0, 9, 0}, 4, 12));
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:5.000000:0.000000",
                                        "Line2:5.000000:0.000000:9.000000:0.000000", "PlineEnd"));
}

TEST_F(ProcessAll, PlainArcPassesThroughItsMiddlePointWhicheverWayItTurns) {
    Load("*12 L 1\n*$\n");
    // The upper half of the unit circle, there and back: the same arc.
    Points p({1, 0, 0, 1, -1, 0});
    EXPECT_EQ(1, Draw(p, 3, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Arc:0.000000:0.000000:1.000000:0.000000:180.000000"));
    EXPECT_EQ(1, Draw({-1, 0, 0, 1, 1, 0}, 3, 12));
    EXPECT_THAT(Recorded(), ElementsAre("Arc:0.000000:0.000000:1.000000:0.000000:180.000000"));
    // The caller's points stay.
    EXPECT_EQ(1.0, p.x[0]);
    EXPECT_EQ(0.0, p.x[1]);
    EXPECT_EQ(-1.0, p.x[2]);
}

TEST_F(ProcessAll, PlainArcChainDrawsCollinearTriplesAndAnOddRestAsStrokes) {
    Load("*12 L 1\n*$\n");
    EXPECT_EQ(1, Draw({1, 0, 0, 1, -1, 0, -2, 0, -3, 0, -3, 5}, 3, 12));
    EXPECT_THAT(
        Recorded(),
        ElementsAre("Arc:0.000000:0.000000:1.000000:0.000000:180.000000", "Line2:-1.000000:0.000000:-2.000000:0.000000",
                    "Line2:-2.000000:0.000000:-3.000000:0.000000", "Line2:-3.000000:0.000000:-3.000000:5.000000"));
}

TEST_F(ProcessAll, HatchWithTwoPointsReturnsOneAndDrawsNothing) {
    Load("*12 H 1\n2 45 3\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 10, 10}, 1, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(ProcessAll, SpecialLineWithAnUnknownNumberReturnsOneAndDrawsNothing) {
    Load("*12 E 7\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 10, 10}, 1, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST_F(ProcessAll, SpecialLineOneIsThePolyline) {
    Load("*12 E 1\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 10, 10}, 1, 12));
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:10.000000:10.000000", "PlineEnd"));
}

TEST_F(ProcessAll, SpecialLineTwelveHasTicksOfAMillimetreToItsRight) {
    Load("*12 E 12\n*$\n");
    setgscale(500.0);
    EXPECT_EQ(1, Draw({0, 0, 10, 0, 10, 10}, 1, 12));
    EXPECT_THAT(Recorded(), ElementsAre("PlineBgn", "Line2:0.000000:0.000000:10.000000:0.000000",
                                        "Line2:10.000000:0.000000:10.000000:10.000000", "PlineEnd",
                                        "Line2:0.000000:0.000000:-0.000000:-0.500000",
                                        "Line2:10.000000:0.000000:10.353553:-0.353553"));
}

TEST_F(ProcessAll, SmoothCurveIsFittedUpTo665PointsAndDrawnRawFrom666) {
    Load("*12 L 1\n*$\n");
    std::vector<double> xy;
    for (int i = 0; i < 665; ++i) xy.insert(xy.end(), {static_cast<double>(i), static_cast<double>(i % 2)});
    EXPECT_EQ(1, Draw(xy, 2, 12));
    EXPECT_EQ(3320U, Count("Line2"));
    xy.insert(xy.end(), {665.0, 1.0});
    EXPECT_EQ(1, Draw(xy, 2, 12));
    EXPECT_EQ(665U, Count("Line2"));
}

TEST_F(ProcessAll, CurveOfMorePointsComesBackInTheCallersArrays) {
    Load("*12 L 1\n*$\n");
    Points p({0, 0, 10, 5, 20, 0});
    EXPECT_EQ(1, Draw(p, 2, 12));
    EXPECT_EQ(11U - 1U, Count("Line2"));
    EXPECT_NEAR(10.0, p.x[5], 1e-9);
    EXPECT_NEAR(5.0, p.y[5], 1e-9);
    EXPECT_NEAR(20.0, p.x[10], 1e-9);
    EXPECT_EQ(0.0, p.x[11]);
}

TEST_F(ProcessAll, ChainThatNeedsMoreThan4000PointsIsCutAndToldOnce) {
    Load("*12 LC\n+5 -2\n*13 E 1\n*$\n");
    setgscale(1.0);  // steps of 2 mm along the arc
    std::vector<double> xy;
    for (int i = 0; i < 21; ++i) xy.insert(xy.end(), {i * 10.0, i % 2 == 0 ? 0.0 : 5.0});
    EXPECT_EQ(1, Draw(xy, 3, 13));
    EXPECT_EQ(3999U, Count("Line2"));
    EXPECT_EQ(1, Draw(xy, 3, 13));
    EXPECT_THAT(Messages(), ElementsAre("A curve has more than 4000 points; what comes after them is not drawn. Split "
                                        "the line."));
}

TEST_F(ProcessAll, OrnamentWithThreePointsReturnsOneAndDrawsNothing) {
    Load("*12 Y 18\n*$\n");
    EXPECT_EQ(1, Draw({0, 0, 10, 0, 10, 5}, 1, 12));
    EXPECT_THAT(Recorded(), IsEmpty());
    EXPECT_EQ(1, Draw({0, 0, 10, 0, 10, 5, 0, 5}, 1, 12));
    EXPECT_EQ(6U, Count("Line2"));
}

TEST_F(ProcessAll, OrnamentTakesItsPointsUnexpanded) {
    Load("*12 Y 18\n*$\n");
    Points p({0, 0, 10, 0, 10, 5, 0, 5});
    EXPECT_EQ(1, Draw(p, 2, 12));
    EXPECT_EQ(6U, Count("Line2"));
    EXPECT_EQ(0.0, p.x[4]);
}

TEST_F(ProcessAll, HatchOfACircleFillsTheExpandedRing) {
    Load("*12 H 1\n2 0 2\n*$\n");
    EXPECT_EQ(1, Draw({5, 0, 0, 0}, 4, 12));
    const auto drawn = Recorded();
    EXPECT_GT(drawn.size(), 20U);
    EXPECT_EQ("PlineEnd", drawn.back());  // the ring is closed by its last point
}

TEST_F(ProcessAll, TooFewOrNoPointsDoNoHarm) {
    Load("*11 LC\n+5\n*12 L 1\n*13 E 1\n*14 E 12\n*15 H 1\n2 45 3\n*16 Y 9\n*17 LC D2 A1\nG1 G2\n*$\n");
    for (int code = 11; code <= 17; ++code)
        for (int type = 0; type <= 6; ++type) {
            EXPECT_EQ(1, PROCESSALL(0, nullptr, nullptr, type, code));
            EXPECT_EQ(1, PROCESSALL(5, nullptr, nullptr, type, code));
            EXPECT_EQ(1, Draw({1, 1}, type, code));
            Points p({1, 1});
            EXPECT_EQ(1, PROCESSALL(-3, p.x.data(), p.y.data(), type, code));
        }
    SUCCEED();
}

TEST_F(ProcessAll, NumbersThatAreNoneDoNoHarm) {
    Load(
        "*1 G\n1 0,0 1,0\n*11 LC\nL W1 +5 -2 G1\n*12 L 1\n*13 E 12\n*14 H 1\n2 45 3\n1 30 2 90 3 1\n"
        "*15 LC D3 A1 I1\nG1 G1 G1\n*$\n");
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (const double v : {kNan, kInf, -kInf, 1e308, 1e17})
        for (int code = 11; code <= 15; ++code)
            for (int type = 1; type <= 5; ++type)
                for (const int sink : {0, 1, 3}) {
                    Begin(sink);
                    Draw({0, 0, v, 5, 10, 10, 3, v}, type, code);
                    Draw({0, 0, 10, 0, 10, 10}, type, code);
                    setgscale(v);
                    Draw({0, 0, 10, 0, 10, 10}, type, code);
                    setgscale(1000.0);
                }
    SUCCEED();
}

using ExText = zm::test::DrawingTest;

TEST_F(ExText, DrawsNoFrameUnlessTheSwitchIsOn) {
    Begin(1);
    char text[] = "abc";
    _LDExText(1.0, 1.0, text, 0);
    EXPECT_THAT(m_writer.calls, IsEmpty());
    zm::symbol::state().frameSwitch = 1;
    _LDExText(1.0, 1.0, text, 0);
    ASSERT_EQ(1U, m_writer.calls.size());
    EXPECT_TRUE(m_writer.calls[0].starts_with("polyline "));
}

TEST_F(ExText, FrameIsNotTurnedTwiceAndTheRotationComesBack) {
    Begin(0);
    zm::symbol::state().frameSwitch = 1;
    m_dc->SetRotateMoveP(90.0, 5.0, 5.0);
    char text[] = "abc";
    _LDExText(5.0, 5.0, text, 0);
    EXPECT_EQ(4, m_device.lines);
    double angle = 0.0;
    double cx = 0.0;
    double cy = 0.0;
    EXPECT_EQ(1, m_dc->GetRotateMoveP(angle, cx, cy));
    EXPECT_EQ(90.0, angle);
    EXPECT_EQ(5.0, cx);
    EXPECT_EQ(5.0, cy);
}

TEST_F(ExText, WithoutTextDoesNothing) {
    _LDExText(1.0, 1.0, nullptr, 0);
    EXPECT_THAT(Recorded(), IsEmpty());
}

TEST(ExpandLinePoints, JoinsArcsAtTheirSharedPoint) {
    double x[] = {1, 0, -1, -2, -1};
    double y[] = {0, 1, 0, -1, -2};
    std::vector<double> out(zm::symbol::ExpandedRoom(5));
    const int m = zm::symbol::ExpandLinePoints(5, 3, x, y, out.data(), 1000.0);
    // Two arcs of 13 points and of what the second circle takes; the shared point stands once.
    int at = 0;
    for (int i = 0; i < m; ++i)
        if (std::fabs(out[2 * static_cast<std::size_t>(i)] + 1.0) < 1e-12 &&
            std::fabs(out[2 * static_cast<std::size_t>(i) + 1]) < 1e-12)
            ++at;
    EXPECT_EQ(1, at);
    EXPECT_EQ(-1.0, out[2 * static_cast<std::size_t>(m) - 2]);
    EXPECT_EQ(-2.0, out[2 * static_cast<std::size_t>(m) - 1]);
}

TEST(ExpandLinePoints, AppendsTheLastPointOfAnEvenChain) {
    double x[] = {1, 0, -1, -5};
    double y[] = {0, 1, 0, -7};
    std::vector<double> out(zm::symbol::ExpandedRoom(4));
    const int m = zm::symbol::ExpandLinePoints(4, 3, x, y, out.data(), 1000.0);
    EXPECT_EQ(14, m);
    EXPECT_EQ(-5.0, out[26]);
    EXPECT_EQ(-7.0, out[27]);
}

}  // namespace

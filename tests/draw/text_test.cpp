// Text placement.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/draw/fixture.h"

namespace {

using zm::test::Lines;
using zm::test::Writable;

constexpr char kSurvey[] = "\xB2\xE2\xC1\xBF";  // two characters

class Text : public zm::test::DrawTest {
 protected:
    Text() { LoadFonts(); }
    CTqDraw& MakeContext(int type) {
        font.reset();
        return DrawTest::MakeContext(type);
    }
    void SetFont(double height, double width, double angle = 0.0) {
        font.reset();
        font = std::make_unique<CTQFont>(height, width, 1, angle, 0);
        if (TqDC->GetTqDCType() == 3) TqDC->GetTqDCString()->RemoveAll();
        writer.calls.clear();
    }
    ~Text() override { font.reset(); }
    std::unique_ptr<CTQFont> font;
};

TEST_F(Text, TooSmallToReadIsABlackPixel) {
    CTqDraw& dc = MakeContext(0);
    SetFont(0.35, 0.2);  // 3 pixels
    Writable text("ABC");
    EXPECT_EQ(dc.textout(10, 20, text, 3), 1);
    EXPECT_EQ(dc.textout(2.0, 3.0, text, 0, 0), 1);
    EXPECT_EQ(device.lines(), (Lines{"SetPixel 10 20 0", "SetPixel 20 570 0"}));
}

TEST_F(Text, CountsTwoChineseCharactersAsTwo) {
    CTqDraw& dc = MakeContext(0);
    SetFont(2.0, 1.5);
    Writable text(kSurvey);
    EXPECT_EQ(dc.GetStrLen(text), 2);
    EXPECT_DOUBLE_EQ(dc.GetLen(text), 3.0);
    Writable half("A\xB2");  // half a character at the end
    EXPECT_EQ(dc.GetStrLen(half), 2);
}

TEST_F(Text, AChineseTextTakesTheFontOfHalvedWidth) {
    CTqDraw& dc = MakeContext(0);
    zm::LogDevice styles(zm::LogDevice::Detail::styles);
    dc.ResetHdc(&styles);
    SetFont(2.0, 1.6);
    Writable text(kSurvey);
    Writable mixed(std::string("A") + kSurvey);
    dc.textout(10, 20, text, 4);
    dc.textout(10, 50, mixed, 5);  // its first byte decides
    EXPECT_EQ(styles.lines(), (Lines{"Font 20 8 0 400 0 0 SimSun", std::string("TextOut 10 20 ") + kSurvey,
                                     "Font 20 16 0 400 0 0 SimSun", std::string("TextOut 10 50 A") + kSurvey}));
    font.reset();
}

TEST_F(Text, AFirstByteAbove7ETakesTheFontOfHalvedWidth) {
    CTqDraw& dc = MakeContext(0);
    zm::LogDevice styles(zm::LogDevice::Detail::styles);
    dc.ResetHdc(&styles);
    SetFont(2.0, 1.6);
    Writable last("\x7E");
    Writable first("\x7F");
    dc.textout(10, 20, last, 1);
    dc.textout(10, 50, first, 1);
    EXPECT_EQ(styles.lines(), (Lines{"Font 20 16 0 400 0 0 SimSun", "TextOut 10 20 \x7E", "Font 20 8 0 400 0 0 SimSun",
                                     "TextOut 10 50 \x7F"}));
    font.reset();
}

TEST_F(Text, PutsTheDecimalPointOnTheAnchor) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text("12.3");
    double x = 100.0, y = 50.0;
    dc.ResetStringPos(x, y, text, 5);
    EXPECT_EQ(text.str(), "12 3");
    EXPECT_DOUBLE_EQ(x, 97.5);  // the point is the third character: 2.5 widths
    EXPECT_DOUBLE_EQ(y, 51.6);
}

TEST_F(Text, WithoutADecimalPointIsCentred) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0, 30.0);
    Writable text("123");
    double x5 = 10, y5 = 20, x4 = 10, y4 = 20;
    dc.ResetStringPos(x5, y5, text, 5);
    dc.ResetStringPos(x4, y4, text, 4);
    EXPECT_DOUBLE_EQ(x5, x4);
    EXPECT_DOUBLE_EQ(y5, y4);
    EXPECT_NEAR(x4, 10 - 0.5 - 1.5 * 0.8660254037844386, 1e-12);
    EXPECT_NEAR(y4, 20 + 0.8660254037844386 - 1.5 * 0.5, 1e-12);
}

struct ModeCase {
    const char* name;
    int mode;
    double x, y;
};
void PrintTo(const ModeCase& c, std::ostream* out) {
    *out << c.name;
}
class TextModes : public Text, public testing::WithParamInterface<ModeCase> {};
TEST_P(TextModes, TurnAnAnchorIntoTheTopLeftCorner) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text("ABCD");
    double x = 100, y = 50;
    dc.ResetStringPos(x, y, text, GetParam().mode);
    EXPECT_DOUBLE_EQ(x, GetParam().x);
    EXPECT_DOUBLE_EQ(y, GetParam().y);
}
INSTANTIATE_TEST_SUITE_P(Modes, TextModes,
                         testing::Values(ModeCase{"top_left", 0, 100, 50}, ModeCase{"bottom_left", 1, 100, 52},
                                         ModeCase{"top_right", 2, 96, 50}, ModeCase{"top_right_too", 3, 96, 50},
                                         ModeCase{"centre", 4, 98, 51}, ModeCase{"unknown_is_top_right", 6, 96, 50},
                                         ModeCase{"negative_is_top_right", -1, 96, 50}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Text, AnEmptyTextMovesInModeOneOnly) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text("");
    double x = 100, y = 50;
    for (const int mode : {2, 4, 5}) dc.ResetStringPos(x, y, text, mode);
    EXPECT_EQ(x, 100);
    EXPECT_EQ(y, 50);
    dc.ResetStringPos(x, y, text, 1);
    EXPECT_EQ(y, 52);
}

TEST_F(Text, TheFirstCharacterOfARunIsMarked) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text("AB");
    EXPECT_EQ(dc.textout(1.0, 2.0, text, 0.0, 0.5), 1);
    EXPECT_EQ(dc.textout(9.0, 9.0, text, 0, 1), 1);
    EXPECT_EQ(Recorded(dc), (Lines{"Text:1:1.000000:2.000000:2.00:A", "Text:0:2.500000:2.000000:2.00:B",
                                   "Text:1:9.000000:9.000000:2.00:AB"}));
}

TEST_F(Text, ACharacterOfTwoBytesIsOneStep) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text(std::string(kSurvey) + "A");
    dc.textout(1.0, 2.0, text, 0.0, 0.0);
    EXPECT_EQ(Recorded(dc), (Lines{"Text:1:1.000000:2.000000:2.00:\xB2\xE2", "Text:0:2.000000:2.000000:2.00:\xC1\xBF",
                                   "Text:0:3.000000:2.000000:2.00:A"}));
}

struct StepCase {
    const char* name;
    double degrees, x, y;
};
void PrintTo(const StepCase& c, std::ostream* out) {
    *out << c.name;
}
class TextSteps : public Text, public testing::WithParamInterface<StepCase> {};
TEST_P(TextSteps, GoByWidthOrHeight) {
    CTqDraw& dc = MakeContext(1);
    SetFont(2.0, 1.0);
    Writable text("AB");
    dc.textout(0.0, 0.0, text, GetParam().degrees / 57.29577951308232, 0.5);
    ASSERT_EQ(writer.calls.size(), 2u);
    EXPECT_EQ(writer.calls[1],
              zm::numbers::Text("text 1.000000 %.6f %.6f 2.000000 0.000000 B", GetParam().x, GetParam().y - 2.0));
}
INSTANTIATE_TEST_SUITE_P(Directions, TextSteps,
                         testing::Values(StepCase{"level", 0.0, 1.5, 0.0}, StepCase{"upright", 90.0, 0.0, 2.0},
                                         StepCase{"down", -90.0, 0.0, -2.0}, StepCase{"by_width", 45.0, 1.5, 1.5},
                                         StepCase{"backwards", 180.0, -1.5, 0.0},
                                         StepCase{"by_height", 60.0, 1.1547005383792515, 2.0}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Text, StandsOnItsBaseLineInADrawingFile) {
    CTqDraw& dc = MakeContext(1);
    SetFont(2.0, 1.0, 90.0);
    Writable text("ABC");
    EXPECT_EQ(dc.textout(5.0, 5.0, text, 2, 0), 1);
    EXPECT_EQ(writer.calls, (Lines{"text 1.000000 7.000000 5.000000 2.000000 90.000000 AB"}));
    EXPECT_EQ(text.str(), "ABC");  // the cut is put back
}

TEST_F(Text, IsClippedWholeByItsAnchor) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    Writable text("A LONG TEXT");
    EXPECT_EQ(dc.textout(9.0, 9.0, text, 0, 0), 1);
    EXPECT_EQ(dc.textout(-0.1, 9.0, text, 0, 0), 0);
}

TEST_F(Text, TurnsWithTheRotationOnlyWhenAsked) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    dc.SetRotateMoveP(90.0, 0.0, 0.0);
    Writable text("A");
    dc.textout(3.0, 0.0, text, 0, 0);
    dc.textout(3.0, 0.0, text, 0, 1);
    EXPECT_EQ(Recorded(dc), (Lines{"Text:1:3.000000:0.000000:2.00:A", "Text:1:0.000000:3.000000:2.00:A"}));
}

TEST_F(Text, IsPulledBackFromTheRightFrame) {
    CTqDraw& dc = MakeContext(1);
    SetFont(2.0, 1.0);
    dc.SetCutArea(0, 0, 20, 20);
    dc.SetDoCut(1);
    Writable text("ABC");
    double x = 19.0, y = 10.0;
    EXPECT_EQ(dc.textRout(x, y, text, 0), 1);
    EXPECT_DOUBLE_EQ(x, 16.8);  // 20 - 3 - 0.2
    EXPECT_EQ(y, 10.0);
    Writable chinese(kSurvey);
    x = 19.0;
    dc.textRout(x, y, chinese, 0);
    EXPECT_DOUBLE_EQ(x, 15.8);  // four bytes count as four widths
    x = 0.1;
    y = 19.9;
    dc.textRout(x, y, text, 0);
    EXPECT_DOUBLE_EQ(x, 0.2);
    EXPECT_DOUBLE_EQ(y, 19.8);
    y = 1.0;
    dc.textRout(x, y, text, 0);
    EXPECT_DOUBLE_EQ(y, 2.2);
}

TEST_F(Text, PlacedTextIsNotRecordedAndGoesToTheDevice) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    dc.textRectOff(1.0, -1.0);
    Writable text("ABC");
    double x = 5.0, y = 6.0;
    EXPECT_EQ(dc.textRout(x, y, text, 0), 1);
    EXPECT_TRUE(Recorded(dc).empty());
    EXPECT_EQ(device.lines(), (Lines{"TextOut 60 550 ABC"}));
    Writable empty("");
    EXPECT_EQ(dc.textRout(x, y, empty, 0), 0);
}

TEST_F(Text, OnATurnedViewLeavesTheMovedAnchorWithTheCaller) {
    CTqDraw& dc = MakeContext(0);
    dc.SetViewDrawDC(&device, 10.0, 0, 0, 800, 600, 1);
    SetFont(2.0, 1.0);
    Writable text("ABC");
    double x = 5.0, y = 6.0;
    dc.textRout(x, y, text, 0);
    EXPECT_EQ(x, 8.0);
    EXPECT_EQ(y, 4.0);
    EXPECT_EQ(device.lines(), (Lines{"TextOut 720 40 ABC"}));
}

TEST_F(Text, GivesTheFourCornersOfItsBox) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    Writable text("ABCD");
    double out[8];
    EXPECT_EQ(dc.Get4CC(10.0, 20.0, out, text), 1);
    const double expected[8] = {10, 20, 14, 20, 14, 18, 10, 18};
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(out[i], expected[i], 1e-12) << i;
    Writable empty("");
    EXPECT_EQ(dc.Get4CC(10.0, 20.0, out, empty), 0);
}

TEST_F(Text, TakesNarrowGlyphsOffItsLength) {
    CTqDraw& dc = MakeContext(3);
    SetFont(2.0, 1.0);
    double out[8];
    Writable text("1.1");
    dc.Get4CC(0.0, 0.0, out, text);
    EXPECT_NEAR(out[2], 3.0 - 0.5 - 2 * 0.3, 1e-12);  // DECMIN 5, DGT1MIN 3, at 1:1000
    Writable chinese(std::string("1.1") + kSurvey);
    dc.Get4CC(0.0, 0.0, out, chinese);
    EXPECT_NEAR(out[2], 5.0, 1e-12);
    notes.reset();
    dc.Get4CC(0.0, 0.0, out, text);
    EXPECT_NEAR(out[2], 3.0, 1e-12);  // nothing is known without note classes
}

}  // namespace

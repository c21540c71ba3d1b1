// Pens and fonts: what they select in each sink and what they leave behind.
#include <gtest/gtest.h>

#include "draw/access.h"
#include "draw/state.h"
#include "draw/texts.h"
#include "platform/device/objects.h"
#include "runtime/text/gbk.h"
#include "tests/draw/fixture.h"

namespace {

using zm::draw::Access;
using zm::draw::state;
using zm::test::Lines;

class Pens : public zm::test::DrawTest {
 protected:
    Pens() { LoadLayers(); }
};

TEST_F(Pens, AMonochromeLayerPenIsBlackAndRemembersTheLayersColour) {
    CTqDraw& dc = MakeContext(2);
    LoadLayers();
    CTQPen pen(120, 0, 0);
    const tagLOGPEN now = dc.GetCurLogpen();
    EXPECT_EQ(now.lopnColor, 0u);
    EXPECT_EQ(now.lopnWidth.x, 5);  // 0.5 mm at 1:1000 is 0.5 m, 10 pixels a metre
    EXPECT_EQ(state().lastPenColor, 0xFF0000u);
}

TEST_F(Pens, ANegativeLayerKeepsLayerAndColourOfTheDrawingFile) {
    MakeContext(1);
    LoadLayers();
    { CTQPen pen(-120, 1, 0); }
    EXPECT_EQ(writer.calls, (Lines{"ltype 1"}));
}

TEST_F(Pens, ALayerPenSelectsLayerColourAndLinetypeOfTheDrawingFile) {
    MakeContext(1);
    LoadLayers();
    { CTQPen pen(200, 9, 0); }
    EXPECT_EQ(writer.calls, (Lines{"lay WATER", "color 9", "ltype 9"}));
}

TEST_F(Pens, AStyleAboveSixIsTakenModuloSevenAndTheLastColourReturns) {
    CTqDraw& dc = MakeContext(0);
    { CTQPen first(0, 1, 0x00AABBu); }
    CTQPen pen(9, 3, 0xFFFFFFFF);
    const tagLOGPEN now = dc.GetCurLogpen();
    EXPECT_EQ(now.lopnStyle, 2u);
    EXPECT_EQ(now.lopnWidth.x, 3);
    EXPECT_EQ(now.lopnColor, 0x00AABBu);
}

TEST_F(Pens, ThreeIntegersAreALayerPenAndAnUnsignedColourIsNot) {
    CTqDraw& dc = MakeContext(3);
    LoadLayers();
    { CTQPen layer(5, 0, 0); }
    EXPECT_EQ(Recorded(dc)[0], "Layer:5");
    { CTQPen plain(0, 9, 0xFFFFFFFF); }
    EXPECT_TRUE(Recorded(dc).empty());  // an integer width is not recorded
}

TEST_F(Pens, ALayerPenRecordsLayerAndPen) {
    CTqDraw& dc = MakeContext(3);
    LoadLayers();
    { CTQPen pen(-200, 8, 0); }
    EXPECT_EQ(Recorded(dc), (Lines{"Layer:-200", "Pen:1:3:6053056"}));  // 0.35 mm, truncated
}

TEST_F(Pens, AValueIsColourNumberAndWidthAtOnce) {
    CTqDraw& dc = MakeContext(3);
    LoadLayers();
    { CTQPen pen(120, 0, 3); }
    { CTQPen pen(120, 0, 12); }
    EXPECT_EQ(Recorded(dc), (Lines{"Layer:120", "Pen:0:3:65280", "Layer:120", "Pen:0:12:0"}));
}

TEST_F(Pens, AnUnknownLayerTakesColourOne) {
    MakeContext(1);
    LoadLayers();
    { CTQPen pen(999, 0, 0); }
    EXPECT_EQ(writer.calls, (Lines{"lay null", "color 1", "ltype 0"}));
}

TEST_F(Pens, WidthZeroIsTheThinnestPenAndNothingInADrawingFile) {
    CTqDraw& dc = MakeContext(0);
    {
        CTQPen pen(0, 0, 0x0000FFu);
        EXPECT_EQ(dc.GetCurLogpen().lopnWidth.x, 0);
        dc.line(10, 10, 20, 10);
    }
    EXPECT_EQ(device.lines(), (Lines{"MoveToEx 10 10", "LineTo 20 10"}));
    dc.SetTqDCType(1);
    { CTQPen pen(4, 7, 0x0000FFu); }
    EXPECT_EQ(writer.calls, (Lines{"ltype 4"}));
}

TEST_F(Pens, RestoreThePreviousPenAndLeaveNoObjectBehind) {
    CTqDraw& dc = MakeContext(0);
    const int before = zm::platform::ObjectCount();
    const tagLOGPEN start = dc.GetCurLogpen();
    {
        CTQPen outer(1, 2, 0x111111u);
        {
            CTQPen inner(0, 4, 0x222222u);
            EXPECT_EQ(dc.GetCurLogpen().lopnColor, 0x222222u);
        }
        EXPECT_EQ(dc.GetCurLogpen().lopnColor, 0x111111u);
    }
    EXPECT_EQ(dc.GetCurLogpen().lopnColor, start.lopnColor);
    EXPECT_EQ(zm::platform::ObjectCount(), before);
}

TEST_F(Pens, APenMadeForADrawingFileRestoresNothingAfterAChangeOfType) {
    CTqDraw& dc = MakeContext(0);
    const tagLOGPEN start = dc.GetCurLogpen();  // of the system's stock pen
    dc.SetTqDCType(1);
    {
        CTQPen pen(0, 7, 0x111111u);
        dc.SetTqDCType(0);
    }
    EXPECT_EQ(dc.GetCurLogpen().lopnWidth.x, start.lopnWidth.x);
    EXPECT_EQ(dc.GetCurLogpen().lopnColor, start.lopnColor);
}

TEST_F(Pens, ARecordedColourIsSigned) {
    CTqDraw& dc = MakeContext(3);
    HPEN old = nullptr;
    zm::device::DeleteObject(dc.SetPen(0, 0.2, 0xFFFFFFFEu, old));
    EXPECT_EQ(Recorded(dc), (Lines{"Pen:0:2:-2"}));
}

class Fonts : public zm::test::DrawTest {
 protected:
    Fonts() {
        LoadFonts();
        LoadLayers();
    }
};

TEST_F(Fonts, LimitTheFontHeightAndKeepTheTextHeight) {
    CTqDraw& dc = MakeContext(0);
    dc.SetViewDrawDC(&device, 50.0, 0, 0, 800, 600, 0);
    _SetHdcCharHLimit(20);
    CTQFont font(2.0, 1.0, 1, 0.0, 0);
    LOGFONTA now{};
    zm::device::GetObjectA(Access::Font(font), sizeof now, &now);
    EXPECT_EQ(now.lfHeight, 20);
    EXPECT_EQ(now.lfWidth, 10);
    EXPECT_EQ(Access::TextHeight(dc), 2.0);
    EXPECT_EQ(Access::TextWidth(dc), 1.0);
}

TEST_F(Fonts, TakeTheirDescriptionFromTheNoteClasses) {
    CTqDraw& dc = MakeContext(3);
    { CTQFont font(2.5, 2.0, 4, 30.0, 0); }
    EXPECT_EQ(Recorded(dc), (Lines{"Font:25:20:300:300:300:255:0:1:0:3:2:1:10:Courier New"}));
    { CTQFont font(2.5, 2.0, 2, 0.0, 0); }
    EXPECT_EQ(Recorded(dc), (Lines{"Font:25:20:0:0:700:0:1:0:134:0:0:0:2:FangSong"}));
}

TEST_F(Fonts, KeepTheCurrentFontAtHalfWidthForDoubleByteText) {
    MakeContext(0);
    CTQFont font(3.0, 2.1, 1, 0.0, 0);
    EXPECT_EQ(state().currentFont.lfHeight, 30);
    EXPECT_EQ(state().currentFont.lfWidth, 10);
    LOGFONTA now{};
    zm::device::GetObjectA(Access::Font(font), sizeof now, &now);
    EXPECT_EQ(now.lfWidth, 21);
}

TEST_F(Fonts, SelectAStyleOfTheDrawingFile) {
    CTqDraw& dc = MakeContext(1);
    { CTQFont font(3.0, 1.5, 1, 0.0, 0); }
    { CTQFont font(3.0, 1.5, 2, 0.0, 0); }
    { CTQFont font(3.0, 1.5, 4, 0.0, 0); }
    EXPECT_EQ(writer.calls, (Lines{"style 0.000000 0.500000 0.000000 STANDARD txt,hztxt",
                                   "style 0.000000 0.500000 18.000000 NOTES txt",
                                   "style 0.000000 0.500000 -18.000000 LEAN txt,romans"}));
    EXPECT_EQ(Access::TextWidth(dc), 1.5);
}

TEST_F(Fonts, OfNoHeightTakeTwoInADrawingFile) {
    CTqDraw& dc = MakeContext(1);
    CTQFont font(0.0005, 1.0, 1, 0.0, 0);
    EXPECT_EQ(writer.calls, (Lines{"style 0.000000 0.500000 0.000000 STANDARD txt,hztxt"}));
    EXPECT_EQ(Access::TextHeight(dc), 2.0);
}

TEST_F(Fonts, TakeTheInitialAngleAndTheFirstFont) {
    CTqDraw& dc = MakeContext(3);
    SetInitRotateAngle(25.0);
    { CTQFont font(2.0, 1.0, 4, 0.0, 0); }
    { CTQFont font(2.0, 1.0, 4, 10.0, 0); }
    EXPECT_EQ(Recorded(dc), (Lines{"Font:20:10:250:250:400:0:0:0:134:1:2:3:49:SimSun",
                                   "Font:20:10:100:100:400:0:0:0:134:1:2:3:49:SimSun"}));
}

TEST_F(Fonts, ReduceColourNumbersModuloTen) {
    CTqDraw& dc = MakeContext(0);
    zm::device::SetTextColor(&device, 0x010203);
    {
        CTQFont font(2.0, 1.0, 1, 0.0, 0);
        EXPECT_EQ(font._settextcolor(12), 0x010203u);
        EXPECT_EQ(zm::device::GetTextColor(&device), 0x0000FFu);
        EXPECT_EQ(font._settextcolor(-7), 0x0000FFu);
        EXPECT_EQ(zm::device::GetTextColor(&device), 0xFFFF00u);
    }
    EXPECT_EQ(zm::device::GetTextColor(&device), 0x0000FFu);  // what the last call replaced
    dc.SetTqDCType(1);
    CTQFont font(2.0, 1.0, 1, 0.0, 0);
    writer.calls.clear();
    EXPECT_EQ(font._settextcolor(10), 0x000000u);
    EXPECT_EQ(writer.calls, (Lines{"color 0"}));
}

TEST_F(Fonts, TakeTheColourOfALayer) {
    MakeContext(0);
    LoadLayers();
    CTQFont font(2.0, 1.0, 1, 0.0, 0);
    font._settextcolor(DWORD{200});
    EXPECT_EQ(zm::device::GetTextColor(&device), 0x5C5CC0u);
    font._settextcolor(120u);
    EXPECT_EQ(zm::device::GetTextColor(&device), 0xFF0000u);
}

TEST_F(Fonts, AreBlackOnAMonochromeDevice) {
    MakeContext(2);
    {
        CTQFont font(2.0, 1.0, 1, 0.0, 0);
        zm::device::SetTextColor(&device, 0x010203);
        font._settextcolor(3);
        EXPECT_EQ(zm::device::GetTextColor(&device), 0u);
    }
    EXPECT_EQ(zm::device::GetTextColor(&device), 0u);  // black again, not the saved colour
}

TEST_F(Fonts, OfAnUnknownNumberEndTheProcessBehindAMessage) {
    MakeContext(0);
    try {
        CTQFont font(2.0, 1.0, 77, 0.0, 0);
        FAIL() << "the process goes on";
    } catch (const zm::test::ProcessEnded& end) {
        EXPECT_EQ(end.status, 1);
    }
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(zm::gbk::ToUtf8(host.boxes[0].text), "在orvnote.cod中未定义字体号77的字体信息");
    EXPECT_EQ(host.boxes[0].title, "Zenro Info");
}

TEST_F(Fonts, RestoreThePreviousFont) {
    CTqDraw& dc = MakeContext(0);
    const int before = zm::platform::ObjectCount();
    { CTQFont font(2.0, 1.0, 1, 0.0, 0); }
    EXPECT_EQ(zm::platform::ObjectCount(), before);
    EXPECT_EQ(Access::FontHeight(dc), 20);  // the metrics stay
}

TEST(DrawTexts, StandInGbkAsTheyRead) {
    for (const auto& text : zm::draw::texts::kAll) EXPECT_EQ(zm::gbk::ToUtf8(text.gbk), text.readable);
}

}  // namespace

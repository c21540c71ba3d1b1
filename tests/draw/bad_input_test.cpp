// Anything may come in: nothing is written out of bounds, nothing hangs, nothing faults.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "draw/state.h"
#include "tests/draw/fixture.h"
#include "tests/draw/raster_device.h"
#include "tests/support/random.h"
#include "zenromath/svg.h"

namespace {

using zm::test::Lines;
using zm::test::Random;
using zm::test::Writable;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kWild[] = {kNan, kInf, -kInf, 1e300, -1e300, 4e9, -4e9, 0.0, -0.0, 5e-324};

class BadInput : public zm::test::DrawTest {};

TEST_F(BadInput, NumbersThatAreNoneLeaveNoStrokeInAnySink) {
    LoadFonts();
    for (int type = 0; type < 4; ++type) {
        CTqDraw& dc = MakeContext(type);
        std::unique_ptr<CTQFont> font = std::make_unique<CTQFont>(2.0, 1.0, 1, 0.0, 0);
        dc.GetTqDCString()->RemoveAll();
        device.Clear();
        Writable text("ABC");
        dc.line(kNan, 1.0, 2.0, 3.0);
        dc.line(1.0, 1.0, kInf, 3.0);
        dc.pixel(kNan, 1.0, 255u, 1);
        dc.drawarc(kNan, 1.0, 5.0, 0.0, 1.0);
        dc.drawarc(1.0, 1.0, 5.0, 0.0, kNan);
        dc.rectangle(kNan, 1.0, 5.0, 0.0);
        dc.moveto(kNan, 1.0);
        dc.lineto(1.0, kInf);
        dc.textout(kNan, 1.0, text, 0, 0);
        EXPECT_TRUE(Recorded(dc).empty()) << type;
        EXPECT_TRUE(device.lines().empty()) << type << device.lines()[0];
        font.reset();
    }
}

TEST_F(BadInput, WildNumbersGoThroughEveryPrimitiveOfEverySink) {
    ZM_TRACE_SEED();
    LoadFonts();
    Random random;
    const auto wild = [&] { return random.Int(0, 2) == 0 ? random.Real(-50.0, 150.0) : kWild[random.Int(0, 9)]; };
    for (int round = 0; round < 400; ++round) {
        CTqDraw& dc = MakeContext(round % 4);
        dc.SetViewDrawDC(round % 7 == 0 ? nullptr : &device, random.Int(0, 3) == 0 ? wild() : 10.0, wild(), wild(),
                         random.Int(-10, 900), random.Int(-10, 700), random.Int(0, 1));
        dc.SetRotateMoveP(wild(), wild(), wild());
        if (round % 3 == 1) dc.SetCutArea(wild(), wild(), wild(), wild());
        if (round % 3 == 2) {
            std::vector<double> x(static_cast<std::size_t>(random.Int(0, 40)));
            std::vector<double> y(x.size());
            for (std::size_t i = 0; i < x.size(); ++i) {
                x[i] = random.Int(0, 5) == 0 ? wild() : random.Real(0.0, 100.0);
                y[i] = random.Int(0, 5) == 0 ? wild() : random.Real(0.0, 100.0);
            }
            dc.SetCutArea(static_cast<int>(x.size()), x.data(), y.data());
        }
        dc.SetDoCut(random.Int(0, 1));
        setgscale(wild());
        std::unique_ptr<CTQFont> font = std::make_unique<CTQFont>(wild(), wild(), 1, wild(), 0);
        const CTQPen pen(random.Int(-20, 20), wild(), static_cast<DWORD>(random.Bits()));
        Writable text("12.3\xB2\xE2\xC1");
        dc.line(wild(), wild(), wild(), wild());
        dc.drawarc(wild(), wild(), wild(), wild(), wild());
        dc.drawarc(wild(), wild(), wild(), wild(), wild(), wild(), wild(), wild());
        dc.pixel(wild(), wild(), 1u, random.Int(-1, 4));
        dc.drawrect(wild(), wild(), wild(), wild());
        dc.rectangle(wild(), wild(), wild(), wild());
        double xy[12];
        for (double& v : xy) v = wild();
        xy[10] = xy[0];
        xy[11] = xy[1];
        dc.lines(6, xy);
        dc.DrawPolygon(6, xy, zm::device::WhiteBrush());
        dc.textout(wild(), wild(), text, random.Int(-2, 9), 1);
        dc.textout(wild(), wild(), text, wild(), wild());
        double x = wild();
        double y = wild();
        dc.textRout(x, y, text, random.Int(-1, 6));
        double out[8];
        dc.Get4CC(wild(), wild(), out, text);
        dc.GetSurveyPos(x, y, random.Int(-1000, 1000), 7);
        _For01mm(wild());
        font.reset();
    }
}

TEST_F(BadInput, PixelsAtTheEndsOfTheNumbersAreClippedWithoutOverflow) {
    CTqDraw& dc = MakeContext(0);
    const int ends[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 0, -1, 800, 801};
    for (const int x1 : ends)
        for (const int y1 : ends)
            for (const int x2 : ends)
                for (const int y2 : ends) {
                    dc.line(x1, y1, x2, y2);
                    dc.rectangle(x1, y1, x2, y2);
                }
}

TEST_F(BadInput, AViewOfNothingAndAScaleOfNothingDraw) {
    for (const double scale : {0.0, -10.0}) {
        CTqDraw& dc = MakeContext(0);
        dc.SetViewDrawDC(&device, scale, 0.0, 0.0, 0, 0, 0);
        int px = 0, py = 0;
        EXPECT_EQ(dc.GetViewPos(0.0, 0.0, px, py), 1);
        double x = 0, y = 0;
        dc.GetSurveyPos(x, y, 0, 0);
        dc.SetCutArea();
        dc.line(0.0, 0.0, 5.0, 5.0);
        dc.drawarc(0.0, 0.0, 5.0, 0.0, 1.0);
    }
}

TEST_F(BadInput, NullPointersAreNothing) {
    CTqDraw& dc = MakeContext(0);
    EXPECT_EQ(dc.lines(5, static_cast<double*>(nullptr)), 0);
    EXPECT_EQ(dc.lines(5, nullptr, nullptr), 0);
    EXPECT_EQ(dc.DrawPolygon(5, nullptr, nullptr), 0);
    EXPECT_EQ(dc.textout(1.0, 1.0, nullptr, 0, 0), 0);
    EXPECT_EQ(dc.textout(1.0, 1.0, nullptr, 0.0, 1.0), 1);
    double x = 1, y = 1, out[8];
    EXPECT_EQ(dc.textRout(x, y, nullptr, 4), 0);
    EXPECT_EQ(dc.Get4CC(1, 1, out, nullptr), 0);
    EXPECT_EQ(dc.GetStrLen(nullptr), 0);
    dc.ResetStringPos(x, y, nullptr, 5);
    dc.SetCutArea(4, nullptr, nullptr);
    EXPECT_EQ(dc.cutarc(0, 0, 1, nullptr), 2);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.cutarc(0, 0, 1, nullptr), 0);
    EXPECT_EQ(dc.cutpolygon(nullptr, nullptr, 3), 0);
    EXPECT_EQ(dc.ToIntPoints(3, nullptr, nullptr), 0);
    HFONT old = nullptr;
    EXPECT_EQ(dc.SetFont(static_cast<tagLOGFONTA*>(nullptr), old), nullptr);
}

TEST_F(BadInput, ANullDeviceDrawsNothing) {
    CTqDraw& dc = MakeContext(0);
    dc.ResetHdc(nullptr);
    EXPECT_EQ(dc.line(1.0, 1.0, 5.0, 5.0), 0);
    EXPECT_EQ(dc.pixel(1, 1, 7u, 2), CLR_INVALID);
    EXPECT_EQ(dc.GetCurLogpen().lopnWidth.x, 0);
    double xy[] = {1, 1, 5, 1, 5, 5, 1, 1};
    EXPECT_EQ(dc.DrawPolygon(4, xy, zm::device::WhiteBrush()), 0);
    { const CTQPen pen(0, 1, 7u); }
}

TEST_F(BadInput, ADeviceThatIsGoneDrawsNothing) {
    CTqDraw& dc = MakeContext(0);
    auto svg = std::make_unique<zm::SvgDevice>(10, 10);
    dc.ResetHdc(svg.get());
    const CTQPen pen(0, 1, 7u);
    svg.reset();
    EXPECT_EQ(dc.line(1.0, 1.0, 5.0, 5.0), 0);
}

TEST_F(BadInput, WithoutAWorkingContextPensAndFontsReportAnInternalError) {
    {
        const CTQPen pen(120, 0, 0);
        const CTQPen plain(0, 1, 7u);
        CTQFont font(2.0, 1.0, 1, 0.0, 0);
        EXPECT_EQ(font._settextcolor(3), 0u);
    }
    ASSERT_EQ(host.boxes.size(), 4u);
    EXPECT_NE(host.boxes[0].text.find("no working drawing context"), std::string::npos);
    EXPECT_NE(host.boxes[0].text.find("CTQPen"), std::string::npos);
    EXPECT_NE(host.boxes[2].text.find("CTQFont"), std::string::npos);
}

TEST_F(BadInput, AGuardThatOutlivesItsContextDoesNotCrash) {
    LoadFonts();
    auto dc = std::make_unique<CTqDraw>(0);
    dc->SetViewDrawDC(&device, 10.0, 0, 0, 800, 600, 0);
    {
        const CTQPen pen(0, 1, 7u);
        CTQFont font(2.0, 1.0, 1, 0.0, 0);
        font._settextcolor(3);
        dc.reset();
    }
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(BadInput, AContextThatIsGoneIsNoWorkingContext) {
    { CTqDraw dc; }
    EXPECT_EQ(zm::draw::WorkingContext(), nullptr);
    const CTQPen pen(0, 1, 7u);
    EXPECT_EQ(host.boxes.size(), 1u);
}

TEST_F(BadInput, TextsOfAHundredThousandBytes) {
    LoadFonts();
    for (int type = 0; type < 4; ++type) {
        CTqDraw& dc = MakeContext(type);
        std::unique_ptr<CTQFont> font = std::make_unique<CTQFont>(2.0, 1.0, 1, 30.0, 0);
        Writable text(std::string(99999, 'A') + "\xB2");  // half a character at the end
        EXPECT_EQ(dc.GetStrLen(text), 100000);
        EXPECT_EQ(dc.textout(1.0, 1.0, text, 0, 0), 1);
        double x = 1, y = 1;
        EXPECT_EQ(dc.textRout(x, y, text, 5), 1);
        EXPECT_EQ(dc.textout(1.0, 1.0, text, 0.0, 0.0), 1);
        font.reset();
    }
}

TEST_F(BadInput, AFaceNameLongerThanItsFieldIsCut) {
    CTqDraw& dc = MakeContext(3);
    Writable face(std::string(100, 'F'));
    HFONT old = nullptr;
    const HFONT font = dc.SetFont(1.0, 1.0, face, 0.0, 0, old);
    EXPECT_EQ(Recorded(dc)[0], "Font:10:10:0:0:0:0:0:0:0:0:0:0:0:" + std::string(31, 'F'));
    zm::device::DeleteObject(font);
}

TEST_F(BadInput, AnArcOfManyTurnsEnds) {
    CTqDraw& dc = MakeContext(3);
    dc.SetCutArea(0, 0, 10, 10);
    dc.SetDoCut(1);
    EXPECT_EQ(dc.drawarc(0.0, 5.0, 3.0, 0.0, 1e18), 1);
    dc.drawarc(0.0, 5.0, 3.0, -1e18, 1e18);
    dc.drawarc(0.0, 5.0, 3.0, 0.0, kInf);
}

TEST_F(BadInput, RandomStrokesOnAllDevicesStayInside) {
    ZM_TRACE_SEED();
    Random random(3);
    zm::test::RasterDevice raster(64, 64);
    zm::SvgDevice svg(64, 64);
    for (const HDC dc : {HDC{&raster}, HDC{&svg}}) {
        for (int i = 0; i < 200; ++i) {
            const auto p = [&] { return random.Int(-300, 300); };
            const HPEN pen = zm::device::CreatePen(random.Int(-1, 8), random.Int(-3, 9), 0x123456);
            const HPEN old = zm::device::SelectObject(dc, pen);
            zm::device::MoveToEx(dc, p(), p(), nullptr);
            zm::device::LineTo(dc, p(), p());
            zm::device::Arc(dc, p(), p(), p(), p(), p(), p(), p(), p());
            zm::device::Rectangle(dc, p(), p(), p(), p());
            zm::device::SetPixel(dc, p(), p(), 7);
            zm::device::TextOutA(dc, p(), p(), "\x01\xFF\x80<", 4);
            zm::device::SelectObject(dc, old);
            zm::device::DeleteObject(pen);
        }
    }
    EXPECT_NE(svg.Document().find("</svg>"), std::string::npos);
}

}  // namespace

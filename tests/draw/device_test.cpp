// The handle layer: selection, deletion, descriptions, stale handles; regions; the SVG device.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "draw/device.h"
#include "platform/device/arc_figure.h"
#include "platform/device/objects.h"
#include "tests/support/random.h"
#include "zenromath/log.h"
#include "zenromath/svg.h"

namespace {

using namespace zm;
using zm::LogDevice;
using zm::SvgDevice;
using zm::platform::ObjectCount;

TEST(Handles, AFreshDeviceHasABlackPenAWhiteBrushAndBlackText) {
    LogDevice log(LogDevice::Detail::styles);
    device::LineTo(&log, 3, 4);
    device::Rectangle(&log, 0, 0, 5, 5);
    ASSERT_GE(log.lines().size(), 3u);
    EXPECT_EQ(log.lines()[0], "Pen 0 1 0");
    EXPECT_EQ(log.lines()[1], "LineTo 3 4");
    EXPECT_EQ(log.lines()[2].substr(0, 20), "Brush solid 16777215");
    EXPECT_EQ(device::GetTextColor(&log), 0u);
}

TEST(Handles, SelectingReturnsThePreviousObject) {
    LogDevice log;
    const HPEN pen = device::CreatePen(PS_DASH, 3, 0x00FF00);
    const HPEN first = device::SelectObject(&log, pen);
    EXPECT_EQ(first, device::BlackPen());
    EXPECT_EQ(device::SelectObject(&log, first), pen);
    EXPECT_EQ(device::DeleteObject(pen), 1);
    EXPECT_EQ(device::SelectObject(&log, pen), nullptr);
    EXPECT_EQ(device::SelectObject(&log, first), first);
}

TEST(Handles, AnObjectDeletedWhileSelectedGoesWhenItIsReplaced) {
    LogDevice log(LogDevice::Detail::styles);
    const int before = ObjectCount();
    const HPEN pen = device::CreatePen(PS_SOLID, 1, 0x0000FF);
    const HPEN first = device::SelectObject(&log, pen);
    EXPECT_EQ(device::DeleteObject(pen), 1);
    EXPECT_EQ(ObjectCount(), before + 1);
    device::LineTo(&log, 1, 1);
    EXPECT_EQ(log.lines()[0], "Pen 0 1 255");
    EXPECT_EQ(device::SelectObject(&log, first), pen);
    EXPECT_EQ(ObjectCount(), before);
    EXPECT_EQ(device::DeleteObject(pen), 0);
}

TEST(Handles, AStaleHandleIsNeverTakenForANewObject) {
    LogDevice log;
    const HPEN old = device::CreatePen(PS_SOLID, 1, 1);
    device::DeleteObject(old);
    const HPEN fresh = device::CreatePen(PS_SOLID, 1, 2);
    EXPECT_NE(old, fresh);
    EXPECT_EQ(device::SelectObject(&log, old), nullptr);
    LOGPEN description{};
    EXPECT_EQ(device::GetObjectA(old, sizeof description, &description), 0);
    EXPECT_EQ(device::DeleteObject(fresh), 1);
}

TEST(Handles, ADeviceThatIsGoneAnswersWithFailure) {
    auto log = std::make_unique<LogDevice>();
    const HDC dc = log.get();
    const HPEN pen = device::CreatePen(PS_SOLID, 1, 1);
    device::SelectObject(dc, pen);
    log.reset();
    EXPECT_EQ(device::LineTo(dc, 1, 1), 0);
    EXPECT_EQ(device::SetPixel(dc, 1, 1, 0), CLR_INVALID);
    EXPECT_EQ(device::SelectObject(dc, pen), nullptr);
    EXPECT_EQ(device::SetTextColor(dc, 0), CLR_INVALID);
    EXPECT_EQ(device::DeleteObject(pen), 1);  // the device let go of it
    EXPECT_EQ(device::DeleteObject(pen), 0);
}

TEST(Handles, NullArgumentsFail) {
    LogDevice log;
    EXPECT_EQ(device::MoveToEx(nullptr, 1, 1, nullptr), 0);
    EXPECT_EQ(device::TextOutA(&log, 1, 1, nullptr, 3), 0);
    EXPECT_EQ(device::TextOutA(&log, 1, 1, "abc", -1), 0);
    EXPECT_EQ(device::DrawTextA(&log, "abc", -1, nullptr, 0), 0);
    EXPECT_EQ(device::SelectObject(&log, HPEN{nullptr}), nullptr);
    EXPECT_EQ(device::DeleteObject(HFONT{nullptr}), 0);
    EXPECT_EQ(device::CreateFontIndirectA(nullptr), nullptr);
    EXPECT_EQ(device::CreatePatternBrush(nullptr), nullptr);
    EXPECT_EQ(device::CreateHatchBrush(6, 0), nullptr);
    EXPECT_EQ(device::CreatePolygonRgn(nullptr, 4, ALTERNATE), nullptr);
    EXPECT_EQ(device::FillRgn(&log, nullptr, device::WhiteBrush()), 0);
    EXPECT_EQ(device::GetRgnBox(nullptr, nullptr), ERROR_REGION);
    EXPECT_EQ(device::CreateBitmap(8, 8, 1, 1, nullptr), nullptr);
    EXPECT_EQ(device::CreateBitmap(8, 8, 1, 4, "x"), nullptr);
    EXPECT_TRUE(log.lines().empty());
}

TEST(Handles, AnObjectOfAnotherKindIsRefused) {
    LogDevice log;
    const HBRUSH brush = device::CreateSolidBrush(0);
    EXPECT_EQ(device::SelectObject(&log, reinterpret_cast<HPEN>(brush)), nullptr);
    device::DeleteObject(brush);
}

TEST(Handles, StockObjectsStay) {
    EXPECT_EQ(device::DeleteObject(device::WhiteBrush()), 1);
    LogDevice log;
    EXPECT_EQ(device::FillRgn(&log, nullptr, device::WhiteBrush()), 0);
    EXPECT_NE(device::SelectObject(&log, device::WhiteBrush()), nullptr);
}

TEST(Handles, TheCurrentPositionFollowsMoveAndLine) {
    LogDevice log;
    POINT previous{};
    device::MoveToEx(&log, 3, 4, &previous);
    EXPECT_EQ(previous.x, 0);
    device::LineTo(&log, 7, 8);
    device::MoveToEx(&log, 0, 0, &previous);
    EXPECT_EQ(previous.x, 7);
    EXPECT_EQ(previous.y, 8);
}

TEST(Handles, TheNullPenDrawsNothingAndMovesThePosition) {
    LogDevice log;
    device::SelectObject(&log, device::NullPen());
    EXPECT_EQ(device::LineTo(&log, 7, 8), 1);
    EXPECT_TRUE(log.lines().empty());
}

constexpr POINT kTwoStrokes[] = {{1, 2}, {3, 4}, {5, 6}, {7, 8}};

TEST(Handles, ARunOfLinesIsOneMoveAndOneLineForEach) {
    LogDevice log;
    EXPECT_EQ(device::DrawLines(&log, kTwoStrokes, 2), 2);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"MoveToEx 1 2", "LineTo 3 4", "MoveToEx 5 6", "LineTo 7 8"}));
    POINT position{};
    device::MoveToEx(&log, 0, 0, &position);
    EXPECT_EQ(position.x, 7);
    EXPECT_EQ(position.y, 8);
    log.Clear();
    EXPECT_EQ(device::DrawLines(&log, kTwoStrokes, 0), 0);
    EXPECT_TRUE(log.lines().empty());
    device::SelectObject(&log, device::NullPen());
    device::DrawLines(&log, kTwoStrokes, 2);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"MoveToEx 1 2", "MoveToEx 5 6"}));
    EXPECT_EQ(device::DrawLines(nullptr, kTwoStrokes, 2), 0);
}

// A device that takes runs whole, and may end with one.
class RunDevice : public LogDevice {
 public:
    int Lines(const Stroke& stroke, const POINT* ends, int count) override {
        runs.push_back({static_cast<int>(stroke.color), count, ends[0].x, ends[2 * count - 1].y});
        if (last) std::exchange(last, nullptr)();
        return count;
    }
    std::vector<std::array<int, 4>> runs;
    std::function<void()> last;
};

TEST(Handles, ADeviceThatTakesRunsGetsThemWholeUnlessItsPenIsNone) {
    RunDevice device;
    const HPEN pen = device::CreatePen(PS_SOLID, 1, 0x0000FF);
    device::SelectObject(&device, pen);
    device::DrawLines(&device, kTwoStrokes, 2);
    EXPECT_EQ(device.runs, (std::vector<std::array<int, 4>>{{255, 2, 1, 8}}));
    EXPECT_TRUE(device.lines().empty());
    POINT position{};
    device::MoveToEx(&device, 0, 0, &position);
    EXPECT_EQ(position.x, 7);
    device::SelectObject(&device, device::NullPen());
    device::DrawLines(&device, kTwoStrokes, 2);
    EXPECT_EQ(device.runs.size(), 1u);
    device::DeleteObject(pen);
}

TEST(Handles, ADeviceMayEndInARun) {
    auto device = std::make_unique<RunDevice>();
    device->last = [&] { device.reset(); };
    device::DrawLines(device.get(), kTwoStrokes, 2);
    EXPECT_EQ(device, nullptr);
}

TEST(Handles, ATextColourIsThatOfTheMomentOfFillingForAPattern) {
    LogDevice log(LogDevice::Detail::styles);
    const std::uint16_t rows[8] = {0x00FF, 0, 0, 0, 0, 0, 0, 0x0081};
    const HBITMAP bitmap = device::CreateBitmap(8, 8, 1, 1, rows);
    const HBRUSH brush = device::CreatePatternBrush(bitmap);
    device::DeleteObject(bitmap);
    const HRGN region = device::CreateRectRgn(0, 0, 4, 4);
    device::SetTextColor(&log, 0x0000FF);
    device::FillRgn(&log, region, brush);
    EXPECT_EQ(log.lines()[0], "Brush pattern 255 16777215 FF 00 00 00 00 00 00 81");
    device::DeleteObject(region);
    device::DeleteObject(brush);
}

TEST(Handles, ABitmapOfWordsOf32BitsFillsEverySecondRowWithTheFirstFour) {
    LogDevice log(LogDevice::Detail::styles);
    const std::uint32_t rows[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    const HBITMAP bitmap = device::CreateBitmap(8, 8, 1, 1, rows);
    const HBRUSH brush = device::CreatePatternBrush(bitmap);
    const HRGN region = device::CreateRectRgn(0, 0, 4, 4);
    device::FillRgn(&log, region, brush);
    EXPECT_EQ(log.lines()[0], "Brush pattern 0 16777215 01 00 02 00 03 00 04 00");
    device::DeleteObject(region);
    device::DeleteObject(brush);
    device::DeleteObject(bitmap);
}

// ---- Regions ----

TEST(Regions, KeepTheOutlinesOfWhatTheyWereCutFrom) {
    const POINT triangle[] = {{0, 0}, {10, 0}, {0, 10}};
    const Region figure = Region::Polygon(triangle, 3, ALTERNATE);
    const Region clip = Region::Rectangle(2, 2, 30, 30);
    const Region both = Region::Combined(figure, clip, RGN_AND);
    ASSERT_NE(both.Outlines(), nullptr);
    EXPECT_EQ(both.Outlines()->size(), 2u);
    EXPECT_EQ(both.Kind(), COMPLEXREGION);
    EXPECT_EQ(Region::Combined(figure, clip, RGN_OR).Outlines(), nullptr);
}

// The pixels of a polygon by the definition: the point itself, left and upper edges in.
bool InsideByDefinition(const std::vector<POINT>& points, int x, int y) {
    bool inside = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        POINT a = points[i];
        POINT b = points[(i + 1) % points.size()];
        if (a.y > b.y) std::swap(a, b);
        if (y < a.y || y >= b.y) continue;
        // The crossing is at or left of the point: (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x <= x
        if (static_cast<long long>(b.x - a.x) * (y - a.y) <= static_cast<long long>(x - a.x) * (b.y - a.y))
            inside = !inside;
    }
    return inside;
}

std::vector<POINT> RandomPolygon(zm::test::Random& random) {
    std::vector<POINT> points(static_cast<std::size_t>(random.Int(3, 9)));
    for (POINT& p : points) p = {random.Int(-5, 30), random.Int(-5, 30)};
    return points;
}

TEST(Regions, HoldThePixelsOfTheEvenOddRule) {
    ZM_TRACE_SEED();
    zm::test::Random random;
    for (int round = 0; round < 300; ++round) {
        const auto points = RandomPolygon(random);
        const Region region = Region::Polygon(points.data(), static_cast<int>(points.size()), ALTERNATE);
        for (int y = -6; y < 31; ++y)
            for (int x = -6; x < 31; ++x)
                ASSERT_EQ(region.Contains(x, y), InsideByDefinition(points, x, y)) << round << " at " << x << "," << y;
    }
}

TEST(Regions, CombineAsSetsOfPixels) {
    ZM_TRACE_SEED();
    zm::test::Random random(1);
    for (int round = 0; round < 200; ++round) {
        const auto p = RandomPolygon(random);
        const auto q = RandomPolygon(random);
        const Region a = Region::Polygon(p.data(), static_cast<int>(p.size()), ALTERNATE);
        const Region b = Region::Polygon(q.data(), static_cast<int>(q.size()), WINDING);
        const Region both = Region::Combined(a, b, RGN_AND);
        const Region any = Region::Combined(a, b, RGN_OR);
        const Region one = Region::Combined(a, b, RGN_XOR);
        const Region rest = Region::Combined(a, b, RGN_DIFF);
        int pixels = 0;
        for (int y = -6; y < 31; ++y)
            for (int x = -6; x < 31; ++x) {
                const bool inA = a.Contains(x, y);
                const bool inB = b.Contains(x, y);
                pixels += inA && inB ? 1 : 0;
                ASSERT_EQ(both.Contains(x, y), inA && inB);
                ASSERT_EQ(any.Contains(x, y), inA || inB);
                ASSERT_EQ(one.Contains(x, y), inA != inB);
                ASSERT_EQ(rest.Contains(x, y), inA && !inB);
            }
        EXPECT_EQ(both.Kind() == NULLREGION, pixels == 0);
    }
}

TEST(Regions, NeighboursThatShareAnEdgeNeitherOverlapNorLeaveAGap) {
    const POINT left[] = {{0, 0}, {17, 3}, {9, 25}, {0, 20}};
    const POINT right[] = {{17, 3}, {30, 0}, {30, 30}, {9, 25}};
    const Region a = Region::Polygon(left, 4, ALTERNATE);
    const Region b = Region::Polygon(right, 4, ALTERNATE);
    EXPECT_EQ(Region::Combined(a, b, RGN_AND).Kind(), NULLREGION);
}

TEST(Regions, TakeCornersFarOutsideEveryView) {
    const POINT huge[] = {
        {INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MIN}, {INT32_MAX, INT32_MAX}, {INT32_MIN, INT32_MAX}};
    const Region region =
        Region::Combined(Region::Polygon(huge, 4, ALTERNATE), Region::Rectangle(0, 0, 800, 600), RGN_AND);
    EXPECT_EQ(region.Kind(), SIMPLEREGION);
    const RECT box = region.Box();
    EXPECT_EQ(box.right, 800);
    EXPECT_EQ(box.bottom, 600);
}

// ---- Arcs ----

TEST(ArcFigures, RunCounterClockwiseFromTheStart) {
    const auto arc = zm::platform::FigureOfArc({0, 0, 21, 21}, {30, 10}, {10, -10});
    EXPECT_DOUBLE_EQ(arc.cx, 10.0);
    EXPECT_DOUBLE_EQ(arc.rx, 10.0);
    EXPECT_NEAR(arc.sweep, 1.5707963, 0.06);
    EXPECT_NEAR(arc.X(arc.start + arc.sweep), 10.0, 0.6);
    EXPECT_NEAR(arc.Y(arc.start + arc.sweep), 0.0, 0.1);
    const auto whole = zm::platform::FigureOfArc({0, 0, 21, 21}, {30, 10}, {30, 10});
    EXPECT_NEAR(whole.sweep, 6.283185307, 1e-9);
}

// ---- SVG ----

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(Svg, GathersStrokesWithOnePenInOnePath) {
    SvgDevice svg(100, 50);
    device::MoveToEx(&svg, 1, 2, nullptr);
    device::LineTo(&svg, 3, 4);
    device::LineTo(&svg, 5, 6);
    device::MoveToEx(&svg, 7, 8, nullptr);
    device::LineTo(&svg, 9, 10);
    EXPECT_NE(svg.Document().find("<path stroke=\"#000000\" d=\"M1 2L3 4L5 6M7 8L9 10\"/>"), std::string::npos);
}

TEST(Svg, DashesRunOnAlongConnectedStrokesOverTheirOpaqueGaps) {
    SvgDevice svg(100, 50);
    const HPEN pen = device::CreatePen(PS_DASH, 2, 0x0000FF);
    device::SelectObject(&svg, pen);
    for (int x = 0; x < 30; x += 10) {
        device::MoveToEx(&svg, x, 5, nullptr);
        device::LineTo(&svg, x + 10, 5);
    }
    const std::string document = svg.Document();
    EXPECT_NE(document.find("<path stroke=\"#ffffff\" stroke-width=\"2\" d=\"M0 5L10 5L20 5L30 5\"/>\n"
                            "<path stroke=\"#ff0000\" stroke-width=\"2\" stroke-linecap=\"butt\" "
                            "stroke-dasharray=\"18 6\" d=\"M0 5L10 5L20 5L30 5\"/>"),
              std::string::npos)
        << document;
    device::DeleteObject(pen);
}

TEST(Svg, OnPaperADashIsAsLongAsOnAScreen) {
    SvgDevice svg(1920, 960, 254.0, 127.0);  // 192 dots an inch
    const HPEN pen = device::CreatePen(PS_DOT, 1, 0);
    device::SelectObject(&svg, pen);
    device::LineTo(&svg, 100, 5);
    EXPECT_NE(svg.Document().find("stroke-dasharray=\"6 6\""), std::string::npos);
    EXPECT_NE(svg.Document().find("width=\"254mm\" height=\"127mm\" viewBox=\"0 0 1920 960\""), std::string::npos);
    device::DeleteObject(pen);
}

TEST(Svg, TheSameCallsGiveTheSameBytes) {
    const auto draw = [] {
        SvgDevice svg(100, 50, 210.0, 105.0);
        const HPEN pen = device::CreatePen(PS_DASHDOT, 2, 0x123456);
        const HPEN old = device::SelectObject(&svg, pen);
        device::Arc(&svg, 10, 10, 31, 31, 40, 20, 20, 0);
        device::LineTo(&svg, 50, 20);
        device::SelectObject(&svg, old);
        device::DeleteObject(pen);
        const HRGN region = device::CreateRectRgn(5, 5, 20, 20);
        const HBRUSH brush = device::CreateHatchBrush(HS_CROSS, 0xFF0000);
        device::FillRgn(&svg, region, brush);
        device::DeleteObject(brush);
        device::DeleteObject(region);
        device::TextOutA(&svg, 5, 5, "\xB2\xE2\xC1\xBF", 4);
        return svg.Document();
    };
    EXPECT_EQ(draw(), draw());
}

TEST(Svg, TextIsRealTextInUtf8) {
    SvgDevice svg(100, 50);
    LOGFONTA description{};
    description.lfHeight = 20;
    description.lfWidth = 10;
    description.lfEscapement = 300;
    std::strcpy(description.lfFaceName, "SimSun");
    const HFONT font = device::CreateFontIndirectA(&description);
    device::SelectObject(&svg, font);
    device::SetBkMode(&svg, TRANSPARENT);
    device::TextOutA(&svg, 5, 6, "\xB2\xE2<&", 4);
    const std::string document = svg.Document();
    EXPECT_NE(document.find(">测&lt;&amp;</text>"), std::string::npos) << document;
    EXPECT_NE(document.find("translate(5 6) rotate(-30)"), std::string::npos) << document;
    EXPECT_NE(document.find("font-family=\"'SimSun'"), std::string::npos) << document;
    EXPECT_EQ(Count(document, "<rect"), 1u);  // the paper alone
    device::DeleteObject(font);
}

// The smallest int has no positive counterpart.
TEST(Svg, SizesAndPlacesOfAnyIntGiveNumbers) {
    SvgDevice svg(100, 50);
    LOGFONTA font = {};
    for (const int extreme : {INT_MIN, INT_MIN + 1, INT_MAX}) {
        font.lfHeight = font.lfWidth = font.lfEscapement = extreme;
        const HFONT handle = device::CreateFontIndirectA(&font);
        const HFONT before = device::SelectObject(&svg, handle);
        device::TextOutA(&svg, extreme, extreme, "abc", 3);
        for (const unsigned flags : {0u, unsigned{DT_CALCRECT}, unsigned{DT_CENTER}, unsigned{DT_RIGHT},
                                     unsigned{DT_SINGLELINE | DT_VCENTER}, unsigned{DT_SINGLELINE | DT_BOTTOM}}) {
            RECT box = {extreme, INT_MIN, INT_MAX, extreme};
            device::DrawTextA(&svg, "a\nbc", 4, &box, flags);
        }
        device::Rectangle(&svg, INT_MIN, extreme, INT_MAX, INT_MAX);
        device::SelectObject(&svg, before);
        device::DeleteObject(handle);
    }
    const std::string document = svg.Document();
    EXPECT_NE(document.find("translate(-2147483648 -2147483648) rotate(214748364.8)"), std::string::npos) << document;
    EXPECT_NE(document.find("font-size=\"2147483648\""), std::string::npos) << document;
    EXPECT_EQ(document.find("font-size=\"-"), std::string::npos);
}

TEST(Svg, AClippedFigureCarriesItsClip) {
    SvgDevice svg(100, 50);
    const POINT triangle[] = {{0, 0}, {40, 0}, {0, 40}};
    const POINT clip[] = {{10, 0}, {50, 40}, {0, 40}};
    const HRGN figure = device::CreatePolygonRgn(triangle, 3, ALTERNATE);
    const HRGN area = device::CreatePolygonRgn(clip, 3, ALTERNATE);
    EXPECT_EQ(device::CombineRgn(figure, figure, area, RGN_AND), COMPLEXREGION);
    const HBRUSH brush = device::CreateSolidBrush(0x0000FF);
    device::FillRgn(&svg, figure, brush);
    const std::string document = svg.Document();
    EXPECT_NE(document.find("M0 0L40 0L0 40z"), std::string::npos) << document;
    EXPECT_NE(document.find("<clipPath id=\"c1\"><path clip-rule=\"evenodd\" d=\"M10 0L50 40L0 40z\"/></clipPath>"),
              std::string::npos)
        << document;
    device::DeleteObject(brush);
    device::DeleteObject(area);
    device::DeleteObject(figure);
}

TEST(Svg, APatternIsDefinedOnceForEachLook) {
    SvgDevice svg(100, 50);
    const HRGN region = device::CreateRectRgn(0, 0, 10, 10);
    const HBRUSH brush = device::CreateHatchBrush(HS_VERTICAL, 0x0000FF);
    device::FillRgn(&svg, region, brush);
    device::FillRgn(&svg, region, brush);
    device::SetBkMode(&svg, TRANSPARENT);
    device::FillRgn(&svg, region, brush);
    EXPECT_EQ(Count(svg.Document(), "<pattern "), 2u);
    device::DeleteObject(brush);
    device::DeleteObject(region);
}

}  // namespace

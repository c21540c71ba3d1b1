#include "zenromath/qt.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QImage>
#include <QPdfWriter>
#include <array>
#include <climits>
#include <cstring>

#include "draw/device.h"
#include "platform/qt/qt_text.h"
#include "tests/support/scratch.h"

namespace {

using zm::qt::QtDevice;
using zm::qt::Rendering;
namespace device = zm::device;

QImage White(int width, int height) {
    zm::qt::EnsureApplication();
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

// The box around all pixels that are not white; invalid if there is none.
QRect Inked(const QImage& image) {
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF) box |= QRect(x, y, 1, 1);
    return box;
}

int Count(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) count += (image.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF;
    return count;
}

LOGFONTA FontOf(int height, int width, int escapement = 0) {
    LOGFONTA font{};
    font.lfHeight = height;
    font.lfWidth = width;
    font.lfEscapement = escapement;
    std::strcpy(font.lfFaceName, "WenQuanYi Zen Hei");
    return font;
}

bool HasChineseFont() {
    zm::qt::EnsureApplication();
    return !QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty();
}

TEST(QtDevice, LeavesTheLastPixelOut) {
    QImage image = White(20, 20);
    QtDevice dc(&image, Rendering::pixels);
    device::MoveToEx(&dc, 2, 3, nullptr);
    EXPECT_NE(device::LineTo(&dc, 9, 3), 0);
    dc.Finish();
    EXPECT_EQ(Inked(image), QRect(2, 3, 7, 1));
}

TEST(QtDevice, StrokesOfOnePenAreHandedOverInOrderWithOtherFigures) {
    QImage image = White(20, 20);
    QtDevice dc(&image, Rendering::pixels);
    device::MoveToEx(&dc, 0, 5, nullptr);
    device::LineTo(&dc, 20, 5);
    device::SetPixel(&dc, 4, 5, 0x0000FF);  // on top of the stroke gathered before it
    dc.Finish();
    EXPECT_EQ(image.pixel(4, 5) & 0xFFFFFF, 0xFF0000u);
}

TEST(QtDevice, HugeCoordinatesStayInside) {
    for (const Rendering rendering : {Rendering::pixels, Rendering::smooth}) {
        QImage image = White(20, 20);
        QtDevice dc(&image, rendering);
        device::MoveToEx(&dc, INT_MIN, 5, nullptr);
        device::LineTo(&dc, INT_MAX, 5);
        device::Arc(&dc, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 0, 0, 1, 1);
        device::Rectangle(&dc, INT_MIN, INT_MIN, INT_MAX, INT_MAX);
        dc.Finish();
        EXPECT_EQ(image.size(), QSize(20, 20));
    }
}

TEST(QtDevice, ThinFiguresOutsideAnImageTouchNoMemoryBesideIt) {
    QImage image = White(20, 20);
    QtDevice dc(&image, Rendering::pixels);
    for (const int far : {-30000, -1, 20, 30000}) {
        for (const auto& [x1, y1, x2, y2] : {std::array{far, 3, far, 9}, std::array{3, far, 9, far},
                                             std::array{far, far, 5, 5}, std::array{far, -far, -far, far}}) {
            device::MoveToEx(&dc, x1, y1, nullptr);
            device::LineTo(&dc, x2, y2);
        }
        device::Rectangle(&dc, far, 3, far + 1, 9);
        device::Rectangle(&dc, 3, far, 9, far + 1);
        device::SetPixel(&dc, far, far, 0);
    }
    EXPECT_TRUE(dc.Finish());
}

TEST(QtDevice, DashesGoOnAlongAPolyline) {
    QImage whole = White(100, 5);
    QImage pieces = White(100, 5);
    for (QImage* image : {&whole, &pieces}) {
        QtDevice dc(image, Rendering::pixels);
        device::SetBkMode(&dc, TRANSPARENT);
        HPEN pen = device::CreatePen(PS_DASHDOT, 1, 0);
        HPEN old = device::SelectObject(&dc, pen);
        device::MoveToEx(&dc, 0, 2, nullptr);
        if (image == &pieces)
            for (int x = 7; x < 98; x += 7) {
                device::LineTo(&dc, x, 2);
                device::MoveToEx(&dc, x, 2, nullptr);
            }
        device::LineTo(&dc, 98, 2);
        device::SelectObject(&dc, old);
        device::DeleteObject(pen);
        dc.Finish();
    }
    EXPECT_EQ(whole, pieces);
    EXPECT_LT(Count(whole), 70);
}

struct StyleCase {
    const char* name;
    int style;
    int least, most;  // pixels inked of 240
};
void PrintTo(const StyleCase& c, std::ostream* out) {
    *out << c.name;
}
constexpr StyleCase kStyles[] = {{"solid", PS_SOLID, 240, 240},
                                 {"dash", PS_DASH, 180, 180},
                                 {"dot", PS_DOT, 120, 120},
                                 {"dash_dot", PS_DASHDOT, 120, 120},
                                 {"dash_dot_dot", PS_DASHDOTDOT, 150, 150},
                                 {"null", PS_NULL, 0, 0},
                                 {"inside_frame", PS_INSIDEFRAME, 240, 240}};
class PenStyle : public testing::TestWithParam<StyleCase> {};
TEST_P(PenStyle, InksItsShareOfALine) {
    QImage image = White(240, 3);
    QtDevice dc(&image, Rendering::pixels);
    device::SetBkMode(&dc, TRANSPARENT);
    HPEN pen = device::CreatePen(GetParam().style, 1, 0);
    HPEN old = device::SelectObject(&dc, pen);
    device::MoveToEx(&dc, 0, 1, nullptr);
    device::LineTo(&dc, 240, 1);
    device::SelectObject(&dc, old);
    device::DeleteObject(pen);
    dc.Finish();
    EXPECT_GE(Count(image), GetParam().least);
    EXPECT_LE(Count(image), GetParam().most);
}
INSTANTIATE_TEST_SUITE_P(QtDevice, PenStyle, testing::ValuesIn(kStyles),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(QtDevice, UnitStretchesTheDashesOfPaper) {
    QImage image = White(400, 9);
    QtDevice dc(&image, Rendering::smooth, 4.0);
    device::SetBkMode(&dc, TRANSPARENT);
    HPEN pen = device::CreatePen(PS_DASH, 3, 0);
    HPEN old = device::SelectObject(&dc, pen);
    device::MoveToEx(&dc, 0, 4, nullptr);
    device::LineTo(&dc, 400, 4);
    device::SelectObject(&dc, old);
    device::DeleteObject(pen);
    dc.Finish();
    // Dashes of 18 units of 4 pixels, gaps of 6: down at 60, up at 84, down again at 110.
    EXPECT_NE(image.pixel(60, 4) & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(image.pixel(84, 4) & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_NE(image.pixel(110, 4) & 0xFFFFFF, 0xFFFFFFu);
}

TEST(QtDevice, UnitSpacesTheHatchesOfPaper) {
    for (const double unit : {1.0, 2.65, 5.29}) {
        const int width = static_cast<int>(80.0 * unit);  // ten tiles
        QImage image = White(width, 20);
        QtDevice dc(&image, Rendering::smooth, unit);
        device::SetBkMode(&dc, TRANSPARENT);
        HRGN region = device::CreateRectRgn(0, 0, width, 20);
        HBRUSH brush = device::CreateHatchBrush(HS_VERTICAL, 0);
        device::FillRgn(&dc, region, brush);
        device::DeleteObject(brush);
        device::DeleteObject(region);
        dc.Finish();
        int lines = 0;
        for (int x = 1; x < width; ++x)
            lines += (image.pixel(x, 10) & 0xFF) < 128 && (image.pixel(x - 1, 10) & 0xFF) >= 128;
        EXPECT_EQ(lines, 10) << unit;
    }
}

TEST(QtDevice, ChineseTextFillsTwoWidthsForEachCharacter) {
    if (!HasChineseFont()) GTEST_SKIP() << "no font that covers Chinese: install fonts-wqy-zenhei";
    QImage image = White(400, 80);
    QtDevice dc(&image);
    HFONT font = nullptr;
    const LOGFONTA description = FontOf(40, 20);
    font = device::CreateFontIndirectA(&description);
    HFONT old = device::SelectObject(&dc, font);
    device::SetBkMode(&dc, TRANSPARENT);
    EXPECT_NE(device::TextOutA(&dc, 10, 10, "\xB2\xE2\xC1\xBF\xB2\xE2\xC1\xBF", 8), 0);
    device::SelectObject(&dc, old);
    device::DeleteObject(font);
    dc.Finish();
    const QRect ink = Inked(image);
    EXPECT_GE(ink.left(), 10);
    EXPECT_GE(ink.top(), 10);
    EXPECT_LE(ink.bottom(), 50);
    // Four characters of two widths of 20 pixels; a glyph does not fill its cell quite.
    EXPECT_NEAR(ink.width(), 160, 12);
}

TEST(QtDevice, TextTurnsCounterClockwiseAboutItsAnchor) {
    QImage image = White(200, 200);
    QtDevice dc(&image);
    const LOGFONTA description = FontOf(30, 15, 900);
    HFONT font = device::CreateFontIndirectA(&description);
    HFONT old = device::SelectObject(&dc, font);
    device::SetBkMode(&dc, TRANSPARENT);
    device::TextOutA(&dc, 100, 150, "HHHH", 4);
    device::SelectObject(&dc, old);
    device::DeleteObject(font);
    dc.Finish();
    const QRect ink = Inked(image);
    EXPECT_GE(ink.left(), 100);
    EXPECT_LE(ink.right(), 131);
    EXPECT_LE(ink.bottom(), 151);
    EXPECT_GT(ink.height(), ink.width());
}

TEST(QtDevice, OpaqueTextCoversWhatLiesBehind) {
    QImage image = White(60, 60);
    image.fill(Qt::red);
    QtDevice dc(&image);
    const LOGFONTA description = FontOf(30, 15);
    HFONT font = device::CreateFontIndirectA(&description);
    HFONT old = device::SelectObject(&dc, font);
    device::TextOutA(&dc, 5, 5, "  ", 2);
    device::SelectObject(&dc, old);
    device::DeleteObject(font);
    dc.Finish();
    EXPECT_EQ(image.pixel(7, 20) & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(image.pixel(7, 45) & 0xFFFFFF, 0xFF0000u);
}

TEST(QtDevice, MissingFaceIsToldOnceAndReplaced) {
    zm::qt::EnsureApplication();
    std::vector<std::string> reported;
    zm::qt::SetMissingFaceReport([&](const std::string& asked, const std::string&) { reported.push_back(asked); });
    LOGFONTA font = FontOf(20, 10);
    std::strcpy(font.lfFaceName, "No Such Face 7");
    for (int i = 0; i < 3; ++i) {
        font.lfHeight = 20 + i;
        zm::qt::FontFor(font);
    }
    zm::qt::SetMissingFaceReport([](const std::string&, const std::string&) {});
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0], "No Such Face 7");
}

TEST(QtDevice, DrawsAPdfPage) {
    zm::test::ScratchDir dir;
    zm::qt::EnsureApplication();
    const QString path = QString::fromStdString((dir / "图.pdf").string());
    {
        QPdfWriter writer(path);
        writer.setResolution(600);
        QtDevice dc(&writer, Rendering::smooth, 600 / 96.0);
        device::MoveToEx(&dc, 100, 100, nullptr);
        device::LineTo(&dc, 2000, 2000);
        EXPECT_TRUE(dc.Finish());
    }
    const std::string pdf = zm::test::ReadFile(dir / "图.pdf");
    EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
}

TEST(QtDevice, WithoutATargetDoesNothing) {
    QtDevice dc(nullptr);
    EXPECT_EQ(device::LineTo(&dc, 5, 5), 0);
    EXPECT_EQ(device::TextOutA(&dc, 5, 5, "a", 1), 0);
    EXPECT_FALSE(dc.Finish());
}

}  // namespace

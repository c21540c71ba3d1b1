// Devices of the library and device contexts of the system side by side, with the same objects.
#include "draw/device.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "platform/device/objects.h"
#include "platform/win32/covering_font.h"
#include "platform/win32/installed_faces.h"
#include "platform/win32/missing_glyphs.h"
#include "platform/win32/wide.h"
#include "runtime/text/gbk.h"
#include "tests/platform/win32/memory_picture.h"
#include "zenromath/draw.h"
#include "zenromath/log.h"
#include "zenromath/svg.h"

namespace {

namespace device = zm::device;
using zm::LogDevice;
using zm::SvgDevice;
using zm::test::MemoryPicture;

LOGFONTA Font(const char* gbkFace, int height, BYTE charset = GB2312_CHARSET) {
    LOGFONTA font = {};
    font.lfHeight = height;
    font.lfCharSet = charset;
    std::strcpy(font.lfFaceName, gbkFace);
    return font;
}

int CALLBACK KeepFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD type, LPARAM faces) {
    if (type == TRUETYPE_FONTTYPE && font->lfFaceName[0] != L'@')
        reinterpret_cast<std::set<std::string>*>(faces)->insert(zm::win32::Gbk(font->lfFaceName));
    return 1;
}

// The outline fonts with a set of characters; names in GBK.
std::set<std::string> InstalledFaces(BYTE charset) {
    LOGFONTW wanted = {};
    wanted.lfCharSet = charset;
    std::set<std::string> faces;
    const MemoryPicture any(1, 1);
    EnumFontFamiliesExW(any.dc(), &wanted, KeepFace, reinterpret_cast<LPARAM>(&faces), 0);
    return faces;
}
std::string InstalledChineseFace() {
    const std::set<std::string> faces = InstalledFaces(GB2312_CHARSET);
    return faces.empty() ? std::string() : *faces.begin();
}
std::vector<std::string> FacesWithoutChinese() {
    const std::set<std::string> chinese = InstalledFaces(GB2312_CHARSET);
    std::vector<std::string> faces;
    for (const std::string& face : InstalledFaces(ANSI_CHARSET))
        if (chinese.count(face) == 0) faces.push_back(face);
    return faces;
}

constexpr char kSurvey[] = "\xB2\xE2\xC1\xBF";

int Differing(const MemoryPicture& one, const MemoryPicture& other) {
    int different = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) different += one.At(x, y) != other.At(x, y) ? 1 : 0;
    return different;
}

class SelectedFont {
 public:
    SelectedFont(HDC dc, const LOGFONTA& font) : m_dc(dc), m_font(device::CreateFontIndirectA(&font)) {
        m_before = device::SelectObject(m_dc, m_font);
    }
    ~SelectedFont() {
        device::SelectObject(m_dc, m_before);
        device::DeleteObject(m_font);
    }
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;
    HGDIOBJ handle() const { return m_font; }

 private:
    HDC m_dc;
    HFONT m_font;
    HFONT m_before;
};

class TextsInOtherFaces : public testing::Test {
 protected:
    struct Reported {
        std::string face, used;
    };
    TextsInOtherFaces() {
        zm::win32::SetMissingGlyphsReport([this](const std::string& face, const std::string& used) {
            reports.push_back({face, used});
        });
    }
    ~TextsInOtherFaces() override { zm::win32::SetMissingGlyphsReport({}); }
    // Whether the face that the system takes for one that is not installed has Chinese by itself, as on Chinese systems.
    static bool SystemTakesChinese() {
        const MemoryPicture any(1, 1);
        const SelectedFont font(any.dc(), Font("No Such Face 7", 24, ANSI_CHARSET));
        WORD glyphs[2] = {};
        GetGlyphIndicesW(any.dc(), L"\u6D4B\u91CF", 2, glyphs, GGI_MARK_NONEXISTING_GLYPHS);
        return glyphs[0] != 0xFFFF && glyphs[1] != 0xFFFF;
    }
    // The font with which the characters of the face that is not installed must have been drawn.
    LOGFONTA Wanted() const {
        if (SystemTakesChinese()) return Font("No Such Face 7", 24, ANSI_CHARSET);
        return Font(zm::gbk::FromUtf8(reports.at(0).used).c_str(), 24);
    }
    std::vector<Reported> reports;
};

}  // namespace

TEST(DevicesOnWindows, TellTheirContextsFromThoseOfTheSystem) {
    LogDevice log;
    MemoryPicture picture(20, 20);
    EXPECT_NE(device::MoveToEx(&log, 1, 2, nullptr), 0);
    EXPECT_NE(device::LineTo(&log, 9, 2), 0);
    EXPECT_NE(device::MoveToEx(picture.dc(), 1, 5, nullptr), 0);
    EXPECT_NE(device::LineTo(picture.dc(), 9, 5), 0);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"MoveToEx 1 2", "LineTo 9 2"}));
    EXPECT_EQ(picture.Inked(), 8);
    HDC gone = nullptr;
    {
        LogDevice shortLived;
        gone = &shortLived;
        EXPECT_NE(device::LineTo(gone, 1, 1), 0);
    }
    EXPECT_EQ(device::LineTo(gone, 1, 1), 0);
}

TEST(DevicesOnWindows, TakeObjectsThatTheApplicationMade) {
    LogDevice log(LogDevice::Detail::styles);
    const HPEN pen = ::CreatePen(PS_DASH, 1, RGB(1, 2, 3));
    const HBRUSH brush = ::CreateHatchBrush(HS_CROSS, RGB(4, 5, 6));
    const HRGN region = ::CreateEllipticRgn(0, 0, 8, 8);
    EXPECT_NE(device::SelectObject(&log, pen), nullptr);
    device::LineTo(&log, 3, 3);
    EXPECT_NE(device::FillRgn(&log, region, brush), 0);
    EXPECT_EQ(log.lines()[0], "Pen 1 1 197121");
    EXPECT_EQ(log.lines()[2].substr(0, 18), "Brush hatch 394500");
    RECT box = {};
    ::GetRgnBox(region, &box);
    EXPECT_EQ(log.lines()[3], "FillRgn 3 " + std::to_string(box.left) + " " + std::to_string(box.top) + " " +
                                  std::to_string(box.right) + " " + std::to_string(box.bottom));
    device::SelectObject(&log, device::BlackPen());
    EXPECT_NE(device::DeleteObject(pen), 0);
    EXPECT_NE(device::DeleteObject(brush), 0);
    EXPECT_NE(device::DeleteObject(region), 0);
}

TEST(DevicesOnWindows, ARegionThatTheApplicationMovedIsTakenAsItIs) {
    LogDevice log;
    const HRGN region = device::CreateRectRgn(0, 0, 5, 5);
    ::OffsetRgn(region, 10, 20);
    device::FillRgn(&log, region, device::WhiteBrush());
    EXPECT_EQ(log.lines().back(), "FillRgn 2 10 20 15 25");
    device::DeleteObject(region);
}

TEST(DevicesOnWindows, OutlinesOfRegionsStayFigures) {
    SvgDevice svg(100, 100);
    const POINT triangle[] = {{10, 10}, {90, 10}, {50, 80}};
    const HRGN region = device::CreatePolygonRgn(triangle, 3, ALTERNATE);
    const HBRUSH brush = device::CreateSolidBrush(RGB(255, 0, 0));
    EXPECT_NE(device::FillRgn(&svg, region, brush), 0);
    EXPECT_NE(svg.Document().find("M10 10L90 10L50 80z"), std::string::npos) << svg.Document();
    device::DeleteObject(brush);
    device::DeleteObject(region);
}

namespace {

struct NullPenCase {
    int width;
    COLORREF color;
};
const NullPenCase kNullPens[] = {{4, RGB(9, 8, 7)}, {0, RGB(0, 0, 0)}, {1, RGB(1, 1, 1)}, {300, RGB(255, 0, 0)}};

// Strokes of all directions, frames of which the inside is filled, and an arc.
void DrawAllSorts(HDC dc) {
    for (int i = 0; i < 60; ++i) device::DrawLine(dc, 30, 30, (i * 37) % 61, (i * 23) % 59);
    device::DrawLine(dc, 7, 7, 7, 7);
    device::Rectangle(dc, 3, 3, 12, 12);
    device::Arc(dc, 10, 10, 50, 40, 50, 25, 10, 10);
}

}  // namespace

TEST(DevicesOnWindows, NullPensAreManyAndKeepTheirDescriptions) {
    const int before = zm::platform::ObjectCount();
    std::vector<HPEN> pens;
    for (const NullPenCase& c : kNullPens) pens.push_back(device::CreatePen(PS_NULL, c.width, c.color));
    EXPECT_EQ(std::set<HPEN>(pens.begin(), pens.end()).size(), pens.size());
    for (std::size_t i = 0; i < pens.size(); ++i) {
        EXPECT_NE(pens[i], ::GetStockObject(NULL_PEN));
        LOGPEN found = {};
        EXPECT_EQ(device::GetObjectA(pens[i], sizeof found, &found), static_cast<int>(sizeof found));
        EXPECT_EQ(found.lopnStyle, static_cast<UINT>(PS_NULL));
        EXPECT_EQ(found.lopnWidth.x, kNullPens[i].width);
        EXPECT_EQ(found.lopnColor, kNullPens[i].color);
    }
    for (const HPEN pen : pens) EXPECT_NE(device::DeleteObject(pen), 0);
    EXPECT_EQ(zm::platform::ObjectCount(), before);
    LOGPEN gone = {};
    for (const HPEN pen : pens) EXPECT_EQ(device::GetObjectA(pen, sizeof gone, &gone), 0);
    for (const HPEN pen : pens) EXPECT_EQ(::GetObjectType(pen), 0u);
}

TEST(DevicesOnWindows, NullPensLeaveNoMark) {
    for (const NullPenCase& c : kNullPens) {
        MemoryPicture picture(60, 60);
        const HPEN pen = device::CreatePen(PS_NULL, c.width, c.color);
        const HPEN before = device::SelectObject(picture.dc(), pen);
        DrawAllSorts(picture.dc());
        EXPECT_EQ(picture.Inked(), 0) << "width " << c.width;
        // Also where an application selects it without the library.
        ::SelectObject(picture.dc(), pen);
        DrawAllSorts(picture.dc());
        EXPECT_EQ(picture.Inked(), 0) << "width " << c.width;
        device::SelectObject(picture.dc(), before);
        device::DeleteObject(pen);
    }
}

TEST(DevicesOnWindows, AFigureWithANullPenIsFilledAsWithThatOfTheSystem) {
    MemoryPicture ours(60, 60);
    MemoryPicture wanted(60, 60);
    const HBRUSH brush = device::CreateSolidBrush(RGB(0, 0, 255));
    const HPEN pen = device::CreatePen(PS_NULL, 5, RGB(0, 0, 0));
    device::SelectObject(ours.dc(), brush);
    ::SelectObject(wanted.dc(), brush);
    device::SelectObject(ours.dc(), pen);
    ::SelectObject(wanted.dc(), ::GetStockObject(NULL_PEN));
    DrawAllSorts(ours.dc());
    DrawAllSorts(wanted.dc());
    EXPECT_GT(wanted.Inked(), 50);
    EXPECT_EQ(Differing(ours, wanted), 0);
    device::SelectObject(ours.dc(), device::BlackPen());
    device::SelectObject(ours.dc(), device::WhiteBrush());
    ::SelectObject(wanted.dc(), ::GetStockObject(WHITE_BRUSH));
    device::DeleteObject(pen);
    device::DeleteObject(brush);
}

TEST(DevicesOnWindows, ASelectedNullPenIsGivenBackAsItWasGiven) {
    MemoryPicture picture(20, 20);
    MemoryPicture second(20, 20);
    const HPEN one = device::CreatePen(PS_NULL, 4, RGB(9, 8, 7));
    const HPEN other = device::CreatePen(PS_NULL, 2, RGB(1, 1, 1));
    const HPEN first = device::SelectObject(picture.dc(), one);
    EXPECT_EQ(first, ::GetStockObject(BLACK_PEN));
    EXPECT_EQ(device::SelectObject(second.dc(), other), ::GetStockObject(BLACK_PEN));
    EXPECT_EQ(device::SelectObject(picture.dc(), other), one);
    EXPECT_EQ(device::SelectObject(picture.dc(), device::NullPen()), other);
    EXPECT_EQ(device::SelectObject(picture.dc(), one), device::NullPen());
    // Selected by the application since: that one is the last.
    ::SelectObject(picture.dc(), ::GetStockObject(WHITE_PEN));
    EXPECT_EQ(device::SelectObject(picture.dc(), first), ::GetStockObject(WHITE_PEN));
    // A pen that is gone is not given back.
    device::DeleteObject(other);
    EXPECT_EQ(device::SelectObject(second.dc(), first), device::NullPen());
    device::DeleteObject(one);
}

TEST(DevicesOnWindows, ANullPenOnADeviceOfTheLibrary) {
    LogDevice log(LogDevice::Detail::styles);
    const int before = zm::platform::ObjectCount();
    const HPEN pen = device::CreatePen(PS_NULL, 4, RGB(9, 8, 7));
    EXPECT_EQ(device::SelectObject(&log, pen), device::BlackPen());
    device::LineTo(&log, 3, 3);
    EXPECT_NE(device::DeleteObject(pen), 0);
    LOGPEN found = {};
    EXPECT_NE(device::GetObjectA(pen, sizeof found, &found), 0);  // lives as long as it is selected
    EXPECT_EQ(device::SelectObject(&log, device::BlackPen()), pen);
    EXPECT_EQ(device::GetObjectA(pen, sizeof found, &found), 0);
    EXPECT_EQ(zm::platform::ObjectCount(), before);
    for (const std::string& line : log.lines()) EXPECT_NE(line.substr(0, 6), "LineTo") << line;
}

TEST(DevicesOnWindows, FacesAndTextsAreGbkUnderEveryCodePage) {
    const LOGFONTA song = Font("\xCB\xCE\xCC\xE5", 24);
    HFONT font = device::CreateFontIndirectA(&song);
    LOGFONTA found = {};
    EXPECT_EQ(device::GetObjectA(font, sizeof found, &found), static_cast<int>(sizeof found));
    EXPECT_STREQ(found.lfFaceName, "\xCB\xCE\xCC\xE5");
    LOGFONTW wide = {};
    ::GetObjectW(font, sizeof wide, &wide);
    EXPECT_STREQ(wide.lfFaceName, L"\u5B8B\u4F53");

    device::DeleteObject(font);
    const LOGFONTA chinese = Font(InstalledChineseFace().c_str(), 24);
    font = device::CreateFontIndirectA(&chinese);
    MemoryPicture ours(80, 40);
    MemoryPicture wanted(80, 40);
    device::SelectObject(ours.dc(), font);
    SelectObject(wanted.dc(), font);
    EXPECT_NE(device::TextOutA(ours.dc(), 4, 4, "\xB2\xE2\xC1\xBF", 4), 0);
    ::TextOutW(wanted.dc(), 4, 4, L"\u6D4B\u91CF", 2);
    EXPECT_GT(wanted.Inked(), 50);
    EXPECT_EQ(Differing(ours, wanted), 0);
    device::SelectObject(ours.dc(), static_cast<HFONT>(GetStockObject(SYSTEM_FONT)));
    SelectObject(wanted.dc(), GetStockObject(SYSTEM_FONT));
    device::DeleteObject(font);
}

TEST_F(TextsInOtherFaces, AFaceThatIsNotInstalledGivesWayToOneThatHasTheCharacters) {
    MemoryPicture ours(80, 40);
    SelectedFont font(ours.dc(), Font("No Such Face 7", 24, ANSI_CHARSET));
    EXPECT_NE(device::TextOutA(ours.dc(), 4, 4, "12", 2), 0);
    EXPECT_TRUE(reports.empty());  // the face that the system takes has digits
    PatBlt(ours.dc(), 0, 0, 80, 40, WHITENESS);
    EXPECT_NE(device::TextOutA(ours.dc(), 4, 4, kSurvey, 4), 0);
    ASSERT_EQ(reports.size(), SystemTakesChinese() ? 0u : 1u);
    for (const Reported& report : reports) {
        EXPECT_EQ(report.face, "No Such Face 7");
        EXPECT_NE(report.used, "") << "no font for Chinese is installed (fonts-wqy-zenhei)";
    }

    MemoryPicture wanted(80, 40);
    SelectedFont other(wanted.dc(), Wanted());
    ::TextOutW(wanted.dc(), 4, 4, L"\u6D4B\u91CF", 2);
    EXPECT_GT(wanted.Inked(), 50);
    EXPECT_EQ(Differing(ours, wanted), 0);
    EXPECT_EQ(GetCurrentObject(ours.dc(), OBJ_FONT), font.handle());
}

TEST_F(TextsInOtherFaces, OfCharactersThatNoFaceHasNoneIsTaken) {
    MemoryPicture picture(80, 40);
    const SelectedFont font(picture.dc(), Font("No Such Face 7", 24, ANSI_CHARSET));
    { const zm::win32::CoveringFont none(picture.dc(), L"\uEFFF"); }
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].used, "");
}

// Their names begin with @.
TEST_F(TextsInOtherFaces, FacesForTextFromTopToBottomAreNotTaken) {
    const MemoryPicture any(1, 1);
    const std::set<std::wstring>& faces = zm::win32::InstalledFaces(any.dc(), {}, GB2312_CHARSET);
    EXPECT_FALSE(faces.empty());
    for (const std::wstring& face : faces) EXPECT_NE(face[0], L'@') << zm::win32::ToUtf8(face);
}

// The system takes milliseconds for a list of its faces.
TEST_F(TextsInOtherFaces, TheSystemIsAskedOnceForEachFace) {
    MemoryPicture picture(80, 40);
    const auto write = [&](const std::string& face, int texts) {
        SelectedFont font(picture.dc(), Font(face.c_str(), 24, ANSI_CHARSET));
        const int before = zm::win32::FaceEnumerations();
        for (int i = 0; i < texts; ++i) EXPECT_NE(device::TextOutA(picture.dc(), 4, 4, kSurvey, 4), 0);
        return zm::win32::FaceEnumerations() - before;
    };
    std::vector<std::string> lacking = {"No Such Face 8", "No Such Face 9"};
    if (SystemTakesChinese()) lacking = FacesWithoutChinese();
    ASSERT_GE(lacking.size(), 2u);
    write(lacking[0], 1);  // the faces for Chinese too
    EXPECT_EQ(write(lacking[0], 200), 0);
    EXPECT_EQ(write(lacking[1], 200), 1);
    ASSERT_EQ(reports.size(), 401u);
    EXPECT_EQ(reports.front().used, reports.back().used);
}

TEST_F(TextsInOtherFaces, TheListsOfFacesAreBounded) {
    const MemoryPicture any(1, 1);
    const auto ask = [&](std::size_t i) {
        return zm::win32::InstalledFaces(any.dc(), L"No Such Face " + std::to_wstring(i), DEFAULT_CHARSET).size();
    };
    for (std::size_t i = 100; i < 100 + 2 * zm::win32::kKeptFaceLists; ++i) EXPECT_EQ(ask(i), 0u);
    const int before = zm::win32::FaceEnumerations();
    ask(99 + 2 * zm::win32::kKeptFaceLists);
    EXPECT_EQ(zm::win32::FaceEnumerations(), before);
    ask(100);
    EXPECT_EQ(zm::win32::FaceEnumerations(), before + 1) << "each name is kept for good";
}

TEST_F(TextsInOtherFaces, ParagraphsToo) {
    MemoryPicture ours(80, 40);
    MemoryPicture wanted(80, 40);
    SelectedFont font(ours.dc(), Font("No Such Face 7", 24, ANSI_CHARSET));
    RECT box = {0, 0, 80, 40};
    EXPECT_GT(device::DrawTextA(ours.dc(), kSurvey, 4, &box, DT_LEFT), 0);
    ASSERT_EQ(reports.size(), SystemTakesChinese() ? 0u : 1u);
    SelectedFont other(wanted.dc(), Wanted());
    ::DrawTextW(wanted.dc(), L"\u6D4B\u91CF", 2, &box, DT_LEFT);
    EXPECT_EQ(Differing(ours, wanted), 0);
}

TEST_F(TextsInOtherFaces, AnInstalledFaceStaysAndItsBoxesAreReported) {
    MemoryPicture picture(80, 40);
    ASSERT_FALSE(FacesWithoutChinese().empty());
    const std::string face = FacesWithoutChinese().back();
    SelectedFont font(picture.dc(), Font(face.c_str(), 24, ANSI_CHARSET));
    EXPECT_NE(device::TextOutA(picture.dc(), 4, 4, kSurvey, 4), 0);
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].face, zm::gbk::ToUtf8(face));
    EXPECT_EQ(reports[0].used, "");
}

TEST(DevicesOnWindows, ADeletedObjectGoesWithTheLastDevice) {
    const int before = zm::platform::ObjectCount();
    LogDevice log(LogDevice::Detail::styles);
    const HPEN pen = device::CreatePen(PS_SOLID, 3, RGB(1, 0, 0));
    device::SelectObject(&log, pen);
    EXPECT_NE(device::DeleteObject(pen), 0);
    EXPECT_EQ(::GetObjectType(pen), static_cast<DWORD>(OBJ_PEN));
    device::LineTo(&log, 1, 1);
    EXPECT_EQ(log.lines()[0], "Pen 0 3 1");
    device::SelectObject(&log, device::BlackPen());
    EXPECT_EQ(zm::platform::ObjectCount(), before);
    EXPECT_EQ(::GetObjectType(pen), 0u);
}

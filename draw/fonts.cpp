// Fonts: scope guards over the working context, and the font operations of a context.
#include <cmath>
#include <cstring>
#include <string>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/palette.h"
#include "draw/state.h"
#include "draw/stroke/sinks.h"
#include "draw/texts.h"
#include "runtime/text/numbers.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

using zm::Truncated;
using namespace zm::draw;

namespace {

constexpr double kHasAngle = 0.0001;  // degrees; below it an angle is none
constexpr int kFirstFont = 1;
constexpr int kFontMissing = 1;         // status of the process end
constexpr double kLeastHeight = 0.001;  // survey units; lower text takes the height below in a drawing file
constexpr double kHeightInstead = 2.0;
constexpr double kOblique = 18.0;  // degrees
constexpr BYTE kItalic = 255;
constexpr double kEscapementsPerDegree = 10.0;

// The record of a font. One that is missing is fatal.
const NOTEFONT& FontRecord(int number) {
    TqNoteLayBase* notes = GetTqNoteLayBasePt();
    const NOTEFONT* record = notes != nullptr ? notes->GetFontInfo(number) : nullptr;
    if (record == nullptr) {
        _LMsg(zm::numbers::Text(texts::kNoFont.gbk, number).c_str(), nullptr, 0);
        zm::CurrentHost().EndProcess(kFontMissing);
    }
    return *record;
}

double ObliqueOf(int slant) {
    return slant == 1 ? kOblique : slant == 2 ? -kOblique : 0.0;
}

}  // namespace

CTQFont::CTQFont(double height, double width, int fontno, double angle, int) : m_height(height), m_width(width) {
    CTqDraw* dc = NeedWorkingContext("CTQFont");
    if (dc == nullptr) return;
    const double initial = state().initialAngle;
    // Required: while an initial angle is set, all text takes the first font.
    const NOTEFONT& record = FontRecord(std::fabs(initial) > kHasAngle ? kFirstFont : fontno);
    state().currentFont = record.logFont;
    const double drawn = std::fabs(angle) > kHasAngle ? angle : initial + angle;
    if (SinkOf(dc->GetTqDCType()) == Sink::dwg) {
        const double h = height < kLeastHeight ? kHeightInstead : height;
        std::string style = record.textStyle;
        std::string file = std::strcmp(record.fontName, "txt") == 0 ? std::string() : std::string("txt,");
        file += record.fontName;
        dc->SetFont(0, style.data(), file.data(), h, width / h, ObliqueOf(record.slant), drawn);
        return;
    }
    std::string face = record.screenFont;
    m_font = dc->SetFont(height, width, face.data(), drawn, record.slant == 2 ? kItalic : 0, m_previous);
}

CTQFont::~CTQFont() {
    CTqDraw* dc = WorkingContext();
    // Required: what counts is the type now, not the one that the font was made under.
    if (dc != nullptr && SinkOf(dc->GetTqDCType()) == Sink::dwg) return;
    if (dc != nullptr) dc->ResetFont(m_previous);
    zm::device::DeleteObject(m_font);
    if (dc != nullptr && m_colorChanged != 0)
        zm::device::SetTextColor(dc->GetHdc(), IsMonochrome(dc->GetTqDCType()) ? 0 : m_savedColor);
}

DWORD CTQFont::_settextcolor(int colourno) {
    CTqDraw* dc = NeedWorkingContext("_settextcolor");
    if (dc == nullptr) return 0;
    const int number = std::abs(colourno % 10);
    if (SinkOf(dc->GetTqDCType()) == Sink::dwg) {
        _LDBsetcolor(number);
        return PaletteColor(number == 0 ? 1 : number);
    }
    m_colorChanged = 1;
    m_savedColor = zm::device::SetTextColor(dc->GetHdc(), IsMonochrome(dc->GetTqDCType()) ? 0 : PaletteColor(number));
    return m_savedColor;
}

DWORD CTQFont::_settextcolor(DWORD layer) {
    return _settextcolor(GetColorNo1(static_cast<int>(layer)));
}

HFONT CTqDraw::SetFont(double height, double width, char* face, double angle, int italic, HFONT& old) {
    m_textAngle = angle / kDegreesPerRadian;
    m_textSin = std::sin(m_textAngle);
    m_textCos = std::cos(m_textAngle);
    int pixelHeight = Truncated(m_scale * height);
    int pixelWidth = Truncated(m_scale * width);
    const int limit = state().charHeightLimit;
    if (limit != 0 && pixelHeight > limit) {
        pixelHeight = limit;
        pixelWidth = Truncated(limit * width / height);
    }
    m_textHeight = height;
    m_textWidth = width;
    const bool onPaper = SinkOf(m_type) == Sink::record;
    LOGFONTA font = state().currentFont;
    font.lfItalic = static_cast<BYTE>(italic);
    font.lfHeight = onPaper ? _For01mm(height) : pixelHeight;
    font.lfWidth = onPaper ? _For01mm(width) : pixelWidth;
    font.lfEscapement = Truncated(angle * kEscapementsPerDegree);
    font.lfOrientation = font.lfEscapement;
    std::memset(font.lfFaceName, 0, sizeof font.lfFaceName);
    if (face != nullptr) std::strncpy(font.lfFaceName, face, sizeof font.lfFaceName - 1);
    return SetFont(&font, old);
}

HFONT CTqDraw::SetFont(tagLOGFONTA* lf, HFONT& old) {
    old = nullptr;
    if (lf == nullptr) return nullptr;
    m_fontHeight = static_cast<int>(lf->lfHeight);
    m_fontWidth = static_cast<int>(lf->lfWidth);
    m_fontEscapement = static_cast<int>(lf->lfEscapement);
    state().currentFont = *lf;
    // Required: textout draws double-byte text with this font, and its cells are two widths wide.
    state().currentFont.lfWidth /= 2;
    const HFONT font = zm::device::CreateFontIndirectA(lf);
    old = zm::device::SelectObject(m_hdc, font);
    if (SinkOf(m_type) == Sink::record) zm::draw::sink::record::Font(*this, *lf);
    return font;
}

void CTqDraw::SetFont(int style, char* name, char* file, double height, double widthfactor, double oblique,
                      double angle) {
    m_textAngle = angle / kDegreesPerRadian;
    m_textSin = std::sin(m_textAngle);
    m_textCos = std::cos(m_textAngle);
    m_textHeight = height;
    m_textWidth = height * widthfactor;
    _LDBsetstyle(style, name, file, widthfactor, oblique);
}

void CTqDraw::ResetFont(HFONT font) {
    zm::device::SelectObject(m_hdc, font);
}

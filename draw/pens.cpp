// Pens: scope guards over the working context, and the pen operations of a context.
#include <cstdlib>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/palette.h"
#include "draw/state.h"
#include "draw/stroke/sinks.h"
#include "runtime/text/numbers.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"

using zm::Truncated;
using namespace zm::draw;

namespace {

constexpr int kLastPlainStyle = 6;
constexpr DWORD kLastColor = 0xFFFFFFFF;  // "the last pen colour"
constexpr double kTenthsPerHundredth = 10.0;

int PenStyle(int style) {
    return style > kLastPlainStyle ? style % (kLastPlainStyle + 1) : style;
}

// The DWG linetype of a style is its number.
void SelectLinetype(int style) {
    char name[16];
    zm::numbers::Print(name, sizeof name, "%d", style);
    _LDBsetltype(name);
}

DWORD RealColor(DWORD colour) {
    if (colour != kLastColor) state().lastPenColor = colour;
    return state().lastPenColor;
}

// What both explicit pens share: false where the pen is a linetype only.
template <class Width>
HPEN MakeExplicitPen(int style, Width width, DWORD colour, HPEN& previous) {
    CTqDraw* dc = NeedWorkingContext("CTQPen");
    if (dc == nullptr) return nullptr;
    if (SinkOf(dc->GetTqDCType()) == Sink::dwg) {
        SelectLinetype(style);
        return nullptr;
    }
    return dc->SetPen(PenStyle(style), width, RealColor(colour), previous);
}

}  // namespace

CTQPen::CTQPen(int layer, int style, int value) {
    CTqDraw* dc = NeedWorkingContext("CTQPen");
    if (dc == nullptr) return;
    const Sink sink = SinkOf(dc->GetTqDCType());
    if (sink == Sink::record) zm::draw::sink::record::Layer(*dc, layer);
    const int code = layer < 0 ? static_cast<int>(0U - static_cast<unsigned int>(layer)) : layer;
    // Required: value is the colour number and the width at once.
    int color = value != 0 ? value : GetColorNo1(code);
    if (color < 1 || color > 9) color = 1;
    if (sink == Sink::dwg) {
        // Required: a negative code keeps the layer and colour of the file and changes the linetype alone.
        if (layer >= 0) {
            _LDBsetlay(GetLayerName(code));
            _LDBsetcolor(color);
        }
        SelectLinetype(style);
        return;
    }
    const double width = value != 0 ? _To01mm(value) : _To01mm(GetPenWidth(code)) / kTenthsPerHundredth;
    m_pen = dc->SetPen(PenStyle(style), width, RealColor(PaletteColor(color)), m_previous);
}

CTQPen::CTQPen(int style, int width, DWORD colour) {
    m_pen = MakeExplicitPen(style, width, colour, m_previous);
}
CTQPen::CTQPen(int style, double width, DWORD colour) {
    m_pen = MakeExplicitPen(style, width, colour, m_previous);
}

CTQPen::~CTQPen() {
    CTqDraw* dc = WorkingContext();
    // Required: what counts is the type now, not the one that the pen was made under.
    if (dc != nullptr && SinkOf(dc->GetTqDCType()) == Sink::dwg) return;
    if (dc != nullptr) dc->ResetPen(m_previous);
    zm::device::DeleteObject(m_pen);
}

HPEN CTqDraw::SetPen(int style, double width, DWORD colour, HPEN& old) {
    if (SinkOf(m_type) == Sink::record) zm::draw::sink::record::Pen(*this, style, _For01mm(width), colour);
    return SetPen(style, Truncated(width * m_scale), colour, old);
}

HPEN CTqDraw::SetPen(int style, int width, DWORD colour, HPEN& old) {
    const HPEN pen = zm::device::CreatePen(style, width, IsMonochrome(m_type) ? 0 : colour);
    old = zm::device::SelectObject(m_hdc, pen);
    return pen;
}

void CTqDraw::ResetPen(HPEN pen) {
    zm::device::SelectObject(m_hdc, pen);
}

tagLOGPEN CTqDraw::GetCurLogpen() {
    tagLOGPEN description{};
    const HPEN temporary = zm::device::CreatePen(PS_SOLID, 0, 0);
    const HPEN current = zm::device::SelectObject(m_hdc, temporary);
    zm::device::SelectObject(m_hdc, current);
    zm::device::GetObjectA(current, static_cast<int>(sizeof description), &description);
    zm::device::DeleteObject(temporary);
    return description;
}

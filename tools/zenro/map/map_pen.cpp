#include "tools/zenro/map/map_pen.h"

#include <climits>
#include <cstdlib>

#include "tools/zenro/map/drawing_look.h"
#include "tools/zenro/map/recording.h"
#include "zenromath/config.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1, kRecording = 3;

// The code itself, after what the context's pen cannot say is reported.
int Announced(int code, int value) {
    const int known = code < -INT_MAX ? INT_MAX : std::abs(code);  // no code is so far from 0
    if (TqDC->GetTqDCType() == kRecording) TellPenWidth(value != 0 ? value * 0.1 : GetPenWidth(known) * 0.01);
    return code;
}

double AnnouncedWidth(const Page& page, double millimetres) {
    if (TqDC->GetTqDCType() == kRecording) TellPenWidth(millimetres);
    return page.Ground(millimetres);
}

}  // namespace

MapPen::MapPen(int code, int style, int value) : m_pen(Announced(code, value), style, value) {
    if (TqDC->GetTqDCType() == kDwg && code > 0 && style == 0 && value == 0) SelectDrawingLayerOf(code);
}

WidthPen::WidthPen(const Page& page, double millimetres, int code)
    : m_layer(code), m_pen(0, AnnouncedWidth(page, millimetres), DWORD{PaletteColour(GetColorNo1(code))}) {
    if (TqDC->GetTqDCType() == kDwg) SelectDrawingLayerOf(code);
}

}  // namespace zm::tool

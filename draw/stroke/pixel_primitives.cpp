// The primitives in device pixels, and those that never fork: they always draw on the device context, whatever the
// device type, and the clip area does not reach them.
#include <algorithm>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/stroke/sinks.h"
#include "draw/stroke/view.h"
#include "zenromath/draw.h"

using namespace zm;
using draw::AllFinite;

DWORD CTqDraw::moveto(int x, int y) {
    return static_cast<DWORD>(device::MoveToEx(m_hdc, x, y, nullptr));
}
int CTqDraw::lineto(int x, int y) {
    return device::LineTo(m_hdc, x, y);
}

int CTqDraw::line(int x1, int y1, int x2, int y2) {
    draw::Pixel from = {x1, y1};
    draw::Pixel to = {x2, y2};
    return draw::ClipToView(*this, from, to) ? device::DrawLine(m_hdc, from.x, from.y, to.x, to.y) : 0;
}

DWORD CTqDraw::pixel(int x, int y, DWORD colour, int size) {
    static constexpr int kPlus[][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    static constexpr int kCross[][2] = {{-1, -1}, {1, 1}, {1, -1}, {-1, 1}};
    DWORD result = device::SetPixel(m_hdc, x, y, colour);
    if (size != 2 && size != 3) return result;
    for (const auto& shift : size == 2 ? kPlus : kCross)
        result = device::SetPixel(m_hdc, x + shift[0], y + shift[1], colour);
    return result;
}

int CTqDraw::rectangle(int x1, int y1, int x2, int y2) {
    if (std::min(x1, x2) > m_viewWidth || std::min(y1, y2) > m_viewHeight) return 0;
    if (std::max(x1, x2) < 0 || std::max(y1, y2) < 0) return 0;
    return device::Rectangle(m_hdc, x1, y1, x2, y2);
}

int CTqDraw::drawrect(int x1, int y1, int x2, int y2) {
    line(x1, y1, x2, y1);
    line(x2, y1, x2, y2);
    line(x2, y2, x1, y2);
    return line(x1, y2, x1, y1);
}

int CTqDraw::drawrect(tagRECT r) {
    return drawrect(static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
                    static_cast<int>(r.bottom));
}

int CTqDraw::drawarc(int l, int t, int r, int b, int xs, int ys, int xe, int ye) {
    return device::Arc(m_hdc, l, t, r, b, xs, ys, xe, ye);
}

int CTqDraw::drawtext(char* s, int n, tagRECT* r, unsigned int flags) {
    return device::DrawTextA(m_hdc, s, n, r, flags);
}

int CTqDraw::rectangle(double x1, double y1, double x2, double y2) {
    GetRMCoord(x1, y1);
    GetRMCoord(x2, y2);
    if (!AllFinite(x1, y1, x2, y2)) return 0;
    const draw::Pixel a = draw::PixelOf(*this, x1, y1);
    const draw::Pixel b = draw::PixelOf(*this, x2, y2);
    return rectangle(a.x, a.y, b.x, b.y);
}

DWORD CTqDraw::moveto(double x, double y) {
    GetRMCoord(x, y);
    if (!AllFinite(x, y)) return 0;
    const draw::Pixel at = draw::PixelOf(*this, x, y);
    return moveto(at.x, at.y);
}

int CTqDraw::lineto(double x, double y) {
    GetRMCoord(x, y);
    if (!AllFinite(x, y)) return 0;
    const draw::Pixel at = draw::PixelOf(*this, x, y);
    return lineto(at.x, at.y);
}

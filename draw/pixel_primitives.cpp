// The primitives in device pixels, and those that never fork: they always draw on the device context, whatever the
// device type, and the clip area does not reach them.
#include <algorithm>
#include <cstdint>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/sinks.h"
#include "zenromath/draw.h"

using namespace zm;
using draw::AllFinite;

namespace {

// The view clip of pixel lines: one pass in whole numbers.
class ViewClip {
 public:
    ViewClip(int width, int height, int x1, int y1, int x2, int y2)
        : m_width(width), m_height(height), m_x1(x1), m_y1(y1), m_dx(Difference(x2, x1)), m_dy(Difference(y2, y1)) {}

    int Code(int x, int y) const {
        return (x < 0 ? 1 : 0) + (x > m_width ? 2 : 0) + (y < 0 ? 4 : 0) + (y > m_height ? 8 : 0);
    }

    // Required: an end moves once, by the ends as they came in, and is not tested again: a line that misses the view
    // past a corner still draws its moved ends.
    void Move(int& x, int& y, int code) const {
        switch (code) {
            case 1:
            case 5:
            case 9:
                x = 0;
                y = Sum(m_y1, Quotient(m_dy, m_x1, m_dx), -1);
                MoveInHeight(x, y);
                break;
            case 2:
            case 6:
            case 10:
                x = m_width;
                y = Sum(m_y1, Quotient(Difference(m_width, m_x1), m_dy, m_dx), 1);
                MoveInHeight(x, y);
                break;
            case 4:
                y = 0;
                x = Sum(m_x1, Quotient(Difference(0, m_dx), m_y1, m_dy), 1);
                break;
            case 8:
                y = m_height;
                x = Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1);
                break;
            default:
                break;
        }
    }

 private:
    void MoveInHeight(int& x, int& y) const {
        if (y < 0) {
            y = 0;
            x = Sum(m_x1, Quotient(m_dx, m_y1, m_dy), -1);
        } else if (y > m_height) {
            y = m_height;
            x = Sum(m_x1, Quotient(Difference(m_height, m_y1), m_dx, m_dy), 1);
        }
    }

    // Required: 32 bits throughout; what they cannot hold wraps.
    static int Wrapped(std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); }
    static int Difference(int a, int b) { return Wrapped(static_cast<std::int64_t>(a) - b); }
    static int Sum(int a, int b, int sign) { return Wrapped(a + static_cast<std::int64_t>(sign) * b); }
    // a * b / c, truncated toward zero. A c of 0 cannot come from ends whose codes share no bit, unless it wrapped.
    static int Quotient(int a, int b, int c) {
        const std::int64_t product = Wrapped(static_cast<std::int64_t>(a) * b);
        return c != 0 ? Wrapped(product / c) : 0;
    }

    int m_width, m_height;
    int m_x1, m_y1, m_dx, m_dy;
};

}  // namespace

DWORD CTqDraw::moveto(int x, int y) {
    return static_cast<DWORD>(device::MoveToEx(m_hdc, x, y, nullptr));
}
int CTqDraw::lineto(int x, int y) {
    return device::LineTo(m_hdc, x, y);
}

int CTqDraw::line(int x1, int y1, int x2, int y2) {
    const ViewClip clip(m_viewWidth, m_viewHeight, x1, y1, x2, y2);
    const int c1 = clip.Code(x1, y1);
    const int c2 = clip.Code(x2, y2);
    if ((c1 & c2) != 0) return 0;
    if (c1 != 0) clip.Move(x1, y1, c1);
    if (c2 != 0) clip.Move(x2, y2, c2);
    moveto(x1, y1);
    return lineto(x2, y2);
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

#include <cmath>

#include "draw/numbers.h"
#include "draw/pixel_line.h"
#include "draw/sinks.h"

namespace zm::draw {

int DrawDistantLine(const CTqDraw& dc, double x1, double y1, double x2, double y2) {
    if (!AllFinite(x1, y1, x2, y2)) return 0;
    return DrawPixelLine(dc, PixelOf(dc, x1, y1), PixelOf(dc, x2, y2));
}

}  // namespace zm::draw

namespace zm::draw::sink::device {

DWORD Point(CTqDraw& dc, double x, double y, DWORD colour, int size) {
    if (!AllFinite(x, y)) return colour;
    const Pixel at = PixelOf(dc, x, y);
    return dc.pixel(at.x, at.y, colour, size);
}

void Arc(CTqDraw& dc, double cx, double cy, double r, double a0, double a1) {
    if (!AllFinite(cx, cy, r, a0, a1)) return;
    const Pixel topLeft = PixelOf(dc, cx - r, cy + r);
    const Pixel bottomRight = PixelOf(dc, cx + r, cy - r);
    const Pixel start = PixelOf(dc, std::cos(a0) * r + cx, std::sin(a0) * r + cy);
    const Pixel end = PixelOf(dc, std::cos(a1) * r + cx, std::sin(a1) * r + cy);
    dc.drawarc(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y, start.x, start.y, end.x, end.y);
}

int Text(CTqDraw& dc, double x, double y, char* s, int len) {
    if (!AllFinite(x, y)) return 0;
    const Pixel at = PixelOf(dc, x, y);
    return dc.textout(at.x, at.y, s, len);
}

}  // namespace zm::draw::sink::device

#include <cmath>

#include "draw/numbers.h"
#include "draw/stroke/sinks.h"
#include "draw/stroke/view.h"

namespace zm::draw::sink::device {

bool MapLine(const CTqDraw& dc, geometry::Pair from, geometry::Pair to, POINT* ends) {
    if (!AllFinite(from[0], from[1], to[0], to[1])) return false;
    Pixel a = PixelOf(dc, from[0], from[1]);
    Pixel b = PixelOf(dc, to[0], to[1]);
    if (!ClipToView(dc, a, b)) return false;
    ends[0] = {a.x, a.y};
    ends[1] = {b.x, b.y};
    return true;
}

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

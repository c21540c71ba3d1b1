#include <cmath>

#include "draw/numbers.h"
#include "draw/sinks.h"

namespace zm::draw::sink::device {

int Line(CTqDraw& dc, double x1, double y1, double x2, double y2) {
    if (!AllFinite(x1, y1, x2, y2)) return 0;
    int px1 = 0;
    int py1 = 0;
    int px2 = 0;
    int py2 = 0;
    dc.GetViewPos(x1, y1, px1, py1);
    dc.GetViewPos(x2, y2, px2, py2);
    return dc.line(px1, py1, px2, py2);
}

DWORD Point(CTqDraw& dc, double x, double y, DWORD colour, int size) {
    if (!AllFinite(x, y)) return colour;
    int px = 0;
    int py = 0;
    dc.GetViewPos(x, y, px, py);
    return dc.pixel(px, py, colour, size);
}

void Arc(CTqDraw& dc, double cx, double cy, double r, double a0, double a1) {
    if (!AllFinite(cx, cy, r, a0, a1)) return;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int xs = 0;
    int ys = 0;
    int xe = 0;
    int ye = 0;
    dc.GetViewPos(cx - r, cy + r, left, top);
    dc.GetViewPos(cx + r, cy - r, right, bottom);
    dc.GetViewPos(std::cos(a0) * r + cx, std::sin(a0) * r + cy, xs, ys);
    dc.GetViewPos(std::cos(a1) * r + cx, std::sin(a1) * r + cy, xe, ye);
    dc.drawarc(left, top, right, bottom, xs, ys, xe, ye);
}

int Text(CTqDraw& dc, double x, double y, char* s, int len) {
    if (!AllFinite(x, y)) return 0;
    int px = 0;
    int py = 0;
    dc.GetViewPos(x, y, px, py);
    return dc.textout(px, py, s, len);
}

}  // namespace zm::draw::sink::device

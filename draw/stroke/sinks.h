// The three sinks of a stroke: free functions of the same shape for each. The fork is one switch in each primitive.
//
// Coordinates are survey coordinates, rotated and clipped. What has a number that is not finite is not drawn.
#pragma once

#include "geometry/exact/pair.h"
#include "zenromath/draw.h"

namespace zm::draw {

enum class Sink { device, dwg, record };

/// Required: any type but 1 and 3 acts as a colour device.
inline Sink SinkOf(int type) {
    return type == 1 ? Sink::dwg : type == 3 ? Sink::record : Sink::device;
}

/// Required: a device of type 2 draws all pens and texts in black.
inline bool IsMonochrome(int type) {
    return type == 2;
}

namespace sink::device {
/// The two pixels of a stroke, clipped to the view. False where nothing remains: a device draws many strokes at a time.
bool MapLine(const CTqDraw& dc, geometry::Pair from, geometry::Pair to, POINT* ends);
DWORD Point(CTqDraw& dc, double x, double y, DWORD colour, int size);
void Arc(CTqDraw& dc, double cx, double cy, double r, double a0, double a1);
int Text(CTqDraw& dc, double x, double y, char* s, int len);
}  // namespace sink::device

namespace sink::dwg {
int Line(double x1, double y1, double x2, double y2);
void Point(double x, double y);
void Arc(double cx, double cy, double r, double a0, double a1);
/// (x, y) is the top left corner.
int Text(const CTqDraw& dc, double x, double y, const char* s);
}  // namespace sink::dwg

namespace sink::record {
int Line(CTqDraw& dc, double x1, double y1, double x2, double y2);
void Point(CTqDraw& dc, double x, double y, DWORD colour);
void Arc(CTqDraw& dc, double cx, double cy, double r, double a0, double a1);
int Text(CTqDraw& dc, double x, double y, const char* s);
void PolylineStart(CTqDraw& dc);
void PolylineEnd(CTqDraw& dc);
void Layer(CTqDraw& dc, int layer);
void Pen(CTqDraw& dc, int style, int width, DWORD colour);
void Font(CTqDraw& dc, const tagLOGFONTA& font);
}  // namespace sink::record

}  // namespace zm::draw

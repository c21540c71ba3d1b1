#include "draw/access.h"
#include "draw/numbers.h"
#include "draw/stroke/sinks.h"
#include "dwg/writer/writer.h"

namespace zm::draw::sink::dwg {

namespace {
constexpr int kLeftJustified = 1;
}  // namespace

// The writer itself reports coordinates that are not finite.
int Line(double x1, double y1, double x2, double y2) {
    _LDBline(x1, y1, x2, y2);
    return 1;
}

void Point(double x, double y) {
    _LDBpoint(x, y);
}

void Arc(double cx, double cy, double r, double a0, double a1) {
    _LDBarc(cx, cy, r, a0 * kDegreesPerRadian, a1 * kDegreesPerRadian);
}

// The writer places text by its base line, the underside of the box.
int Text(const CTqDraw& dc, double x, double y, const char* s) {
    const double height = Access::TextHeight(dc);
    _LDBtext(kLeftJustified, height * Access::TextSin(dc) + x, y - height * Access::TextCos(dc), height,
             Access::TextAngle(dc) * kDegreesPerRadian, s);
    return 1;
}

}  // namespace zm::draw::sink::dwg

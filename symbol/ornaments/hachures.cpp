#include "symbol/ornaments/hachures.h"

#include <cmath>

#include "draw/state.h"
#include "geometry/lines.h"
#include "symbol/state.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

constexpr double kRoomForOne = 1.01;  // spacings that the first triangle's height holds at least
constexpr int kMostStrokes = 100000;  // of one triangle

Point Between(const Point& from, const Point& to, double t) {
    return {from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t};
}

void DrawHachure(const Point& a, const Point& b) {
    if (state().hachureFile == nullptr) {
        Line(a, b);
        return;
    }
    AppendLineCor(a.x, a.y, b.x, b.y, state().hachureNumber, state().hachureGroup, state().hachureFile);
}

}  // namespace

int DrawTriangleHachures(HachureState& hachures, const Point& p1, const Point& p2, const Point& p3, int reverse) {
    if (hachures.stop || draw::NeedWorkingContext("DrawTriangleHachures") == nullptr) return 0;
    if (hachures.first) {
        const double height = geometry::LineHeight(p1.x, p1.y, p2.x, p2.y, p3.x, p3.y);
        // A spacing that is no length at all has no first triangle either.
        if (!(hachures.spacing > 0.0) || !(hachures.spacing * kRoomForOne <= height)) return 0;
        hachures.first = false;
        hachures.spacing = height / std::trunc(height / hachures.spacing);
        hachures.ratio = hachures.spacing / height;
    }
    double t = hachures.ratio;
    for (int stroke = 0; t < 1.0 && stroke < kMostStrokes; ++stroke, t += hachures.ratio) {
        if (reverse == 0)
            DrawHachure(Between(p2, p1, t), Between(p3, p1, t));
        else
            DrawHachure(Between(p1, p2, t), Between(p1, p3, t));
    }
    return 1;
}

}  // namespace zm::symbol

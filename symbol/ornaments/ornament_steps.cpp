// What the ornaments are built from: constructed points, strokes and symbols, and drawcode itself.
#include <array>
#include <cmath>

#include "draw/state.h"
#include "symbol/ornaments/ornaments.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

constexpr double kSamePlace = 1e-6;
constexpr double kNoAdvance = 1e-7;
constexpr double kNoOffset = 1e-6;

// Whether a direction and a step are there; a message if not.
bool CanStep(const Point& a, const Point& b, double d, double o) {
    const bool same = std::fabs(a.x - b.x) < kSamePlace && std::fabs(a.y - b.y) < kSamePlace;
    const bool none = std::fabs(d) < kNoAdvance && std::fabs(o) < kNoOffset;
    if (!same && !none) return true;
    _LMsg(texts::kSamePoint, nullptr, 0);
    return false;
}

Polar Step(const Point& a, const Point& b, double d, double o) {
    Polar step = PolarOf({0.0, 0.0}, {d, o});
    step.bearing += Bearing(a, b);
    return step;
}

}  // namespace

double AlongX(const Point& a, const Point& b, double d, double o) {
    if (!CanStep(a, b, d, o)) return b.x;
    const Polar step = Step(a, b, d, o);
    return a.x + step.distance * std::cos(step.bearing);
}

double AlongY(const Point& a, const Point& b, double d, double o) {
    if (!CanStep(a, b, d, o)) return b.y;
    const Polar step = Step(a, b, d, o);
    return a.y + step.distance * std::sin(step.bearing);
}

Point AlongPoint(const Point& a, const Point& b, double d, double o) {
    const double x = AlongX(a, b, d, o);
    return {x, AlongY(a, b, d, o)};
}

void ThinLine(const Point& a, const Point& b) {
    // The type of the colour selects the explicit pen; -1 as an int would find the layer pen.
    const CTQPen pen(0, 1, DWORD{0xFFFFFFFF});
    Line(a, b);
}

int CodedSegment(const Point& a, const Point& b, int code) {
    if (getsymbody(code) == 0) return 0;
    if (TheHeadStatus() == SymbolStatusLC) {
        double x[] = {a.x, b.x};
        double y[] = {a.y, b.y};
        return NewLC(x, y, 2, code);
    }
    if (TheHeadStatus() != SymbolStatusL) return 0;
    const CTQPen pen(-code, 0, 0);
    return Line(a, b);
}

Point CompleteParallelogram(const Point& p1, const Point& p2, const Point& p3) {
    const Polar side = PolarOf(p2, p3);
    return At(p1, side.distance, side.bearing);
}

}  // namespace zm::symbol

int drawcode(int number, int /*code*/, int n, double* x, double* y, double g) {
    using namespace zm::symbol;
    if (n < kLeastControlPoints || n > kMostControlPoints || x == nullptr || y == nullptr) return 0;
    if (zm::draw::NeedWorkingContext("drawcode") == nullptr) return 0;
    std::array<Point, kMostControlPoints> points;
    for (int i = 0; i < n; ++i) points[static_cast<std::size_t>(i)] = {x[i], y[i]};
    if (n == 3) {
        points[3] = CompleteParallelogram(points[0], points[1], points[2]);
        n = 4;
    }
    DrawCodedOrnament(number, n, points.data(), g);
    return 1;
}

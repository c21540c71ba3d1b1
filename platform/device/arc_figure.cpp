#include "platform/device/arc_figure.h"

#include <algorithm>
#include <cmath>

namespace zm::platform {
namespace {

constexpr double kFullTurn = 6.283185307179586;

// The parameter of the point where the radial line through (dx, dy), y up, meets the ellipse.
double Parameter(double dx, double dy, double rx, double ry) {
    if (dx == 0.0 && dy == 0.0) return 0.0;
    return std::atan2(dy * rx, dx * ry);
}

}  // namespace

double ArcFigure::X(double angle) const {
    return cx + rx * std::cos(angle);
}
double ArcFigure::Y(double angle) const {
    return cy - ry * std::sin(angle);
}

ArcFigure FigureOfArc(const RECT& box, POINT start, POINT end) {
    const double left = std::min(box.left, box.right);
    const double right = std::max(box.left, box.right) - 1.0;
    const double top = std::min(box.top, box.bottom);
    const double bottom = std::max(box.top, box.bottom) - 1.0;
    ArcFigure arc{};
    arc.cx = (left + right) / 2.0;
    arc.cy = (top + bottom) / 2.0;
    arc.rx = std::max((right - left) / 2.0, 0.0);
    arc.ry = std::max((bottom - top) / 2.0, 0.0);
    const double rx = std::max(arc.rx, 0.5);
    const double ry = std::max(arc.ry, 0.5);
    // The radial lines start in the middle of the box itself.
    const double mx = (left + right + 1.0) / 2.0;
    const double my = (top + bottom + 1.0) / 2.0;
    arc.start = Parameter(start.x - mx, my - start.y, rx, ry);
    const double last = Parameter(end.x - mx, my - end.y, rx, ry);
    arc.sweep = last - arc.start;
    if (arc.sweep <= 0.0) arc.sweep += kFullTurn;
    if (start.x == end.x && start.y == end.y) arc.sweep = kFullTurn;
    return arc;
}

}  // namespace zm::platform

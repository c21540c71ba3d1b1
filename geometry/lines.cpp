// Points, lines and angles: the tolerance, polar conversion, intersections, perpendiculars, the rigid motion.
#include "geometry/lines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geometry/exact/crossing.h"
#include "geometry/rectangle.h"
#include "geometry/state.h"
#include "zenromath/geometry.h"

using zm::geometry::state;

namespace {

constexpr double kDegenerateLine = 1e-08;      // metres; CHUIZU
constexpr double kSineFromTolerance = 1e-06;   // AbcIsClockwise reads a greater tolerance as a sine
constexpr double kLeastLengthProduct = 1e-06;  // square metres; below it a cross value is not normed

// Is the value more than the tolerance from both ends of a range, and on the same side of both?
bool Outside(double value, double end1, double end2, double tolerance) {
    return (value - end1 > tolerance && value - end2 > tolerance) ||
           (end1 - value > tolerance && end2 - value > tolerance);
}

}  // namespace

double zm::geometry::NormCross(double ax, double ay, double bx, double by, double cx, double cy) {
    const double cross = Cross(ax, ay, bx, by, cx, cy);
    const double lengths = Distance(cx, cy, ax, ay) * Distance(cx, cy, bx, by);
    return lengths > kLeastLengthProduct ? cross / lengths : cross;
}

double SetMINI(double tolerance) {
    const double previous = state().mini;
    state().mini = tolerance;
    return previous;
}

int ptor(double& x, double& y, double r, double angle) {
    if (r <= 0.0) return 0;
    x = r * std::cos(angle);
    y = r * std::sin(angle);
    return 1;
}

int rtop(double x, double y, double& r, double& angle) {
    r = std::sqrt(x * x + y * y);
    if (r == 0.0) return 0;
    angle = std::atan2(y, x);
    return 1;
}

void XYSA(double x0, double y0, double* x, double* y, double* s, double* a, char flag) {
    if (x == nullptr || y == nullptr || s == nullptr || a == nullptr) return;
    if (flag != 0) {
        const double length = *s;
        const double angle = *a;
        *x = x0 + length * std::cos(angle);
        *y = y0 + length * std::sin(angle);
        return;
    }
    *s = zm::geometry::Distance(x0, y0, *x, *y);
    if (state().mini >= *s) {
        *a = 0.0;
        return;
    }
    *a = std::acos((*x - x0) / *s);
    if (y0 > *y) *a = zm::geometry::kTwoPi - *a;
}

int Cross_P(double& X, double& Y, double x1, double y1, double x2, double y2, double x3, double y3, double x4,
            double y4) {
    const double tolerance = state().mini;
    if (tolerance >= std::fabs(x2 - x1) + std::fabs(y2 - y1)) return -2;
    if (tolerance >= std::fabs(x3 - x4) + std::fabs(y3 - y4)) return -2;
    if (tolerance >= std::fabs(zm::geometry::Determinant(x1, y1, x2, y2, x3, y3, x4, y4))) return -3;
    const auto [px, py] = zm::geometry::Meeting(x1, y1, x2, y2, x3, y3, x4, y4);
    X = px;
    Y = py;
    if (Outside(px, x1, x2, tolerance) || Outside(py, y1, y2, tolerance)) return 4;
    if (Outside(px, x3, x4, tolerance) || Outside(py, y3, y4, tolerance)) return 4;
    return 0;
}

// Cross_P is asked only where a segment is not clearly on one side of the given one; what it would say elsewhere is not
// 0.
int norm_intersect(double x1, double y1, double x2, double y2, double* pairs, int n, double& X, double& Y) {
    if (pairs == nullptr || n < 2) return 0;
    const zm::geometry::SidesOfBox sides(x1, y1, x2, y2);
    unsigned int before = sides.Of(pairs[0], pairs[1]);
    const double* p = pairs;
    for (int i = 1; i < n; ++i, p += 2) {
        const unsigned int after = sides.Of(p[2], p[3]);
        if (!sides.Share(before, after) && Cross_P(X, Y, x1, y1, x2, y2, p[0], p[1], p[2], p[3]) == 0) return i;
        before = after;
    }
    // Required: the last meeting point computed stays in X and Y, also when the result is 0.
    for (int i = n - 1; i > 0; --i, p -= 2)
        if (Cross_P(X, Y, x1, y1, x2, y2, p[-2], p[-1], p[0], p[1]) >= 0) break;
    return 0;
}

int MyCrossRect(double x1, double y1, double x2, double y2, double left, double bottom, double right, double top) {
    return zm::geometry::SidesMet(x1, y1, x2, y2, left, bottom, right, top);
}

void CHUIZU(double* in6, double* out2) {
    if (in6 == nullptr || out2 == nullptr) return;
    const double x1 = in6[0];
    const double y1 = in6[1];
    const double dx = in6[2] - x1;
    const double dy = in6[3] - y1;
    if (std::fabs(dx) < kDegenerateLine && std::fabs(dy) < kDegenerateLine) {
        out2[0] = x1;
        out2[1] = y1;
        return;
    }
    const double u = ((in6[5] - y1) * dy + (in6[4] - x1) * dx) / (dx * dx + dy * dy);
    out2[0] = x1 + u * dx;
    out2[1] = y1 + u * dy;
}

int AbcIsClockwise(double ax, double ay, double bx, double by, double cx, double cy, double tolerance) {
    // Required: a tolerance above 1e-06 is read as a sine, so one number serves for areas and for angles.
    if (tolerance > kSineFromTolerance)
        return zm::geometry::SignOf(zm::geometry::NormCross(ax, ay, bx, by, cx, cy), tolerance);
    return zm::geometry::SignOf((ax - cx) * (by - cy) - (bx - cx) * (ay - cy), tolerance);
}

int VertAnglePoint(double x1, double y1, double x2, double y2, double* px, double* py) {
    if (px == nullptr || py == nullptr) return 0;
    const double length = zm::geometry::Distance(x1, y1, x2, y2);
    if (state().mini > length) return 0;
    const double nx = (y1 - y2) / length;
    const double ny = (x2 - x1) / length;
    const double distance = zm::geometry::Distance(x1, y1, *px, *py);
    const double side = (*px - x1) * nx + (*py - y1) * ny;
    if (side > state().mini) {
        *px = x1 + distance * nx;
        *py = y1 + distance * ny;
    } else {  // Required: a point on the line goes to the negative side.
        *px = x1 - distance * nx;
        *py = y1 - distance * ny;
    }
    return 1;
}

int GrdbodyRotate(double tx, double ty, double angle, double cx, double cy, double x, double y, double& X, double& Y) {
    const double dx = x - cx;
    const double dy = y - cy;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    X = dx * c + dy * s + cx + tx;
    Y = dy * c - dx * s + cy + ty;
    return 1;
}

int reverse_line(void* buffer, int n, int size) {
    if (buffer == nullptr || size < 0) return 0;
    if (n < 2 || size == 0) return 1;
    const auto step = static_cast<std::ptrdiff_t>(size);
    char* front = static_cast<char*>(buffer);
    char* back = front + step * (static_cast<std::ptrdiff_t>(n) - 1);
    for (; front < back; front += step, back -= step) std::swap_ranges(front, front + step, back);
    return 1;
}

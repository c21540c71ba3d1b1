// Arcs and circles: the circle through three points, and flattening.
#include <cmath>

#include "geometry/lines.h"
#include "geometry/state.h"
#include "runtime/truncated.h"
#include "zenromath/geometry.h"

using zm::Truncated;
using zm::geometry::kPi;
using zm::geometry::kTwoPi;
using zm::geometry::state;

namespace {

constexpr double kStepLengthOfPrec = 0.002;           // arc length of one step for each unit of prec
constexpr double kGreatestStep = 0.2617993877991494;  // radians, 15 degrees
constexpr int kStepLimit = 4000;                      // from here on 3999 steps

// The bearing of (x, y) seen from the centre.
double BearingFrom(double cx, double cy, double x, double y) {
    double length;
    double bearing;
    XYSA(cx, cy, &x, &y, &length, &bearing, 0);
    return bearing;
}

struct Point {
    double x, y;
};

// The second point of the bisector of a leg: from its midpoint by the leg's length, square to it.
Point AlongBisector(Point middle, double x1, double y1, double x2, double y2) {
    double length;
    double bearing;
    XYSA(x1, y1, &x2, &y2, &length, &bearing, 0);
    bearing += kPi / 2.0;
    Point end;
    XYSA(middle.x, middle.y, &end.x, &end.y, &length, &bearing, 1);
    return end;
}

void PutPolar(double* out, double cx, double cy, double r, double bearing) {
    out[0] = cx + r * std::cos(bearing);
    out[1] = cy + r * std::sin(bearing);
}

// Steps to walk; a negative step (a negative prec given directly) walks nowhere.
int StepsToWalk(double prec, double radius, double sweep, double& step) {
    int count;
    ArcStepCount(prec, radius, sweep, &step, &count);
    return count > 0 ? count : 0;
}

}  // namespace

int theerP_circle_cr(double* x, double* y, double& cx, double& cy, double& r) {
    if (x == nullptr || y == nullptr) return 0;
    const Point m1 = {(x[0] + x[1]) / 2.0, (y[0] + y[1]) / 2.0};
    const Point m2 = {(x[1] + x[2]) / 2.0, (y[1] + y[2]) / 2.0};
    const Point q1 = AlongBisector(m1, x[0], y[0], x[1], y[1]);
    const Point q2 = AlongBisector(m2, x[1], y[1], x[2], y[2]);
    double centreX;
    double centreY;
    const int met = Cross_P(centreX, centreY, m1.x, m1.y, q1.x, q1.y, m2.x, m2.y, q2.x, q2.y);
    if (met != 0 && met != 4) return 0;
    cx = centreX;
    cy = centreY;
    r = zm::geometry::Distance(cx, cy, x[0], y[0]);
    return 1;
}

int DRAWARC1(double* x1, double* y1, double* x2, double* y2, double* x3, double* y3, double* r) {
    if (x1 == nullptr || y1 == nullptr || x2 == nullptr || y2 == nullptr || x3 == nullptr || y3 == nullptr ||
        r == nullptr)
        return 0;
    const Point p1 = {*x1, *y1};
    const Point p2 = {*x2, *y2};
    const Point p3 = {*x3, *y3};
    const double det2 = 2.0 * ((p1.x - p2.x) * (p1.y - p3.y) - (p1.y - p2.y) * (p1.x - p3.x));
    if (state().mini > std::fabs(det2)) return 0;
    const double q2 = p1.x * p1.x - p2.x * p2.x + p1.y * p1.y - p2.y * p2.y;
    const double q3 = p1.x * p1.x - p3.x * p3.x + p1.y * p1.y - p3.y * p3.y;
    const double cx = (q2 * (p1.y - p3.y) - q3 * (p1.y - p2.y)) / det2;
    const double cy = -(q2 * (p1.x - p3.x) - q3 * (p1.x - p2.x)) / det2;

    const double a1 = BearingFrom(cx, cy, p1.x, p1.y);
    double d2 = BearingFrom(cx, cy, p2.x, p2.y) - a1;
    double d3 = BearingFrom(cx, cy, p3.x, p3.y) - a1;
    if (d2 < 0.0) d2 += kTwoPi;
    if (d3 < 0.0) d3 += kTwoPi;
    const Point first = d2 > d3 ? p3 : p1;
    const Point last = d2 > d3 ? p1 : p3;
    *x1 = cx;
    *y1 = cy;
    *r = zm::geometry::Distance(cx, cy, p1.x, p1.y);
    *x2 = first.x;
    *y2 = first.y;
    *x3 = last.x;
    *y3 = last.y;
    return 1;
}

int ArcStepCount(double prec, double radius, double sweep, double* step, int* count) {
    double angle = prec * kStepLengthOfPrec / radius;
    if (angle > kGreatestStep) angle = kGreatestStep;
    const int unlimited = Truncated(std::trunc(std::fabs(sweep) / angle + 0.5));
    int limited = unlimited;
    if (unlimited >= kStepLimit) {
        limited = kStepLimit - 1;
        angle = std::fabs(sweep) / limited;
    }
    if (step != nullptr) *step = angle;
    if (count != nullptr) *count = limited;
    return unlimited;
}

void ArcToPoints(int n, double* x, double* y, double* out, int* outCount, double prec) {
    double cx;
    double cy;
    double r;
    if (n < 3 || out == nullptr || outCount == nullptr || theerP_circle_cr(x, y, cx, cy, r) == 0) return;
    double a0 = BearingFrom(cx, cy, x[0], y[0]);
    const double a1 = BearingFrom(cx, cy, x[1], y[1]);
    const double a2 = BearingFrom(cx, cy, x[2], y[2]);
    // Bring the middle bearing between the ends.
    if (a0 > a1 ? a2 >= a1 : a1 > a2) a0 += a2 > a0 ? kTwoPi : -kTwoPi;
    double step;
    const int count = StepsToWalk(prec, r, a0 - a2, step);
    if (a2 > a0) step = -step;
    for (int i = 0; i < count; ++i) PutPolar(out + 2 * i, cx, cy, r, a0 - i * step);
    out[2 * count] = x[2];
    out[2 * count + 1] = y[2];
    *outCount = count + 1;
}

void CircleToPoints(int direction, int n, double* x, double* y, double* out, int* outCount, double prec) {
    if (n < 2 || x == nullptr || y == nullptr || out == nullptr || outCount == nullptr) return;
    double cx;
    double cy;
    double r;
    if (n == 2) {
        cx = x[1];
        cy = y[1];
        r = zm::geometry::Distance(x[0], y[0], x[1], y[1]);
    } else if (theerP_circle_cr(x, y, cx, cy, r) == 0) {
        return;
    }
    double step;
    const int count = StepsToWalk(prec, r, kTwoPi, step);
    PutPolar(out, cx, cy, r, 0.0);
    for (int i = 1; i < count; ++i) PutPolar(out + 2 * i, cx, cy, r, static_cast<double>(direction) * i * step);
    out[2 * count] = out[0];
    out[2 * count + 1] = out[1];
    *outCount = count + 1;
}

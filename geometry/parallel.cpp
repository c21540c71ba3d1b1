// Parallel lines by the bisectors of the corners.
#include <cmath>

#include "geometry/lines.h"
#include "zenromath/geometry.h"

using zm::geometry::kPi;
using zm::geometry::kTwoPi;

namespace {

constexpr double kClosedWithin = 1e-08;  // metres, in each coordinate; MINI has no part in it
constexpr double kLeastSine = 0.2;       // of the half-angle; below it the mitre has its greatest length
constexpr double kGreatestMitre = 5.0;   // in distances

double Bearing(double x1, double y1, double x2, double y2) {
    double length;
    double bearing;
    XYSA(x1, y1, &x2, &y2, &length, &bearing, 0);
    return bearing;
}

void Move(double x, double y, double length, double bearing, double& toX, double& toY) {
    toX = x + length * std::cos(bearing);
    toY = y + length * std::sin(bearing);
}

// The offset of a corner: vertex i, with the vertex before it and (nextX, nextY) after it.
void OffsetCorner(const double* x, const double* y, double nextX, double nextY, double dist, int side, double& outX,
                  double& outY) {
    const double back = Bearing(x[0], y[0], x[-1], y[-1]);
    const double ahead = Bearing(x[0], y[0], nextX, nextY);
    double half = ahead - back;
    if (half < 0.0) half += kTwoPi;
    half /= 2.0;
    const double sine = half >= kPi / 2.0 ? std::sin(kPi - half) : std::sin(half);
    const double length = sine > kLeastSine ? dist / sine : dist * kGreatestMitre;
    double bisector = ahead - half;
    if (side != 1) bisector = bisector >= kPi ? bisector - kPi : bisector + kPi;
    Move(x[0], y[0], length, bisector, outX, outY);
}

}  // namespace

int parallel(int n, double* x, double* y, double* outX, double* outY, double dist, int side) {
    if (n < 2 || x == nullptr || y == nullptr || outX == nullptr || outY == nullptr) return 0;
    const int last = n - 1;
    const double square = side == 1 ? -kPi / 2.0 : kPi / 2.0;
    Move(x[0], y[0], dist, Bearing(x[0], y[0], x[1], y[1]) + square, outX[0], outY[0]);
    Move(x[last], y[last], dist, Bearing(x[last - 1], y[last - 1], x[last], y[last]) + square, outX[last], outY[last]);
    if (n < 3) return 1;
    for (int i = 1; i < last; ++i) OffsetCorner(x + i, y + i, x[i + 1], y[i + 1], dist, side, outX[i], outY[i]);
    if (std::fabs(x[0] - x[last]) < kClosedWithin && std::fabs(y[0] - y[last]) < kClosedWithin) {
        OffsetCorner(x + last, y + last, x[1], y[1], dist, side, outX[last], outY[last]);
        outX[0] = outX[last];
        outY[0] = outY[last];
    }
    return 1;
}

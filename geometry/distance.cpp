// Distances from a point to lines, segments and polylines.
#include <algorithm>
#include <cmath>

#include "geometry/lines.h"
#include "geometry/state.h"
#include "zenromath/geometry.h"

using zm::geometry::Cross;
using zm::geometry::Distance;
using zm::geometry::LineDist;
using zm::geometry::Squared;

namespace {

constexpr double kLeastSquaredLength = 1e-10;  // square metres; LineDist
constexpr double kLeastLeg = 1e-10;            // metres; GetDistBering
constexpr double kFarAway = 1e10;              // metres; GetDistBering looks no farther for its segment

double SquaredDistance(double x1, double y1, double x2, double y2) {
    return Squared(x2 - x1) + Squared(y2 - y1);
}

// The segment nearest to p, from 0. Of several as near the last one; 0 if all are farther than kFarAway.
int NearestSegment(double px, double py, int n, const double* x, const double* y) {
    double best = kFarAway;
    int nearest = 0;
    for (int i = 0; i + 1 < n; ++i) {
        const double d = PtDist2Line(px, py, x[i], y[i], x[i + 1], y[i + 1]);
        if (best >= d) {
            best = d;
            nearest = i;
        }
    }
    return nearest;
}

// Does p face the leg from the inner vertex q to the previous vertex, by the bisector of the corner? x, y: three
// vertices, q the middle one; nextLeg is the length of the leg after q.
bool FacesPreviousLeg(double px, double py, const double* x, const double* y, double nextLeg) {
    const double previousLeg = Distance(x[1], y[1], x[0], y[0]);
    const double dx = x[1] + (x[2] - x[1]) * previousLeg / nextLeg;
    const double dy = y[1] + (y[2] - y[1]) * previousLeg / nextLeg;
    const double mx = (x[0] + dx) / 2.0;
    const double my = (y[0] + dy) / 2.0;
    const bool previousSide = Cross(x[1], y[1], x[0], y[0], mx, my) >= 0.0;
    const bool pointSide = Cross(x[1], y[1], px, py, mx, my) >= 0.0;
    return previousSide == pointSide;
}

}  // namespace

double zm::geometry::LineHeight(double px, double py, double ax, double ay, double bx, double by) {
    const double c = Distance(ax, ay, bx, by);
    if (state().mini > c) return 0.0;
    const double d = Distance(px, py, bx, by);
    const double e = Distance(px, py, ax, ay);
    const double q = (c * c + d * d - e * e) / 2.0 / c;
    return std::sqrt(d * d - q * q);
}

double zm::geometry::LineDist(double px, double py, double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double squaredLength = dx * dx + dy * dy;
    if (squaredLength < kLeastSquaredLength) return Distance(x1, y1, px, py);
    return std::fabs((py - y1) * dx - (px - x1) * dy) / std::sqrt(squaredLength);
}

double PtDist2Line(double px, double py, double x1, double y1, double x2, double y2) {
    const double d1 = SquaredDistance(px, py, x1, y1);
    const double d2 = SquaredDistance(px, py, x2, y2);
    const double c = SquaredDistance(x1, y1, x2, y2);
    if (c + d1 > d2 && c + d2 > d1) return std::fabs((py - y2) * (x1 - x2) - (px - x2) * (y1 - y2)) / std::sqrt(c);
    return std::sqrt(std::min(d1, d2));
}

double getdist(double px, double py, int n, double* x, double* y) {
    if (n < 1 || x == nullptr || y == nullptr) return 0.0;
    double best = Distance(px, py, x[0], y[0]);
    for (int i = 0; i + 1 < n; ++i) best = std::min(best, PtDist2Line(px, py, x[i], y[i], x[i + 1], y[i + 1]));
    return best;
}

double GetDistBering(double px, double py, int n, double* x, double* y, int& index, int& side) {
    index = 0;
    if (n < 2 || x == nullptr || y == nullptr) return 0.0;
    const int k = NearestSegment(px, py, n, x, y);
    const double toSegment = LineDist(px, py, x[k], y[k], x[k + 1], y[k + 1]);
    side = (px - x[k]) * (y[k + 1] - y[k]) - (x[k + 1] - x[k]) * (py - y[k]) < 0.0 ? 1 : 0;
    index = Distance(px, py, x[k + 1], y[k + 1]) > Distance(px, py, x[k], y[k]) ? k : k + 1;
    if (index < 1 || index >= n - 1) return toSegment;

    double* cornerX = x + index - 1;
    double* cornerY = y + index - 1;
    if (PtInPoly(cornerX, cornerY, 3, px, py) == 1) return toSegment;
    const double nextLeg = Distance(cornerX[1], cornerY[1], cornerX[2], cornerY[2]);
    if (nextLeg < kLeastLeg) return toSegment;
    const int facing = FacesPreviousLeg(px, py, cornerX, cornerY, nextLeg) ? 0 : 2;
    return LineDist(px, py, cornerX[1], cornerY[1], cornerX[facing], cornerY[facing]);
}

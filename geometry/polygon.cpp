// Where a point lies with respect to a polygon.
#include <algorithm>
#include <cmath>

#include "runtime/uses.h"
#include "zenromath/geometry.h"

namespace {

constexpr double kFlatEdge = 0.0001;                      // metres; PtInPoly leaves out flatter edges
constexpr double kEdgeTolerance = 1e-07;                  // metres; the boundary of PtInPolyEdge
constexpr double kSmall = 1e-08;                          // metres; PtInPolyEdge
constexpr double kSquaredOnEdge = 9.999999999999998e-15;  // square metres
constexpr double kWellAway = 4e-07;      // metres; four times the edge tolerance, so that roundings have no part
constexpr double kRayBeyondBox = 1e-05;  // metres; the ray ends here after the vertices

// The least and the greatest of n values, n at least 1. NaN has no part, unless it comes first. Four
// values at a time, since one comparison has to wait for the one before.
struct Extent {
    Extent(const double* v, int n) : low(v[0]), high(v[0]) {
        double lows[4] = {low, low, low, low};
        double highs[4] = {low, low, low, low};
        int i = 0;
        for (; i + 4 <= n; i += 4)
            for (int lane = 0; lane < 4; ++lane) {
                lows[lane] = std::min(lows[lane], v[i + lane]);
                highs[lane] = std::max(highs[lane], v[i + lane]);
            }
        for (; i < n; ++i) {
            lows[0] = std::min(lows[0], v[i]);
            highs[0] = std::max(highs[0], v[i]);
        }
        for (int lane = 0; lane < 4; ++lane) {
            low = std::min(low, lows[lane]);
            high = std::max(high, highs[lane]);
        }
    }
    bool Outside(double value) const { return value < low || value > high; }

    double low, high;
};

// Is p within the tolerance of the edge? The foot is that of the infinite line, within the edge's widened box.
bool OnEdge(double x1, double y1, double x2, double y2, double px, double py) {
    if (px < std::min(x1, x2) - kEdgeTolerance || px > std::max(x1, x2) + kEdgeTolerance) return false;
    if (py < std::min(y1, y2) - kEdgeTolerance || py > std::max(y1, y2) + kEdgeTolerance) return false;
    double line[6] = {x1, y1, x2, y2, px, py};
    double foot[2];
    CHUIZU(line, foot);
    const double dx = foot[0] - px;
    const double dy = foot[1] - py;
    return dx * dx + dy * dy < kSquaredOnEdge;
}

// Does the ray from (px, py) to (qx, py) cross the edge?
bool RayCrosses(double x1, double y1, double x2, double y2, double px, double py, double qx) {
    if (std::fabs(y1 - y2) < kSmall) return false;
    const double low = std::min(y1, y2);
    const double high = std::max(y1, y2);
    if (low - kEdgeTolerance > py || py > high + kEdgeTolerance) return false;
    // A vertex on the ray counts once, for the edge that lies below it.
    if (std::fabs(py - y1) < kEdgeTolerance || std::fabs(py - y2) < kEdgeTolerance) {
        const double below = py - kSmall;
        if (below < low || below > high) return false;
    }
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const bool pointSide = dx * (py - y1) - (px - x1) * dy > 0.0;
    const bool farSide = dx * (py - y1) - (qx - x1) * dy > 0.0;
    return pointSide != farSide;
}

}  // namespace

int PtInPoly(double* x, double* y, int n, double px, double py) {
    if (x == nullptr || y == nullptr || n < 1) return 0;
    int crossings = 0;
    // Required: no rule for vertices. A ray through one meets both its edges, and GetDistBering has its corner
    // decisions from that.
    for (int i = 0; i < n; ++i) {
        const int j = i + 1 < n ? i + 1 : 0;
        if (py < std::min(y[i], y[j]) || py > std::max(y[i], y[j])) continue;
        if (std::fabs(y[j] - y[i]) < kFlatEdge) continue;
        if (x[i] + (x[j] - x[i]) * (py - y[i]) / (y[j] - y[i]) > px) ++crossings;
    }
    return crossings % 2;
}

// Only edges that come near the ray have a part in the answer. Vertices well above or below it are passed over in runs,
// by a distance that lets every edge through which the exact tests of an edge would not leave out.
int PtInPolyEdge(int n, double* x, double* y, double px, double py) {
    if (n < 3 || x == nullptr || y == nullptr) return 0;
    const double above = py + kWellAway;
    const double below = py - kWellAway;
    const Extent extentX(x, n);
    const double qx = extentX.high + kRayBeyondBox;
    // Whether py lies in the extent of y; as there, NaN has no part, unless it comes first.
    bool anyAtOrAbove = !(py > y[0]);
    bool anyAtOrBelow = !(py < y[0]);
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        if (y[i] > above) {
            anyAtOrAbove = true;
            for (; i + 1 < n && y[i + 1] > above; ++i) zm::uses::Count(zm::uses::edgePassed);
        } else if (y[i] < below) {
            anyAtOrBelow = true;
            for (; i + 1 < n && y[i + 1] < below; ++i) zm::uses::Count(zm::uses::edgePassed);
        } else {
            anyAtOrAbove = anyAtOrAbove || y[i] >= py;
            anyAtOrBelow = anyAtOrBelow || y[i] <= py;
        }
        const int j = i + 1 < n ? i + 1 : 0;
        zm::uses::Count(zm::uses::edgeTested);
        if (OnEdge(x[i], y[i], x[j], y[j], px, py)) return -1;
        if (RayCrosses(x[i], y[i], x[j], y[j], px, py, qx)) ++crossings;
    }
    if (extentX.Outside(px) || !anyAtOrAbove || !anyAtOrBelow) return 0;
    return crossings % 2;
}

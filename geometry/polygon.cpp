// Where a point lies with respect to a polygon.
#include <algorithm>
#include <cmath>

#include "zenromath/geometry.h"

namespace {

constexpr double kFlatEdge = 0.0001;                      // metres; PtInPoly leaves out flatter edges
constexpr double kEdgeTolerance = 1e-07;                  // metres; the boundary of PtInPolyEdge
constexpr double kSmall = 1e-08;                          // metres; PtInPolyEdge
constexpr double kSquaredOnEdge = 9.999999999999998e-15;  // square metres
constexpr double kRayBeyondBox = 1e-05;                   // metres; the ray ends here behind the vertices

struct Box {
    double xmin, ymin, xmax, ymax;
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

int PtInPolyEdge(int n, double* x, double* y, double px, double py) {
    if (n < 3 || x == nullptr || y == nullptr) return 0;
    Box box = {x[0], y[0], x[0], y[0]};
    for (int i = 0; i < n; ++i) {
        const int j = i + 1 < n ? i + 1 : 0;
        box.xmin = std::min(box.xmin, x[i]);
        box.ymin = std::min(box.ymin, y[i]);
        box.xmax = std::max(box.xmax, x[i]);
        box.ymax = std::max(box.ymax, y[i]);
        if (OnEdge(x[i], y[i], x[j], y[j], px, py)) return -1;
    }
    if (px < box.xmin || px > box.xmax || py < box.ymin || py > box.ymax) return 0;

    const double qx = box.xmax + kRayBeyondBox;
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const int j = i + 1 < n ? i + 1 : 0;
        if (RayCrosses(x[i], y[i], x[j], y[j], px, py, qx)) ++crossings;
    }
    return crossings % 2;
}

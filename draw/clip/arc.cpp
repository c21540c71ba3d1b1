// Clipping of arcs by sampling.
#include <cmath>

#include "draw/numbers.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

using zm::draw::kFullTurn;

namespace {

constexpr double kStep = 0.17453292519943295;  // radians, ten degrees
constexpr double kBehindEnd = 1e-8;            // radians; the last sample lies this much after the end
constexpr double kProbe = 0.0001;              // metres; how far from a crossing its two sides are looked at
constexpr double kNoPoint = -9e10;             // both coordinates of the point before the first
constexpr double kRealPoint = -8.9e10;         // what lies above is a point
constexpr int kMostEntries = 8;                // four pieces; the caller's array has no more room
constexpr int kMostSamples = 360000;           // 10,000 turns; an arc that winds longer is cut there

bool IsPoint(double x, double y) {
    return x > kRealPoint && y > kRealPoint;
}

}  // namespace

int CCutArea::cutarc(double cx, double cy, double r, double* angles) {
    if (m_docut == 0) return 2;
    if (angles == nullptr) return 0;
    // Required: all four corners of the circle's box outside count as an invisible circle, also where a large one
    // passes through a small area.
    const double cornersX[] = {cx + r, cx - r, cx + r, cx - r};
    const double cornersY[] = {cy + r, cy - r, cy - r, cy + r};
    int inside = 0;
    for (int i = 0; i < 4; ++i) inside += cutpoint(cornersX[i], cornersY[i]) != 0 ? 1 : 0;
    if (inside == 0) return 0;
    if (inside == 4) return 2;

    double a = angles[0];
    double end = angles[1];
    if (a >= end) end += kFullTurn;
    int count = 0;
    bool state = false;
    bool lastInside = false;
    double previousX = kNoPoint;
    double previousY = kNoPoint;
    for (int sample = 0; a < end + kStep && sample < kMostSamples; ++sample) {
        if (a > end) a = end + kBehindEnd;
        const double x = std::cos(a) * r + cx;
        const double y = std::sin(a) * r + cy;
        lastInside = cutpoint(x, y) != 0;
        if (lastInside != state) {
            double entry = a;
            double x1 = x;
            double y1 = y;
            double x2 = previousX;
            double y2 = previousY;
            if (IsPoint(previousX, previousY) && cutline(x1, y1, x2, y2) != 0) {
                // The second end is the crossing, unless it is the inner end.
                const bool inner = cutpoint(x2 + kProbe, y2 + kProbe) != 0 && cutpoint(x2 - kProbe, y2 - kProbe) != 0;
                double distance = 0.0;
                rtop((inner ? x1 : x2) - cx, (inner ? y1 : y2) - cy, distance, entry);
                if (a > entry) entry += kFullTurn;
            }
            if (count == kMostEntries) return count;
            angles[count++] = entry;
            state = lastInside;
        }
        previousX = x;
        previousY = y;
        a += kStep;
    }
    if (lastInside && state && count < kMostEntries) angles[count++] = end;
    return count;
}

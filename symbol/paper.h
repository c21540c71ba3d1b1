// Small steps that all kinds of symbols share: paper lengths on the ground, bearings, guarded conversions.
#pragma once

#include <cmath>

#include "draw/state.h"
#include "runtime/truncated.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

namespace zm::symbol {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr int kDwg = 1;  // device type of the DWG writer

struct Point {
    double x = 0.0;
    double y = 0.0;
};

/// The scale denominator as it is: metres on the paper times it are metres on the ground.
inline double ScaleDenominator() {
    return draw::state().paperScale;
}

/// The type of the working context.
inline bool OnDwg() {
    return TqDC->GetTqDCType() == kDwg;
}

/// A bearing, turned by pi where flip is 1.
inline double Turned(double bearing, int flip) {
    if (flip != 1) return bearing;
    return bearing < kPi ? bearing + kPi : bearing - kPi;
}

struct Polar {
    double distance = 0.0;
    double bearing = 0.0;
};

/// Distance and bearing from a to b, as XYSA gives them.
inline Polar PolarOf(const Point& a, Point b) {
    Polar polar;
    XYSA(a.x, a.y, &b.x, &b.y, &polar.distance, &polar.bearing, 0);
    return polar;
}

inline double Distance(const Point& a, const Point& b) {
    return PolarOf(a, b).distance;
}
inline double Bearing(const Point& a, const Point& b) {
    return PolarOf(a, b).bearing;
}

/// The point at a distance and bearing from another.
inline Point At(const Point& from, double distance, double bearing) {
    Point point;
    XYSA(from.x, from.y, &point.x, &point.y, &distance, &bearing, 1);
    return point;
}

inline Point Middle(const Point& a, const Point& b) {
    return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
}

inline int Line(const Point& a, const Point& b) {
    return TqDC->line(a.x, a.y, b.x, b.y);
}

}  // namespace zm::symbol

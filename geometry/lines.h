// Operations on points and lines that the geometry and the hatch filling share.
#pragma once

#include <cmath>

namespace zm::geometry {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;

inline double Squared(double v) {
    return v * v;
}

inline double Distance(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

/// The cross value of u = a - c and v = b - c.
inline double Cross(double ax, double ay, double bx, double by, double cx, double cy) {
    return (ax - cx) * (by - cy) - (ay - cy) * (bx - cx);
}

/// The cross value of u = a - c and v = b - c, divided by |u| |v| when that product exceeds 1e-06: the sine of the
/// angle between them.
double NormCross(double ax, double ay, double bx, double by, double cx, double cy);

/// 1 above the tolerance, -1 below its negative, otherwise 0.
inline int SignOf(double value, double tolerance) {
    if (value > tolerance) return 1;
    return value < -tolerance ? -1 : 0;
}

/// The height of p above the line a, b by the sides of the triangle; 0 when MINI exceeds the length of a, b. For p on
/// the line it may come out as not a number, where rounding leaves a negative square.
double LineHeight(double px, double py, double ax, double ay, double bx, double by);

/// Does v lie between a and b, both ends included, in either order?
inline bool ValueBetween(double v, double a, double b) {
    return a < b ? a <= v && v <= b : b <= v && v <= a;
}

/// The distance from a point to the infinite line 1-2; to point 1 when their squared distance is below 1e-10.
double LineDist(double px, double py, double x1, double y1, double x2, double y2);

}  // namespace zm::geometry

// How often a line meets the sides of a rectangle, inline for the clipping.
#pragma once

#include <cmath>

namespace zm::geometry {

/// MyCrossRect. Every comparison is made, so that no branch has to be guessed.
inline int SidesMet(double x1, double y1, double x2, double y2, double left, double bottom, double right, double top) {
    constexpr double kBoxTolerance = 1e-08;  // metres
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double l = left - x1;
    const double b = bottom - y1;
    const double r = right - x1;
    const double t = top - y1;
    const double k = dy / dx;
    const double h = dx / dy;
    const auto both = [](bool first, bool second) { return static_cast<int>(first) & static_cast<int>(second); };
    // Required: the ends of the sides are taken in or left out differently from side to side; callers count on the
    // corner cases that follow from it.
    const int upright = both(l * k > b, t + kBoxTolerance > l * k) + both(r * k > b, t + kBoxTolerance > r * k);
    const int level = both(b * h > l - kBoxTolerance, r > b * h) + both(t * h > l - kBoxTolerance, r > t * h);
    return (std::fabs(dx) > kBoxTolerance ? upright : 0) + (std::fabs(dy) > kBoxTolerance ? level : 0);
}

}  // namespace zm::geometry

// Hachures across a triangle, as strokes or as line coordinate text.
#pragma once

#include "symbol/paper.h"

namespace zm::symbol {

struct HachureState {
    double spacing = 0.0;  // wanted, survey metres; rounded at the first triangle so that its height is whole steps
    double ratio = 0.0;    // spacing / height, set with it
    bool stop = false;
    bool first = true;
};

/// Draws the hachures of a triangle: strokes between its sides, parallel to the side p2 p3 (reverse: to no side, they
/// join p1 p2 and p1 p3 counted from p1).
///
/// \param reverse  0: stroke t joins the points at t from p2 towards p1 and from p3 towards p1; else those at t from p1
///                 towards p2 and from p1 towards p3
/// \return         1; 0 with the stop flag set, or where the first triangle is lower than 1.01 spacings
int DrawTriangleHachures(HachureState& hachures, const Point& p1, const Point& p2, const Point& p3, int reverse);

}  // namespace zm::symbol

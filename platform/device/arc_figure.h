// The ellipse that an arc's box and radial points describe, for devices that draw by centre and angles.
#pragma once

#include "zenromath/platform.h"

namespace zm::platform {

/// Device pixels, y down; pixel centres are whole numbers. Angles are parameters of the ellipse: the point at a is
/// (cx + rx cos a, cy - ry sin a), counter-clockwise on the device.
struct ArcFigure {
    double cx, cy, rx, ry;
    double start;  ///< radians
    double sweep;  ///< radians, above 0, a full turn for the whole ellipse
    double X(double angle) const;
    double Y(double angle) const;
};

/// The right column and the lower row of the box are out. A radial point at the centre counts as one to its right.
ZM_API ArcFigure FigureOfArc(const RECT& box, POINT start, POINT end);

}  // namespace zm::platform

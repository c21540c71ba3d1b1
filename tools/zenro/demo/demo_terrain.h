// The ground of the demonstration town: heights, the river, contours, spot heights.
#pragma once

#include "tools/zenro/demo/demo_canvas.h"

namespace zm::tool::demo {

/// Height of the ground, metres.
double HeightAt(Pt p);
/// Northing of the river's middle at an easting, and half its width there.
double RiverAt(double x);
double RiverHalfWidth(double x);
/// The river's middle, or a line beside it: positive to the north.
Line RiverLine(double beside, double from = -20.0, double to = 520.0, double step = 10.0);

/// Contours, spot heights, scarps and slopes, the hill with its woods.
void AddTerrain(Canvas& canvas);

}  // namespace zm::tool::demo

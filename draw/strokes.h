// Runs of straight strokes, for what draws many at a time.
#pragma once

#include "zenromath/draw.h"

namespace zm::draw {

/// Draws count strokes as CTqDraw::line does, in their order.
/// \param ends  four values for each: x1, y1, x2, y2, survey coordinates
void DrawStrokes(CTqDraw& dc, const double* ends, int count);

}  // namespace zm::draw

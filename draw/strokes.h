// Runs of straight strokes, for what draws many at a time.
#pragma once

namespace zm::draw {

/// Draws count strokes on the working context as CTqDraw::line does, in their order. A message or a device may let the
/// application change or end the context meanwhile: the strokes behind go to the new one, or nowhere if there is none.
/// \param ends  four values for each: x1, y1, x2, y2, survey coordinates
void DrawStrokes(const double* ends, int count);

}  // namespace zm::draw

// A sheet with everything that a context can draw: every pen style and width, fills, arcs, texts in all modes,
// rotation, flip, both kinds of clip area. The same sheet goes to every sink, to be looked at side by side.
#pragma once

#include "zenromath/draw.h"

namespace zm::test {

/// Survey metres; the sheet lies between 0, 0 and these.
constexpr double kSheetWidth = 280.0;
constexpr double kSheetHeight = 200.0;

/// Draws the sheet on dc, which is the working context, has note classes and layers loaded, and a view that shows the
/// sheet at 1:1000. Fills and clip areas are taken away again.
void DrawSheet(CTqDraw& dc);

}  // namespace zm::test

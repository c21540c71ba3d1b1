// Runs of straight strokes, for what draws many at a time.
#pragma once

#include "zenromath/draw.h"

namespace zm::draw {

struct SurveyStroke {
    double x1, y1, x2, y2;
};

/// Draws each as CTqDraw::line does, in their order.
void DrawStrokes(CTqDraw& dc, const SurveyStroke* strokes, int count);

}  // namespace zm::draw

// Pen-down stretches of a pattern, with their companion lines.
#pragma once

#include "draw/stroke/stream.h"
#include "geometry/exact/pair.h"

namespace zm::symbol {

/// One pen-down stretch of a line: from its point from along the segments between to the segment to, on it from start
/// to end, with its companion lines.
struct PenRun {
    const double* x;
    const double* y;
    int from, to;
    geometry::Pair start, end;  // if from is to, the whole stretch
    double width;               // of the companion, survey metres
    int side;                   // 0 to the right, 1 both at half the width, 2 to the left, any other none

    geometry::Pair Vertex(int i) const { return i < to ? geometry::Pair{x[i], y[i]} : i == to ? start : end; }
};

void DrawCompanions(const PenRun& run, draw::StrokeStream& stream);

inline void DrawPenRun(const PenRun& run, draw::StrokeStream& stream) {
    geometry::Pair at = run.Vertex(run.from);
    for (int i = run.from; i <= run.to; ++i) {
        const geometry::Pair next = run.Vertex(i + 1);
        stream.Line(at, next);
        at = next;
    }
    if (run.side >= 0 && run.side <= 2) DrawCompanions(run, stream);
}

}  // namespace zm::symbol

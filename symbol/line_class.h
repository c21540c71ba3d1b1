// The laying of line-class symbols, for the interpreter and its tests.
#pragma once

#include "draw/strokes.h"
#include "geometry/pair.h"

namespace zm::symbol {

/// Lays a pattern along a polyline, or hands over to LayVertexSymbols.
///
/// \param values, letters  20 numbers and letters as in LCBODY
/// \param tokenCount       tokens of the pattern, 0 to 16
/// \param x, y             n points, overwritten
/// \param flip             1: every symbol is turned by pi
/// \param sidesOff         not 0: the letters L, M, R and W are ignored
/// \param g                scale denominator
/// \param code             for messages and the block table
/// \return  2 after a full pass, 0 if n is below 2, else the result of a message
int LayLineSymbol(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
                  int sidesOff, double g, int code);

/// Places symbols on vertices and draws connecting lines between them. 1, or the result of a message.
int LayVertexSymbols(const double* values, const char* letters, const double* x, const double* y, int n, int flip,
                     double g, int code);

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

void DrawCompanions(const PenRun& run, draw::StrokeRow& row);

/// \param row  takes the strokes
inline void DrawPenRun(const PenRun& run, draw::StrokeRow& row) {
    geometry::Pair at = run.Vertex(run.from);
    for (int i = run.from; i <= run.to; ++i) {
        const geometry::Pair next = run.Vertex(i + 1);
        row.Line(at, next);
        at = next;
    }
    if (run.side >= 0 && run.side <= 2) DrawCompanions(run, row);
}

}  // namespace zm::symbol

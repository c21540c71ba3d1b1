// The area that a solid stroke covers, as one polygon: Qt fills that in 0.4 times the time of stroking the same line.
#pragma once

#include <QPointF>
#include <vector>

#include "platform/device/arc_figure.h"

namespace zm::qt {

struct OutlinePen {
    /// \param zoom   pixels of the image that a unit takes; a curve is within 0.06 of a pixel
    /// \param round  ends and joints; else ends are square, and so are joints that turn by 30 degrees or more
    OutlinePen(double width, double zoom, bool round);

    double half, zoom;
    bool round;
    double leastCosine;        // of half a turn that may be mitred
    std::vector<QPointF> cap;  // the end between its sides, of half the width: x across and y along the way
};

/// Writes the polygon of a stroke along a chain into outline, to be filled by the winding rule. Equal points that
/// follow each other count once. Empty where all are equal.
void OutlineChain(const OutlinePen& pen, const std::vector<QPointF>& chain, std::vector<QPointF>& outline);

/// The same for an arc; pixels' centres lie shift beyond their numbers. Empty where the arc is too small or too flat to
/// have an inner side.
void OutlineArc(const OutlinePen& pen, const platform::ArcFigure& arc, double shift, std::vector<QPointF>& outline);

}  // namespace zm::qt

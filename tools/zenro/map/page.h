// The sheet on its page: what the map covers, and the paper around it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// Millimetres of paper that a symbol may reach beyond its feature.
constexpr double kSymbolReach = 15.0;

/// Margins of the paper around the neat line, millimetres.
struct Margins {
    double left = 22.0, right = 22.0, top = 34.0, bottom = 26.0;
};

/// The sides of a sheet of the graticule as they are drawn, anticlockwise from the south-west corner, and their degrees.
struct GraticuleEdge {
    std::array<Chain, 4> sides;  // south, east, north, west; points of a side at even steps of its degrees
    double south = 0.0, west = 0.0, north = 0.0, east = 0.0;
    std::array<std::string, 8> neighbours;  // numbers: north-west, north, north-east, west, east, south-west ...
};

/// The sheet is in the coordinates that are drawn: those of the plane, turned by the rotation about its centre.
struct Page {
    double scale = 1000.0;  // denominator
    Box sheet;
    Margins margins;  // all 0 without a frame
    bool frame = true;
    double rotation = 0.0;                   // degrees, counter-clockwise
    std::vector<Chain> clip;                 // at most one: the polygon that the map is clipped to, as drawn
    std::optional<GraticuleEdge> graticule;  // of a sheet of the graticule; the clip polygon is its outline

    /// The area of the clip polygon, its ring closed; call only where there is one.
    Shape ClippedArea() const;

    /// Ground metres of a length on paper.
    double Ground(double millimetres) const { return millimetres * scale / 1000.0; }
    double paperWidth() const { return (sheet.x2 - sheet.x1) * 1000.0 / scale + margins.left + margins.right; }
    double paperHeight() const { return (sheet.y2 - sheet.y1) * 1000.0 / scale + margins.top + margins.bottom; }
    double left() const { return sheet.x1 - Ground(margins.left); }
    double bottom() const { return sheet.y1 - Ground(margins.bottom); }

    /// Turns a point of the plane as it is drawn, and back.
    void Turn(double& x, double& y) const { TurnBy(rotation, x, y); }
    void TurnBack(double& x, double& y) const { TurnBy(-rotation, x, y); }
    void Turn(Chain& chain) const {
        if (rotation == 0.0) return;
        for (std::size_t i = 0; i < chain.size(); ++i) Turn(chain.x[i], chain.y[i]);
    }

 private:
    void TurnBy(double degrees, double& x, double& y) const;
};

/// The sheet that holds a box of data: its sides are whole centimetres on paper.
Box SheetAround(const Box& data, double scale);
/// The largest usual scale whose sheet for the data is at most 600 mm wide and high.
double ScaleFor(const Box& data);

}  // namespace zm::tool

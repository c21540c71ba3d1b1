// Measures and places of chains and areas.
#pragma once

#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

double LengthOf(const Chain& chain);
/// The point at a distance along a chain, and the direction there in radians.
void PointAlong(const Chain& chain, double distance, double& x, double& y, double& direction);

/// A part of a chain, as distances from its beginning.
struct ChainPart {
    double from, to;
};
/// The parts of a chain that lie in a box, in their order. What is done along a chain beyond them nobody sees.
std::vector<ChainPart> PartsIn(const Chain& chain, const Box& box);

/// Crossings of a level line with an area, from left to right; between the first and the second it is inside.
std::vector<double> Crossings(const Shape& shape, double y);
/// The middle of the widest stretch of a level line inside an area; false if it meets none.
bool WidestStretch(const Shape& shape, double y, double& middle, double& width);
/// Whether a point lies inside a ring, closed or not; inside an area and outside its holes.
bool Inside(const Chain& ring, double x, double y);
bool Inside(const Shape& shape, double x, double y);
/// Twice the square measure of a ring, closed or not; below 0 where it runs clockwise.
double TurnOf(const Chain& ring);
/// The square measure of an area less its holes.
double AreaOf(const Shape& shape);

/// The point of an area that is farthest from its limit (pole of inaccessibility), for symbols and labels.
/// \return  its distance from the limit, negative where the area has no inside
double InnerPoint(const Shape& shape, double& x, double& y);

Chain Reversed(const Chain& chain);
/// The smooth curve through the points of a chain.
Chain SmoothCurve(const Chain& chain);

/// An area with its holes as one ring: each hole is reached and left along a seam.
Chain SeamedRing(const Shape& shape);

}  // namespace zm::tool

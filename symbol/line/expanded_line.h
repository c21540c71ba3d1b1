// The expansion of a curved line into a polyline.
#pragma once

#include <cstddef>

namespace zm::symbol {

// Line types beside 1, the polyline.
constexpr int kSmoothCurve = 2;
constexpr int kArcChain = 3;
constexpr int kCircle = 4;
constexpr int kReverseCircle = 5;

/// Doubles that ExpandLinePoints needs at out for n points.
std::size_t ExpandedRoom(int n);

/// Turns points with a line type into the polyline to draw: a chain of three-point arcs triple by triple, anything else
/// by one call of GOTOPOINTS.
///
/// \param out  receives pairs, ExpandedRoom(n) doubles
/// \param g    scale denominator
/// \return     number of pairs, at most max(n, 4000); what is beyond is left out and reported once
int ExpandLinePoints(int n, int lineType, double* x, double* y, double* out, double g);

}  // namespace zm::symbol

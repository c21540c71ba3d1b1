// An area as quadrangles with two level sides, for what fills no polygon with holes.
#pragma once

#include <vector>

#include "tools/zenro/map/source.h"

namespace zm::tool {

/// From (left1, y1) and (right1, y1) up to (left2, y2) and (right2, y2); a triangle where an end has no width.
struct Trapezoid {
    double y1 = 0.0, left1 = 0.0, right1 = 0.0;
    double y2 = 0.0, left2 = 0.0, right2 = 0.0;
};

/// Covers an area less its holes, and of that what lies within a limit, without gaps and overlaps: rings may cross
/// themselves and each other, a point lies inside where an odd number of them surrounds it.
///
/// \param limit  a closed ring; empty for no limit
std::vector<Trapezoid> TrapezoidsOf(const Shape& area, const Chain& limit);

}  // namespace zm::tool

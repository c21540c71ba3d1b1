// The area of a road about its middle line.
#pragma once

#include <ogr_geometry.h>

#include <utility>
#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// Adds a polygon by its corners.
void AddRing(OGRMultiPolygon& all, const std::vector<std::pair<double, double>>& corners);
void AddDisc(OGRMultiPolygon& all, double x, double y, double radius);
/// Adds the band of half a width to both sides of a middle line, flat at the ends, round at the bends, in as few polygons
/// as are sure to be simple; they may overlap.
void AddBand(OGRMultiPolygon& all, const Chain& centre, double half);

}  // namespace zm::tool

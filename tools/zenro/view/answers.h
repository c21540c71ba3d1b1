// What the window of a map asks beside pictures.
#pragma once

#include <nlohmann/json.hpp>

#include "tools/zenro/view/opened_map.h"

namespace zm::tool {

using Json = nlohmann::json;

/// What is known of the map as a whole.
Json AboutMap(OpenedMap& map);
/// The layers in their order, and in each the rules that draw something, with the number of features that each draws.
Json LayersOf(OpenedMap& map);
/// The features at a point, the smallest first: points, lines, areas. Those that are not shown are none.
Json Identify(OpenedMap& map, double x, double y, double reach);
/// A position in the plane as degrees.
Json Where(const OpenedMap& map, double x, double y);
/// Length, and area of the ring, of points in the plane: there and on the ellipsoid.
Json Measure(const OpenedMap& map, const std::vector<double>& xy);
/// The nearest vertex of what is shown.
Json Snap(OpenedMap& map, double x, double y, double reach);
/// What a text of a search finds: a position, a sheet, names, codes of symbols, numbers of features.
Json Find(OpenedMap& map, const std::string& text);

}  // namespace zm::tool

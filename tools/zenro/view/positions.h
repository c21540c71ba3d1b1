// The positions that a text of the search may mean.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/zenro/map/plane.h"
#include "tools/zenro/store/feature.h"

namespace zm::tool {

/// Each position that a text may mean, in the plane of a map with these data, as something found; the likeliest first.
/// Read is what coord reads, whatever its options say: degrees in each form, northing and easting, both orders, axes that
/// are named, each kind of easting, other zones, and the point's number, code and height beside them. What lies at the
/// data comes first, and where something does, what does not is left out.
nlohmann::json FindPositions(const std::string& text, const TargetPlane& plane, const Box& data);

}  // namespace zm::tool

// The division as people look at it: a page with a picture, and GeoJSON.
#pragma once

#include <string>

#include "tools/zenro/series/plan.h"

namespace zm::tool {

/// A page with the division drawn, colours by state, and a list of the sheets with links. Links are relative to folder.
std::string IndexPage(const Plan& plan, const std::string& title, const std::string& folder);
/// The sheets as GeoJSON with all their fields.
std::string IndexGeoJson(const Plan& plan);

}  // namespace zm::tool

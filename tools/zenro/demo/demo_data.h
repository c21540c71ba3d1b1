// The demonstration sheet: a made-up town of 500 by 500 metres, as GeoJSON in the national 3-degree zone.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zm::tool {

/// The sheet's corners in the plane: easting with zone number, northing.
constexpr double kDemoX1 = 40512000.0, kDemoY1 = 3456000.0, kDemoSize = 500.0;

/// Makes the files from a seed and writes them into a folder. The same seed gives the same town.
/// \return the names of the files, in the order in which they are drawn
std::vector<std::string> WriteDemoData(const std::filesystem::path& folder, std::uint64_t seed, bool overwrite);

}  // namespace zm::tool

// What the reading of map data is made of.
#pragma once

#include <string>

namespace zm::tool {

struct GeodataLibraries {
    bool built = false;  ///< false: this program was built without them, and draws no map data
    std::string gdal, proj;
    int drivers = 0;  ///< formats of map data that can be read
};

GeodataLibraries InstalledGeodata();

}  // namespace zm::tool

// Zones of 3 and of 6 degrees: their numbers and central meridians, from the meridian of Greenwich eastwards. Zone 1 of
// the narrow ones is about 3 degrees, of the wide ones about 3 degrees too.
#pragma once

#include <cmath>

namespace zm::tool {

constexpr double kFalseEasting = 500000.0;  // metres that the central meridian has
constexpr double kZone = 1000000.0;  // metres of an easting for each zone, where it begins with the zone's number

/// The central meridian of a zone, degrees; width 3 or 6.
constexpr int MeridianOfZone(int zone, int width) {
    return width == 3 ? zone * 3 : zone * 6 - 3;
}

/// The zone of a central meridian, degrees.
constexpr int ZoneNumber(int meridian, int width) {
    return width == 3 ? meridian / 3 : (meridian + 3) / 6;
}

/// The zone that a longitude lies in, degrees; one between two zones is of the eastern.
inline int ZoneOfLongitude(double longitude, int width) {
    return static_cast<int>(width == 3 ? std::floor((longitude + 1.5) / 3.0) : std::floor(longitude / 6.0) + 1.0);
}

/// The zone whose number an easting begins with, metres; 0 where it begins with none from 1 to 120.
inline int ZoneOfEasting(double easting) {
    constexpr double kZones = 120.0;
    const double zone = std::floor(easting / kZone);
    return zone >= 1.0 && zone <= kZones ? static_cast<int>(zone) : 0;
}

}  // namespace zm::tool

// A plane of zones and the way of positions into it and out of it.
#pragma once

#include <cmath>
#include <string>

#include "tools/zenro/coord/points_io.h"
#include "tools/zenro/coord/zones.h"

namespace zm::tool {

/// What is before the easting from the meridian.
enum class Easting { standard, offset, natural };

struct PlaneSystem {
    Family family;
    int zoneWidth = 3;
    double meridian = NAN;  // degrees; not a number: by zone
    Easting easting = Easting::standard;
};

/// The central meridian of a longitude by the library's zone rule.
int CentralMeridian(double longitude, int width);
/// "20", "40": what an easting carries in front; 500000 with a free meridian, and as the form of easting says.
double OutsideEasting(const PlaneSystem& system, double east, int zone);
/// The meridian and the natural easting of an outside easting. \return what is wrong, or empty
std::string SplitEasting(const PlaneSystem& system, double outside, double& natural, double& meridian);
/// True for a zone number that China has in the other width only.
bool IsOfOtherWidth(const PlaneSystem& system, double outside);

/// A position in a plane, metres, or in degrees. \return what is wrong, or empty
std::string PlaneToDegrees(const PlaneSystem& system, double north, double east, double& latitude, double& longitude);
std::string DegreesToPlane(const PlaneSystem& system, double latitude, double longitude, double& north, double& east);

/// --system or --from, --zone and so on, under names with this prefix: "from-" gives --from-zone.
void AddPlaneSystemOptions(Verb verb, PlaneSystem& system, const std::string& prefix);

}  // namespace zm::tool

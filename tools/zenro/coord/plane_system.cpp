#include "tools/zenro/coord/plane_system.h"

#include <map>

#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/series_error.h"
#include "tools/zenro/coord/zones.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kWidest = 1.2e6;  // metres; no place within 10 degrees of the meridian has a larger easting

std::string BeyondTheSeries(double offset) {
    if (std::fabs(offset) <= kSeriesEndDegrees) return {};
    return Phrase("{0} degrees from the central meridian; the projection ends at {1}. Take another zone or meridian",
                  Fixed(offset, 2), Fixed(kSeriesEndDegrees, 0));
}

}  // namespace

int CentralMeridian(double longitude, int width) {
    Coordinate_2Dsys zone;
    zone.setEllipse(width == 3 ? znCoord84G3 : znCoord84G6);
    zone.setL(longitude * kDegree);
    return zone.getL0();
}

double OutsideEasting(const PlaneSystem& system, double east, int zone) {
    switch (system.easting) {
        case Easting::natural:
            return east;
        case Easting::offset:
            return east + kFalseEasting;
        case Easting::standard:
            break;
    }
    return std::isnan(system.meridian) ? zone * kZone + kFalseEasting + east : east + kFalseEasting;
}

std::string SplitEasting(const PlaneSystem& system, double outside, double& natural, double& meridian) {
    const double zone = std::trunc(outside / kZone);
    if (!std::isnan(system.meridian)) {
        meridian = system.meridian;
        natural = system.easting == Easting::natural ? outside : outside - zone * kZone - kFalseEasting;
    } else {
        const int width = system.zoneWidth;
        if (zone == 0.0) return Phrase("easting {0} has no zone number; give --meridian", Fixed(outside, 3));
        const int last = 360 / width;
        if (zone < 1 || zone > last)
            return Phrase("easting {0} has the zone number {1}; there are zones 1 to {2} of {3} degrees",
                          Fixed(outside, 3), Fixed(zone, 0), last, width);
        meridian = MeridianOfZone(static_cast<int>(zone), width);
        natural = outside - zone * kZone - kFalseEasting;
    }
    if (std::fabs(natural) > kWidest)
        return Phrase("easting {0} is more than {1} km from its central meridian", Fixed(outside, 3),
                      Fixed(kWidest / 1000.0, 0));
    return {};
}

bool IsOfOtherWidth(const PlaneSystem& system, double outside) {
    // China lies in the 3-degree zones 25 to 45 and in the 6-degree zones 13 to 23.
    const double zone = std::trunc(outside / kZone);
    if (!std::isnan(system.meridian)) return false;
    return system.zoneWidth == 6 ? zone >= 25 && zone <= 45 : zone >= 13 && zone <= 23;
}

std::string PlaneToDegrees(const PlaneSystem& system, double north, double east, double& latitude, double& longitude) {
    double natural = 0.0, meridian = 0.0;
    std::string wrong = SplitEasting(system, east, natural, meridian);
    if (!wrong.empty()) return wrong;
    double B = 0.0, l = 0.0;
    InverseOfForward(system.family.selector(), north, natural, B, l);
    latitude = B / kDegree;
    longitude = l / kDegree + meridian;
    return std::isfinite(latitude) && std::isfinite(longitude) ? BeyondTheSeries(l / kDegree)
                                                               : Phrase("is no place of the projection");
}

std::string DegreesToPlane(const PlaneSystem& system, double latitude, double longitude, double& north, double& east) {
    const bool byZone = std::isnan(system.meridian);
    const double meridian = byZone ? CentralMeridian(longitude, system.zoneWidth) : system.meridian;
    std::string wrong = BeyondTheSeries(longitude - meridian);
    if (!wrong.empty()) return wrong;
    double natural = 0.0;
    forward(system.family.selector(), latitude * kDegree, (longitude - meridian) * kDegree, &north, &natural, nullptr);
    east = OutsideEasting(system, natural, byZone ? ZoneNumber(static_cast<int>(meridian), system.zoneWidth) : 0);
    return {};
}

void AddPlaneSystemOptions(Verb verb, PlaneSystem& system, const std::string& prefix) {
    verb.AddOption(prefix.empty() ? "--system" : "--" + prefix.substr(0, prefix.size() - 1), system.family.name,
                   "Ellipsoid family: 54, 80, 2000 (84 is the same)")
        .OneOf({"54", "80", "84", "2000"})
        .ShowDefault();
    verb.AddOption("--" + prefix + "zone", system.zoneWidth, "Width of the zones, 3 or 6 degrees")
        .OneOf({3, 6})
        .ShowDefault();
    verb.AddOption("--" + prefix + "meridian", system.meridian, "Central meridian in degrees, in place of a zone's")
        .Within(-180.0, 360.0);
    verb.AddChoice("--" + prefix + "easting", system.easting,
                   {{"standard", Easting::standard}, {"offset", Easting::offset}, {"natural", Easting::natural}},
                   "standard: zone number and 500 km in front; offset: 500 km; natural: from the meridian")
        .Default("standard");
}

}  // namespace zm::tool

#include "tools/zenro/map/axes_check.h"

#include <ogr_spatialref.h>

#include <cmath>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"

namespace zm::tool {
namespace {

constexpr double kZoneReach = 1e6;  // metres from the central meridian that no data of a zone reaches

bool AreDegrees(double x, double y) {
    return std::fabs(x) <= 360.0 && std::fabs(y) <= 90.0;
}

bool HasZoneNumber(double east) {
    const double zone = std::floor(east / kZone);
    return (zone >= 13 && zone <= 23) || (zone >= 25 && zone <= 45);
}

bool IsNorthing(double north) {
    return north > 1.5e6 && north < 6.2e6;  // of China, metres from the equator
}

std::string Numbers(double x, double y) {
    const int decimals = AreDegrees(x, y) || AreDegrees(y, x) ? 4 : 1;
    return "(" + Fixed(x, decimals) + ", " + Fixed(y, decimals) + ")";
}

std::string OfGeographic(const OGRSpatialReference& system, double x, double y) {
    const std::string numbers = Numbers(x, y);
    if (AreDegrees(x, y)) {
        double w = 0.0, s = 0.0, e = 0.0, n = 0.0;
        const auto inside = [&](double lon, double lat) { return lon >= w && lon <= e && lat >= s && lat <= n; };
        if (system.GetAreaOfUse(&w, &s, &e, &n, nullptr) && w < e && !inside(x, y) && inside(y, x))
            return Phrase("its axes are swapped, latitude before longitude: {0} lies outside the area of {1}; {2}.",
                          numbers, system.GetName(), Phrase("give --axes north,east"));
        return {};
    }
    if (AreDegrees(y, x))
        return Phrase("its axes are swapped, latitude before longitude, as in {0}; {1}.", numbers,
                      Phrase("give --axes north,east"));
    const bool swapped = HasZoneNumber(y) && IsNorthing(x);
    return Phrase(swapped ? N_("its system is one of degrees ({0}), but its numbers are metres in a plane, as in {1}; "
                               "give --source with the right system, {2}, and --axes north,east.")
                          : N_("its system is one of degrees ({0}), but its numbers are metres in a plane, as in {1}; "
                               "give --source with the right system, {2}."),
                  system.GetName(), numbers, LikelyPlane(swapped ? y : x));
}

std::string OfProjected(const OGRSpatialReference& system, double x, double y, bool& certain) {
    const char* projection = system.GetAttrValue("PROJECTION");
    if (projection == nullptr || !EQUAL(projection, SRS_PT_TRANSVERSE_MERCATOR) || system.GetLinearUnits() != 1.0)
        return {};
    if (system.GetNormProjParm(SRS_PP_LATITUDE_OF_ORIGIN, 0.0) != 0.0) return {};
    const std::string name = system.GetName(), numbers = Numbers(x, y);
    const double offset = system.GetNormProjParm(SRS_PP_FALSE_EASTING, 0.0);
    if (offset >= 1e5 && (AreDegrees(x, y) || AreDegrees(y, x)))
        return Phrase(
            "its system is a plane one ({0}), but its numbers look like degrees, as in {1}; give --source EPSG:4490, "
            "or the right system of degrees.",
            name, numbers);
    if (std::fabs(x - offset) <= kZoneReach) return {};
    if (std::fabs(y - offset) <= kZoneReach && std::fabs(x) < 1e7)
        return Phrase("its axes are swapped, northing before easting, as in {0}; {1}.", numbers,
                      Phrase("give --axes north,east"));
    if (offset < kZone && HasZoneNumber(x))
        return Phrase(
            "its eastings have the zone number {0} in front, as in {1}, which its system ({2}) has not; give --source "
            "with the right system, such as {3}.",
            Fixed(std::floor(x / kZone), 0), numbers, name, LikelyPlane(x));
    if (offset >= kZone && x > 0.0 && x < kZone)
        return Phrase(
            "its eastings lack the zone number that its system ({0}) has, as in {1}; give --source with the right "
            "system, {2}.",
            name, numbers, LikelyPlane(x));
    certain = false;
    return Phrase(
        "its numbers, as in {0}, lie more than 1000 km from the central meridian of {1}; check its system, and give "
        "--source with the right one.",
        numbers, name);
}

std::string OfNone(double x, double y, double width, double height, bool& certain) {
    const std::string numbers = Numbers(x, y);
    if (HasZoneNumber(y) && IsNorthing(x))
        return Phrase(
            "it names no coordinate system, and its axes are swapped, northing before easting, as in {0}; give --axes "
            "north,east, and --source {1}.",
            numbers, LikelyPlane(y));
    certain = false;
    if (IsNorthing(x) && y > 1e5 && y < 9e5)
        return Phrase(
            "it names no coordinate system, and its numbers look like northing before easting, as in {0}; if so, {1}.",
            numbers, Phrase("give --axes north,east"));
    constexpr double kDegreesWide = 20.0;
    const bool small = width < kDegreesWide && height < kDegreesWide && std::fabs(x) > kDegreesWide;
    const bool world = width > 180.0 && width <= 361.0 && height <= 181.0;
    if ((small || world) && AreDegrees(x, y))
        return Phrase(
            "it names no coordinate system, and its numbers look like degrees, as in {0}; they are taken as metres. If "
            "they are degrees, give --source EPSG:4490.",
            numbers);
    if (width < kDegreesWide && height < kDegreesWide && AreDegrees(y, x) && std::fabs(y) > 90.0)
        return Phrase(
            "it names no coordinate system, and its numbers look like latitude before longitude, as in {0}; they are "
            "taken as metres. If they are degrees, give --source EPSG:4490 --axes north,east.",
            numbers);
    return {};
}

}  // namespace

std::string LikelyPlane(double east) {
    // Codes of the 2000 family: 3-degree zones from 25 at 4513, 6-degree zones from 13 at 4491.
    const int zone = ZoneOfEasting(east);
    if (zone >= 25 && zone <= 45) return "EPSG:" + std::to_string(4513 + zone - 25);
    if (zone >= 13 && zone <= 23) return "EPSG:" + std::to_string(4491 + zone - 13);
    return Phrase("such as EPSG:4549 (central meridian 120)");
}

std::string WrongAxes(const OGRSpatialReference* system, double x, double y, double width, double height,
                      bool& certain) {
    certain = true;
    if (system != nullptr && system->IsGeographic() != FALSE) return OfGeographic(*system, x, y);
    if (system != nullptr && system->IsProjected() != FALSE) return OfProjected(*system, x, y, certain);
    return OfNone(x, y, width, height, certain);
}

}  // namespace zm::tool

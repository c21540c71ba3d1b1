// The program without PROJ: the methods of the library are compared with each other.
#include "tools/kit/exit_codes.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/measures.h"

namespace zm::tool {
namespace {

[[noreturn]] void Missing() {
    throw Failure(kFailed, Phrase("geodesics need PROJ, which this program is built without."));
}

}  // namespace

bool HasGeodesics() {
    return false;
}

double GeodesicLength(const std::vector<Point3D>&, const Ellipsoid&) {
    Missing();
}

double GeodesicArea(const std::vector<Point3D>&, const Ellipsoid&) {
    Missing();
}

}  // namespace zm::tool

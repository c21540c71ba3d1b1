#include "tools/zenro/coord/measures.h"

#include <algorithm>

#include "tools/zenro/coord/plane_system.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

znCoordSysTypeConstants SystemOf(const Family& family) {
    return family.selector() == 54 ? znCoord54G3 : family.selector() == 80 ? znCoord80G3 : znCoord84G3;
}

}  // namespace

Ellipsoid EllipsoidOf(const Family& family) {
    double a = 6378137.0, b = 6356752.31414036;
    if (family.selector() == 54) {
        a = 6378245.0;
        b = 6356863.01877305;
    } else if (family.selector() == 80) {
        a = 6378140.0;
        b = 6356755.28815753;
    }
    return {a, b, (a - b) / a};
}

bool CrossesZones(const std::vector<Point3D>& points) {
    return std::any_of(points.begin(), points.end(), [&](const Point3D& p) {
        return CentralMeridian(p.x, 3) != CentralMeridian(points.front().x, 3);
    });
}

double LibraryLength(const std::vector<Point3D>& points, const Family& family, short method) {
    DistandAreaInquiry inquiry(points.data(), static_cast<int>(points.size()), method);
    inquiry.SetEllipse(SystemOf(family));
    return inquiry.GetDist();
}

double LibraryArea(const std::vector<Point3D>& ring, const Family& family, short method) {
    DistandAreaInquiry inquiry(ring.data(), static_cast<int>(ring.size()), method);
    inquiry.SetEllipse(SystemOf(family));
    return inquiry.GetArea();
}

}  // namespace zm::tool

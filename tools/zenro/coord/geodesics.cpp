#include <geodesic.h>

#include <cmath>
#include <vector>

#include "tools/zenro/coord/measures.h"

namespace zm::tool {

bool HasGeodesics() {
    return true;
}

double GeodesicLength(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid) {
    geod_geodesic g;
    geod_init(&g, ellipsoid.a, ellipsoid.f);
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        double s = 0.0;
        geod_inverse(&g, points[i].y, points[i].x, points[i + 1].y, points[i + 1].x, &s, nullptr, nullptr);
        sum += s;
    }
    return sum;
}

double GeodesicArea(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid) {
    geod_geodesic g;
    geod_init(&g, ellipsoid.a, ellipsoid.f);
    std::vector<double> lats, lons;
    for (const Point3D& p : points) {
        lats.push_back(p.y);
        lons.push_back(p.x);
    }
    double area = 0.0, perimeter = 0.0;
    geod_polygonarea(&g, lats.data(), lons.data(), static_cast<int>(points.size()), &area, &perimeter);
    return std::fabs(area);
}

}  // namespace zm::tool

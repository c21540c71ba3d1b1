// Lengths and areas by the library's methods and by geodesics, the reference.
#pragma once

#include <vector>

#include "tools/zenro/coord/points_io.h"
#include "zenromath/geodesy.h"
#include "zenromath/platform.h"

namespace zm::tool {

/// What the land-survey series and the reference need of an ellipsoid: metres, and the flattening.
struct Ellipsoid {
    double a, b, f;
};
Ellipsoid EllipsoidOf(const Family& family);

/// Geodesics can be had: the program is built with PROJ. The two functions throw Failure without it.
bool HasGeodesics();
/// Of points in degrees, x the longitude. Metres.
double GeodesicLength(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid);
/// Of an open ring of points in degrees. Square metres, never negative.
double GeodesicArea(const std::vector<Point3D>& points, const Ellipsoid& ellipsoid);
/// True where points in degrees lie in more than one 3-degree zone. Each zone has a plane of its own, so what method 0
/// below makes of such points is no measure.
bool CrossesZones(const std::vector<Point3D>& points);
/// By DistandAreaInquiry: method 0 in the plane of 3-degree zones, 1 on the ellipsoid.
double LibraryLength(const std::vector<Point3D>& points, const Family& family, short method);
double LibraryArea(const std::vector<Point3D>& ring, const Family& family, short method);

}  // namespace zm::tool

// The coordinate systems: ellipsoid and zone width of each znCoordSysTypeConstants value.
#pragma once

#include "geodesy/zone_series.h"
#include "zenromath/geodesy.h"

namespace zm::geodesy {

struct CoordinateSystem {
    double a;   // metres
    double e2;  // first eccentricity squared
    int width;  // of a zone, degrees
};

/// The row of Coordinate_2Dsys; a and e2 are 0 for the system 0.
CoordinateSystem SystemOf(znCoordSysTypeConstants coordSys);

/// The prepared ellipsoid of a system, null for the system 0.
const ZoneEllipsoid* FamilyEllipsoid(znCoordSysTypeConstants coordSys);

/// UTMtoGS and GStoUTM on an ellipsoid, for one position. L0: central meridian, radians.
inline ZonePosition ZoneInverse(const ZoneEllipsoid& z, double X, double Y, double L0) {
    const double beta = X / z.K0;
    const double Bf = ZoneFootpoint(z, beta, SinCosOf(beta));
    return ZoneBackward(z, Bf, Y, L0, SinCosOf(Bf));
}

/// L0 of the 6-degree and of the 3-degree zone of a longitude in degrees.
int SixDegreeMeridian(double longitude);
int ThreeDegreeMeridian(double longitude);

}  // namespace zm::geodesy

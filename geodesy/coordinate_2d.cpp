// Coordinate_2Dsys: a position with its ellipsoid and its zone.
#include <cmath>
#include <cstddef>
#include <optional>
#include <type_traits>

#include "geodesy/numeric.h"
#include "geodesy/zone_ellipsoids.h"
#include "zenromath/geodesy.h"

static_assert(std::is_standard_layout_v<Coordinate_2Dsys> && std::is_trivially_copyable_v<Coordinate_2Dsys>);
static_assert(offsetof(Coordinate_2Dsys, GX) == 0 && offsetof(Coordinate_2Dsys, L) == 24 &&
              offsetof(Coordinate_2Dsys, GSwidth) == 32 && offsetof(Coordinate_2Dsys, L0) == 36 &&
              offsetof(Coordinate_2Dsys, EllipseFlag) == 40 && offsetof(Coordinate_2Dsys, a) == 48 &&
              sizeof(Coordinate_2Dsys) == 64);

namespace zm::geodesy {
namespace {

constexpr double kZoneFactor = 1000000.0;   // of the zone number in a standard easting
constexpr double kFalseEasting = 500000.0;  // metres

// Required: e2 of the 84 family is that of the 2000 national system, not of WGS 84.
constexpr ZoneEllipsoid kFamily54{6378245.0, 0.00669342162296594};
constexpr ZoneEllipsoid kFamily80{6378140.0, 0.006694384999588};
constexpr ZoneEllipsoid kFamily84{6378137.0, 0.0066943800229};

struct SystemRow {
    const ZoneEllipsoid* ellipsoid;
    znCoordSysTypeConstants system;
    int width;
};
constexpr SystemRow kSystems[] = {
    {&kFamily54, znCoord54, 6},   {&kFamily54, znCoord54G6, 6}, {&kFamily54, znCoord54G3, 3},
    {&kFamily80, znCoord80, 6},   {&kFamily80, znCoord80G6, 6}, {&kFamily80, znCoord80G3, 3},
    {&kFamily84, znCoord84G3, 3},  // Required: 10084, not 10384, which is an unknown value and has width 6.
    {&kFamily84, znCoord84G6, 6},
};
constexpr SystemRow kUnknownSystem{&kFamily84, znCoordNone, 6};

const SystemRow& RowOf(znCoordSysTypeConstants system) {
    for (const SystemRow& row : kSystems)
        if (row.system == system) return row;
    return kUnknownSystem;
}

// The prepared ellipsoid with this a and e2; made on the spot in local where it is none of the families.
const ZoneEllipsoid& EllipsoidOf(double a, double e2, std::optional<ZoneEllipsoid>& local) {
    for (const ZoneEllipsoid* family : {&kFamily84, &kFamily80, &kFamily54})
        if (family->a == a && family->e2 == e2) return *family;
    return local.emplace(a, e2);
}

}  // namespace

CoordinateSystem SystemOf(znCoordSysTypeConstants system) {
    if (system == znCoordNone) return {0.0, 0.0, 0};
    const SystemRow& row = RowOf(system);
    return {row.ellipsoid->a, row.ellipsoid->e2, row.width};
}

const ZoneEllipsoid* FamilyEllipsoid(znCoordSysTypeConstants system) {
    return system == znCoordNone ? nullptr : RowOf(system).ellipsoid;
}

// Truncates towards zero, so -1.0 belongs to the zone of 3.
int SixDegreeMeridian(double longitude) {
    return Truncated(3.0 - 6.0 * std::trunc(longitude / -6.0));
}

int ThreeDegreeMeridian(double longitude) {
    return Truncated(3.0 * std::trunc((longitude + 1.5) / 3.0));
}

}  // namespace zm::geodesy

using namespace zm::geodesy;

Coordinate_2Dsys::Coordinate_2Dsys() {
    setEllipse(znCoord84G6);
}

Coordinate_2Dsys::Coordinate_2Dsys(double X, double standardY) : GX(X) {
    setEllipse(znCoord84G6);
    setStandardGY(standardY);
}

Coordinate_2Dsys::Coordinate_2Dsys(double latitude, double longitude, znCoordSysTypeConstants coordSys) : B(latitude) {
    setEllipse(coordSys);
    setL(longitude);
}

double Coordinate_2Dsys::getB() const {
    return B;
}
void Coordinate_2Dsys::setB(double latitude) {
    B = latitude;
}
double Coordinate_2Dsys::getL() const {
    return L;
}
double Coordinate_2Dsys::getGX() const {
    return GX;
}
void Coordinate_2Dsys::setGX(double x) {
    GX = x;
}
double Coordinate_2Dsys::getGY() const {
    return GY;
}
void Coordinate_2Dsys::setGY(double y) {
    GY = y;
}
int Coordinate_2Dsys::getL0() const {
    return L0;
}
void Coordinate_2Dsys::setL0(int centralMeridian) {
    L0 = centralMeridian;
}
int Coordinate_2Dsys::getGSwidth() const {
    return GSwidth;
}
void Coordinate_2Dsys::setGSwidth(int width) {
    GSwidth = width;
}
znCoordSysTypeConstants Coordinate_2Dsys::getEllipseFlag() const {
    return EllipseFlag;
}
double Coordinate_2Dsys::geta() const {
    return a;
}
double Coordinate_2Dsys::gete2() const {
    return e2;
}

void Coordinate_2Dsys::setEllipse(znCoordSysTypeConstants coordSys) {
    const CoordinateSystem system = SystemOf(coordSys);
    EllipseFlag = coordSys;
    a = system.a;
    e2 = system.e2;
    GSwidth = system.width;
}

void Coordinate_2Dsys::setL(double longitude) {
    L = longitude;
    if (GSwidth == 6)
        L0 = SixDegreeMeridian(Degrees(longitude));
    else if (GSwidth == 3)
        L0 = ThreeDegreeMeridian(Degrees(longitude));
}

void Coordinate_2Dsys::setBL(double latitude, double longitude) {
    B = latitude;
    L = longitude;
    // Required: any width but 3 takes the 6-degree rule, unlike setL; a system without ellipsoid gets an L0 so.
    L0 = GSwidth == 3 ? ThreeDegreeMeridian(Degrees(longitude)) : SixDegreeMeridian(Degrees(longitude));
}

double Coordinate_2Dsys::getStandardGY() const {
    const std::int64_t zone = GSwidth == 3 ? std::int64_t{L0} / 3 : (std::int64_t{L0} + 3) / 6;
    return static_cast<double>(zone) * kZoneFactor + (GY + kFalseEasting);
}

void Coordinate_2Dsys::setStandardGY(double standardY) {
    const double zone = std::trunc(standardY / kZoneFactor);
    GY = standardY - zone * kZoneFactor - kFalseEasting;
    if (GSwidth == 3)
        L0 = zm::Truncated(zone * 3.0);
    else if (GSwidth == 6)
        L0 = zm::Truncated(zone * 6.0 - 3.0);
}

int Coordinate_2Dsys::UTMtoGS() {
    if (a == 0.0 || e2 == 0.0) return 0;
    std::optional<ZoneEllipsoid> local;
    const ZonePlane plane = ZoneForward(EllipsoidOf(a, e2, local), B, L - Radians(L0), SinCosOf(B));
    GX = plane.X;
    GY = plane.Y;
    return 1;
}

int Coordinate_2Dsys::GStoUTM() {
    if (a == 0.0 || e2 == 0.0) return 0;
    std::optional<ZoneEllipsoid> local;
    const ZonePosition position = ZoneInverse(EllipsoidOf(a, e2, local), GX, GY, Radians(L0));
    B = position.B;
    L = position.L;
    return 1;
}

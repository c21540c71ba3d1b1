// DistandAreaInquiry: its vertices, its system, and area.
#include <cmath>
#include <memory>
#include <new>

#include "geodesy/edge_sum.h"
#include "geodesy/state.h"
#include "geodesy/zone_ellipsoids.h"
#include "zenromath/geodesy.h"

using namespace zm::geodesy;

namespace {

// Required: shorter than the 57.29577951308232 of the angles; vertices of stored results were converted with it.
constexpr double kDegreesPerRadian = 57.29577951308;

// Required: e2 of the 80 family ends otherwise than in Coordinate_2Dsys (0.006694384999588).
constexpr double kA80 = 6378140.0;
constexpr double kE80 = 0.00669438499958795;

}  // namespace

struct DistandAreaInquiry::Owned {
    std::unique_ptr<double[]> coords;
    AreaValue area{0.0, znAreaSquareMeter};
};

DistandAreaInquiry::DistandAreaInquiry(const Point3D* pts, int n, short how)
    : coords(nullptr), area(nullptr), method(how), count(0), m_owned(std::make_shared<Owned>()) {
    area = &m_owned->area;
    if (pts != nullptr && n > 0) m_owned->coords.reset(new (std::nothrow) double[2 * static_cast<std::size_t>(n)]);
    coords = m_owned->coords.get();
    if (coords != nullptr) count = n;
    for (std::int32_t i = 0; i < count; ++i) {
        coords[i] = pts[i].y / kDegreesPerRadian;
        coords[count + i] = pts[i].x / kDegreesPerRadian;
    }
    SetEllipse(znCoord84G6);
}

DistandAreaInquiry::~DistandAreaInquiry() = default;

void DistandAreaInquiry::SetEllipse(znCoordSysTypeConstants coordSys) {
    const CoordinateSystem system = SystemOf(coordSys);
    ellipse = coordSys;
    a = system.a;
    e2 = system.a == kA80 ? kE80 : system.e2;
}

znCoordSysTypeConstants DistandAreaInquiry::GetEllipse() const {
    return ellipse;
}

double DistandAreaInquiry::GetDist() const {
    double sum = 0.0;
    for (std::int32_t i = 0; i + 1 < count; ++i)
        sum += Dist(coords[i], coords[count + i], coords[i + 1], coords[count + i + 1]);
    return sum;
}

double DistandAreaInquiry::GetCloseDist() const {
    if (count < 1) return 0.0;
    const std::int32_t last = count - 1;
    return GetDist() + Dist(coords[last], coords[count + last], coords[0], coords[count]);
}

double DistandAreaInquiry::GetArea() {
    bool measured = true;
    const double result = method == 0 ? PlaneArea(measured) : EllipsoidArea();
    if (measured) area->SetValue(result);
    return result;
}

double DistandAreaInquiry::PlaneArea(bool& measured) const {
    const auto n = static_cast<std::size_t>(count);
    const std::unique_ptr<double[]> plane(new (std::nothrow) double[2 * n]);
    measured = plane != nullptr;
    if (!measured || n == 0) return 0.0;
    double* X = plane.get();
    double* Y = plane.get() + n;
    Coordinate_3Dsys vertex;
    vertex.setEllipse(ellipse);
    for (std::size_t i = 0; i < n; ++i) {
        vertex.setBLH(coords[i], coords[n + i], 0.0);
        vertex.UTMtoGS();
        X[i] = vertex.getGX();
        Y[i] = vertex.getGY();
    }
    if (n < 2) return 0.0;
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < n; ++i) sum += (X[i] - X[0]) * (Y[i + 1] - Y[i - 1]);
    sum += (Y[0] - Y[n - 2]) * (X[n - 1] - X[0]);
    return std::abs(sum / 2.0);
}

double DistandAreaInquiry::EllipsoidArea() const {
    const PieceRule rule = PieceRuleOf(a, e2, state().ellipsePrecision);
    const EquatorSum edges(a, e2);
    const double* B = coords;
    const double* L = coords + count;
    double sum = 0.0;
    for (std::int32_t i = 0; i + 1 < count; ++i)
        sum += edges.Of({B[i], L[i], B[i + 1], L[i + 1], PieceCount(rule, B[i + 1] - B[i], L[i + 1] - L[i])});
    return std::abs(sum);
}

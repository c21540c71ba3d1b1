// TestmyCalEllipseArea: area by the trapezoid series of land-survey practice.
#include <cmath>

#include "geodesy/edge_sum.h"
#include "geodesy/gauss_series.h"
#include "geodesy/numeric.h"
#include "geodesy/state.h"
#include "zenromath/geodesy.h"

namespace zm::geodesy {
namespace {

// An a and b that come near to those of this ellipsoid count as its own.
constexpr double kFixedA = 6378137.0;
constexpr double kFixedB = 6356752.31414036;
constexpr double kFixedF = 0.003352810681182319;
constexpr double kFixedE2 = 0.0066943800229;
constexpr double kFixedANear = 0.0001;  // metres
constexpr double kFixedBNear = 1e-05;   // metres

constexpr double kZoneDigitsAbove = 999000.0;  // metres; a larger easting has zone digits
constexpr double kZoneFactor = 1000000.0;
constexpr double kFalseEasting = 500000.0;  // metres

/// The working record: the ellipsoid and its trapezoid series, and the settings of the call.
struct EllipseAreaSeries {
    double pi = 3.14159265358979;  // Required: this shorter value; rounded angles depend on it.
    double rho = 206264.8062471;   // seconds of arc in a radian
    double A = 0, B = 0, C = 0, D = 0, E = 0;
    double a = 0, b = 0, f = 0, e2 = 0;
    double angleGrid = state().angleRounding;  // seconds of arc
    double planeGrid = state().planeRounding;  // metres
};

// Source: trapezoid area series of the land-survey regulations in powers of e2 to the fourth; docs/geodesy/area.md.
EllipseAreaSeries SeriesOf(double a, double second, bool secondIsB) {
    EllipseAreaSeries s;
    s.a = a;
    s.b = secondIsB ? second : a - a / second;
    s.f = secondIsB ? (a - second) / a : 1.0 / second;
    s.e2 = (s.a * s.a - s.b * s.b) / (s.a * s.a);
    if (std::abs(s.a - kFixedA) < kFixedANear && std::abs(s.b - kFixedB) < kFixedBNear) {
        s.a = kFixedA;
        s.b = kFixedB;
        s.f = kFixedF;
        s.e2 = kFixedE2;
    }
    const double e2 = s.e2;
    const double e4 = e2 * e2;
    const double e6 = e4 * e2;
    const double e8 = e4 * e4;
    s.A = 1.0 + e2 / 2.0 + 3.0 / 8 * e4 + 5.0 / 16 * e6 + 35.0 / 128 * e8;
    s.B = e2 / 6.0 + 3.0 / 16 * e4 + 3.0 / 16 * e6 + 35.0 / 192 * e8;
    s.C = 3.0 / 80 * e4 + 1.0 / 16 * e6 + 5.0 / 64 * e8;
    s.D = 1.0 / 112 * e6 + 5.0 / 256 * e8;
    s.E = 5.0 / 2304 * e8;
    return s;
}

// Seconds of arc of an angle in radians, rounded to a grid of seconds if that is above 0.
inline double RoundedSeconds(const EllipseAreaSeries& s, double angle) {
    const auto [degrees, degreeFraction] = Split(std::abs(angle) * 180.0 / s.pi);
    const auto [minutes, minuteFraction] = Split(degreeFraction * 60.0);
    double seconds = minuteFraction * 60.0;
    if (s.angleGrid > 0.0) seconds = Floor(seconds / s.angleGrid + 0.5) * s.angleGrid;
    const double total = degrees * 3600.0 + minutes * 60.0 + seconds;
    return angle > 0.0 ? total : -total;
}

struct Vertex {
    double B, L;  // radians; L from the central meridian
};

// Degrees: the middle of vertices 0 and 2 chooses a 3-degree zone.
double CentralMeridian(const Point3D* pts, int n, bool isBL) {
    if (!isBL || n <= 2) return 0.0;
    const double zoneDegrees = std::trunc((pts[0].x + pts[2].x) / 2.0 + 1.49999);
    return 3.0 * std::trunc(zoneDegrees / 3.0);
}

Vertex VertexOfDegrees(const EllipseAreaSeries& s, const Point3D& p, double centralMeridian) {
    const double r = s.pi / 180.0;
    return {RoundedSeconds(s, r * p.y) / s.rho, RoundedSeconds(s, r * (p.x - centralMeridian)) / s.rho};
}

// Footpoint and inverse series of the 80 ellipsoid, closed.
// Source: the printed series of the land-survey regulations for IAG 1975; docs/geodesy/area.md.
GeodeticPosition Backward80(const EllipseAreaSeries& s, double N, double E) {
    const double beta = N * 1.57048687472752e-07;
    const SinCos at = SinCosOf(beta);
    const double s2 = at.sin * at.sin;
    const double Bf = beta + at.cos * at.sin *
                                 (0.00505250559291393 - s2 * (2.98473350966158e-05 -
                                                              s2 * (2.41627215981336e-07 - s2 * 2.22241909461273e-09)));
    const SinCos f = SinCosOf(Bf);
    const double t = f.sin / f.cos;
    const double t2 = t * t;
    const double t4 = t2 * t2;
    const double eta2 = (s.a * s.a - s.b * s.b) / (s.b * s.b) * (f.cos * f.cos);
    const double V = std::sqrt(1.0 + eta2);
    const double V2t = V * V * t;
    const double u = E / (s.a / (1.0 - s.f) / V);
    const double u2 = u * u;
    const double u4 = u2 * u2;
    const double B = Bf - V2t * u2 / 2.0 + (5.0 + 3.0 * t2 + eta2 - 9.0 * eta2 * t2) * V2t * u4 / 24.0 -
                     (61.0 + 90.0 * t2 + 45.0 * t4) * V2t * (u4 * u2) / 720.0;
    const double L = u / f.cos - (1.0 + 2.0 * t2 + eta2) * (u2 * u) / (6.0 * f.cos) +
                     (5.0 + 28.0 * t2 + 24.0 * t4 + 6.0 * eta2 + 8.0 * eta2 * t2) * (u4 * u) / (120.0 * f.cos);
    return {B, L};
}

double RoundedTo(double grid, double value) {
    return Floor(value / grid + 0.5) * grid;
}

Vertex VertexOfPlane(const EllipseAreaSeries& s, const GaussEllipsoid& g, bool is80, const Point3D& p) {
    double N = p.y;
    double E = p.x;
    if (E > kZoneDigitsAbove) E = Split(E / kZoneFactor).fraction * kZoneFactor;
    E -= kFalseEasting;
    GeodeticPosition position{};
    if (is80) {
        position = Backward80(s, N, E);  // Required: ignores the rounding of plane coordinates.
    } else {
        if (s.planeGrid > 0.0 && s.planeGrid < 1.0) {
            N = RoundedTo(s.planeGrid, N);
            E = RoundedTo(s.planeGrid, E);
        }
        position = BackwardOn(g, N, E);
    }
    return {RoundedSeconds(s, position.B) / s.rho, RoundedSeconds(s, position.l) / s.rho};
}

}  // namespace
}  // namespace zm::geodesy

using namespace zm::geodesy;

double TestmyCalEllipseArea(const Point3D* pts, int n, bool isBL, double a, double second, bool secondIsB) {
    if (pts == nullptr || n < 2) return 0.0;
    const EllipseAreaSeries series = SeriesOf(a, second, secondIsB);
    const PieceRule rule = PieceRuleOf(series.a, series.e2, state().ellipsePrecision);
    const MeridianSum edges({series.A, -series.B, series.C, -series.D, series.E}, series.b);
    const GaussEllipsoid gauss(series.a, series.b);
    const double centralMeridian = CentralMeridian(pts, n, isBL);
    const auto vertex = [&](int i) {
        return isBL ? VertexOfDegrees(series, pts[i], centralMeridian)
                    : VertexOfPlane(series, gauss, rule.byLatitude, pts[i]);
    };
    double sum = 0.0;
    Vertex from = vertex(0);
    for (int i = 1; i < n; ++i) {
        const Vertex to = vertex(i);
        sum += edges.Of({from.B, from.L, to.B, to.L, PieceCount(rule, to.B - from.B, to.L - from.L)});
        from = to;
    }
    return std::abs(sum);
}

// The distance of two points, on the projection plane or on the ellipsoid.
#include <cmath>

#include "geodesy/meridian_arc.h"
#include "geodesy/sincos.h"
#include "zenromath/geodesy.h"

using namespace zm::geodesy;

namespace {

constexpr double kSameLine = 9e-10;  // radians; below it a line runs along a parallel or meridian
constexpr double kTiny = 1e-12;
constexpr double kLambdaStep = 2e-10;  // radians; the iteration goes on above it
constexpr int kMostPasses = 1000;      // 3 to 6 are usual; lines to near the antipode do not settle

struct Ellipsoid {
    double a, e2;
};

double AlongParallel(const Ellipsoid& e, double B1, double B2, double dL) {
    return std::abs(e.a * std::cos(B1) / std::sqrt(1.0 - e.e2 * std::sin(B1) * std::sin(B2)) * dL);
}

// Two points that the auxiliary sphere cannot tell apart.
double Coincident(const Ellipsoid& e, double B1, double B2, double dL) {
    return std::abs((std::abs(std::cos(B2)) + std::abs(std::cos(B1))) / 2.0 * e.a /
                    std::sqrt(1.0 - e.e2 * std::sin(B1) * std::sin(B2)) * dL);
}

double AlongMeridian(const Ellipsoid& e, double B1, double B2) {
    const ArcSeries arc(e.e2);
    const auto M = [&](double B) { return B * (1.0 + arc.s) - arc.Bend(SinCosOf(B)); };
    return std::abs(M(B2) - M(B1)) * e.a * (1.0 - e.e2);
}

// Reduced latitude u = atan(c tan B), c = sqrt(1 - e2), as its sine and cosine.
SinCos ReducedLatitude(double c, double B) {
    const SinCos at = SinCosOf(B);
    const double s = c * at.sin;
    const double size = std::sqrt(at.cos * at.cos + s * s);
    return at.cos < 0.0 ? SinCos{-s / size, -at.cos / size} : SinCos{s / size, at.cos / size};
}

// An arc cosine that is 0 where its argument is within 1e-12 of -1 or 1, or beyond.
bool ArcCosineIsZero(double v) {
    return std::abs(v) + kTiny > 1.0;
}

// The sine of acos(v).
double SineOfArcCosine(double v) {
    return std::sqrt((1.0 - v) * (1.0 + v));
}

// sin 2x and sin 4x of x = acos(v), guarded.
struct DoubleSines {
    double twice, fourfold;
};
DoubleSines DoubleSinesOfArcCosine(double v) {
    if (ArcCosineIsZero(v)) return {0.0, 0.0};
    const double twice = 2.0 * v * SineOfArcCosine(v);
    return {twice, 2.0 * twice * (2.0 * (v * v) - 1.0)};
}

// The inverse problem by iteration on the longitude on the auxiliary sphere: sigma the arc, alpha the azimuth at the
// equator. Sines of arc cosines are taken as square roots.
// Required: x1 and x2 come from an arc cosine and lose the sense of travel, so that a line towards rising latitude
// has a wrong length; stored lengths hold it.
double OnAuxiliarySphere(const Ellipsoid& e, double B1, double B2, double dL) {
    const double c = std::sqrt(1.0 - e.e2);
    const double b = std::sqrt(e.a * e.a * (1.0 - e.e2));
    const double n = (e.a - b) / (e.a + b);
    const SinCos u1 = ReducedLatitude(c, B1);
    const SinCos u2 = ReducedLatitude(c, B2);
    const double P = u1.cos * u2.cos;
    const double Q = u1.sin * u2.sin;
    double lambda = dL;
    double sigma = 0.0, k = 0.0, t2 = 0.0, t4 = 0.0;
    for (int pass = 0; pass < kMostPasses; ++pass) {
        const SinCos at = SinCosOf(lambda);
        const double cosSigma = P * at.cos + Q;
        if (ArcCosineIsZero(cosSigma)) return Coincident(e, B1, B2, dL);
        sigma = std::acos(cosSigma);
        const double azimuth = P * at.sin / SineOfArcCosine(cosSigma);
        const bool alongEquator = ArcCosineIsZero(azimuth);
        const double cosAlpha = alongEquator ? 1.0 : azimuth;
        DoubleSines x1{0.0, 0.0}, x2{0.0, 0.0};
        if (!alongEquator) {
            const double sinAlpha = SineOfArcCosine(azimuth);
            x1 = DoubleSinesOfArcCosine(u1.sin / sinAlpha);
            x2 = DoubleSinesOfArcCosine(u2.sin / sinAlpha);
        }
        const double w = std::sqrt(1.0 - e.e2 * (cosAlpha * cosAlpha));
        k = (w - c) / (w + c);
        t2 = x2.twice - x1.twice;
        t4 = x2.fourfold - x1.fourfold;
        const double next =
            dL + e.e2 / 2.0 * cosAlpha * ((n + 1.0 - k / 2.0 - k * k / 4.0) * sigma - k / 4.0 * t2 + k * k / 16.0 * t4);
        const double step = std::abs(next - lambda);
        lambda = next;
        if (!(step > kLambdaStep)) break;
    }
    return std::abs(((k / 2.0 - 3.0 * (k * k * k) / 16.0) * t2 + sigma - k * k / 16.0 * t4) * b * (1.0 + k * k / 4.0) /
                    (1.0 - k));
}

// Required: each point takes the central meridian of its own zone; two zones are not brought into one.
double OnPlane(znCoordSysTypeConstants system, double B1, double L1, double B2, double L2) {
    Coordinate_2Dsys first;
    Coordinate_2Dsys second;
    first.setEllipse(system);
    second.setEllipse(system);
    first.setBL(B1, L1);
    second.setBL(B2, L2);
    first.UTMtoGS();
    second.UTMtoGS();
    const double dX = second.getGX() - first.getGX();
    const double dY = second.getGY() - first.getGY();
    return std::sqrt(dX * dX + dY * dY);
}

}  // namespace

double DistandAreaInquiry::Dist(const double& B1, const double& L1, const double& B2, const double& L2) const {
    if (method == 0) return OnPlane(ellipse, B1, L1, B2, L2);
    const Ellipsoid e{a, e2};
    if (std::abs(B2 - B1) < kSameLine) return AlongParallel(e, B1, B2, L2 - L1);
    if (std::abs(L2 - L1) < kSameLine) return AlongMeridian(e, B1, B2);
    return OnAuxiliarySphere(e, B1, B2, L2 - L1);
}

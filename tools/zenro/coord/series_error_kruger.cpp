// The same without PROJ: the transverse Mercator projection by the series of Krueger in the third flattening, to its sixth
// power. Source: Karney, Transverse Mercator with an accuracy of a few nanometers, J. Geodesy 85 (2011), equations 7 to
// 11 and 35; within ten degrees of the meridian it is good to nanometres.
#include <cmath>

#include "tools/kit/angles.h"
#include "tools/zenro/coord/series_error.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

struct Axes {
    double a, b;  // metres
};

// Those of forward, digit by digit.
Axes AxesOf(int selector) {
    if (selector == 54) return {6378245.0, 6356863.01877305};
    if (selector == 80) return {6378140.0, 6356755.28815753};
    return {6378137.0, 6356752.31414036};
}

struct Plane {
    double north, east;
};

Plane Exact(const Axes& axes, double latitude, double longitude) {
    const double n = (axes.a - axes.b) / (axes.a + axes.b);
    const double e = std::sqrt(1.0 - axes.b * axes.b / (axes.a * axes.a));
    const double n2 = n * n, n3 = n2 * n, n4 = n2 * n2, n5 = n4 * n, n6 = n3 * n3;
    const double alpha[] = {
        n / 2 - 2 * n2 / 3 + 5 * n3 / 16 + 41 * n4 / 180 - 127 * n5 / 288 + 7891 * n6 / 37800,
        13 * n2 / 48 - 3 * n3 / 5 + 557 * n4 / 1440 + 281 * n5 / 630 - 1983433 * n6 / 1935360,
        61 * n3 / 240 - 103 * n4 / 140 + 15061 * n5 / 26880 + 167603 * n6 / 181440,
        49561 * n4 / 161280 - 179 * n5 / 168 + 6601661 * n6 / 7257600,
        34729 * n5 / 80640 - 3418889 * n6 / 1995840,
        212378941 * n6 / 319334400,
    };
    const double tau = std::tan(latitude);
    const double sigma = std::sinh(e * std::atanh(e * tau / std::hypot(1.0, tau)));
    const double conformal = tau * std::hypot(1.0, sigma) - sigma * std::hypot(1.0, tau);
    const double xi = std::atan2(conformal, std::cos(longitude));
    const double eta = std::asinh(std::sin(longitude) / std::hypot(conformal, std::cos(longitude)));
    double north = xi;
    double east = eta;
    for (int j = 1; j <= 6; ++j) {
        north += alpha[j - 1] * std::sin(2 * j * xi) * std::cosh(2 * j * eta);
        east += alpha[j - 1] * std::cos(2 * j * xi) * std::sinh(2 * j * eta);
    }
    const double radius = axes.a / (1 + n) * (1 + n2 / 4 + n4 / 64 + n6 / 256);
    return {radius * north, radius * east};
}

}  // namespace

double SeriesError(int selector, double latitude, double offset) {
    const Plane exact = Exact(AxesOf(selector), latitude * kDegree, offset * kDegree);
    double north = 0.0, east = 0.0;
    forward(selector, latitude * kDegree, offset * kDegree, &north, &east, nullptr);
    return std::hypot(exact.east - east, exact.north - north);
}

}  // namespace zm::tool

#include "tools/zenro/coord/datum_parameters.h"

#include "tools/kit/angles.h"

#include <cmath>
#include <utility>

namespace zm::tool {
namespace {

constexpr double kArcSecond = kDegree / 3600.0;

using Triple = std::array<double, 3>;

struct Axes {
    double a, b;
};

Axes AxesOf(int selector) {
    if (selector == 54) return {6378245.0, 6356863.01877305};
    if (selector == 80) return {6378140.0, 6356755.28815753};
    return {6378137.0, 6356752.31414036};
}

// R v of the small rotations, radians.
Triple Rotated(const Triple& r, const Triple& v) {
    return {v[0] - r[2] * v[1] + r[1] * v[2], r[2] * v[0] + v[1] - r[0] * v[2], -r[1] * v[0] + r[0] * v[1] + v[2]};
}

// Solves a symmetric positive system by Gauss with pivots; false where it is singular.
template <std::size_t N>
bool Solve(std::array<std::array<double, N + 1>, N>& m) {
    double largest = 0.0;
    for (std::size_t i = 0; i < N; ++i) largest = std::fmax(largest, std::fabs(m[i][i]));
    for (std::size_t i = 0; i < N; ++i) {
        std::size_t pivot = i;
        for (std::size_t k = i + 1; k < N; ++k)
            if (std::fabs(m[k][i]) > std::fabs(m[pivot][i])) pivot = k;
        if (!(std::fabs(m[pivot][i]) > 1e-12 * largest)) return false;
        std::swap(m[i], m[pivot]);
        for (std::size_t k = 0; k < N; ++k) {
            if (k == i) continue;
            const double f = m[k][i] / m[i][i];
            for (std::size_t c = i; c <= N; ++c) m[k][c] -= f * m[i][c];
        }
    }
    for (std::size_t i = 0; i < N; ++i) m[i][N] /= m[i][i];
    return true;
}

void Centre(const std::vector<CommonPoint>& points, Triple& from, Triple& to) {
    from = to = {};
    for (const CommonPoint& p : points)
        for (std::size_t i = 0; i < 3; ++i) {
            from[i] += p.from[i] / static_cast<double>(points.size());
            to[i] += p.to[i] / static_cast<double>(points.size());
        }
}

}  // namespace

std::array<double, 3> SevenParameters::Apply(const std::array<double, 3>& from) const {
    const Triple r = {rotation[0] * kArcSecond, rotation[1] * kArcSecond, rotation[2] * kArcSecond};
    const Triple turned = Rotated(r, from);
    const double k = 1.0 + ppm * 1e-6;
    return {shift[0] + k * turned[0], shift[1] + k * turned[1], shift[2] + k * turned[2]};
}

void FourParameters::Apply(double& north, double& east) const {
    const double k = 1.0 + ppm * 1e-6, c = k * std::cos(rotation * kArcSecond), s = k * std::sin(rotation * kArcSecond);
    const double n = shiftNorth + c * north - s * east;
    east = shiftEast + s * north + c * east;
    north = n;
}

bool Estimate(const std::vector<CommonPoint>& points, SevenParameters& parameters) {
    if (points.size() < 3) return false;
    Triple from, to;
    Centre(points, from, to);
    // About the centres the shifts part from the four others: unknowns k rx, k ry, k rz (radians), k. Lengths are in
    // units of the spread, so that the system is well scaled.
    double spread = 0.0;
    for (const CommonPoint& p : points)
        for (std::size_t i = 0; i < 3; ++i) spread = std::fmax(spread, std::fabs(p.from[i] - from[i]));
    if (!(spread > 0.0)) return false;
    std::array<std::array<double, 5>, 4> m{};
    for (const CommonPoint& p : points) {
        const double x = (p.from[0] - from[0]) / spread, y = (p.from[1] - from[1]) / spread,
                     z = (p.from[2] - from[2]) / spread;
        const double rows[3][5] = {{0.0, z, -y, x, (p.to[0] - to[0]) / spread},
                                   {-z, 0.0, x, y, (p.to[1] - to[1]) / spread},
                                   {y, -x, 0.0, z, (p.to[2] - to[2]) / spread}};
        for (const auto& row : rows)
            for (std::size_t i = 0; i < 4; ++i)
                for (std::size_t k = 0; k < 5; ++k) m[i][k] += row[i] * row[k];
    }
    if (!Solve<4>(m)) return false;
    const double k = m[3][4];
    if (!(k > 0.0)) return false;
    for (std::size_t i = 0; i < 3; ++i) parameters.rotation[i] = m[i][4] / k / kArcSecond;
    parameters.ppm = (k - 1.0) * 1e6;
    parameters.shift = {};
    const Triple centre = parameters.Apply(from);
    for (std::size_t i = 0; i < 3; ++i) parameters.shift[i] = to[i] - centre[i];
    return true;
}

bool Estimate(const std::vector<CommonPoint>& points, FourParameters& parameters) {
    if (points.size() < 2) return false;
    Triple from, to;
    Centre(points, from, to);
    double along = 0.0, across = 0.0, square = 0.0;
    for (const CommonPoint& p : points) {
        const double n = p.from[0] - from[0], e = p.from[1] - from[1], N = p.to[0] - to[0], E = p.to[1] - to[1];
        along += n * N + e * E;
        across += n * E - e * N;
        square += n * n + e * e;
    }
    if (!(square > 0.0) || !(std::hypot(along, across) > 0.0)) return false;
    parameters.rotation = std::atan2(across, along) / kArcSecond;
    parameters.ppm = (std::hypot(along, across) / square - 1.0) * 1e6;
    parameters.shiftNorth = parameters.shiftEast = 0.0;
    double north = from[0], east = from[1];
    parameters.Apply(north, east);
    parameters.shiftNorth = to[0] - north;
    parameters.shiftEast = to[1] - east;
    return true;
}

std::array<double, 3> EarthCentred(int selector, double latitude, double longitude, double height) {
    const Axes axes = AxesOf(selector);
    const double e2 = 1.0 - axes.b * axes.b / (axes.a * axes.a), s = std::sin(latitude * kDegree),
                 c = std::cos(latitude * kDegree);
    const double n = axes.a / std::sqrt(1.0 - e2 * s * s);
    return {(n + height) * c * std::cos(longitude * kDegree), (n + height) * c * std::sin(longitude * kDegree),
            (n * (1.0 - e2) + height) * s};
}

// Bowring's iteration of the reduced latitude; three rounds are exact to the last bits near the ground.
void FromEarthCentred(int selector, const std::array<double, 3>& xyz, double& latitude, double& longitude,
                      double& height) {
    const Axes axes = AxesOf(selector);
    const double e2 = 1.0 - axes.b * axes.b / (axes.a * axes.a), second = e2 / (1.0 - e2);
    const double p = std::hypot(xyz[0], xyz[1]);
    double u = std::atan2(xyz[2] * axes.a, p * axes.b), B = 0.0;
    for (int i = 0; i < 3; ++i) {
        const double s = std::sin(u), c = std::cos(u);
        B = std::atan2(xyz[2] + second * axes.b * s * s * s, p - e2 * axes.a * c * c * c);
        u = std::atan2(axes.b * std::sin(B), axes.a * std::cos(B));
    }
    latitude = B / kDegree;
    longitude = std::atan2(xyz[1], xyz[0]) / kDegree;
    const double s = std::sin(B), n = axes.a / std::sqrt(1.0 - e2 * s * s);
    height = std::fabs(latitude) < 45.0 ? p / std::cos(B) - n : xyz[2] / s - n * (1.0 - e2);
}

}  // namespace zm::tool

// Transformations with seven parameters between earth-centred systems and with four in the plane, given or estimated.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace zm::tool {

/// A pair of triples, or of plane points (north, east, unused): the same point in both systems.
struct CommonPoint {
    std::string name;
    std::array<double, 3> from{}, to{};
};

/// to = shift + (1 + ppm / 1e6) R from, with the rotations of a position vector in arc seconds:
/// R = [1 -rz ry; rz 1 -rx; -ry rx 1]. Metres. A coordinate frame rotation has the opposite signs of rx, ry, rz.
struct SevenParameters {
    std::array<double, 3> shift{}, rotation{};
    double ppm = 0.0;
    std::array<double, 3> Apply(const std::array<double, 3>& from) const;
};

/// n' = shiftNorth + k (n cos a - e sin a), e' = shiftEast + k (n sin a + e cos a); k = 1 + ppm / 1e6, a in arc seconds.
struct FourParameters {
    double shiftNorth = 0.0, shiftEast = 0.0, rotation = 0.0, ppm = 0.0;
    void Apply(double& north, double& east) const;
};

/// Least squares over the common points. False with fewer than 3 points, or points that lie so that the parameters
/// cannot be seen (on one line).
bool Estimate(const std::vector<CommonPoint>& points, SevenParameters& parameters);
/// Least squares over the common points. False with fewer than 2 points, or all at one place.
bool Estimate(const std::vector<CommonPoint>& points, FourParameters& parameters);

/// Earth-centred coordinates of an ellipsoid family and back: latitude and longitude in degrees, heights in metres.
/// \param selector  as forward takes it
std::array<double, 3> EarthCentred(int selector, double latitude, double longitude, double height);
void FromEarthCentred(int selector, const std::array<double, 3>& xyz, double& latitude, double& longitude,
                      double& height);

}  // namespace zm::tool

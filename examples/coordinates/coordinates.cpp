// Latitudes and longitudes of a file to plane coordinates in their 3-degree zones, and back.
// usage: coordinates FILE      each line: latitude longitude, decimal degrees
#include <zenromath/geodesy.h>

#include <cmath>
#include <cstdio>
#include <fstream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: coordinates FILE\n", stderr);
        return 2;
    }
    std::ifstream file(argv[1]);
    if (!file) {
        std::fprintf(stderr, "coordinates: %s: cannot be read\n", argv[1]);
        return 1;
    }
    constexpr double kDegree = 3.14159265358979323846 / 180.0;
    constexpr int kFamily = 2000;  // the ellipsoid of CGCS2000; 54 and 80 are the older ones
    double latitude = 0.0, longitude = 0.0;
    while (file >> latitude >> longitude) {
        const double meridian = 3.0 * std::round(longitude / 3.0);
        double northing = 0.0, easting = 0.0;
        // The projection takes radians, and the longitude from the central meridian.
        forward(kFamily, latitude * kDegree, (longitude - meridian) * kDegree, &northing, &easting, nullptr);
        double back = 0.0, east = 0.0;
        zm::InverseOfForward(kFamily, northing, easting, back, east);
        std::printf("%.3f %.3f zone %d, back %.9f %.9f\n", northing, easting + 500000.0 + meridian / 3.0 * 1e6,
                    static_cast<int>(meridian / 3.0), back / kDegree, east / kDegree + meridian);
    }
    return 0;
}

// Degrees to radians as the files have them.
#pragma once

namespace zm::dwg {

/// Required: this short constant, from left to right; stored drawings have its bits.
inline double Radians(double degrees) {
    return degrees * 3.14159265 / 180;
}

/// Required: arcs have a shorter constant still.
inline double ArcRadians(double degrees) {
    return degrees * 3.1415926 / 180;
}

/// Required: block references divide first.
inline double InsertRadians(double degrees) {
    return degrees / 180.0 * 3.14159265;
}

}  // namespace zm::dwg

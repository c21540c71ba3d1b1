// The lines of a hatch: families of parallel lines cut by a polygon.
#pragma once

#include <cmath>
#include <cstdint>

namespace zm::symbol {

constexpr int kHatchCapacity = 4000;  // points of one entry
constexpr int kMostCrossings = 18;    // of one line
constexpr int kMostHits = 494;        // lines of one family that meet the polygon
constexpr int kMostSegments = 495;    // of one family
constexpr double kSameAngle = 1e-6;   // of a fraction of pi
// Doubles that GenerateHatchLines may write for a capacity.
constexpr int HatchRoom(int capacity) {
    return 2 * capacity + 2;
}

/// Whether a fraction of pi, as the angle of a family or the difference of two, counts as a whole number.
inline bool IsWholeHalfTurn(double fraction) {
    return std::fabs(fraction - std::trunc(fraction)) < kSameAngle;
}

/// Whether a grid of these angles, degrees, has a family that no step leads along: after the families have changed
/// places, the one from the bottom to the top is level, or the one from left to right is upright.
bool GridDividesByZero(double a1, double a2);

/// What the caps left out of one entry.
struct LeftOut {
    std::int64_t lines = 0;      // lines that were not tried
    std::int64_t segments = 0;   // pieces that did not fit into a family's store
    std::int64_t crossings = 0;  // lines with more than kMostCrossings crossings
};

/// The lines of an entry, in the order in which they are drawn.
///
/// \param n, xy           polygon, n interleaved points, survey metres; the closing edge is implied
/// \param a1, d1, a2, d2  direction, radians, and spacing, survey metres, of the two families; type 2 has one
/// \param type            1 two families, 2 one
/// \param[in,out] count   in: capacity in points; out: points written
/// \param[out] out        HatchRoom(capacity) doubles: segments as two points each, first family, then second; after
///                        them the number of segments of each
/// \param[out] leftOut    added to
/// \return                1, or 0 with nothing written: a polygon narrower than 0.01, or no memory
///
/// A spacing that is not above 0, or that a direction turns into none or an endless one, places nothing.
int GenerateHatchLines(int n, const double* xy, double a1, double d1, double a2, double d2, int type, int& count,
                       double* out, LeftOut& leftOut);

}  // namespace zm::symbol

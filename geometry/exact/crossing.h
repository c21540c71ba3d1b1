// What Cross_P asks of two segments, for those that ask it of many: whether it can say at all that they meet, and where.
#pragma once

#include <algorithm>
#include <cmath>

#include "geometry/state.h"
#include "runtime/uses.h"

namespace zm::geometry {

/// The sides of a segment's box on which a point clearly lies. Where both ends of another segment share a side no value
/// is within MINI of both segments in that coordinate, so that Cross_P does not answer 0.
class SidesOfBox {
 public:
    SidesOfBox(double x1, double y1, double x2, double y2) {
        // Four times the tolerance, where two would do but for roundings.
        const double margin = 4.0 * state().mini;
        m_left = std::min(x1, x2) - margin;
        m_right = std::max(x1, x2) + margin;
        m_bottom = std::min(y1, y2) - margin;
        m_top = std::max(y1, y2) + margin;
        // Products of such numbers may overflow, and a meeting point that is NaN lies outside of nothing.
        const bool plain = std::fabs(x1) < kPlain && std::fabs(y1) < kPlain && std::fabs(x2) < kPlain &&
                           std::fabs(y2) < kPlain && margin >= 0.0;
        m_usable = plain ? ~0u : 0u;
    }

    /// One bit for each side; none where the point is too far out to be sure.
    unsigned int Of(double x, double y) const {
        const unsigned int bits = Bit(x < m_left, 0) | Bit(x > m_right, 1) | Bit(y < m_bottom, 2) | Bit(y > m_top, 3);
        return std::fabs(x) < kPlain && std::fabs(y) < kPlain ? bits & m_usable : 0u;
    }
    /// Whether the segment from a to b cannot be met.
    bool Miss(double ax, double ay, double bx, double by) const { return Share(Of(ax, ay), Of(bx, by)); }
    /// The same by the sides of both ends.
    static bool Share(unsigned int a, unsigned int b) {
        const bool missed = (a & b) != 0;
        uses::Count(missed ? uses::crossingMissed : uses::crossingAsked);
        return missed;
    }

 private:
    static constexpr double kPlain = 1e100;
    static unsigned int Bit(bool set, int place) { return static_cast<unsigned int>(set) << place; }

    double m_left, m_right, m_bottom, m_top;
    unsigned int m_usable;
};

struct MeetingPoint {
    double x, y;
};

/// The cross product of two segments' directions; 0 where they are parallel.
inline double Determinant(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4) {
    return (x2 - x1) * (y4 - y3) - (y2 - y1) * (x4 - x3);
}

/// The point in which the lines through 1 and 2 and through 3 and 4 meet, to the last bit as Cross_P gives it.
inline MeetingPoint Meeting(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4) {
    const double determinant = Determinant(x1, y1, x2, y2, x3, y3, x4, y4);
    const double g = (x3 - x1) * (y4 - y1) - (x4 - x1) * (y3 - y1);
    return {x1 + (x2 - x1) * g / determinant, y1 + (y2 - y1) * g / determinant};
}

}  // namespace zm::geometry

#include "geometry/exact/turn.h"

#include "geometry/lines.h"

namespace zm::geometry {

void Turn::FindBearing() {
    m_haveAngle = true;
    m_angle = 0.0;
    if (state().mini >= m_distance) return;
    m_angle = std::acos(m_dx / m_distance);
    if (m_dy < 0.0) m_angle = kTwoPi - m_angle;
}

void Turn::BeExact() {
    const double angle = Angle();
    m_exact = true;
    if (angle == 0.0)
        m_direction = LevelDirection(1.0);
    else if (angle == kPi)
        m_direction = LevelDirection(-1.0);
    else
        m_direction = Pair{std::cos(angle), std::sin(angle)};
}

}  // namespace zm::geometry

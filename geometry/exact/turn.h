// Steps along a bearing and turned figures, to the last bit as the bearing's cosine and sine give them, mostly without
// computing these. The bounds are derived in docs/geometry/turn.md.
#pragma once

#include <cmath>

#include "geometry/exact/pair.h"
#include "geometry/state.h"
#include "runtime/uses.h"

namespace zm::geometry {

/// The sum of a place and an offset of which both parts may be off by slack; sure loses its bits where that makes a
/// difference.
template <class Slack>
inline Pair CertainSum(Pair place, Pair offset, Slack slack, PairMask& sure) {
    const Pair least = place + (offset - slack);
    sure &= least == place + (offset + slack);
    return least;
}

constexpr double kSineOfPi = 1.2246467991473532e-16;  // of the double below pi

/// A leg of a line: its length as XYSA gives it, and what XYSA's bearing of it has for cosine and sine to a few 1e-15,
/// by one division.
class Leg {
 public:
    Leg(double dx, double dy) : m_dx(dx), m_dy(dy), m_squared(dx * dx + dy * dy), m_distance(std::sqrt(m_squared)) {}

    double dx() const { return m_dx; }
    double dy() const { return m_dy; }
    double distance() const { return m_distance; }
    /// Cosine and sine, times a length.
    Pair Along(double length) const {
        return Pair{m_dx, m_dy} * (m_distance * (length / m_squared));  // the quotient does not wait for the root
    }
    /// Whether it is long enough to have a bearing, and its squares lose no digits.
    bool IsPlain() const { return m_distance > kShortest && m_distance < kLongest && m_distance > state().mini; }
    /// Whether its sine is too small to be had from an arc cosine.
    bool IsFlat() const { return !(std::fabs(m_dy) > kFlattest * m_distance); }
    /// How far the direction may be off; infinite where nothing is known.
    double Slack() const {
        return IsPlain() && !IsFlat() ? kSlack + kSineSlack * (m_distance / std::fabs(m_dy)) : HUGE_VAL;
    }

 private:
    static constexpr double kShortest = 1e-100;  // metres; squares of what lies between lose nothing
    static constexpr double kLongest = 1e100;
    static constexpr double kFlattest = 1e-5;  // sine below which an arc cosine has too few digits of it
    static constexpr double kSlack = 3.6e-15;
    static constexpr double kSineSlack = 3.5e-16;

    double m_dx, m_dy;
    double m_squared;
    double m_distance;
};

/// The leg of a way.
inline Leg LegOf(Pair way) {
    return {way[0], way[1]};
}

/// A rotation by an angle, or by the bearing that XYSA gives for a leg.
///
/// Where every cosine and sine within what is known of a leg puts a point to the same doubles, as nearly always where
/// coordinates are large against the figure, these are the result. Elsewhere the bearing's own cosine and sine are
/// computed, once.
class Turn {
 public:
    /// \param angle  radians
    explicit Turn(double angle) : m_haveAngle(true), m_angle(angle) {}

    explicit Turn(const Leg& leg)
        : m_direction(leg.Along(1.0)),
          m_slack(leg.Slack()),
          m_dx(leg.dx()),
          m_dy(leg.dy()),
          m_distance(leg.distance()) {}

    /// The angle, for a leg the bearing: 0 where MINI is not below the length.
    double Angle() {
        if (!m_haveAngle) FindBearing();
        return m_angle;
    }

    /// Whether the angle is nearer to 0 than limit, radians up to 1e-6. Only that of a flat leg can be.
    bool IsBelow(double limit) { return m_slack == HUGE_VAL && std::fabs(Angle()) < limit; }

 private:
    friend class TurnedFigure;

    void FindBearing();
    void BeExact();

    Pair m_direction{0.0, 0.0};  // cosine and sine
    double m_slack = HUGE_VAL;   // how far they may be off; nothing is known of those of a plain angle
    bool m_exact = false;
    bool m_haveAngle = false;
    double m_angle = 0.0;
    double m_dx = 0.0;
    double m_dy = 0.0;
    double m_distance = 0.0;
};

/// A figure at a place, turned by a cosine and a sine and scaled.
class ExactFigure {
 public:
    ExactFigure(Pair place, Pair direction, double scale)
        : m_place(place), m_cosines{direction[0], direction[0]}, m_sines{-direction[1], direction[1]}, m_scale(scale) {}

    /// Its point (u, v): x + (u cos - v sin) scale and y + (v cos + u sin) scale in double arithmetic from left to
    /// right.
    Pair Of(Pair p) const {
        // A product with -sin is the negative of that with sin, to the last bit.
        return m_place + (p * m_cosines + Pair{p[1], p[0]} * m_sines) * m_scale;
    }
    Pair Unturned(Pair p) const { return m_place + p * m_scale; }

 private:
    Pair m_place, m_cosines, m_sines;
    double m_scale;
};

/// The same by a turn, whose cosine and sine are taken where they are needed.
class TurnedFigure {
 public:
    TurnedFigure(Turn& turn, double x, double y, double scale)
        : m_turn(turn),
          m_place{x, y},
          m_scale(scale),
          m_along(turn.m_direction * scale),
          m_across{-m_along[1], m_along[0]},
          m_slack(std::fabs(scale) * turn.m_slack) {}

    Pair Of(double u, double v) {
        if (!IsExact()) {
            PairMask sure = kBoth;
            const Pair place =
                CertainSum(m_place, u * m_along + v * m_across, (std::fabs(u) + std::fabs(v)) * m_slack, sure);
            if (Both(sure)) [[likely]] {
                uses::Count(uses::pointByLeg);
                return place;
            }
        }
        return Exactly(u, v);
    }

    /// The same by cosine and sine.
    Pair Exactly(double u, double v) {
        uses::Count(uses::pointByBearing);
        return Exact().Of(Pair{u, v});
    }

    /// Whether every point is found by cosine and sine.
    bool IsExact() const { return m_turn.m_exact || !(m_slack < HUGE_VAL); }
    ExactFigure Exact() {
        if (!m_turn.m_exact) m_turn.BeExact();
        return ExactFigure(m_place, m_turn.m_direction, m_scale);
    }

 private:
    Turn& m_turn;
    Pair m_place;
    double m_scale;
    Pair m_along;
    Pair m_across;
    double m_slack;
};

/// The rounding of one operation, 2^-53, and an eighth more.
constexpr double kUnit = 1.25e-16;

/// How far the bearing of a leg, as XYSA rounds it, may be from the arc cosine of its quotient, units.
inline double BearingSlack(double quotient, double dy) {
    // One and a half in the last place of an arc cosine below 1, 2 and pi; more where it is taken off two pi.
    return 4.7 - 3.14 * quotient + (3.1 - std::copysign(3.1, dy));
}

/// Cosine and sine of 0 and of the double below pi, the bearings of level legs.
inline Pair LevelDirection(double dx) {
    return dx < 0.0 ? Pair{-1.0, kSineOfPi} : Pair{1.0, 0.0};
}

/// The point at a distance from another along a leg, as XYSA gives it.
inline Pair Step(const Leg& leg, Pair at, double distance) {
    if (leg.IsPlain()) {
        if (leg.dy() == 0.0) {
            uses::Count(uses::stepSure);
            return at + distance * LevelDirection(leg.dx());
        }
        // The arc cosine's own argument, and the sine that belongs to it.
        const double c = leg.dx() / leg.distance();
        const double s = std::sqrt((1.0 - c) * (1.0 + c));
        const Pair size = {std::fabs(c), s};
        const Pair slack = (Pair{s, size[0]} * BearingSlack(c, leg.dy()) + size * 6.0 + 1.5) * kUnit;
        PairMask sure = kBoth;
        const Pair place =
            CertainSum(at, Pair{c, std::copysign(s, leg.dy())} * distance, slack * std::fabs(distance), sure);
        if (Both(sure)) [[likely]] {
            uses::Count(uses::stepSure);
            return place;
        }
    }
    uses::Count(uses::stepByBearing);
    Turn turn(leg);
    return TurnedFigure(turn, at[0], at[1], distance).Exactly(1.0, 0.0);
}

}  // namespace zm::geometry

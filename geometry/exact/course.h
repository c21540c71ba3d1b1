// Steps along a line toward one point, each from the rounded end of the last. Two ways with the same results: Legs
// where there are few, Course where there are many. Derived in docs/geometry/turn.md.
#pragma once

#include <cmath>

#include "geometry/exact/pair.h"
#include "geometry/exact/turn.h"
#include "geometry/state.h"
#include "runtime/uses.h"

namespace zm::geometry {

/// A way to a goal that is gone in steps, each by its own leg.
class Legs {
 public:
    Legs(Pair at, Pair goal) : m_at(at), m_goal(goal), m_leg(LegOf(goal - at)) {}

    Pair at() const { return m_at; }
    /// To the goal, as XYSA gives it.
    double distance() const { return m_leg.distance(); }
    /// Whether the cosine and the sine of the bearing to the goal, as XYSA gives it, are direction() within 1e-7.
    bool HasDirection() const { return m_leg.IsPlain() && (m_leg.dy() == 0.0 || !m_leg.IsFlat()); }
    Pair direction() const { return m_leg.Along(1.0); }
    /// The point at a distance toward the goal, as Step gives it.
    Pair Ahead(double distance) const {
        PairMask sure = kBoth;
        const Pair place = CertainSum(m_at, m_leg.Along(distance), std::fabs(distance) * m_leg.Slack(), sure);
        if (!Both(sure)) return Step(m_leg, m_at, distance);
        uses::Count(uses::stepSure);
        return place;
    }
    /// Goes on to the point Ahead by this distance.
    void GoTo(Pair place, double /*distance*/) {
        m_at = place;
        m_leg = LegOf(m_goal - place);
    }

 private:
    Pair m_at;
    Pair m_goal;
    Leg m_leg;
};

/// The same for many steps: after each the leg to the goal is another one, by some roundings.
///
/// What a leg's direction differs by from that of the first is so little that a product gives it, without the root and
/// the quotient of the leg itself: these take far longer, and each step waits for the one before.
class Course {
 public:
    Course(Pair at, Pair goal) : m_at(at), m_goal(goal) { Aim(); }

    Pair at() const { return m_at; }
    /// To the goal, as XYSA gives it.
    double distance() const { return m_distance; }
    /// Whether the cosine and the sine of the bearing to the goal, as XYSA gives it, are direction() within 1e-7.
    bool HasDirection() const { return m_slack[0] < HUGE_VAL; }
    Pair direction() const { return m_direction; }

    /// The point at a distance toward the goal, as Step gives it.
    Pair Ahead(double distance) const {
        // What does not wait for the step before is worked out on its own.
        const Pair straight = distance * m_direction;
        const Pair slack = std::fabs(distance) * m_slack;
        const Pair turn = Across() * (distance / m_left);
        const Pair place = m_at + ((straight - slack) + m_sideways * turn);
        if (Both(place == m_at + ((straight + slack) + m_sideways * turn))) [[likely]] {
            uses::Count(uses::stepByCourse);
            return place;
        }
        uses::Count(uses::stepByLeg);
        return Step(LegOf(m_goal - m_at), m_at, distance);
    }

    /// Goes on to the point Ahead by this distance.
    void GoTo(Pair place, double distance) {
        m_at = place;
        const Pair way = m_goal - place;
        m_distance = std::sqrt(SumOfBoth(way * way)[0]);
        m_left -= distance;
        m_sideways = SumOfBoth(way * Across());
        if (!(std::fabs(m_sideways[0]) <= m_mostSideways * m_left && std::fabs(m_left - m_distance) < kNear * m_left &&
              m_distance > state().mini)) [[unlikely]]
            Aim();
    }

 private:
    static constexpr double kNear = 1e-8;  // radians, and part of the distance

    Pair Across() const { return Pair{-m_direction[1], m_direction[0]}; }

    void Aim() {
        const Leg leg = LegOf(m_goal - m_at);
        m_distance = leg.distance();
        m_left = m_distance;
        m_direction = leg.Along(1.0);
        m_sideways = Pair{};
        m_mostSideways = kNear;
        if (!leg.IsPlain()) {
            m_slack = Pair{HUGE_VAL, HUGE_VAL};
        } else if (leg.dy() == 0.0) {
            // The bearing is 0 or pi to the last bit, as long as nothing moves it off the line.
            m_direction = Pair{std::copysign(1.0, leg.dx()), 0.0};
            m_slack = Pair{0.0, leg.dx() < 0.0 ? kSineOfPi : 0.0};
            m_mostSideways = 0.0;
        } else {
            m_slack = leg.IsFlat() ? Pair{HUGE_VAL, HUGE_VAL} : SlackOf(m_direction);
        }
    }
    static Pair SlackOf(Pair direction) {
        const double c = std::fabs(direction[0]);
        const double s = std::fabs(direction[1]);
        const double bearing = BearingSlack(direction[0], direction[1]) + 2.0;
        return Pair{bearing * s + 14.0 * c + 3.0, bearing * c + 3.0 / s + 11.0 * s + 3.0} * kUnit;
    }

    Pair m_at;
    Pair m_goal;
    double m_distance = 0.0;
    Pair m_direction{};           // of the leg that was aimed by: cosine and sine
    Pair m_sideways{};            // of the goal from there to the left, twice
    Pair m_slack{};               // of the direction; infinite where nothing is known
    double m_mostSideways = 0.0;  // of the distance left; farther off it is aimed anew
    double m_left = 0.0;          // distance to the goal but for some roundings: what was gone is taken off
};

}  // namespace zm::geometry

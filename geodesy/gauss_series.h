// The series of forward and backward on one ellipsoid, as inline steps that serve one position and whole arrays.
#pragma once

#include <cmath>

#include "geodesy/meridian_arc.h"
#include "geodesy/sincos.h"
#include "runtime/uses.h"

namespace zm::geodesy {

constexpr double kFootpointStep = 5e-13;  // radians; the footpoint iteration ends at or below it
constexpr int kMostFootpointSteps = 10;

/// What forward and backward need of an ellipsoid. All of it depends on a and b alone.
struct GaussEllipsoid {
    constexpr GaussEllipsoid(double semiMajor, double semiMinor)
        : a(semiMajor),
          b(semiMinor),
          k(b * b / a),
          c(a * a / b),
          secondEccentricity2(c / b - 1.0),
          arc(1.0 - k / a),
          arcUnit(k * (arc.s + 1.0)),
          bendUnit(1.0 / (arc.s + 1.0)),
          overC(1.0 / c) {}

    double a, b, k, c;
    double secondEccentricity2;  // as c / b - 1
    ArcSeries arc;
    double arcUnit;   // k (s + 1): metres of arc to a radian
    double bendUnit;  // 1 / (s + 1)
    double overC;     // 1 / c
};

/// The ellipsoid of the selector of the free functions: 1, 54 Krassovsky 1940; 0, 80 IAG 1975; else the 2000 system.
inline constexpr GaussEllipsoid kKrassovsky{6378245.0, 6356863.01877305};
inline constexpr GaussEllipsoid kIag1975{6378140.0, 6356755.28815753};
inline constexpr GaussEllipsoid kNational2000{6378137.0, 6356752.31414036};

inline const GaussEllipsoid& SelectedEllipsoid(int ell) {
    if (ell == 1 || ell == 54) return kKrassovsky;
    if (ell == 0 || ell == 80) return kIag1975;
    return kNational2000;
}

/// Metres from the equator to latitude B along the meridian.
inline double MeridianArc(const GaussEllipsoid& g, double B, const SinCos& at) {
    return g.k * ((g.arc.s + 1.0) * B - g.arc.Bend(at));
}

struct PlanePosition {
    double x, y;
};

inline PlanePosition ForwardSeries(const GaussEllipsoid& g, double B, double l, const SinCos& at) {
    const double t = at.sin / at.cos;
    const double t2 = t * t;
    const double w = at.cos * l;
    const double w2 = w * w;
    const double eta2 = g.secondEccentricity2 * (at.cos * at.cos);
    const double N = g.c / std::sqrt(1.0 + eta2);
    const double x6 = (61.0 - 58.0 * t2 + t2 * t2) * (1.0 / 720);
    const double x4 = (5.0 - t2 + 9.0 * eta2 + 4.0 * (eta2 * eta2)) * (1.0 / 24);
    const double y5 = (5.0 - 18.0 * t2 + t2 * t2 + 14.0 * eta2 - 58.0 * eta2 * t2) * (1.0 / 120);
    const double y3 = (1.0 - t2 + eta2) * (1.0 / 6);
    return {MeridianArc(g, B, at) + N * t * w2 * (0.5 + w2 * (x4 + w2 * x6)), N * w * (1.0 + w2 * (y3 + w2 * y5))};
}

inline double ForwardConvergence(const GaussEllipsoid& g, double l, const SinCos& at) {
    const double t = at.sin / at.cos;
    const double w = at.cos * l;
    const double w2 = w * w;
    const double eta2 = g.secondEccentricity2 * (at.cos * at.cos);
    return t * w * (1.0 + w2 * ((1.0 + 3.0 * eta2 + 2.0 * (eta2 * eta2)) / 3.0 + w2 * (2.0 - t * t) / 15.0));
}

/// One step of the footpoint iteration; x0: northing over arcUnit, at: sine and cosine of the latitude before.
inline double FootpointStep(const GaussEllipsoid& g, double x0, const SinCos& at) {
    return x0 + g.arc.Bend(at) * g.bendUnit;
}

struct GeodeticPosition {
    double B, l;
};

/// The series of backward at the footpoint latitude Bf.
inline GeodeticPosition BackwardSeries(const GaussEllipsoid& g, double Bf, double y, const SinCos& at) {
    const double overCos = 1.0 / at.cos;
    const double t = at.sin * overCos;
    const double t2 = t * t;
    const double eta2 = g.secondEccentricity2 * (at.cos * at.cos);
    const double V2 = 1.0 + eta2;
    const double u = std::sqrt(V2) * y * g.overC;
    const double u2 = u * u;
    const double b4 = (5.0 + 3.0 * t2 + eta2 - 9.0 * eta2 * t2) * (1.0 / 24);
    // Required: the sixth-order term is added, where the true inverse has it subtracted; positions on file hold it.
    const double b6 = (61.0 + 90.0 * t2 + 45.0 * (t2 * t2)) * (1.0 / 720);
    const double l3 = (1.0 + 2.0 * t2 + eta2) * (1.0 / 6);
    // Required: without the 6 eta2 + 8 eta2 t^2 of GStoUTM; the two implementations differ on purpose.
    const double l5 = (5.0 + 28.0 * t2 + 24.0 * (t2 * t2)) * (1.0 / 120);
    return {Bf + V2 * t * u2 * (-0.5 + u2 * (b4 + u2 * b6)), u * overCos * (1.0 - u2 * (l3 - u2 * l5))};
}

inline double BackwardConvergence(const GaussEllipsoid& g, double y, const SinCos& at) {
    const double t = at.sin / at.cos;
    const double t2 = t * t;
    const double eta2 = g.secondEccentricity2 * (at.cos * at.cos);
    const double u = std::sqrt(1.0 + eta2) * y / g.c;
    const double u2 = u * u;
    return u * t * (1.0 - u2 * ((1.0 + t2 - eta2) / 3.0 - u2 * (2.0 + 5.0 * t2 + 3.0 * (t2 * t2)) / 15.0));
}

struct Footpoint {
    double latitude;
    SinCos at;
};

/// The footpoint latitude of northing x by the iteration as it is defined, with sine and cosine at every step.
inline Footpoint IteratedFootpoint(const GaussEllipsoid& g, double x) {
    const double x0 = x / g.arcUnit;
    double latitude = x0;
    if (!(std::abs(latitude) > kFootpointStep)) return {latitude, SinCosOf(latitude)};
    for (int i = 0; i < kMostFootpointSteps; ++i) {
        const double next = FootpointStep(g, x0, SinCosOf(latitude));
        const bool settled = std::abs(next - latitude) <= kFootpointStep;
        latitude = next;
        if (settled) break;
    }
    return {latitude, SinCosOf(latitude)};
}

struct QuickFootpoint {
    Footpoint footpoint;
    double holds;  // 1 or 0
};

/// The value at which the same iteration ends, with one sine and cosine: the first step from them, the second after a
/// turn by a small angle, all others by the expansion of the step about its first value, whose third-order term is
/// below 1e-17 rad. The stopping rule sees the same steps within 1e-15 rad. Without a branch; holds is false where the
/// expansion is not enough or the iteration ends early (beside the equator and the pole), and the result is void.
[[gnu::always_inline]] inline QuickFootpoint ExpandedFootpoint(const GaussEllipsoid& g, double x) {
    constexpr double kSmallTurn = 4e-3;  // radians; sine and cosine to the sixth order
    constexpr double kSmallMove = 2e-5;  // radians; sine and cosine to the third order

    const double x0 = x / g.arcUnit;
    const SinCos at0 = SinCosNear(x0);
    const double x1 = FootpointStep(g, x0, at0);
    const double turn = x1 - x0;
    const double turn2 = turn * turn;
    const double sinTurn = turn - turn * turn2 * (1.0 / 6 - turn2 * (1.0 / 120));
    const double lessCos = turn2 * (0.5 - turn2 * (1.0 / 24 - turn2 * (1.0 / 720)));
    const SinCos at1{at0.sin + (at0.cos * sinTurn - at0.sin * lessCos),
                     at0.cos - (at0.sin * sinTurn + at0.cos * lessCos)};

    // The step's first two derivatives by the latitude, m = sin^2, p the polynomial of Bend.
    const double m = at1.sin * at1.sin;
    const double p = g.arc.s + m * (g.arc.p + m * (g.arc.q + m * g.arc.r));
    const double p1 = g.arc.p + m * (2.0 * g.arc.q + m * (3.0 * g.arc.r));
    const double p2 = 2.0 * g.arc.q + m * (6.0 * g.arc.r);
    const double first = ((1.0 - 2.0 * m) * p + 2.0 * m * (1.0 - m) * p1) * g.bendUnit;
    const double halfSecond =
        at1.sin * at1.cos * (3.0 * (1.0 - 2.0 * m) * p1 - 2.0 * p + 2.0 * m * (1.0 - m) * p2) * g.bendUnit;

    // The iteration from x1 on, as distances from x1; it ends at the first that lies near the one before it.
    const double move2nd = FootpointStep(g, x0, at1) - x1;
    const double move3rd = move2nd + move2nd * (first + move2nd * halfSecond);
    const double move4th = move2nd + move3rd * (first + move3rd * halfSecond);
    const double move5th = move2nd + move4th * (first + move4th * halfSecond);
    const double move6th = move2nd + move5th * (first + move5th * halfSecond);
    double move = move6th;
    move = std::abs(move5th - move4th) <= kFootpointStep ? move5th : move;
    move = std::abs(move4th - move3rd) <= kFootpointStep ? move4th : move;
    move = std::abs(move3rd - move2nd) <= kFootpointStep ? move3rd : move;
    move = std::abs(move2nd) <= kFootpointStep ? move2nd : move;

    const double move2 = 0.5 * (move * move);
    const double sinMove = move - move * move2 * (1.0 / 3);
    const SinCos at{at1.sin + (at1.cos * sinMove - at1.sin * move2), at1.cos - (at1.sin * sinMove + at1.cos * move2)};
    double holds = std::abs(x0) <= kSinCosRange ? 1.0 : 0.0;
    holds = std::abs(turn) <= kSmallTurn ? holds : 0.0;
    holds = std::abs(turn) > kFootpointStep ? holds : 0.0;
    holds = std::abs(move2nd) <= kSmallMove ? holds : 0.0;
    holds = std::abs(move6th - move5th) <= kFootpointStep ? holds : 0.0;
    return {{x1 + move, at}, holds};
}

/// The footpoint latitude of northing x, with its sine and cosine.
inline Footpoint FootpointOf(const GaussEllipsoid& g, double x) {
    const QuickFootpoint quick = ExpandedFootpoint(g, x);
    uses::Count(quick.holds != 0.0 ? uses::footQuick : uses::footIterated);
    return quick.holds != 0.0 ? quick.footpoint : IteratedFootpoint(g, x);
}

/// backward on an ellipsoid of its own, without gamma.
inline GeodeticPosition BackwardOn(const GaussEllipsoid& g, double x, double y) {
    const Footpoint f = FootpointOf(g, x);
    return BackwardSeries(g, f.latitude, y, f.at);
}

}  // namespace zm::geodesy

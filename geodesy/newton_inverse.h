// The steps of the inverse that truly undoes forward, inline for one position and for whole arrays.
#pragma once

#include <cmath>

#include "geodesy/gauss_series.h"

namespace zm::geodesy {

constexpr int kMostNewtonSteps = 8;       // three are enough up to 4 degrees from the meridian
constexpr double kNewtonSettled = 1e-13;  // radians; after a step at or below it the next would be under a last bit

/// One Newton step at (B, l); at: sine and cosine of B.
struct NewtonStep {
    double B, l;
    double turn;  // radians, the angle that sine and cosine were taken of
    double Size(const SinCos& at) const { return std::abs(B) + std::abs(l * at.cos); }
};

/// The step for the distance from forward at (B, l) to the plane position (x, y). forward is conformal within 1e-6, so
/// that its derivative is a turn by the convergence and a scale, both from their series in w = l cos B.
///
/// \param sinCos  SinCosOf, or SinCosNear where a loop must have no branch
template <class SinCosFunction>
[[gnu::always_inline]] inline NewtonStep NewtonStepAt(const GaussEllipsoid& g, double x, double y, double B, double l,
                                                      const SinCos& at, SinCosFunction sinCos) {
    const PlanePosition plane = ForwardSeries(g, B, l, at);
    const double dx = x - plane.x;
    const double dy = y - plane.y;
    const double V2 = 1.0 + g.secondEccentricity2 * (at.cos * at.cos);
    const double N = g.c / std::sqrt(V2);
    const double M = N / V2;
    const double t = at.sin / at.cos;
    const double w = at.cos * l;
    const double w2 = w * w;
    const double scale = 1.0 + w2 * V2 / 2.0 + w2 * w2 * (5.0 - 4.0 * t * t) / 24.0;
    const double convergence = ForwardConvergence(g, l, at);
    const SinCos turn = sinCos(convergence);
    const double north = (dx * turn.cos - dy * turn.sin) / scale;
    const double east = (dx * turn.sin + dy * turn.cos) / scale;
    return {north / M, east / (N * at.cos), convergence};
}

}  // namespace zm::geodesy

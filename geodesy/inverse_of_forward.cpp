// The inverse that truly undoes forward.
#include <cmath>

#include "geodesy/gauss_series.h"
#include "zenromath/geodesy.h"

namespace zm::geodesy {
namespace {

constexpr int kMostSteps = 8;       // three are enough up to 4 degrees from the meridian
constexpr double kSettled = 1e-13;  // radians; after a step at or below it the next would be under a last bit

struct Step {
    double B, l;
};

// One Newton step for the residual (dx, dy) of forward at (B, l). forward is conformal within 1e-6, so that its
// derivative is a turn by the convergence and a scale, both from their series in w = l cos B.
Step NewtonStep(const GaussEllipsoid& g, double l, double dx, double dy, const SinCos& at) {
    const double V2 = 1.0 + g.secondEccentricity2 * (at.cos * at.cos);
    const double N = g.c / std::sqrt(V2);
    const double M = N / V2;
    const double t = at.sin / at.cos;
    const double w = at.cos * l;
    const double w2 = w * w;
    const double scale = 1.0 + w2 * V2 / 2.0 + w2 * w2 * (5.0 - 4.0 * t * t) / 24.0;
    const SinCos turn = SinCosOf(ForwardConvergence(g, l, at));
    const double north = (dx * turn.cos - dy * turn.sin) / scale;
    const double east = (dx * turn.sin + dy * turn.cos) / scale;
    return {north / M, east / (N * at.cos)};
}

}  // namespace
}  // namespace zm::geodesy

using namespace zm::geodesy;

void zm::InverseOfForward(int ell, double x, double y, double& B, double& l) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    GeodeticPosition position = BackwardOn(g, x, y);
    for (int i = 0; i < kMostSteps; ++i) {
        const SinCos at = SinCosOf(position.B);
        const PlanePosition plane = ForwardSeries(g, position.B, position.l, at);
        const Step step = NewtonStep(g, position.l, x - plane.x, y - plane.y, at);
        position.B += step.B;
        position.l += step.l;
        if (!(std::abs(step.B) + std::abs(step.l * at.cos) > kSettled)) break;
    }
    B = position.B;
    l = position.l;
}

// The inverse that truly undoes forward.
#include "geodesy/newton_inverse.h"
#include "zenromath/geodesy.h"

using namespace zm::geodesy;

void zm::InverseOfForward(int ell, double x, double y, double& B, double& l) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    GeodeticPosition position = BackwardOn(g, x, y);
    for (int i = 0; i < kMostNewtonSteps; ++i) {
        const SinCos at = SinCosOf(position.B);
        const NewtonStep step = NewtonStepAt(g, x, y, position.B, position.l, at, SinCosOf);
        position.B += step.B;
        position.l += step.l;
        if (!(step.Size(at) > kNewtonSettled)) break;
    }
    B = position.B;
    l = position.l;
}

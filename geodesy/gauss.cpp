// forward, backward and their wrappers, one position at a time.
#include "geodesy/gauss_series.h"
#include "zenromath/geodesy.h"

using namespace zm::geodesy;

void forward(int ell, double B, double l, double* x, double* y, double* gamma) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    const SinCos at = SinCosOf(B);
    const PlanePosition plane = ForwardSeries(g, B, l, at);
    *x = plane.x;
    *y = plane.y;
    if (gamma != nullptr) *gamma = ForwardConvergence(g, l, at);
}

void backward(int ell, double x, double y, double* B, double* l, double* gamma) {
    const GaussEllipsoid& g = SelectedEllipsoid(ell);
    const Footpoint f = FootpointOf(g, x);
    const GeodeticPosition position = BackwardSeries(g, f.latitude, y, f.at);
    *B = position.B;
    *l = position.l;
    if (gamma != nullptr) *gamma = BackwardConvergence(g, y, f.at);
}

void JWD_to_Gaosi(int ell, double B, double L, double L0, double& x, double& y) {
    forward(ell, B, L - L0, &x, &y, nullptr);
}

void Gaosi_to_JWD(int ell, double x, double y, double L0, double& B, double& L) {
    double l = 0.0;
    backward(ell, x, y, &B, &l, nullptr);
    L = l + L0;
}

void GaosiExcange(int ell, double& x, double& y, double sourceL0, double targetL0) {
    double B = 0.0;
    double l = 0.0;
    backward(ell, x, y, &B, &l, nullptr);
    forward(ell, B, l + sourceL0 - targetL0, &x, &y, nullptr);
}

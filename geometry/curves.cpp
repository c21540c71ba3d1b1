// Curve fitting: the B-spline through the given points, and the choice by kind.
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "geometry/state.h"
#include "zenromath/geometry.h"

namespace {

constexpr int kCurve = 2;
constexpr int kArc = 3;
constexpr int kCircle = 4;
constexpr int kCircleClockwise = 5;
constexpr double kDefaultPrec = 1000.0;
constexpr double kClosedWithin = 0.02;  // metres, in each coordinate
constexpr int kPointsOfASpan = 5;

// A uniform cubic B-spline at a knot is (c[i-1] + 4 c[i] + c[i+1]) / 6.
constexpr double kBeside = 1.0 / 6.0;
constexpr double kDiagonal = 2.0 / 3.0;

// The factors of the back substitution: g[1] = 0, g[i] = kBeside / (kDiagonal - kBeside g[i-1]), and the divisors of
// the forward elimination. They do not depend on the points and run into their limit 2 - sqrt 3 (to the last bit)
// within kFactors steps, as is asserted below.
constexpr int kFactors = 24;
struct Factors {
    std::array<double, kFactors + 1> factor{};   // from index 1
    std::array<double, kFactors + 1> divisor{};  // from index 2
};
constexpr Factors MakeFactors() {
    Factors f;
    f.divisor[1] = 1.0;
    for (int i = 2; i <= kFactors; ++i) {
        f.divisor[i] = kDiagonal - kBeside * f.factor[i - 1];
        f.factor[i] = kBeside / f.divisor[i];
    }
    return f;
}
constexpr Factors kSpline = MakeFactors();
static_assert(kSpline.factor[kFactors] == kSpline.factor[kFactors - 1]);
static_assert(kSpline.divisor[kFactors] == kSpline.divisor[kFactors - 1]);

int FactorIndex(std::ptrdiff_t i) {
    return i < kFactors ? static_cast<int>(i) : kFactors;
}

// Solves for the control points in place: elements 1 to n of x and y, `stride` values from one to the next.
void SolveControlPoints(double* x, double* y, std::ptrdiff_t stride, std::ptrdiff_t n) {
    for (std::ptrdiff_t i = 2; i < n; ++i) {
        const double divisor = kSpline.divisor[FactorIndex(i)];
        x[i * stride] = (x[i * stride] - kBeside * x[(i - 1) * stride]) / divisor;
        y[i * stride] = (y[i * stride] - kBeside * y[(i - 1) * stride]) / divisor;
    }
    for (std::ptrdiff_t i = n - 1; i > 1; --i) {
        const double factor = kSpline.factor[FactorIndex(i)];
        x[i * stride] -= factor * x[(i + 1) * stride];
        y[i * stride] -= factor * y[(i + 1) * stride];
    }
}

// The parameters of the points of a span: 0.2 and on by repeated addition, up to 1.0.
struct Parameter {
    double t, t2, t3;
};
constexpr std::array<Parameter, kPointsOfASpan> MakeParameters() {
    std::array<Parameter, kPointsOfASpan> list{};
    double t = 0.2;
    for (Parameter& p : list) {
        p = {t, t * t, t * t * t};
        t = t + 0.2;
    }
    return list;
}
constexpr std::array<Parameter, kPointsOfASpan> kParameters = MakeParameters();
static_assert(kParameters[4].t == 1.0);

// One span in one coordinate: the polynomial of the control values c0 to c3.
struct SpanPolynomial {
    SpanPolynomial(double c0, double c1, double c2, double c3)
        : cubic(3.0 * c1 - c0 - 3.0 * c2 + c3),
          square(3.0 * c0 - 6.0 * c1 + 3.0 * c2),
          linear(3.0 * c2 - 3.0 * c0),
          constant(c0 + 4.0 * c1 + c2) {}
    double At(const Parameter& p) const { return (p.t3 * cubic + p.t2 * square + p.t * linear + constant) / 6.0; }
    double cubic, square, linear, constant;
};

}  // namespace

void GOTOPOINTS(int n, int kind, double* x, double* y, double* out, int* outCount, double prec) {
    if (outCount == nullptr) return;
    if (n < 1 || x == nullptr || y == nullptr || out == nullptr) {
        *outCount = 0;
        return;
    }
    *outCount = n;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        out[2 * i] = x[i];
        out[2 * i + 1] = y[i];
    }
    if (zm::geometry::state().mini > prec || std::isnan(prec)) prec = kDefaultPrec;
    if (kind == kCurve)
        SplineToPoints(n, x, y, out, outCount);
    else if (kind == kArc && n >= 3)
        ArcToPoints(n, x, y, out, outCount, prec);
    else if (kind == kCircle && n >= 2)
        CircleToPoints(1, n, x, y, out, outCount, prec);
    else if (kind == kCircleClockwise && n >= 2)
        CircleToPoints(-1, n, x, y, out, outCount, prec);
}

void bspline(double* x, double* y, int n) {
    if (x == nullptr || y == nullptr) return;
    SolveControlPoints(x, y, 1, n);
}

void SplineToPoints(int n, double* x, double* y, double* out, int* outCount) {
    if (outCount == nullptr) return;
    *outCount = 0;
    if (n < 1 || x == nullptr || y == nullptr || out == nullptr) return;
    out[0] = x[0];
    out[1] = y[0];
    if (n < 2) return;
    if (n == 2) {
        out[2] = x[1];
        out[3] = y[1];
        *outCount = 2;
        return;
    }
    // The control points w[0] to w[n + 1], as pairs, stand at the end of the output until the curve overwrites them:
    // span s has read its four before it writes, and from span s + 1 on the rest lies after what is written.
    const std::ptrdiff_t points = n;
    const std::ptrdiff_t room = 1 + kPointsOfASpan * (points - 1);
    if (room > std::numeric_limits<int>::max()) {  // more points than can be counted: as where memory lacks
        *outCount = n;
        return;
    }
    double* w = out + 2 * (room - (points + 2));
    for (std::ptrdiff_t i = 0; i < points; ++i) {
        w[2 * (i + 1)] = x[i];
        w[2 * (i + 1) + 1] = y[i];
    }
    const bool closed = std::fabs(x[0] - x[n - 1]) < kClosedWithin && std::fabs(y[0] - y[n - 1]) < kClosedWithin;
    for (int axis = 0; closed && axis < 2; ++axis) {
        w[axis] = w[2 * (points - 1) + axis];
        w[2 * (points + 1) + axis] = w[2 * 2 + axis];
    }
    if (closed)
        SolveControlPoints(w - 2, w - 1, 2, points + 2);
    else
        SolveControlPoints(w, w + 1, 2, points);
    for (int axis = 0; !closed && axis < 2; ++axis) {
        w[axis] = 2.0 * w[2 + axis] - w[4 + axis];
        w[2 * (points + 1) + axis] = 2.0 * w[2 * points + axis] - w[2 * (points - 1) + axis];
    }

    double* to = out + 2;
    for (std::ptrdiff_t s = 0; s + 1 < points; ++s) {
        const double* c = w + 2 * s;
        const SpanPolynomial px(c[0], c[2], c[4], c[6]);
        const SpanPolynomial py(c[1], c[3], c[5], c[7]);
        for (const Parameter& p : kParameters) {
            *to++ = px.At(p);
            *to++ = py.At(p);
        }
    }
    *outCount = static_cast<int>(room);
}

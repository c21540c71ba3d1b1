// The arc of the meridian from the equator, as its series in powers of sin B.
#pragma once

#include "geodesy/sincos.h"

namespace zm::geodesy {

/// Coefficients of arc(B) = a (1 - e2) ((s + 1) B - Bend(B)), radians, a the half major axis, to e2^4.
/// Source: binomial series of (1 - e2 sin^2 B)^(-3/2), integrated in powers of sin B; docs/geodesy/series.md.
struct ArcSeries {
    explicit constexpr ArcSeries(double e2) {
        const double e4 = e2 * e2;
        const double e6 = e4 * e2;
        const double e8 = e4 * e4;
        s = 3.0 / 4 * e2 + 45.0 / 64 * e4 + 175.0 / 256 * e6 + 11025.0 / 16384 * e8;
        p = 15.0 / 32 * e4 + 175.0 / 384 * e6 + 3675.0 / 8192 * e8;
        q = 35.0 / 96 * e6 + 735.0 / 2048 * e8;
        r = 315.0 / 1024 * e8;
    }

    /// The part that is not proportional to the latitude.
    double Bend(const SinCos& at) const {
        const double s2 = at.sin * at.sin;
        return at.cos * at.sin * (s + s2 * (p + s2 * (q + s2 * r)));
    }

    double s = 0.0, p = 0.0, q = 0.0, r = 0.0;
};

}  // namespace zm::geodesy

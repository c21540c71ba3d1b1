// The series of Coordinate_2Dsys on one ellipsoid, as inline steps that serve one position and whole arrays.
#pragma once

#include <cmath>

#include "geodesy/sincos.h"

namespace zm::geodesy {

// Arc from the equator to latitude B: m (C0 B - C2/2 sin 2B + C4/4 sin 4B - C6/6 sin 6B), m = a (1 - e2).
// Rows C0 C2 C4 C6, columns the powers of e2 from 0 to 5.
// Source: binomial series of (1 - e2 sin^2 B)^(-3/2) in multiple angles, docs/geodesy/series.md.
// ZoneArc.TableFollowsTheBinomialSeries derives it again.
inline constexpr double kArcSeries[4][6] = {
    {1.0, 3.0 / 4, 45.0 / 64, 175.0 / 256, 11025.0 / 16384, 43659.0 / 65536},
    {0.0, 3.0 / 4, 15.0 / 16, 525.0 / 512, 2205.0 / 2048, 72765.0 / 65536},
    {0.0, 0.0, 15.0 / 64, 105.0 / 256, 2205.0 / 4096, 10395.0 / 16384},
    // Required: 13072, where the series has 131072. It moves the arc by up to 0.03 mm, and stored northings hold it.
    {0.0, 0.0, 0.0, 35.0 / 512, 315.0 / 2048, 31185.0 / 13072},
};

/// What UTMtoGS and GStoUTM need of an ellipsoid. All of it depends on a and e2 alone.
struct ZoneEllipsoid {
    constexpr ZoneEllipsoid(double semiMajor, double eccentricity2)
        : a(semiMajor), e2(eccentricity2), secondEccentricity2(e2 / (1.0 - e2)), overA(1.0 / a) {
        double C[4] = {};
        for (int row = 0; row < 4; ++row) {
            double power = 1.0;
            for (int column = 0; column < 6; ++column) {
                C[row] += kArcSeries[row][column] * power;
                power *= e2;
            }
        }
        const double m = a * (1.0 - e2);
        K0 = m * C[0];
        const double K1 = -m * C[1] / 2.0;
        const double K2 = m * C[2] / 4.0;
        const double K3 = -m * C[3] / 6.0;
        arc0 = 2.0 * K1 + 4.0 * K2 + 6.0 * K3;
        arc2 = -8.0 * K2 - 32.0 * K3;
        arc4 = 32.0 * K3;
        SetFootpoint(m * C[1] / (2.0 * K0), -m * C[2] / (4.0 * K0), -m * C[3] / (6.0 * K0));
    }

    double a, e2;
    double secondEccentricity2;
    double overA;                            // 1 / a
    double K0 = 0;                           // metres of arc to a radian
    double arc0 = 0, arc2 = 0, arc4 = 0;     // arc(B) = K0 B + sin B cos B (arc0 + sin^2 B (arc2 + arc4 sin^2 B))
    double foot1 = 0, foot3 = 0, foot5 = 0;  // Bf = beta + cos beta (foot1 s - foot3 s^3 + foot5 s^5), s = sin beta

 private:
    // The closed expansion of the footpoint by a fixed chain of substitutions into itself.
    constexpr void SetFootpoint(double p, double q, double r) {
        const double T = 3.0 * p;
        const double D = 2.0 * q;
        const double f1 = p * q + p - p * D - p * T * p / 2.0;
        const double f2 = (p * p + q) * p + p - f1 * D - f1 * T * f1 / 2.0;
        const double f3 = (f1 * p + q) * p + p - f2 * D - f2 * T * f2 / 2.0;
        const double g = (f2 * p + q) * p;
        const double h = f3 * p;
        const double u1 = p + g - f3 * D - f3 * T * f3 / 2.0;
        const double u2 = g - r + f3 * D - h * f3 / 2.0;
        const double u3 = h + q;
        foot1 = 2.0 * u1 + 4.0 * u3 + 6.0 * u2;
        foot3 = 8.0 * u3 + 32.0 * u2;
        foot5 = 32.0 * u2;
    }
};

struct ZonePlane {
    double X, Y;
};

/// w0: longitude minus central meridian, radians.
inline ZonePlane ZoneForward(const ZoneEllipsoid& z, double B, double w0, const SinCos& at) {
    const double s = at.sin;
    const double c = at.cos;
    const double s2 = s * s;
    const double t = s / c;
    const double t2 = t * t;
    const double eta2 = z.secondEccentricity2 * (c * c);
    const double N = z.a / std::sqrt(1.0 - z.e2 * s2);
    const double w = w0 * c;
    const double w2 = w * w;
    const double w4 = w2 * w2;
    const double arc = z.K0 * B + s * c * (z.arc0 + s2 * (z.arc2 + z.arc4 * s2));
    const double Nt = N * t;
    const double X = arc + Nt * w2 * 0.5 + (5.0 - t2 + 9.0 * eta2 + 4.0 * (eta2 * eta2)) * Nt * w4 * (1.0 / 24) +
                     (61.0 - 58.0 * t2 + t2 * t2) * Nt * (w4 * w2) * (1.0 / 720);
    const double Nw = N * w;
    const double Y = Nw + (1.0 - t2 + eta2) * Nw * w2 * (1.0 / 6) +
                     (5.0 - 18.0 * t2 + t2 * t2 + 14.0 * eta2 - 58.0 * eta2 * t2) * Nw * w4 * (1.0 / 120);
    return {X, Y};
}

/// The footpoint latitude; at: sine and cosine of beta = X / K0.
inline double ZoneFootpoint(const ZoneEllipsoid& z, double beta, const SinCos& at) {
    const double s = at.sin;
    const double s2 = s * s;
    return beta + at.cos * s * (z.foot1 - s2 * (z.foot3 - s2 * z.foot5));
}

struct ZonePosition {
    double B, L;
};

/// L0: central meridian, radians. at: sine and cosine of the footpoint latitude Bf.
inline ZonePosition ZoneBackward(const ZoneEllipsoid& z, double Bf, double Y, double L0, const SinCos& at) {
    const double s = at.sin;
    const double c = at.cos;
    const double overCos = 1.0 / c;
    const double t = s * overCos;
    const double t2 = t * t;
    const double t4 = t2 * t2;
    const double eta2 = z.secondEccentricity2 * (c * c);
    const double V2 = 1.0 + eta2;
    const double u = Y * std::sqrt(1.0 - z.e2 * (s * s)) * z.overA;
    const double u2 = u * u;
    const double u4 = u2 * u2;
    const double Vt = V2 * t;
    const double B = Bf - Vt * u2 * 0.5 + (5.0 + 3.0 * t2 + eta2 - 9.0 * eta2 * t2) * Vt * u4 * (1.0 / 24) -
                     (61.0 + 90.0 * t2 + 45.0 * t4) * Vt * (u4 * u2) * (1.0 / 720);
    const double l = u - (1.0 + 2.0 * t2 + eta2) * (u2 * u) * (1.0 / 6) +
                     (5.0 + 28.0 * t2 + 24.0 * t4 + 6.0 * eta2 + 8.0 * eta2 * t2) * (u4 * u) * (1.0 / 120);
    return {B, L0 + l * overCos};
}

}  // namespace zm::geodesy

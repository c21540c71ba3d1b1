// Sine and cosine together, in a form that compilers vectorise and that gives the same bits in a loop and alone.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace zm::geodesy {

struct SinCos {
    double sin;
    double cos;
};

constexpr double kSinCosRange = 1e5;  // radians; SinCosNear serves angles up to it

/// Both within one last bit, for |x| <= kSinCosRange, without a branch.
///
/// x is reduced by multiples of pi/2, taken in three parts of 33, 33 and 53 bits; the first two products are exact.
/// Polynomials: fdlibm 5.3, k_sin.c and k_cos.c (Sun Microsystems 1993), with the tail of the reduced angle.
inline SinCos SinCosNear(double x) {
    constexpr double kTwoOverPi = 0.63661977236758134308;
    constexpr double kToInteger = 6755399441055744.0;  // 1.5 * 2^52: adding it rounds to an integer in the low bits
    constexpr double kHalfPi1 = 1.57079632673412561417;
    constexpr double kHalfPi2 = 6.07710050630396597660e-11;
    constexpr double kHalfPi3 = 2.02226624879595063154e-21;

    const double shifted = x * kTwoOverPi + kToInteger;
    const double quadrant = shifted - kToInteger;
    const double coarse = x - quadrant * kHalfPi1;
    const double second = quadrant * kHalfPi2;
    const double finer = coarse - second;
    const double third = quadrant * kHalfPi3 - ((coarse - finer) - second);
    const double r = finer - third;
    const double tail = (finer - r) - third;

    const double z = r * r;
    const double v = z * r;
    const double sinPart =
        8.33333333332248946124e-03 +
        z * (-1.98412698298579493134e-04 +
             z * (2.75573137070700676789e-06 + z * (-2.50507602534068634195e-08 + z * 1.58969099521155010221e-10)));
    const double s = r - ((z * (0.5 * tail - v * sinPart) - tail) - v * -1.66666666666666324348e-01);

    const double cosPart = z * (4.16666666666666019037e-02 +
                                z * (-1.38888888888741095749e-03 +
                                     z * (2.48015872894767294178e-05 +
                                          z * (-2.75573143513906633035e-07 +
                                               z * (2.08757232129817482790e-09 + z * -1.13596475577881948265e-11)))));
    const double half = 0.5 * z;
    const double nearOne = 1.0 - half;
    const double c = nearOne + (((1.0 - nearOne) - half) + (z * cosPart - r * tail));

    // Quadrants 1 and 3 exchange the two; 2, 3 negate the sine, 1, 2 the cosine.
    const auto q = std::bit_cast<std::uint64_t>(shifted);
    auto sinBits = std::bit_cast<std::uint64_t>(s);
    auto cosBits = std::bit_cast<std::uint64_t>(c);
    const std::uint64_t exchanged = (sinBits ^ cosBits) & (std::uint64_t{0} - (q & 1));
    sinBits = (sinBits ^ exchanged) ^ ((q & 2) << 62);
    cosBits = (cosBits ^ exchanged) ^ (((q + 1) & 2) << 62);
    return {std::bit_cast<double>(sinBits), std::bit_cast<double>(cosBits)};
}

/// The same for every angle.
inline SinCos SinCosOf(double x) {
    if (std::abs(x) <= kSinCosRange) return SinCosNear(x);
    return {std::sin(x), std::cos(x)};
}

}  // namespace zm::geodesy

#include "geodesy/edge_sum.h"

#include <cmath>

#include "geodesy/numeric.h"
#include "geodesy/sincos.h"

namespace zm::geodesy {
namespace {

// The 80 family by its numbers, and the setting that is widened for it.
constexpr double kA80 = 6378140.0;
constexpr double kA80Near = 0.001;
constexpr double kE80 = 0.0066943849996;
constexpr double kE80Near = 1e-09;
constexpr double kStandardPrecision = 0.00027778;  // degrees
constexpr double kPrecisionNear = 1e-09;
constexpr double kPrecision80 = 0.001;  // degrees

constexpr double kFinestStep = 1e-08;  // radians; a step at or below it makes one piece
constexpr double kFewPieces = 8.0;     // below it the loop is as cheap
constexpr double kWidestPiece = 1.0;   // radians, of nine halves of a piece's latitude, for the closed form
constexpr double kMostLooped = 1e6;    // pieces; more are never looped over
constexpr double kNoRatio = 1e-9;      // radians; below it sin X / (m sin(X / m)) is 1
constexpr double kSmallAngle = 0.5;    // radians; up to it W is summed as a series

// Sines of the odd multiples 1 3 5 7 9 of an angle, by sin (q+2)x = 2 cos 2x sin qx - sin (q-2)x; relative precision
// stays for small angles. The cosines alike.
struct OddSines {
    explicit OddSines(const SinCos& x) {
        const double twice = 2.0 - 4.0 * (x.sin * x.sin);  // 2 cos 2x
        sin[0] = x.sin;
        sin[1] = x.sin * (twice + 1.0);
        for (int i = 2; i < 5; ++i) sin[i] = twice * sin[i - 1] - sin[i - 2];
    }
    double sin[5];
};
struct OddCosines {
    explicit OddCosines(const SinCos& x) {
        const double twice = 2.0 - 4.0 * (x.sin * x.sin);
        cos[0] = x.cos;
        cos[1] = x.cos * (twice - 1.0);
        for (int i = 2; i < 5; ++i) cos[i] = twice * cos[i - 1] - cos[i - 2];
    }
    double cos[5];
};

// W(X) = cos X - sin X cot(X / m) / m, for small X without its cancellation. over: 1 / m.
double SmallW(double X, double sinX, double over) {
    const double X2 = X * X;
    const double y = X * over;
    const double y2 = y * y;
    const double lessSine =  // cos X - sin X / X
        X2 * (-1.0 / 3 + X2 * (1.0 / 30 + X2 * (-1.0 / 840 +
                                                X2 * (1.0 / 45360 + X2 * (-1.0 / 3991680 + X2 * (1.0 / 518918400))))));
    const double lessCotangent =  // 1 / y - cot y
        y * (1.0 / 3 +
             y2 * (1.0 / 45 + y2 * (2.0 / 945 + y2 * (1.0 / 4725 + y2 * (2.0 / 93555 + y2 * (1382.0 / 638512875))))));
    return lessSine + sinX * lessCotangent * over;
}

// Replaces the W of large angles by the formula itself.
void LargeW(double X1, const SinCos& atX, const OddSines& wholeSin, double pieces, double (&W)[5]) {
    const SinCos atPiece = SinCosOf(X1 / pieces);
    const OddCosines wholeCos(atX);
    const OddSines pieceSin(atPiece);
    const OddCosines pieceCos(atPiece);
    for (int i = 0; i < 5; ++i)
        if (!(std::abs((2 * i + 1) * X1) <= kSmallAngle))
            W[i] = wholeCos.cos[i] - wholeSin.sin[i] * (pieceCos.cos[i] / pieceSin.sin[i]) / pieces;
}

}  // namespace

PieceRule PieceRuleOf(double a, double e2, double precision) {
    const bool is80 = std::abs(a - kA80) < kA80Near && std::abs(e2 - kE80) < kE80Near;
    // Required: on the 80 family the standard setting alone is widened; areas on file were computed so.
    if (is80 && std::abs(precision - kStandardPrecision) < kPrecisionNear) precision = kPrecision80;
    return {precision * kPi / 180.0, is80};
}

double PieceCount(const PieceRule& rule, double dB, double dL) {
    if (rule.step <= kFinestStep) return 1.0;
    // Required: on the 80 family the difference in latitude alone decides.
    const double length = rule.byLatitude ? std::abs(dB) : std::sqrt(dL * dL + dB * dB);
    return Split(length / rule.step).whole + 1.0;
}

bool HasClosedForm(double pieces, double dB) {
    if (pieces < kFewPieces) return false;
    return !(std::abs(4.5 * dB / pieces) > kWidestPiece) || pieces > kMostLooped;
}

EquatorSum::EquatorSum(double a, double e2) : m_G(a * a * (1.0 - e2)) {
    const double e4 = e2 * e2;
    const double c3 = 2.0 / 3.0 * e2;
    const double c5 = 3.0 / 5.0 * e4;
    const double c7 = 4.0 / 7.0 * (e4 * e2);
    const double c9 = 5.0 / 9.0 * (e4 * e4);
    m_power[0] = c3;
    m_power[1] = c5;
    m_power[2] = c7;
    m_power[3] = c9;
    m_multiple[0] = 1.0 + 3.0 / 4.0 * c3 + 5.0 / 8.0 * c5 + 35.0 / 64.0 * c7 + 63.0 / 128.0 * c9;
    m_multiple[1] = -(1.0 / 4.0 * c3 + 5.0 / 16.0 * c5 + 21.0 / 64.0 * c7 + 21.0 / 64.0 * c9);
    m_multiple[2] = 1.0 / 16.0 * c5 + 7.0 / 64.0 * c7 + 9.0 / 64.0 * c9;
    m_multiple[3] = -(1.0 / 64.0 * c7 + 9.0 / 256.0 * c9);
    m_multiple[4] = 1.0 / 256.0 * c9;
}

double EquatorSum::F(double s) const {
    const double s2 = s * s;
    return s + s * s2 * (m_power[0] + s2 * (m_power[1] + s2 * (m_power[2] + s2 * m_power[3])));
}

double EquatorSum::Of(const Edge& edge) const {
    if (edge.L1 == edge.L0) return 0.0;
    if (edge.B1 == edge.B0) return F(SinCosOf(edge.B0).sin) * m_G * (edge.L1 - edge.L0);
    return HasClosedForm(edge.pieces, edge.B1 - edge.B0) ? Closed(edge) : Loop(edge);
}

double EquatorSum::Loop(const Edge& edge) const {
    const double d = (edge.B1 - edge.B0) / edge.pieces;
    const double width = (edge.L1 - edge.L0) / edge.pieces;
    const int pieces = Truncated(edge.pieces);
    double sum = 0.0;
    for (int j = 0; j < pieces; ++j) sum += F(SinCosOf(edge.B0 + (j + 0.5) * d).sin) * m_G * width;
    return sum;
}

double EquatorSum::Closed(const Edge& edge) const {
    const double X = (edge.B1 - edge.B0) / 2.0;
    const OddSines middle(SinCosOf((edge.B0 + edge.B1) / 2.0));
    double sum = 0.0;
    if (std::abs(X) < kNoRatio) {
        for (int i = 4; i >= 0; --i) sum += m_multiple[i] * middle.sin[i];
    } else {
        const OddSines whole(SinCosOf(X));
        const OddSines piece(SinCosOf(X / edge.pieces));
        for (int i = 4; i >= 0; --i)
            sum += m_multiple[i] * middle.sin[i] * (whole.sin[i] / (edge.pieces * piece.sin[i]));
    }
    return m_G * (edge.L1 - edge.L0) * sum;
}

MeridianSum::MeridianSum(const double (&multiples)[5], double b) : m_factor(2.0 * (b * b)) {
    for (int i = 0; i < 5; ++i) m_multiple[i] = multiples[i];
}

double MeridianSum::Of(const Edge& edge) const {
    return HasClosedForm(edge.pieces, edge.B1 - edge.B0) ? Closed(edge) : Loop(edge);
}

double MeridianSum::Loop(const Edge& edge) const {
    const double d = (edge.B1 - edge.B0) / edge.pieces;
    const double width = (edge.L1 - edge.L0) / edge.pieces;
    const OddSines half(SinCosOf(d / 2.0));
    const int pieces = Truncated(edge.pieces);
    double sum = 0.0;
    for (int j = 0; j < pieces; ++j) {
        const OddCosines middle(SinCosOf(edge.B0 + (j + 0.5) * d));
        double T = 0.0;
        for (int i = 4; i >= 0; --i) T += m_multiple[i] * half.sin[i] * middle.cos[i];
        sum += T * m_factor * (edge.L0 + (j + 0.5) * width);
    }
    return sum;
}

double MeridianSum::Closed(const Edge& edge) const {
    const double X1 = (edge.B1 - edge.B0) / 2.0;
    const double halfWidth = (edge.L1 - edge.L0) / 2.0;
    const double middleL = (edge.L0 + edge.L1) / 2.0;
    const double over = 1.0 / edge.pieces;
    const SinCos atMiddle = SinCosOf((edge.B0 + edge.B1) / 2.0);
    const SinCos atX = SinCosOf(X1);
    const OddSines middleSin(atMiddle);
    const OddCosines middleCos(atMiddle);
    const OddSines wholeSin(atX);
    double W[5];
    for (int i = 0; i < 5; ++i) W[i] = SmallW((2 * i + 1) * X1, wholeSin.sin[i], over);
    if (!(std::abs(9.0 * X1) <= kSmallAngle)) LargeW(X1, atX, wholeSin, edge.pieces, W);
    double sum = 0.0;
    for (int i = 4; i >= 0; --i)
        sum += m_multiple[i] * (middleL * wholeSin.sin[i] * middleCos.cos[i] + halfWidth * middleSin.sin[i] * W[i]);
    return m_factor * sum;
}

}  // namespace zm::geodesy

// The sums over the pieces of one edge that both ellipsoid areas are made of: as a loop over the pieces, which defines
// them, and in closed form at a constant cost. Derivation: docs/geodesy/area.md.
#pragma once

namespace zm::geodesy {

/// An edge from (B0, L0) to (B1, L1), radians, in pieces equal in B and L.
struct Edge {
    double B0, L0, B1, L1;
    double pieces;  // a whole number of 1 or more, or not-a-number
};

/// How an edge is divided.
struct PieceRule {
    double step;      // radians
    bool byLatitude;  // only the difference in latitude counts (the 80 family), else the length of the edge
};

/// The rule for an ellipsoid by the precision setting in degrees.
PieceRule PieceRuleOf(double a, double e2, double precision);
double PieceCount(const PieceRule& rule, double dB, double dL);

/// Whether the closed form holds: its denominators keep away from their zeros.
bool HasClosedForm(double pieces, double dB);

/// Area between edge and equator: the sum of F(sin B) G dL over the middles of the pieces, with
/// F(s) = s + 2/3 e2 s^3 + 3/5 e2^2 s^5 + 4/7 e2^3 s^7 + 5/9 e2^4 s^9 and G = a^2 (1 - e2).
class EquatorSum {
 public:
    EquatorSum(double a, double e2);
    /// By the better of the two forms, the special cases included: no difference in longitude gives 0, none in
    /// latitude gives F(sin B0) G dL.
    double Of(const Edge& edge) const;
    double Loop(const Edge& edge) const;
    double Closed(const Edge& edge) const;

 private:
    double F(double s) const;

    double m_G;
    double m_power[4];     // of s^3 s^5 s^7 s^9 in F
    double m_multiple[5];  // of sin t, sin 3t ... sin 9t in F(sin t)
};

/// Area between edge and central meridian: the sum of 2 b^2 T(d, B) L over the middles of the pieces, with
/// T(d, B) = sum of k_q sin(q d / 2) cos(q B) for q = 1 3 5 7 9, d the pieces' difference in latitude.
class MeridianSum {
 public:
    MeridianSum(const double (&multiples)[5], double b);
    double Of(const Edge& edge) const;
    double Loop(const Edge& edge) const;
    double Closed(const Edge& edge) const;

 private:
    double m_multiple[5];
    double m_factor;  // 2 b^2
};

}  // namespace zm::geodesy

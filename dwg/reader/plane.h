// Planes of entities: where a point of a record lies in the drawing, and inserts within inserts.
#pragma once

#include <cmath>

#include "dwg/reader/record.h"

namespace zm::dwg::reader {

/// The axes of the plane that an extrusion direction is on; those of the drawing for (0, 0, 1).
struct Axes {
    Point x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};

    Point ToWorld(const Point& p) const {
        return {x.x * p.x + y.x * p.y + z.x * p.z, x.y * p.x + y.y * p.y + z.y * p.z,
                x.z * p.x + y.z * p.y + z.z * p.z};
    }
    Point FromWorld(const Point& p) const {
        return {x.x * p.x + x.y * p.y + x.z * p.z, y.x * p.x + y.y * p.y + y.z * p.z,
                z.x * p.x + z.y * p.y + z.z * p.z};
    }
};

/// The axes of a record: by its extrusion, if it has one.
/// Source: the arbitrary axis algorithm of the DXF reference.
inline Axes AxesOf(const Record& record) {
    const Field* nx = record.Find("ext_x");
    if (nx == nullptr) return {};
    Point n{nx->number, record.Number("ext_y", 0.0), record.Number("ext_z", 1.0)};
    const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
    if (!(length > 0.0) || !std::isfinite(length)) return {};
    n = {n.x / length, n.y / length, n.z / length};
    constexpr double kNearZ = 1.0 / 64.0;
    Axes axes;
    axes.z = n;
    Point a = std::abs(n.x) < kNearZ && std::abs(n.y) < kNearZ ? Point{n.z, 0.0, -n.x} : Point{-n.y, n.x, 0.0};
    const double side = std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z);
    axes.x = {a.x / side, a.y / side, a.z / side};
    axes.y = {n.y * axes.x.z - n.z * axes.x.y, n.z * axes.x.x - n.x * axes.x.z, n.x * axes.x.y - n.y * axes.x.x};
    return axes;
}

/// Seen from above: x' = a x + c y + e, y' = b x + d y + f.
struct Placement {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    Point Apply(const Point& p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f, p.z}; }
    double Scale() const { return std::sqrt(std::abs(a * d - b * c)); }
    double Angle() const { return std::atan2(b, a); }
    /// This after inner.
    Placement Of(const Placement& inner) const {
        return {a * inner.a + c * inner.b, b * inner.a + d * inner.b,     a * inner.c + c * inner.d,
                b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    /// This after a turn into the plane of these axes.
    Placement Of(const Axes& axes) const { return Of(Placement{axes.x.x, axes.x.y, axes.y.x, axes.y.y, 0.0, 0.0}); }
};

/// The placement of an insert's block: scale, turn, place, and the block's base point.
inline Placement PlacementOf(const Record& insert, const Point& base, double columnShift, double rowShift) {
    const double sx = insert.Number("scale_x", 1.0), sy = insert.Number("scale_y", 1.0);
    const double turn = insert.Number("rotation", 0.0), cosine = std::cos(turn), sine = std::sin(turn);
    Placement p{sx * cosine, sx * sine, -sy * sine, sy * cosine, 0.0, 0.0};
    const Point moved = p.Apply(base);
    const Point at = insert.points.empty() ? Point{} : insert.points.front();
    p.e = at.x - moved.x + columnShift * cosine - rowShift * sine;
    p.f = at.y - moved.y + columnShift * sine + rowShift * cosine;
    return p;
}

}  // namespace zm::dwg::reader

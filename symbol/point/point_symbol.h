// The placing of graphic symbols, for what knows more of their angle than the number or places many.
#pragma once

#include "draw/stroke/stream.h"
#include "geometry/exact/turn.h"
#include "symbol/paper.h"
#include "zenromath/symbol.h"

namespace zm::symbol {

/// The points of a symbol on the ground, turned and scaled about its place.
class SymbolFigure {
 public:
    SymbolFigure(double x, double y, geometry::Turn& turn)
        : m_place{x, y},
          m_scale(ScaleDenominator()),
          m_turned(!turn.IsBelow(kNoRotation)),
          m_figure(turn, x, y, m_scale) {}

    double scale() const { return m_scale; }
    /// Whether its points may be had from Exact, which saves asking for each how the figure is turned.
    bool IsExact() const { return !m_turned || m_figure.IsExact(); }
    geometry::ExactFigure Exact() {
        return m_turned ? m_figure.Exact() : geometry::ExactFigure(m_place, geometry::Pair{1.0, 0.0}, m_scale);
    }
    geometry::Pair At(const SYMBODY::Point& p) {
        const double px = p.x;
        const double py = p.y;
        return m_turned ? m_figure.Of(px, py) : m_place + geometry::Pair{px, py} * m_scale;
    }

 private:
    static constexpr double kNoRotation = 1e-6;  // radians

    geometry::Pair m_place;
    double m_scale;
    bool m_turned;
    geometry::TurnedFigure m_figure;
};

constexpr double kDotPixels = 1.5;  // a symbol smaller than this is a dot on a device

/// insert with the angle as a turn, which may become exact. Strokes go to the stream, which is flushed ahead of whatever
/// else draws or shows something; the caller flushes the last ones.
int PlaceSymbol(draw::StrokeStream& stream, double x, double y, geometry::Turn& turn, int code);

}  // namespace zm::symbol

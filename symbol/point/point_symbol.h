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
        : m_scale(ScaleDenominator()),
          m_turned(!turn.IsBelow(kNoRotation)),
          m_figure(turn, x, y, m_scale),
          m_isExact(!m_turned || m_figure.IsExact()),
          m_exact(m_turned && m_isExact
                      ? m_figure.Exact()
                      : geometry::ExactFigure(geometry::Pair{x, y}, geometry::Pair{1.0, 0.0}, m_scale)) {}

    double scale() const { return m_scale; }

    geometry::Pair At(const SYMBODY::Point& p) {
        const geometry::Pair onPaper = {double{p.x}, double{p.y}};
        if (!m_turned) return m_exact.Unturned(onPaper);
        return m_isExact ? m_exact.Of(onPaper) : m_figure.Of(onPaper[0], onPaper[1]);
    }
    /// Gives the points that At gives, but for the sign of a zero and for infinite numbers. Null where the turn is
    /// that of a leg, for whose points no bearing is taken.
    const geometry::ExactFigure* Exact() const { return m_isExact ? &m_exact : nullptr; }

 private:
    static constexpr double kNoRotation = 1e-6;  // radians

    double m_scale;
    bool m_turned;
    geometry::TurnedFigure m_figure;
    bool m_isExact;
    geometry::ExactFigure m_exact;
};

constexpr double kDotPixels = 1.5;  // a symbol smaller than this is a dot on a device

/// insert with the angle as a turn, which may become exact. Strokes go to the stream, which is flushed ahead of whatever
/// else draws or shows something; the caller flushes the last ones.
int PlaceSymbol(draw::StrokeStream& stream, double x, double y, geometry::Turn& turn, int code);

}  // namespace zm::symbol

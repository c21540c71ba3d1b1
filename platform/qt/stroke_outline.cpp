#include "platform/qt/stroke_outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zm::qt {
namespace {

constexpr double kFlatness = 0.06;                   // pixels between a curve and its chords
constexpr double kMostPieces = 4096.0;               // of an arc
constexpr double kSquareMitre = 0.9659258262890683;  // cosine of half of 30 degrees
constexpr double kLeastTurned = -0.99;               // cosine of 172 degrees: nearly back

QPointF Along(const QPointF& across) {
    return QPointF(across.y(), -across.x());
}

// The pieces of an arc of a radius in pixels.
int PiecesOf(double angle, double radius) {
    const double step = 2.0 * std::acos(1.0 - std::min(0.5, kFlatness / radius));
    return static_cast<int>(std::clamp(std::ceil(angle / step), 2.0, kMostPieces));
}

// One ring after the other: the right side of a stroke, its end, the left side back, its beginning. Every ring goes
// back to the first point of all, so that the ways between them cancel.
class Rings {
 public:
    Rings(const OutlinePen& pen, std::size_t points, std::vector<QPointF>& outline)
        : m_pen(pen), m_half(pen.half), m_outline(outline) {
        m_outline.clear();
        m_left.reserve(points + 1);
    }
    bool open() const { return !m_left.empty(); }

    /// To the right of a piece of this length and direction, as long as half the width.
    QPointF Across(const QPointF& along, double length) const {
        return QPointF(-along.y(), along.x()) * (m_half / length);
    }
    /// Goes on with another piece. False where the joint turns so far, between pieces so short, that the inner side
    /// would cross itself.
    bool Joint(const QPointF& at, const QPointF& before, const QPointF& after, double shorter) {
        const double cosine = QPointF::dotProduct(before, after) / (m_half * m_half);  // of the turn
        const QPointF sum = before + after;
        // The inner corner lies half the width times the tangent of half the turn before the joint. Where that is farther
        // than the pieces are long, as in bends narrower than the stroke, the inner side would go round the wrong way.
        if (cosine < kLeastTurned || m_half * std::sqrt((1.0 - cosine) / (1.0 + cosine)) > shorter / 2.0) return false;
        if (1.0 + cosine > 2.0 * m_pen.leastCosine * m_pen.leastCosine) {
            Side(at, sum * (2.0 * m_half * m_half / QPointF::dotProduct(sum, sum)));
            return true;
        }
        if (!m_pen.round) return false;
        const bool toTheRight = before.x() * after.y() > before.y() * after.x();
        std::vector<QPointF>& inner = toTheRight ? m_outline : m_left;
        std::vector<QPointF>& outer = toTheRight ? m_left : m_outline;
        const double way = toTheRight ? -1.0 : 1.0;
        inner.push_back(at - sum * (way * 2.0 * m_half * m_half / QPointF::dotProduct(sum, sum)));
        const double turn = std::acos(cosine);
        const int pieces = PiecesOf(turn, m_half * m_pen.zoom);
        for (int i = 0; i <= pieces; ++i) {
            const double rest = turn * (pieces - i) / pieces, gone = turn * i / pieces;
            outer.push_back(at + (before * std::sin(rest) + after * std::sin(gone)) * (way / std::sin(turn)));
        }
        return true;
    }
    void Side(const QPointF& at, const QPointF& across) {
        m_outline.push_back(at + across);
        m_left.push_back(at - across);
    }
    void Begin(const QPointF& at, const QPointF& across) {
        m_begin = m_outline.size();
        m_from = at;
        m_fromAcross = across;
        Side(at, across);
    }
    void End(const QPointF& at, const QPointF& across) {
        Side(at, across);
        Cap(at, across);
        m_outline.insert(m_outline.end(), m_left.rbegin(), m_left.rend());
        Cap(m_from, -m_fromAcross);
        Close();
    }
    /// The end of what is closed in itself, its first joint the last one too: two rings, the inner one the other way.
    void EndWhole() {
        m_outline.push_back(QPointF(m_outline.front()));
        m_left.push_back(QPointF(m_left.front()));
        m_outline.insert(m_outline.end(), m_left.rbegin(), m_left.rend());
        Close();
    }

 private:
    void Cap(const QPointF& at, const QPointF& across) {
        for (const QPointF& turn : m_pen.cap) m_outline.push_back(at + across * turn.x() + Along(across) * turn.y());
    }
    void Close() {
        m_outline.push_back(QPointF(m_outline[m_begin]));
        if (m_begin > 0) m_outline.push_back(QPointF(m_outline[0]));
        m_left.clear();
    }

    const OutlinePen& m_pen;
    double m_half;
    std::vector<QPointF>& m_outline;
    std::vector<QPointF> m_left;
    std::size_t m_begin = 0;  // of the ring
    QPointF m_from, m_fromAcross;
};

struct Piece {
    QPointF from, across;
    double length;
};

// A chain that ends where it begins. False, with nothing, where a joint turns too far to be gone round.
bool OutlineRing(const OutlinePen& pen, const std::vector<QPointF>& chain, std::vector<QPointF>& outline) {
    Rings rings(pen, chain.size(), outline);
    std::vector<Piece> pieces;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const QPointF along = chain[i] - chain[i - 1];
        if (along.isNull()) continue;
        const double length = std::sqrt(QPointF::dotProduct(along, along));
        pieces.push_back({chain[i - 1], rings.Across(along, length), length});
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& before = pieces[i > 0 ? i - 1 : pieces.size() - 1];
        const Piece& after = pieces[i];
        if (rings.Joint(after.from, before.across, after.across, std::min(before.length, after.length))) continue;
        outline.clear();
        return false;
    }
    if (!pieces.empty()) rings.EndWhole();
    return !pieces.empty();
}

}  // namespace

// A mitre is longer than the half width by what it may differ from a round joint.
OutlinePen::OutlinePen(double width, double zoomOfImage, bool isRound)
    : half(width / 2.0),
      zoom(zoomOfImage),
      round(isRound),
      leastCosine(round ? 1.0 / (1.0 + kFlatness / (half * zoom)) : kSquareMitre),
      cap{{1.0, 1.0}, {-1.0, 1.0}} {
    if (!round) return;
    cap.clear();
    const int pieces = PiecesOf(std::numbers::pi, half * zoom);
    for (int i = 1; i < pieces; ++i)
        cap.emplace_back(std::cos(std::numbers::pi * i / pieces), std::sin(std::numbers::pi * i / pieces));
}

void OutlineChain(const OutlinePen& pen, const std::vector<QPointF>& chain, std::vector<QPointF>& outline) {
    outline.clear();
    if (chain.size() < 2 || (chain.front() == chain.back() && OutlineRing(pen, chain, outline))) return;
    Rings rings(pen, chain.size(), outline);
    const QPointF* at = chain.data();
    QPointF before;
    double lengthBefore = 0.0;
    for (const QPointF& next : chain) {
        if (next == *at) continue;
        const QPointF along = next - *at;
        const double length = std::sqrt(QPointF::dotProduct(along, along));
        const QPointF across = rings.Across(along, length);
        if (!rings.open() || !rings.Joint(*at, before, across, std::min(length, lengthBefore))) {
            if (rings.open()) rings.End(*at, before);
            rings.Begin(*at, across);
        }
        at = &next;
        before = across;
        lengthBefore = length;
    }
    if (rings.open()) rings.End(*at, before);
}

void OutlineArc(const OutlinePen& pen, const platform::ArcFigure& arc, double shift, std::vector<QPointF>& outline) {
    outline.clear();
    const double large = std::max(arc.rx, arc.ry), small = std::min(arc.rx, arc.ry);
    if (!(small * small > 2.0 * pen.half * large)) return;  // the radius of the sharpest bend of an ellipse
    const int pieces = PiecesOf(arc.sweep, (large + pen.half) * pen.zoom);
    Rings rings(pen, static_cast<std::size_t>(pieces) + 1, outline);
    const bool whole = arc.sweep >= 2.0 * std::numbers::pi;
    // From point to point by one turn; over 4096 of them the error stays below 1e-12.
    const double turnCosine = std::cos(arc.sweep / pieces), turnSine = std::sin(arc.sweep / pieces);
    double cosine = std::cos(arc.start), sine = std::sin(arc.start);
    for (int i = 0; i < (whole ? pieces : pieces + 1); ++i) {
        const QPointF at(arc.cx + arc.rx * cosine + shift, arc.cy - arc.ry * sine + shift);
        // The way is counter-clockwise where y is down, so its right side is the outer one.
        QPointF across(arc.ry * cosine, -arc.rx * sine);
        across *= pen.half / std::sqrt(QPointF::dotProduct(across, across));
        if (i == 0 && !whole)
            rings.Begin(at, across);
        else if (i < pieces)
            rings.Side(at, across);
        else
            rings.End(at, across);
        const double turned = cosine * turnCosine - sine * turnSine;
        sine = sine * turnCosine + cosine * turnSine;
        cosine = turned;
    }
    if (whole) rings.EndWhole();
}

}  // namespace zm::qt

#include "symbol/line/pen_run.h"

#include <cmath>

#include "symbol/paper.h"

namespace zm::symbol {
namespace {

constexpr double kNoWidth = 1e-5;  // survey metres
constexpr double kLeastSegment = 0.0001;
constexpr double kLeastPixels = 1.0;  // on a device a narrower companion is not drawn

// One companion line: offset segments come in order, strokes go out with mitred corners.
class Companion {
 public:
    explicit Companion(draw::StrokeStream& stream) : m_stream(stream) {}

    void Add(const Point& a, const Point& b, bool last) {
        if (m_begun) {
            Point corner = m_previousEnd;
            // Required: also a meeting point beyond the ends is taken; only parallel segments keep the end.
            Point meeting;
            if (Cross_P(meeting.x, meeting.y, m_previousStart.x, m_previousStart.y, m_previousEnd.x, m_previousEnd.y,
                        a.x, a.y, b.x, b.y) >= 0)
                corner = meeting;
            Stroke(m_start, corner);
            m_start = corner;
        } else {
            m_start = a;
            m_begun = true;
        }
        m_previousStart = a;
        m_previousEnd = b;
        if (last) Stroke(m_start, b);
    }

 private:
    void Stroke(const Point& a, const Point& b) { m_stream.Line(geometry::Pair{a.x, a.y}, geometry::Pair{b.x, b.y}); }

    draw::StrokeStream& m_stream;
    bool m_begun = false;
    Point m_start;  // of the stroke not drawn yet
    Point m_previousStart;
    Point m_previousEnd;
};

}  // namespace

void DrawCompanions(const PenRun& run, draw::StrokeStream& stream) {
    if (run.width < kNoWidth) return;
    const double h = run.side == 1 ? run.width / 2.0 : run.width;
    const CTqDraw* context = draw::WorkingContext();
    if (context == nullptr || (context->GetTqDCType() != kDwg && context->GetPixelsByRealen(h) < kLeastPixels)) return;
    const auto vertex = [&](int i) { return Point{run.Vertex(i)[0], run.Vertex(i)[1]}; };
    Companion right(stream);
    Companion left(stream);
    for (int i = run.from; i <= run.to; ++i) {
        const Point a = vertex(i);
        const Point b = vertex(i + 1);
        const double length = Distance(a, b);
        // Required: a segment this short is passed over, also the last, whose closing stroke is then not drawn.
        if (length < kLeastSegment) continue;
        const double dx = (b.x - a.x) / length * h;
        const double dy = (b.y - a.y) / length * h;
        if (run.side != 2) right.Add({a.x + dy, a.y - dx}, {b.x + dy, b.y - dx}, i == run.to);
        if (run.side != 0) left.Add({a.x - dy, a.y + dx}, {b.x - dy, b.y + dx}, i == run.to);
    }
}

}  // namespace zm::symbol

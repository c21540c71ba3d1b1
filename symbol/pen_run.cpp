// Pen-down stretches of dash patterns, with their companion lines.
#include <cmath>

#include "symbol/line_class.h"
#include "symbol/paper.h"

namespace zm::symbol {
namespace {

constexpr double kLeastWidth = 1e-5;  // survey metres
constexpr double kLeastSegment = 0.0001;
constexpr double kLeastPixels = 1.0;  // on a device a narrower companion is not drawn

// One companion line: offset segments come in order, strokes go out with mitred corners.
class Companion {
 public:
    void Add(const Point& a, const Point& b, bool last) {
        if (m_begun) {
            Point corner = m_previousEnd;
            // Required: also a meeting point beyond the ends is taken; only parallel segments keep the end.
            Point meeting;
            if (Cross_P(meeting.x, meeting.y, m_previousStart.x, m_previousStart.y, m_previousEnd.x, m_previousEnd.y,
                        a.x, a.y, b.x, b.y) >= 0)
                corner = meeting;
            Line(m_start, corner);
            m_start = corner;
        } else {
            m_start = a;
            m_begun = true;
        }
        m_previousStart = a;
        m_previousEnd = b;
        if (last) Line(m_start, b);
    }

 private:
    bool m_begun = false;
    Point m_start;  // of the stroke not drawn yet
    Point m_previousStart;
    Point m_previousEnd;
};

}  // namespace

void DrawPenRun(const double* x, const double* y, double endX, double endY, double width, int side, int from, int to) {
    const auto end = [&](int i) { return i < to ? Point{x[i + 1], y[i + 1]} : Point{endX, endY}; };
    for (int i = from; i <= to; ++i) Line({x[i], y[i]}, end(i));
    if (side < 0 || side > 2 || width < kLeastWidth) return;
    const double h = side == 1 ? width / 2.0 : width;
    if (!OnDwg() && TqDC->GetPixelsByRealen(h) < kLeastPixels) return;
    Companion right;
    Companion left;
    for (int i = from; i <= to; ++i) {
        const Point a = {x[i], y[i]};
        const Point b = end(i);
        const double length = Distance(a, b);
        // Required: a segment this short is passed over, also the last, whose closing stroke is then not drawn.
        if (length < kLeastSegment) continue;
        const double dx = (b.x - a.x) / length * h;
        const double dy = (b.y - a.y) / length * h;
        if (side != 2) right.Add({a.x + dy, a.y - dx}, {b.x + dy, b.y - dx}, i == to);
        if (side != 0) left.Add({a.x - dy, a.y + dx}, {b.x - dy, b.y + dx}, i == to);
    }
}

}  // namespace zm::symbol

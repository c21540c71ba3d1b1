#include "draw/strokes.h"

namespace zm::draw {

void StrokeRow::PutOut() {
    const int count = m_count;
    m_count = 0;
    device::DrawLines(Access::Device(*m_context), m_ends, count);
}

// What is not gathered: the first stroke on a context, those out of the view, and all on what is no plain device.
void StrokeRow::LineElsewhere(geometry::Pair from, geometry::Pair to) {
    if (m_context != nullptr) Flush();
    CTqDraw* context = WorkingContext();
    if (context == nullptr) return;
    if (IsPlainDevice(*context)) {
        Open(*context);
        if (m_view.Map(from, to, next())) {
            Take(1);
            return;
        }
        Flush();
    } else {
        m_other = context;
    }
    context->line(from[0], from[1], to[0], to[1]);
}

void DrawStrokes(const double* ends, int count) {
    StrokeRow row;
    for (const double* end = ends + 4 * static_cast<std::ptrdiff_t>(count); ends != end; ends += 4)
        row.Line(geometry::Pair{ends[0], ends[1]}, geometry::Pair{ends[2], ends[3]});
    row.Flush();
}

}  // namespace zm::draw

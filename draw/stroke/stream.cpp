#include "draw/stroke/stream.h"

#include "draw/device.h"
#include "draw/stroke/sinks.h"

namespace zm::draw {

bool StrokeStream::Open() {
    m_context = m_given != nullptr ? m_given : WorkingContext();
    if (m_context == nullptr) return false;
    m_rotation = Access::IsRotated(*m_context) ? Rotation(*m_context) : Rotation();
    m_box = SinkOf(Access::Type(*m_context)) == Sink::device ? ViewBox(*m_context) : ViewBox();
    return true;
}

void StrokeStream::PutOut() {
    const int count = m_count;
    m_count = 0;
    AddToSum(device::DrawLines(Access::Device(*m_context), m_ends, count));
}

// A stroke that one of the clips may touch, and every stroke that no device takes.
void StrokeStream::LineOutside(geometry::Pair from, geometry::Pair to) {
    uses::Count(uses::strokeOutside);
    if (!Access::IsUnclipped(*m_context)) {
        double x1 = from[0], y1 = from[1], x2 = to[0], y2 = to[1];
        if (m_context->cutline(x1, y1, x2, y2) == 0) return;
        from = geometry::Pair{x1, y1};
        to = geometry::Pair{x2, y2};
    }
    switch (SinkOf(Access::Type(*m_context))) {
        case Sink::device:
            if (sink::device::MapLine(*m_context, from, to, next())) ++m_count;
            return;
        case Sink::dwg:
            AddToSum(sink::dwg::Line(from[0], from[1], to[0], to[1]));
            break;
        case Sink::record:
            AddToSum(sink::record::Line(*m_context, from[0], from[1], to[0], to[1]));
            break;
    }
    Forget();  // a message may have let the application in
}

}  // namespace zm::draw

// The primitives in survey coordinates: rotate, clip, then one switch on the sink.
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>

#include "draw/numbers.h"
#include "draw/state.h"
#include "draw/stroke/sinks.h"
#include "draw/stroke/stream.h"
#include "dwg/writer/writer.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

using namespace zm::draw;
using zm::geometry::Pair;

namespace {

constexpr double kLeastArcPixels = 2.0;  // a smaller radius is a dot on a device
constexpr double kSameAngle = 1e-6;      // radians; an arc that ends before this much after its start is a turn longer
constexpr int kArcEntries = 8;           // of cutarc: four pieces

struct Segment {
    double x1, y1, x2, y2;
};

Segment SegmentAt(const double* points, int i) {
    const double* p = points + 2 * static_cast<std::ptrdiff_t>(i);
    return {p[-2], p[-1], p[0], p[1]};
}

void PutSegment(double* points, int i, const Segment& s) {
    double* p = points + 2 * static_cast<std::ptrdiff_t>(i);
    p[-2] = s.x1;
    p[-1] = s.y1;
    p[0] = s.x2;
    p[1] = s.y2;
}

// Gathers maximal inside runs of a line into polylines for the DWG writer; the number of points written.
//
// Required: it works on the caller's array, applies no rotation, and a clip point where the line enters the area stays
// in the array.
int WriteRuns(CTqDraw& dc, int n, double* xy) {
    constexpr int kNone = -1;
    const auto write = [xy](int from, int to) {
        _LDBpolyline(xy + 2 * static_cast<std::ptrdiff_t>(from), to - from + 1);
        return to - from + 1;
    };
    int inside = dc.cutpoint(xy[0], xy[1]);
    int now = inside;
    int start = inside != 0 ? 0 : kNone;
    int count = 0;
    for (int i = 1; i < n; ++i) {
        now = dc.cutpoint(xy[2 * static_cast<std::ptrdiff_t>(i)], xy[2 * static_cast<std::ptrdiff_t>(i) + 1]);
        // Required: raw values are compared, so a vertex on the boundary of a polygon (-1) counts as a crossing.
        if (now != inside) {
            const Segment saved = SegmentAt(xy, i);
            Segment cut = saved;
            inside = now;
            dc.cutline(cut.x1, cut.y1, cut.x2, cut.y2);
            PutSegment(xy, i, cut);
            if (start != kNone) {
                count += write(start, i);
                PutSegment(xy, i, saved);
                start = kNone;
            } else {
                start = i - 1;
            }
        } else if (now == 0) {
            Segment cut = SegmentAt(xy, i);
            if (dc.cutline(cut.x1, cut.y1, cut.x2, cut.y2) != 0) {
                sink::dwg::Line(cut.x1, cut.y1, cut.x2, cut.y2);
                count += 2;
                start = kNone;
            }
        }
    }
    // Required: a last vertex on the boundary (-1) closes no run.
    if (now > 0 && start != kNone) count += write(start, n - 1);
    return count;
}

// One stroke from each point to the next; the sum of their results.
template <class At>
int DrawBetween(CTqDraw& dc, int n, At at) {
    StrokeStream stream(dc);
    for (int i = 1; i < n; ++i) stream.Line(at(i - 1), at(i));
    stream.Flush();
    return stream.sum();
}

// The same as one polyline of a recording.
template <class At>
int DrawLines(CTqDraw& dc, int n, At at) {
    const bool recorded = SinkOf(dc.GetTqDCType()) == Sink::record;
    if (recorded) sink::record::PolylineStart(dc);
    const int sum = DrawBetween(dc, n, at);
    if (recorded) sink::record::PolylineEnd(dc);
    return sum;
}

}  // namespace

int CTqDraw::line(double x1, double y1, double x2, double y2) {
    StrokeStream stream(*this);
    stream.Line(Pair{x1, y1}, Pair{x2, y2});
    stream.Flush();
    return stream.sum();
}

int CTqDraw::lines(int n, double* xy) {
    if (n < 2 || xy == nullptr) return 0;
    if (SinkOf(m_type) == Sink::dwg) return WriteRuns(*this, n, xy);
    return DrawLines(*this, n, [xy](std::ptrdiff_t i) { return Pair{xy[2 * i], xy[2 * i + 1]}; });
}

int CTqDraw::lines(int n, double* x, double* y) {
    if (n < 2 || x == nullptr || y == nullptr) return 0;
    const auto at = [x, y](std::ptrdiff_t i) { return Pair{x[i], y[i]}; };
    if (SinkOf(m_type) != Sink::dwg) return DrawLines(*this, n, at);
    const auto count = static_cast<std::size_t>(n);
    const std::unique_ptr<double[]> xy(new (std::nothrow) double[2 * count]);  // clip points are written into it
    if (xy == nullptr) return DrawBetween(*this, n, at);
    for (std::size_t i = 0; i < count; ++i) {
        xy[2 * i] = x[i];
        xy[2 * i + 1] = y[i];
    }
    return WriteRuns(*this, n, xy.get());
}

DWORD CTqDraw::pixel(double x, double y, DWORD colour, int size) {
    GetRMCoord(x, y);
    if (cutpoint(x, y) == 0) return colour;
    switch (SinkOf(m_type)) {
        case Sink::dwg:
            sink::dwg::Point(x, y);
            return colour;
        case Sink::record:
            sink::record::Point(*this, x, y, colour);
            return colour;
        case Sink::device:
            break;
    }
    return sink::device::Point(*this, x, y, colour, size);
}

int CTqDraw::drawarc(double cx, double cy, double r, double a0, double a1) {
    const Sink sink = SinkOf(m_type);
    if (sink == Sink::device && r * m_scale < kLeastArcPixels) return static_cast<int>(pixel(cx, cy, 0, 1));
    if (m_rotateActive != 0) {
        GetRMCoord(cx, cy);
        a0 += m_rotateAngleRM / kDegreesPerRadian;
        a1 += m_rotateAngleRM / kDegreesPerRadian;
    }
    if (a0 + kSameAngle >= a1) a1 += kFullTurn;
    double angles[kArcEntries] = {a0, a1};
    const int pieces = cutarc(cx, cy, r, angles) / 2;
    if (pieces < 1) return 0;
    for (int i = 0; i < pieces; ++i) {
        const double start = angles[2 * i];
        const double end = angles[2 * i + 1];
        switch (sink) {
            case Sink::dwg:
                sink::dwg::Arc(cx, cy, r, start, end);
                break;
            case Sink::record:
                sink::record::Arc(*this, cx, cy, r, start, end);
                break;
            case Sink::device:
                sink::device::Arc(*this, cx, cy, r, start, end);
                break;
        }
    }
    return 1;
}

int CTqDraw::drawarc(double l, double t, double r, double b, double xs, double ys, double xe, double ye) {
    const double cx = (l + r) / 2.0;
    const double cy = (t + b) / 2.0;
    double startRadius = 0.0;
    double endRadius = 0.0;
    double start = 0.0;
    double end = 0.0;
    if (rtop(xs - cx, ys - cy, startRadius, start) == 0 || rtop(xe - cx, ye - cy, endRadius, end) == 0) return 0;
    return drawarc(cx, cy, (startRadius + endRadius) / 2.0, start, end);
}

int CTqDraw::drawrect(double x1, double y1, double x2, double y2) {
    line(x1, y1, x2, y1);
    line(x2, y1, x2, y2);
    line(x2, y2, x1, y2);
    return line(x1, y2, x1, y1);
}

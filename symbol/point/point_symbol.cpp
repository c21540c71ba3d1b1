// Placing of graphic symbols: the walk through the records of a body and the drawing of each.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "draw/state.h"
#include "draw/stroke/stream.h"
#include "dwg/writer/writer.h"
#include "runtime/text/numbers.h"
#include "symbol/paper.h"
#include "symbol/point/block_names.h"
#include "symbol/point/point_symbol.h"
#include "symbol/scratch.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr int kPolylinePoints = 4000;  // of one arc polyline
constexpr double kDegreesPerRadian = 180.0 / kPi;

geometry::Pair OnPaper(const SYMBODY& record) {
    geometry::FloatPair point;
    static_assert(sizeof(point) == sizeof(record.point));
    std::memcpy(&point, &record.point, sizeof(point));
    return __builtin_convertvector(point, geometry::Pair);
}

// One symbol at one place.
class Placement {
 public:
    Placement(draw::StrokeStream& stream, double x, double y, geometry::Turn& turn, const Body& body, int code)
        : m_stream(stream), m_figure(x, y, turn), m_body(body), m_code(code) {}

    /// Whether there is a view in which segments may be gathered.
    bool GathersSegments() const { return m_figure.Exact() != nullptr && m_stream.Box() != nullptr; }

    /// Gathers the plain segments that follow each other from a record on, as far as they lie in the view, and counts
    /// them off; the record after them. Nothing is drawn meanwhile.
    int GatherSegments(int record, int& left) const {
        const draw::ViewBox* box = m_stream.Box();
        if (box == nullptr) return record;
        const geometry::ExactFigure figure = *m_figure.Exact();
        const int most = std::min({left, (m_body.size - record) / kSegmentRecords, m_stream.room()});
        const SYMBODY* at = m_body.records + record;
        POINT* ends = m_stream.next();
        int count = 0;
        for (; count < most && IsPlainSegment(at); ++count, at += kSegmentRecords, ends += 2)
            if (!box->Map(figure.Of(OnPaper(at[1])), figure.Of(OnPaper(at[2])), ends)) break;
        uses::Count(uses::segmentGathered, static_cast<std::uint64_t>(count));
        m_stream.Take(count);
        left -= count;
        return record + count * kSegmentRecords;
    }

    void Draw(int record) const {
        switch (Truncated(m_body.records[record].op.op)) {
            case 1:
                DrawSymbolSegment(record + 1);
                break;
            case 2:
                DrawSymbolPolyline(record + 1);
                break;
            case 3:
                DrawSymbolCircle(record + 1, m_body.records[record].op.aux);
                break;
            case 4:
                DrawSymbolArc(record + 1);
                break;
            case 5:
                DrawSymbolDot(record + 1);
                break;
            default:
                break;
        }
    }

 private:
    // A record at the end of a cut body has fewer points than its operator takes: it draws nothing.
    bool Has(int index, int points) const { return index + points <= m_body.size; }
    bool EndsAt(int index) const { return index >= m_body.size || IsTerminator(m_body.records[index]); }
    bool IsMarker(int index) const { return std::fabs(m_body.records[index].point.x - double{kArcMarker}) < 1e-5; }

    // For what is no stroke, after the strokes gathered; null where the application took the context away meanwhile.
    CTqDraw* Context() const {
        m_stream.Flush();
        return draw::WorkingContext();
    }

    geometry::Pair PairAt(int index) const { return m_figure.At(m_body.records[index].point); }
    Point SymbolPoint(int index) const {
        const geometry::Pair at = PairAt(index);
        return {at[0], at[1]};
    }

    // Required: with one stored point the terminator is taken as the second, a stroke to (-100, -100) on the paper.
    void DrawSymbolSegment(int index) const {
        if (Has(index, 2)) m_stream.Line(PairAt(index), PairAt(index + 1));
    }

    void DrawSymbolPolyline(int index) const;
    int AppendArcs(int index, double* xy) const;

    void DrawSymbolCircle(int index, float radius) const {
        if (!Has(index, 1)) return;
        const Point centre = SymbolPoint(index);
        if (CTqDraw* context = Context()) context->drawarc(centre.x, centre.y, radius * m_figure.scale(), 0.0, 0.0);
    }

    void DrawSymbolArc(int index) const {
        if (!Has(index, 3)) return;
        const Point centre = SymbolPoint(index);
        const Polar start = PolarOf(centre, SymbolPoint(index + 1));
        const Polar end = PolarOf(centre, SymbolPoint(index + 2));
        if (CTqDraw* context = Context())
            context->drawarc(centre.x, centre.y, start.distance, start.bearing, end.bearing);
    }

    void DrawSymbolDot(int index) const {
        if (!Has(index, 1)) return;
        const Point at = SymbolPoint(index);
        if (CTqDraw* context = Context()) context->pixel(at.x, at.y, 0, 1);
    }

    draw::StrokeStream& m_stream;
    mutable SymbolFigure m_figure;
    const Body& m_body;
    int m_code;
};

// Points in survey coordinates, as many as the array holds; the rest is left out and reported once.
class PointList {
 public:
    PointList(double* xy, draw::StrokeStream& stream, int code) : m_xy(xy), m_stream(stream), m_code(code) {}
    void Append(const Point& p) {
        if (m_count == kPolylinePoints) {
            if (!state().arcPolylineCutReported) {
                state().arcPolylineCutReported = true;
                m_stream.Flush();
                _LMsg(numbers::Text(texts::kArcPolylineCut, m_code).c_str(), nullptr, 0);
            }
            m_full = true;
            return;
        }
        m_xy[2 * m_count] = p.x;
        m_xy[2 * m_count + 1] = p.y;
        ++m_count;
    }
    bool full() const { return m_full; }
    int count() const { return m_count; }

 private:
    double* m_xy;
    draw::StrokeStream& m_stream;
    int m_code;
    int m_count = 0;
    bool m_full = false;
};

// The arc from a to b with a sweep in radians, its points after those in the list.
void AppendArc(const Point& a, const Point& b, double sweep, PointList& list) {
    const Polar chord = PolarOf(a, b);
    const Point centre = At(Middle(a, b), chord.distance / (2.0 * std::tan(sweep / 2.0)), chord.bearing + kPi / 2.0);
    const Polar start = PolarOf(centre, a);
    int steps = Truncated(sweep / kPi * 100.0);
    if (steps == 0) steps = 1;
    for (int j = 0; j <= steps && !list.full(); ++j)
        list.Append(At(centre, start.distance, start.bearing + j * sweep / steps));
}

void Placement::DrawSymbolPolyline(int index) const {
    Scratch scratch(2 * kPolylinePoints);
    double* xy = scratch.data();
    if (xy == nullptr) return;
    PointList list(xy, m_stream, m_code);
    if (EndsAt(index)) return;
    int count = 0;
    if (IsMarker(index)) {
        count = AppendArcs(index, xy);
    } else {
        for (; !EndsAt(index); ++index) list.Append(SymbolPoint(index));
        count = list.count();
    }
    if (CTqDraw* context = Context()) context->lines(count, xy);
}

// An arc polyline: marker, A, B, then marker, C, then marker, D ... A point that is where a marker should is passed
// over; a chain that ends before its points draws what it has.
int Placement::AppendArcs(int index, double* xy) const {
    PointList list(xy, m_stream, m_code);
    bool chained = false;
    Point last;
    while (!EndsAt(index) && !list.full()) {
        if (!IsMarker(index)) {
            ++index;
            continue;
        }
        const double sweep = m_body.records[index++].point.y / kDegreesPerRadian;
        Point a = last;
        if (!chained) {
            if (EndsAt(index)) break;
            a = SymbolPoint(index++);
        }
        if (EndsAt(index)) break;
        const Point b = SymbolPoint(index++);
        // Required: the chord is part of the figure, and a stroke of sweep 0 is drawn here and again with the rest.
        list.Append(a);
        list.Append(b);
        last = b;
        if (sweep == 0.0) {
            m_stream.Line(geometry::Pair{a.x, a.y}, geometry::Pair{b.x, b.y});
            continue;
        }
        AppendArc(a, b, sweep, list);
        chained = true;
    }
    return list.count();
}

// Goes through the records of the current symbol.
int DrawRecords(draw::StrokeStream& stream, double x, double y, geometry::Turn& turn, int code) {
    const Body body = CurrentBody();
    if (body.library == nullptr) return 1;
    const Placement placement(stream, x, y, turn, body, code);
    const bool gathers = placement.GathersSegments();
    int at = 0;
    for (int left = body.library->current.number; left > 0; --left) {
        if (gathers && at >= 0) at = placement.GatherSegments(at, left);
        if (left == 0) break;
        if (at < 0 || at >= body.size) {
            stream.Flush();
            return _LMsg(texts::kShortBody, nullptr, 0);
        }
        placement.Draw(at);
        at = NextRecord(body, at);
    }
    return 1;
}

}  // namespace

int PlaceSymbol(draw::StrokeStream& stream, double x, double y, geometry::Turn& turn, int code) {
    if (zm::draw::NeedWorkingContext("insert") == nullptr || TqDC->cutpoint(x, y) == 0) return 0;
    // Required: millimetres of the file against ground units, and ahead of the lookup.
    if (!OnDwg() && Get_G_Size(code) < TqDC->GetRealenByPixels(kDotPixels)) {
        stream.Flush();
        if (CTqDraw* context = draw::WorkingContext()) context->pixel(x, y, 0, 1);
        return 1;
    }
    if (code > kLastCode || getsymbody(code) == 0 || state().library->current.status != SymbolStatusG) return 0;
    const char* block = OnDwg() ? BlockName(code) : nullptr;
    if (block != nullptr && BlockIsWhole(x, y, code) && dwg::BlockAtHand(block)) {
        const double scale = BlockScale();
        _LDBinsert(x, y, scale, scale, turn.Angle() * 180.0 / kPi, block);
        return 1;
    }
    return DrawRecords(stream, x, y, turn, code);
}

}  // namespace zm::symbol

int insert(double x, double y, double angle, int code) {
    zm::geometry::Turn turn(angle);
    zm::draw::StrokeStream stream;
    const int result = zm::symbol::PlaceSymbol(stream, x, y, turn, code);
    stream.Flush();
    return result;
}

// Polylines: a POLYLINE record, a VERTEX for each point, a SEQEND.
#include <algorithm>

#include "dwg/writer/entity.h"
#include "dwg/writer/writer.h"

namespace zm::dwg {
namespace {

// What holds for all records of one polyline.
struct Look {
    unsigned color;
    unsigned linetype;
    unsigned layer;
};

Look CurrentLook() {
    const Attributes& now = state().now;
    return {now.color, now.linetype, now.layer};
}

void PutCommon(RecordWriter& record, const Look& look, double elevation) {
    record.u8(8, look.color).u8(9, look.linetype).f64(10, elevation).f64(18, state().now.thickness);
}

void PutVertex(Session& session, const Look& look, double x, double y) {
    const double elevation = ElevationAt(x, y);
    RecordWriter record(session.Begin(kVertex, kVertex.length, look.layer), kVertex.length, kEntityHeaderSize);
    PutCommon(record, look, elevation);
    record.f64(26, x).f64(34, y);
}

void PutSequenceEnd(Session& session, const Look& look, double elevation, std::uint32_t link) {
    RecordWriter record(session.Begin(kSequenceEnd, kSequenceEnd.length, look.layer), kSequenceEnd.length,
                        kEntityHeaderSize);
    PutCommon(record, look, elevation);
    record.u32(26, link);
}

// Whether a polyline of n points can be written: all coordinates finite, and room for all its records.
bool CanWrite(const Session& session, std::size_t opening, const double* coordinates, std::size_t perPoint, int n) {
    double zero = 0.0;
    for (std::size_t i = 0; i < perPoint * static_cast<std::size_t>(n); ++i) zero += coordinates[i] * 0.0;
    return Finite(zero) &&
           session.Fits(opening + std::uint64_t{kVertex.length} * static_cast<std::uint64_t>(n) + kSequenceEnd.length);
}

// The POLYLINE of the first polyline with heights goes after the block section at close, with a jump back.
void PutClosingRecord(Session& session, const Look& look, double elevation, double firstZ, double lastZ,
                      std::uint32_t vertices) {
    RecordWriter record(session.closing, kClosingRecordSize);
    record.u16(0, kPolyline3d.word).u16(2, kPolyline3d.length).u16(4, look.layer).u16(6, kPolyline3d.options);
    PutCommon(record, look, elevation);
    record.f64(26, firstZ).f64(34, lastZ);
    record.u16(42, 18).u16(44, 8).u16(46, vertices & 0xFFFF).u16(48, 0);
    session.closingPending = true;
}

void PutVertices(Session& session, const Look& look, const double* xyz, int n) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) PutVertex(session, look, xyz[3 * i], xyz[3 * i + 1]);
}

}  // namespace
}  // namespace zm::dwg

using namespace zm::dwg;  // the functions of dwg/writer/writer.h stand outside every namespace

// Writes POLYLINE, VERTEX and SEQEND records of a flat line.
static void PutPolyline(Session& session, const EntityLayout& layout, const double* xy, std::size_t n) {
    const std::uint32_t own = session.position();
    const Look look = CurrentLook();
    const double elevation = n != 0 ? ElevationAt(xy[0], xy[1]) : state().now.elevation;
    {
        RecordWriter record(session.Begin(layout, layout.length, look.layer), layout.length, kEntityHeaderSize);
        PutCommon(record, look, elevation);
        if (layout.length == kClosedPolyline.length) record.u8(26, 1);
    }
    for (std::size_t i = 0; i < n; ++i) PutVertex(session, look, xy[2 * i], xy[2 * i + 1]);
    // The last point was synced by its vertex, and nothing moved the elevation since.
    PutSequenceEnd(session, look, state().now.elevation, own);
}

void _LDBpolyline(const double* xy, int n) {
    Session* session = OpenSession();
    n = xy != nullptr ? std::max(n, 0) : 0;
    if (session == nullptr || !CanWrite(*session, kClosedPolyline.length, xy, 2, n)) return;
    const auto count = static_cast<std::size_t>(n);
    const bool ring = state().closeRings && n >= 4 && xy[0] == xy[2 * count - 2] && xy[1] == xy[2 * count - 1];
    if (ring)
        PutPolyline(*session, kClosedPolyline, xy, count - 1);
    else
        PutPolyline(*session, kPolyline, xy, count);
}

void _LDBpolyline3d(const double* xyz, int n) {
    Session* session = OpenSession();
    n = xyz != nullptr ? std::max(n, 0) : 0;
    if (session == nullptr || !CanWrite(*session, kPolyline3d.length, xyz, 3, n)) return;
    // The height between the first and the last point is stored nowhere: a vertex has x and y only.
    const double* last = n != 0 ? xyz + 3 * (static_cast<std::size_t>(n) - 1) : nullptr;
    const double firstZ = n != 0 ? xyz[2] : 0.0;
    const double lastZ = n != 0 ? last[2] : 0.0;
    const Look look = CurrentLook();
    const double elevation = n != 0 ? ElevationAt(xyz[0], xyz[1]) : state().now.elevation;
    if (!session->hasJump) {
        session->hasJump = true;
        {
            RecordWriter jump(session->Begin(kJump, kJump.length, 0), kJump.length, kEntityHeaderSize);
            PutCommon(jump, look, elevation);
        }
        const std::uint32_t vertices = session->position();
        PutVertices(*session, look, xyz, n);
        PutSequenceEnd(*session, look, state().now.elevation, kSequenceEnd3d);
        const double closing = n != 0 ? ElevationAt(last[0], last[1]) : state().now.elevation;
        PutClosingRecord(*session, look, closing, firstZ, lastZ, vertices);
    } else {
        {
            RecordWriter record(session->Begin(kPolyline3d, kPolyline3d.length, 0), kPolyline3d.length,
                                kEntityHeaderSize);
            PutCommon(record, look, elevation);
            record.f64(26, firstZ).f64(34, lastZ);
        }
        PutVertices(*session, look, xyz, n);
        // Required: the height of the end is looked up one place along, at y and z of the last point.
        const double end = n != 0 ? ElevationAt(last[1], last[2]) : state().now.elevation;
        PutSequenceEnd(*session, look, end, kSequenceEnd3d);
    }
}

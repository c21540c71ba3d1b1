// Plain records: one call, one record.
#include "dwg/format/degrees.h"
#include "dwg/writer/entity.h"
#include "dwg/writer/writer.h"

namespace zm::dwg {
namespace {

// Colour, linetype, elevation and thickness, the common fields of flags 15, which end at 26.
RecordWriter& PutCommon(RecordWriter& record, const Attributes& now, double elevation) {
    return record.u8(8, now.color).u8(9, now.linetype).f64(10, elevation).f64(18, now.thickness);
}

// The body's offsets count from the record's start, so that a writer begins after the header.
class EntityWriter : public RecordWriter {
 public:
    EntityWriter(Session& session, const EntityLayout& layout, const Attributes& now)
        : RecordWriter(session.Begin(layout, layout.length, now.layer), layout.length, kEntityHeaderSize) {}
};

void PutQuadrangle(const EntityLayout& layout, double x1, double y1, double x2, double y2, double x3, double y3,
                   double x4, double y4) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x1, y1, x2, y2, x3, y3, x4, y4)) || !session->Fits(layout.length)) return;
    const double elevation = ElevationAt(x1, y1);
    const Attributes& now = state().now;
    EntityWriter record(*session, layout, now);
    PutCommon(record, now, elevation).f64(26, x1).f64(34, y1).f64(42, x2).f64(50, y2);
    record.f64(58, x3).f64(66, y3).f64(74, x4).f64(82, y4);
}

}  // namespace
}  // namespace zm::dwg

using namespace zm::dwg;  // the functions of dwg/writer/writer.h stand outside every namespace

void _LDBline(double x1, double y1, double x2, double y2) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x1, y1, x2, y2)) || !session->Fits(kLine.length)) return;
    const double z1 = ElevationAt(x1, y1);
    const double z2 = ElevationAt(x2, y2);
    const Attributes& now = state().now;
    EntityWriter record(*session, kLine, now);
    record.u8(8, now.color).u8(9, now.linetype).f64(10, now.thickness);
    record.f64(18, x1).f64(26, y1).f64(34, z1).f64(42, x2).f64(50, y2).f64(58, z2);
}

void _LDBpoint(double x, double y) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x, y)) || !session->Fits(kPoint.length)) return;
    const double z = ElevationAt(x, y);
    const Attributes& now = state().now;
    EntityWriter record(*session, kPoint, now);
    record.u8(8, now.color).u8(9, now.linetype).f64(10, now.thickness).f64(18, x).f64(26, y).f64(34, z);
}

void _LDBcircle(double x, double y, double radius) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x, y, radius)) || !session->Fits(kCircle.length)) return;
    const double elevation = ElevationAt(x, y);
    const Attributes& now = state().now;
    EntityWriter record(*session, kCircle, now);
    PutCommon(record, now, elevation).f64(26, x).f64(34, y).f64(42, radius);
}

void _LDBarc(double x, double y, double radius, double start, double end) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x, y, radius, start, end)) || !session->Fits(kArc.length)) return;
    const double elevation = ElevationAt(x, y);
    const Attributes& now = state().now;
    EntityWriter record(*session, kArc, now);
    PutCommon(record, now, elevation).f64(26, x).f64(34, y).f64(42, radius);
    record.f64(50, ArcRadians(start)).f64(58, ArcRadians(end));
}

void _LDBtrace(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4) {
    PutQuadrangle(kTrace, x1, y1, x2, y2, x3, y3, x4, y4);
}

void _LDBsolid(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4) {
    PutQuadrangle(kSolid, x1, y1, x2, y2, x3, y3, x4, y4);
}

// The corners of the record are in the order of a Z.
void zm::dwg::PutSolid(const double* corners, int color) {
    Attributes& now = state().now;
    const Attributes before = now;
    now.color = static_cast<std::uint16_t>(color);
    now.thickness = 0.0;
    const double* c = corners;
    _LDBsolid(c[0], c[1], c[2], c[3], c[6], c[7], c[4], c[5]);
    now = before;
}

void _LDBface3d(double x1, double y1, double z1, double x2, double y2, double z2, double x3, double y3, double z3,
                double x4, double y4, double z4) {
    Session* session = OpenSession();
    if (session == nullptr || !Finite(ZeroSum(x1, y1, z1, x2, y2, z2, x3, y3, z3, x4, y4, z4)) ||
        !session->Fits(kFace3d.length))
        return;
    const Attributes& now = state().now;
    EntityWriter record(*session, kFace3d, now);
    record.u8(8, now.color).u8(9, now.linetype);
    record.f64(10, x1).f64(18, y1).f64(26, z1).f64(34, x2).f64(42, y2).f64(50, z2);
    record.f64(58, x3).f64(66, y3).f64(74, z3).f64(82, x4).f64(90, y4).f64(98, z4);
}

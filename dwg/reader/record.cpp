#include "dwg/reader/record.h"

#include <string_view>

#include "dwg/reader/bytes.h"

namespace zm::dwg::reader {
namespace {

using enum FieldType;

constexpr FieldLayout kExtrusion[] = {{"ext_x", f64, 1}, {"ext_y", f64, 1}, {"ext_z", f64, 1}};
constexpr FieldLayout kPointFields[] = {{"ext_x", f64, 1}, {"ext_y", f64, 1}, {"ext_z", f64, 1}, {"angle", f64, 2}};
constexpr FieldLayout kCircleFields[] = {{"radius", f64, 0}, {"ext_x", f64, 1}, {"ext_y", f64, 1}, {"ext_z", f64, 1}};
constexpr FieldLayout kShapeFields[] = {{"scale", f64, 0}, {"shape", u8, 0},  {"rotation", f64, 1},
                                        {"style", u8, 2},  {"width", f64, 4}, {"oblique", f64, 8}};
constexpr FieldLayout kTextFields[] = {
    {"height", f64, 0},  {"text", text, 0},      {"rotation", f64, 1},   {"width", f64, 2},    {"oblique", f64, 4},
    {"style", u8, 8},    {"generation", u8, 16}, {"horizontal", u8, 32}, {"align_x", f64, 64}, {"align_y", f64, 64},
    {"ext_x", f64, 128}, {"ext_y", f64, 128},    {"ext_z", f64, 128},    {"vertical", u8, 256}};
constexpr FieldLayout kArcFields[] = {{"radius", f64, 0}, {"start", f64, 0}, {"end", f64, 0},
                                      {"ext_x", f64, 1},  {"ext_y", f64, 1}, {"ext_z", f64, 1}};
constexpr FieldLayout kInsertFields[] = {{"scale_x", f64, 1},     {"scale_y", f64, 2},   {"rotation", f64, 4},
                                         {"scale_z", f64, 8},     {"columns", u16, 16},  {"rows", u16, 32},
                                         {"column_gap", f64, 64}, {"row_gap", f64, 128}, {"ext_x", f64, 256},
                                         {"ext_y", f64, 256},     {"ext_z", f64, 256}};
constexpr FieldLayout kSeqEndFields[] = {{"begin", u32, 0}};
constexpr FieldLayout kPolylineFields[] = {{"closed", u8, 1}, {"start_width", f64, 2}, {"end_width", f64, 4},
                                           {"ext_x", f64, 8}, {"ext_y", f64, 8},       {"ext_z", f64, 8},
                                           {"m", u16, 16},    {"n", u16, 32}};
constexpr FieldLayout kVertexFields[] = {
    {"start_width", f64, 1}, {"end_width", f64, 2}, {"bulge", f64, 4}, {"vertex_flags", u8, 8}, {"tangent", f64, 16}};
constexpr FieldLayout kFaceFields[] = {{"invisible", u16, 1}};

constexpr KindLayout kKinds[] = {
    {kLine, "LINE", 2, true, kExtrusion},
    {kPoint, "POINT", 1, true, kPointFields},
    {kCircle, "CIRCLE", 1, false, kCircleFields},
    {kShape, "SHAPE", 1, false, kShapeFields},
    {kText, "TEXT", 1, false, kTextFields},
    {kArc, "ARC", 1, false, kArcFields},
    {kTrace, "TRACE", 4, false, kExtrusion},
    {kSolid, "SOLID", 4, false, kExtrusion},
    {kBlock, "BLOCK", 1, false, {}},
    {kEndBlock, "ENDBLK", 0, false, {}},
    {kInsert, "INSERT", 1, false, kInsertFields},
    {kSeqEnd, "SEQEND", 0, false, kSeqEndFields},
    {kJump, "JUMP", 0, false, {}},
    {kPolyline, "POLYLINE", 0, false, kPolylineFields},
    {kVertex, "VERTEX", 1, false, kVertexFields},
    {kLine3D, "3DLINE", 2, true, kExtrusion},
    {kFace3D, "3DFACE", 4, true, kFaceFields},
};

constexpr FieldLayout kBlockNumber = {"block", u16, 0};

std::size_t WidthOf(FieldType type) {
    switch (type) {
        case u8:
            return 1;
        case u16:
            return 2;
        case u32:
            return 4;
        case f64:
            return 8;
        case text:
            return 2;
    }
    return 0;
}

// Takes fields one behind the other, never behind the record's end; counts what they would take.
class Cursor {
 public:
    Cursor(Bytes bytes, std::uint64_t at, std::uint64_t end) : m_bytes(bytes), m_at(at), m_end(end) {}
    bool Has(std::size_t width) const { return m_at <= m_end && m_end - m_at >= width; }
    std::uint64_t UInt(std::size_t width) {
        const std::uint64_t value = Has(width) ? UIntAt(m_bytes, m_at, width) : 0;
        m_at += width;
        return value;
    }
    double Real() { return std::bit_cast<double>(UInt(8)); }
    std::string Text(std::size_t size) {
        std::string bytes;
        if (Has(size)) bytes.assign(reinterpret_cast<const char*>(m_bytes.data()) + m_at, size);
        m_at += size;
        return bytes;
    }
    std::uint64_t at() const { return m_at; }

 private:
    Bytes m_bytes;
    std::uint64_t m_at;
    std::uint64_t m_end;
};

void ReadCommon(Cursor& cursor, bool r1009, Record& record) {
    if (record.flags & kHasColor) record.color = static_cast<int>(cursor.UInt(1));
    if (r1009 && (record.flags & kHasExtra)) {
        constexpr unsigned kHasExtendedData = 2;
        if (cursor.UInt(1) & kHasExtendedData) cursor.Text(cursor.UInt(2));
    }
    if (record.flags & kHasLinetype) record.linetype = static_cast<int>(cursor.UInt(r1009 ? 2 : 1));
    const bool flat = record.layout == nullptr || !record.layout->threeD;
    if ((record.flags & kHasElevation) && flat) record.elevation = cursor.Real();
    if (record.flags & kHasThickness) record.thickness = cursor.Real();
    if (record.flags & kHasHandle) record.handle = cursor.Text(cursor.UInt(1));
}

void ReadFields(Cursor& cursor, Record& record, bool wideInsert) {
    if (record.kind == kInsert) {
        const auto number = static_cast<double>(cursor.UInt(wideInsert ? 4 : 2));
        record.fields.push_back({&kBlockNumber, number, {}});
    }
    const bool withZ = record.layout->threeD && (record.flags & kHasElevation) == 0;
    for (int i = 0; i < record.layout->points; ++i) {
        Point point;
        point.x = cursor.Real();
        point.y = cursor.Real();
        point.z = withZ ? cursor.Real() : record.elevation.value_or(0.0);
        record.points.push_back(point);
    }
    for (const FieldLayout& layout : record.layout->fields) {
        if (layout.option != 0 && (record.options & layout.option) == 0) continue;
        Field field{&layout, 0.0, {}};
        if (layout.type == f64)
            field.number = cursor.Real();
        else
            field.number = static_cast<double>(cursor.UInt(WidthOf(layout.type)));
        if (layout.type == text) field.text = cursor.Text(static_cast<std::size_t>(field.number));
        record.fields.push_back(std::move(field));
    }
}

}  // namespace

const KindLayout* LayoutOf(std::uint8_t kind) {
    for (const KindLayout& layout : kKinds)
        if (layout.kind == kind) return &layout;
    return nullptr;
}

const Field* Record::Find(std::string_view name) const {
    for (const Field& field : fields)
        if (name == field.layout->name) return &field;
    return nullptr;
}

double Record::Number(std::string_view name, double otherwise) const {
    const Field* field = Find(name);
    return field != nullptr ? field->number : otherwise;
}

bool ReadRecord(Bytes bytes, std::uint64_t offset, bool r1009, std::uint64_t room, Record& record, bool wideInsert) {
    constexpr std::uint8_t kErased = 0x80;
    record = Record{};
    record.offset = offset;
    const std::uint64_t end = std::min<std::uint64_t>(bytes.size(), room);
    if (offset > end || end - offset < kRecordHeaderBytes) return false;
    const std::uint8_t kind = U8At(bytes, offset);
    record.kind = kind & static_cast<std::uint8_t>(~kErased);
    record.erased = (kind & kErased) != 0;
    record.flags = U8At(bytes, offset + 1);
    record.length = U16At(bytes, offset + 2);
    record.layer = U16At(bytes, offset + 4);
    record.options = U16At(bytes, offset + 6);
    record.layout = LayoutOf(record.kind);
    const std::uint64_t length = record.length + (wideInsert && record.kind == kInsert ? 2u : 0u);
    if (record.length < kRecordHeaderBytes || end - offset < length) return false;
    if (record.layout == nullptr) {
        record.used = record.length;
        return true;
    }
    Cursor cursor(bytes, offset + kRecordHeaderBytes, offset + length);
    ReadCommon(cursor, r1009, record);
    ReadFields(cursor, record, wideInsert);
    record.used = static_cast<std::size_t>(cursor.at() - offset) + (r1009 ? 2 : 0);
    return true;
}

}  // namespace zm::dwg::reader

#include "dwg/reader/record.h"

#include <string_view>

#include "dwg/reader/bytes.h"

namespace zm::dwg::reader {
namespace {

// Takes fields one after the other, never after the record's end; counts what they would take.
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

double NumberOf(Cursor& cursor, const FieldLayout& layout) {
    if (layout.type == FieldType::f64) return cursor.Real();
    return static_cast<double>(cursor.UInt(WidthOf(layout.type)));
}

void ReadField(Cursor& cursor, const FieldLayout& layout, Record& record) {
    switch (layout.role) {
        case FieldRole::color:
            record.color = static_cast<int>(cursor.UInt(1));
            break;
        case FieldRole::extended:
            record.extra = static_cast<unsigned>(cursor.UInt(1));
            if (record.extra & kHasExtendedData) cursor.Text(cursor.UInt(2));
            break;
        case FieldRole::viewport:
            if (record.extra & kHasViewport) record.viewport = static_cast<int>(cursor.UInt(2));
            break;
        case FieldRole::linetype:
            record.linetype = static_cast<int>(cursor.UInt(WidthOf(layout.type)));
            break;
        case FieldRole::elevation:
            record.elevation = cursor.Real();
            break;
        case FieldRole::thickness:
            record.thickness = cursor.Real();
            break;
        case FieldRole::handle:
            record.handle = cursor.Text(cursor.UInt(1));
            break;
        case FieldRole::x:
            record.points.push_back({cursor.Real(), 0.0, record.elevation.value_or(0.0)});
            break;
        case FieldRole::y:
            record.points.back().y = cursor.Real();
            break;
        case FieldRole::z:
            record.points.back().z = cursor.Real();
            break;
        default:
            Field& field = record.fields.emplace_back(Field{&layout, NumberOf(cursor, layout), {}});
            if (layout.type == FieldType::text) field.text = cursor.Text(static_cast<std::size_t>(field.number));
            break;
    }
}

}  // namespace

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
    record.layout = KindLayoutOf(record.kind);
    const std::uint64_t length = record.length + (wideInsert && record.kind == kInsert ? kReferenceSurplus : 0u);
    if (record.length < kRecordHeaderBytes || end - offset < length) return false;
    if (record.kind == kJump) record.jump = U32At(bytes, offset + 4);
    if (record.layout == nullptr || IsOpaque(*record.layout)) {
        record.used = record.length;
        return true;
    }
    // A jump has no fields, whatever its flags say, but for the marker that our writer makes.
    if (record.kind == kJump && !record.IsMarker()) {
        record.layer = record.options = 0;
        record.used = kRecordHeaderBytes + (r1009 ? kLaterEndSize : 0);
        return true;
    }
    Cursor cursor(bytes, offset + kRecordHeaderBytes, offset + length);
    ForEachField(*record.layout, record.flags, record.options, {r1009, wideInsert},
                 [&](const FieldLayout& layout) { ReadField(cursor, layout, record); });
    record.used = static_cast<std::size_t>(cursor.at() - offset) + (r1009 ? kLaterEndSize : 0);
    return true;
}

}  // namespace zm::dwg::reader

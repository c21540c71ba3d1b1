#include "dwg/block/record_proof.h"

#include <cmath>

#include "dwg/format/bytes.h"

namespace zm::dwg {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr char kOtherFields[] = "flags and options of a record announce other fields than its length holds";

// Other numbers need not be finite: an empty text that was fitted has an infinite width factor.
bool IsCoordinate(FieldRole role) {
    return role == FieldRole::x || role == FieldRole::y || role == FieldRole::z || role == FieldRole::elevation;
}

// Goes through the fields of one record. What would stand after its end is counted, but not looked at.
class Walk {
 public:
    Walk(Bytes record, unsigned styles) : m_record(record), m_styles(styles) {}

    void Take(const FieldLayout& field) {
        const std::uint8_t* value = Here(WidthOf(field.type));
        m_at += WidthOf(field.type);
        if (value == nullptr) return;
        switch (field.type) {
            case FieldType::u8:
                if (field.role == FieldRole::style && *value >= m_styles)
                    proof.fault = "a text style index leads outside the text style table";
                break;
            case FieldType::u16:
                if (field.role == FieldRole::block) proof.block = Load16(value);
                break;
            case FieldType::u32:
                if (field.role == FieldRole::block) proof.block = Load32(value);
                break;
            case FieldType::f64:
                if (IsCoordinate(field.role) && !std::isfinite(LoadReal(value)))
                    proof.fault = "a coordinate is no finite number";
                break;
            case FieldType::text:
                m_at += Load16(value);
                break;
            case FieldType::handle:
                m_at += *value;
                break;
            case FieldType::extended:
                m_extra = *value;
                if ((*value & kHasExtendedData) != 0) SkipExtendedData();
                break;
            case FieldType::viewport:
                if ((m_extra & kHasViewport) != 0) m_at += 2;
                break;
        }
    }
    std::size_t at() const { return m_at; }

    RecordProof proof;

 private:
    const std::uint8_t* Here(std::size_t width) const {
        return m_at <= m_record.size() && m_record.size() - m_at >= width ? m_record.data() + m_at : nullptr;
    }
    void SkipExtendedData() {
        const std::uint8_t* count = Here(2);
        m_at += 2;
        if (count != nullptr) m_at += Load16(count);
    }

    Bytes m_record;
    unsigned m_styles;
    unsigned m_extra = 0;
    std::size_t m_at = kEntityHeaderSize;
};

}  // namespace

RecordProof ProveRecord(Bytes record, RecordShape shape, unsigned styles) {
    const std::uint8_t flags = record[1];
    const KindLayout* layout = KindLayoutOf(record[0]);
    if (Unproven(record.data())) return {};
    const std::size_t end = record.size() - (shape.later ? kLaterEndSize : 0);
    // A jump has no fields, whatever its flags say, but for the marker that our writer makes.
    if (layout->kind == kinds::kJump) {
        const bool whole = end == kEntityHeaderSize || (end == kMarkerSize && flags == kHasElevation);
        return {whole ? nullptr : kOtherFields, 0};
    }
    Walk walk(record, styles);
    ForEachField(*layout, flags, Load16(record.data() + 6), shape, [&](const FieldLayout& field) { walk.Take(field); });
    // The BLOCK record of a later version has fields of its own after these.
    const bool more = shape.later && layout->kind == kinds::kBlock && walk.at() < end;
    if (walk.at() != end && !more) walk.proof.fault = kOtherFields;
    return walk.proof;
}

const char* SequenceProof::Take(const std::uint8_t* header) {
    const std::uint8_t kind = header[0];
    if (KindLayoutOf(kind) == nullptr || kind == kinds::kAttrib) return nullptr;
    const bool opens =
        kind == kinds::kPolyline || kind == kinds::kJump || (kind == kinds::kInsert && (header[1] & kHasFollowers));
    if (opens) {
        if (m_open != 0) return "a polyline or reference begins inside another that has no end";
        m_open = kind;
    } else if (kind == kinds::kSeqEnd) {
        if (m_open == 0) return "an end of a polyline or reference is where none is open";
        m_open = 0;
    } else if (kind == kinds::kVertex) {
        if (m_open == 0) return "a vertex is outside a polyline";
    } else if (kind == kinds::kEndBlock) {
        return End();
    } else if (m_open != 0 && m_open != kinds::kInsert) {
        return "a polyline holds a record that is no vertex";
    }
    return nullptr;
}

const char* SequenceProof::End() const {
    return m_open != 0 ? "a polyline or reference has no end" : nullptr;
}

}  // namespace zm::dwg

#include "dwg/reader/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zm::dwg::reader {
namespace {

constexpr std::size_t kCodePageAt = 1017;
constexpr std::size_t kNameBytes = 32;
constexpr std::uint32_t kBlockOffsetMask = 0xFFFFFF;

// Whether a record of a known kind begins here, or behind so many records of other kinds, and ends inside the section.
bool LooksLikeRecord(const Drawing& drawing, std::uint64_t offset, int others) {
    Record record;
    while (ReadRecord(drawing.bytes(), offset, drawing.Is1009(), drawing.BlockEnd(), record)) {
        if (record.layout != nullptr && !record.erased) return record.used == record.length || record.kind == kInsert;
        if (others-- == 0) return false;
        offset += record.length;
    }
    return false;
}

// Whether the INSERT that ends at next is two bytes longer than it says.
bool IsWideInsert(const Drawing& drawing, std::uint64_t next) {
    if (drawing.CountsEntities()) return true;
    constexpr int kManyOthers = 64;
    for (const int others : {0, kManyOthers})
        for (const std::size_t surplus : {std::size_t{0}, kReferenceSurplus})
            if (LooksLikeRecord(drawing, next + surplus, others)) return surplus != 0;
    return false;
}

}  // namespace

Drawing::Drawing(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {
    ReadHeader();
    if (!Known()) return;
    ReadTables();
    CountEntities();
}

void Drawing::ReadHeader() {
    const Bytes b = m_bytes;
    header.version = TextAt(b, 0, 2) == "AC" ? std::atoi(TextAt(b, 2, 4).c_str()) : 0;
    header.variables = U16At(b, kFieldVariables);
    header.entityStart = U32At(b, kFieldEntityStart);
    header.entityEnd = U32At(b, kFieldEntityEnd);
    header.blockStart = U32At(b, kFieldBlockStart);
    header.blockSize = U32At(b, kFieldBlockSize);
    header.extraStart = U32At(b, kFieldExtraStart);
    header.extraSize = U32At(b, kFieldExtraSize);
    for (std::size_t i = 0; i < kTableCount; ++i) {
        const std::size_t at = kFieldTables + 10 * i;
        header.tables[i] = {U16At(b, at), U16At(b, at + 2), U16At(b, at + 4), U32At(b, at + 6)};
    }
    header.codePage = U16At(b, kCodePageAt);
}

void Drawing::ReadTables() {
    const Bytes b = m_bytes;
    // A table that leads past the end of the file is read as far as it goes.
    const auto each = [&](Table table, auto&& read) {
        const TableInfo& info = header.tables[static_cast<std::size_t>(table)];
        for (std::size_t i = 0; i < info.count; ++i) {
            const std::uint64_t at = info.address + static_cast<std::uint64_t>(i) * info.recordSize;
            if (info.recordSize < kNameBytes + 1 || at > b.size() || b.size() - at < info.recordSize) break;
            read(at);
        }
    };
    const std::size_t shift = Is1009() ? 2 : 0;  // a use count stands behind the name
    each(Table::layer, [&](std::uint64_t at) {
        layers.push_back({TextAt(b, at + 1, kNameBytes), static_cast<std::int16_t>(U16At(b, at + 33 + shift)),
                          U16At(b, at + 35 + shift)});
    });
    each(Table::style, [&](std::uint64_t at) {
        Style style;
        style.flag = U8At(b, at);
        style.name = TextAt(b, at + 1, kNameBytes);
        style.widthFactor = F64At(b, at + 41 + shift);
        style.oblique = F64At(b, at + 49 + shift);
        style.generation = U8At(b, at + 57 + shift);
        style.font = TextAt(b, at + 66 + shift, 64);
        style.bigFont = TextAt(b, at + 130 + shift, 64);
        styles.push_back(std::move(style));
    });
    each(Table::linetype, [&](std::uint64_t at) {
        Linetype type;
        type.name = TextAt(b, at + 1, kNameBytes);
        type.description = TextAt(b, at + 33 + shift, 48);
        type.count = U8At(b, at + 82 + shift);
        type.length = F64At(b, at + 83 + shift);
        for (std::size_t i = 0; i < type.elements.size(); ++i) type.elements[i] = F64At(b, at + 91 + shift + 8 * i);
        linetypes.push_back(std::move(type));
    });
    each(Table::block, [&](std::uint64_t at) {
        blocks.push_back({TextAt(b, at + 1, kNameBytes), U8At(b, at), U32At(b, at + 33 + shift) & kBlockOffsetMask});
    });
}

void Drawing::CountEntities() {
    if (Is1009() || header.blockSize < kEntityCountStart) return;
    std::uint32_t count = 0;
    std::uint64_t at = header.entityStart;
    for (std::uint64_t length = 0; at < EntityEnd(); at += length, ++count) {
        length = U16At(m_bytes, at + 2);
        if (length < kRecordHeaderBytes) return;
    }
    // The template can have had a record of its own.
    const std::uint32_t counted = header.blockSize - kEntityCountStart;
    m_countsEntities = at == header.entityEnd && (counted == count || counted + 1 == count);
}

std::uint64_t Drawing::BlockEnd() const {
    const std::uint64_t size = header.blockSize & kSectionSizeMask;
    const std::uint64_t byField = header.blockStart + size;
    // In a drawing of ours the field counts entities on top of 0x10000, which is more than the section can hold.
    if (size >= 0x10000 || byField > m_bytes.size()) return m_bytes.size();
    return byField;
}

void Drawing::ForEachEntity(const std::function<bool(const Record&)>& visit) const {
    Record record;
    for (std::uint64_t at = header.entityStart; at < EntityEnd(); at += record.length)
        if (!ReadRecord(m_bytes, at, Is1009(), EntityEnd(), record) || !visit(record)) return;
}

bool ReadBlockRecord(const Drawing& drawing, std::uint64_t offset, Record& record, std::uint64_t& next) {
    if (!ReadRecord(drawing.bytes(), offset, drawing.Is1009(), drawing.BlockEnd(), record)) return false;
    next = offset + record.length;
    if (record.kind != kInsert || record.erased || !IsWideInsert(drawing, next)) return true;
    Record wide;
    if (ReadRecord(drawing.bytes(), offset, drawing.Is1009(), drawing.BlockEnd(), wide, true)) {
        record = std::move(wide);
        next += kReferenceSurplus;
    }
    return true;
}

void Drawing::ForEachInBlock(std::size_t block, const std::function<bool(const Record&)>& visit) const {
    if (block >= blocks.size()) return;
    Record record;
    std::uint64_t next = 0;
    for (std::uint64_t at = static_cast<std::uint64_t>(header.blockStart) + blocks[block].offset;
         ReadBlockRecord(*this, at, record, next); at = next)
        if (!visit(record) || record.kind == kEndBlock) return;
}

bool Extents(const Drawing& drawing, Point& low, Point& high) {
    bool any = false;
    const auto take = [&](double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y)) return;
        low = any ? Point{std::min(low.x, x), std::min(low.y, y), 0.0} : Point{x, y, 0.0};
        high = any ? Point{std::max(high.x, x), std::max(high.y, y), 0.0} : Point{x, y, 0.0};
        any = true;
    };
    drawing.ForEachEntity([&](const Record& record) {
        if (record.erased) return true;
        const double radius = record.kind == kCircle || record.kind == kArc ? record.Number("radius", 0.0) : 0.0;
        for (const Point& point : record.points) {
            take(point.x - radius, point.y - radius);
            take(point.x + radius, point.y + radius);
        }
        return true;
    });
    return any;
}

}  // namespace zm::dwg::reader

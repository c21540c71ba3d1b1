#include "dwg/reader/drawing.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

namespace zm::dwg::reader {
namespace {

constexpr std::size_t kCodePageAt = 1017;
constexpr std::size_t kNameBytes = 32;
constexpr std::uint32_t kBlockOffsetMask = 0xFFFFFF;
constexpr std::size_t kClosingBytes = 50;  // of our writer's closing record and the jump after it

// Whether a record of a known kind begins here, or after so many records of other kinds, and ends inside the section.
bool LooksLikeRecord(const Drawing& drawing, std::uint64_t offset, int others) {
    Record record;
    while (ReadRecord(drawing.bytes(), offset, drawing.Is1009(), drawing.BlockEnd(), record)) {
        if (record.layout != nullptr && !IsOpaque(*record.layout) && !record.erased)
            return record.used == record.length || record.kind == kInsert;
        if (others-- == 0) return false;
        offset += record.length;
    }
    return false;
}

// Whether the INSERT that ends at next is two bytes longer than it says.
bool IsWideInsert(const Drawing& drawing, std::uint64_t next) {
    if (drawing.CountsEntities())
        return !LooksLikeRecord(drawing, next, 0) || LooksLikeRecord(drawing, next + kReferenceSurplus, 0);
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
    LimitBlocks();
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
    ReadVariables();
}

void Drawing::ReadVariables() {
    const Bytes b = m_bytes;
    const auto point = [&](std::uint64_t at, bool space) {
        return Point{F64At(b, at), F64At(b, at + 8), space ? F64At(b, at + 16) : 0.0};
    };
    Variables& v = variables;
    v.base = point(94, true);
    v.extentsLow = point(120, true);
    v.extentsHigh = point(144, true);
    v.limitsLow = point(168, false);
    v.limitsHigh = point(184, false);
    v.viewCentre = point(200, true);
    v.viewHeight = F64At(b, 224);
    v.fillMode = U16At(b, 300);
    v.linetypeScale = F64At(b, 306);
    v.linearUnits = U16At(b, 356);
    v.linearPlaces = U16At(b, 358);
    v.angularUnits = U16At(b, 394);
    v.angularPlaces = U16At(b, 396);
    v.attributeMode = U16At(b, 402);
    v.pointMode = U16At(b, 861);
    v.pointSize = F64At(b, 863);
    v.splineFrame = U16At(b, 983);
}

void Drawing::ReadTables() {
    const Bytes b = m_bytes;
    // A table that leads past the end of the file is read as far as it goes.
    const auto each = [&](Table table, auto& entries, auto&& read) {
        const TableInfo& info = header.tables[static_cast<std::size_t>(table)];
        if (info.recordSize < kNameBytes + 1 || info.address > b.size()) return;
        const std::size_t count = std::min<std::size_t>(info.count, (b.size() - info.address) / info.recordSize);
        entries.reserve(count);
        for (std::size_t i = 0; i < count; ++i) read(std::uint64_t{info.address} + i * info.recordSize);
    };
    const std::size_t shift = Is1009() ? 2 : 0;  // a use count is after the name
    each(Table::layer, layers, [&](std::uint64_t at) {
        layers.push_back({TextAt(b, at + 1, kNameBytes), static_cast<std::int16_t>(U16At(b, at + 33 + shift)),
                          U16At(b, at + 35 + shift), U8At(b, at)});
    });
    each(Table::style, styles, [&](std::uint64_t at) {
        Style style;
        style.flag = U8At(b, at);
        style.name = TextAt(b, at + 1, kNameBytes);
        style.height = F64At(b, at + 33 + shift);
        style.lastHeight = F64At(b, at + 58 + shift);
        style.widthFactor = F64At(b, at + 41 + shift);
        style.oblique = F64At(b, at + 49 + shift);
        style.generation = U8At(b, at + 57 + shift);
        style.font = TextAt(b, at + 66 + shift, 64);
        style.bigFont = TextAt(b, at + 130 + shift, 64);
        styles.push_back(std::move(style));
    });
    each(Table::linetype, linetypes, [&](std::uint64_t at) {
        Linetype type;
        type.name = TextAt(b, at + 1, kNameBytes);
        type.description = TextAt(b, at + 33 + shift, 48);
        type.flag = U8At(b, at);
        type.alignment = U8At(b, at + 81 + shift);
        type.count = U8At(b, at + 82 + shift);
        type.length = F64At(b, at + 83 + shift);
        for (std::size_t i = 0; i < type.elements.size(); ++i) type.elements[i] = F64At(b, at + 91 + shift + 8 * i);
        linetypes.push_back(std::move(type));
    });
    each(Table::block, blocks, [&](std::uint64_t at) {
        blocks.push_back({TextAt(b, at + 1, kNameBytes), U8At(b, at), U32At(b, at + 33 + shift) & kBlockOffsetMask,
                          U8At(b, at + 36 + shift), true});
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

// Block definitions follow each other. Those of a damaged or malicious file can all run through the same records: going
// through them would take the square of the file's size, so that no more is read than twice the file.
void Drawing::LimitBlocks() {
    std::uint64_t left = 2 * static_cast<std::uint64_t>(m_bytes.size());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        blocks[i].readable = left > 0 && !blocks[i].IsEmptySlot();
        ForEachInBlock(i, [&](const Record& record) {
            left -= std::min<std::uint64_t>(record.length, left);
            return left > 0;
        });
    }
}

std::uint64_t Drawing::BlockEnd() const {
    const std::uint64_t size = header.blockSize & kSectionSizeMask;
    const std::uint64_t byField = header.blockStart + size;
    // In a drawing of ours the field counts entities on top of 0x10000, which is more than the section can hold.
    if (size >= 0x10000 || byField > m_bytes.size() || (size == 0 && !blocks.empty())) return m_bytes.size();
    return byField;
}

std::uint64_t Drawing::ExtraEnd() const {
    const std::uint64_t start = header.extraStart;
    const std::uint64_t size = header.extraSize & kSectionSizeMask;
    if (start > m_bytes.size()) return start;
    if (size != 0) return std::min<std::uint64_t>(start + size, m_bytes.size());
    // Our writer leaves the size 0 and writes a polyline with a jump after it.
    Record record;
    const bool closing = !Is1009() && start >= header.blockStart && start + kClosingBytes == m_bytes.size() &&
                         ReadRecord(m_bytes, start, false, m_bytes.size(), record) && record.kind == kPolyline;
    return closing ? start + kClosingBytes : start;
}

std::uint64_t Drawing::PlaceOf(std::uint32_t jump) const {
    const std::uint64_t offset = jump & kSectionSizeMask;
    if (jump >> 24 == kInExtras) return header.extraStart + offset;
    if (jump >> 24 == kInBlocks) return header.blockStart + offset;
    return jump;
}

void Drawing::ForEachExtra(const std::function<bool(const Record&)>& visit) const {
    Record record;
    const std::uint64_t end = ExtraEnd();
    for (std::uint64_t at = header.extraStart; at < end; at += record.length)
        if (!ReadRecord(m_bytes, at, Is1009(), end, record) || !visit(record)) return;
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
    if (block >= blocks.size() || !blocks[block].readable) return;
    Record record;
    std::uint64_t next = 0;
    for (std::uint64_t at = static_cast<std::uint64_t>(header.blockStart) + blocks[block].offset;
         ReadBlockRecord(*this, at, record, next); at = next)
        if (!visit(record) || record.kind == kEndBlock) return;
}

namespace {

// Goes through records from a place to an end, along the jumps. Each jump is followed once.
class Walk {
 public:
    Walk(const Drawing& drawing, const std::function<bool(const Record&)>& visit)
        : m_drawing(drawing), m_visit(visit) {}

    bool Run(std::uint64_t at, Section section) {
        m_home = section;
        while (true) {
            const Section here = SectionOf(at);
            if (here == Section::entities && at >= m_drawing.EntityEnd()) return m_sound;
            Record record;
            std::uint64_t next = 0;
            if (!Read(here, at, record, next)) {
                // Nothing can be read on in the extra section: back after the jump that led there.
                m_sound = false;
                if (here != Section::extras || m_away == 0) return false;
                at = std::exchange(m_away, 0);
                continue;
            }
            if (record.kind != kJump || record.erased) {
                if (!record.erased && !m_visit(record)) return m_sound;
                if (record.kind == kEndBlock && m_home == Section::blocks) return m_sound;
                at = next;
            } else {
                Follow(record, next, at);
            }
        }
    }

 private:
    // Outside of the other two a record belongs to the section that is walked.
    Section SectionOf(std::uint64_t at) const {
        const Header& h = m_drawing.header;
        if (at >= h.extraStart && at < m_drawing.ExtraEnd()) return Section::extras;
        return m_home;
    }
    bool Read(Section section, std::uint64_t at, Record& record, std::uint64_t& next) const {
        if (section == Section::blocks) return ReadBlockRecord(m_drawing, at, record, next);
        const std::uint64_t end = section == Section::extras ? m_drawing.ExtraEnd() : m_drawing.EntityEnd();
        if (!ReadRecord(m_drawing.bytes(), at, m_drawing.Is1009(), end, record)) return false;
        next = at + record.length;
        return true;
    }
    // Sets the place that a jump leads to. After the first one that leads nowhere or in a circle none is followed any
    // more, so that no record is visited more than twice.
    void Follow(const Record& jump, std::uint64_t next, std::uint64_t& at) {
        if (SectionOf(jump.offset) == Section::extras && m_behindMarker != 0) {
            at = std::exchange(m_behindMarker, 0);
            return;
        }
        const std::uint64_t place = m_drawing.PlaceOf(jump.jump);
        if (!m_sound || !m_followed.insert(jump.offset).second || !Leads(place)) {
            m_sound = false;
            at = SectionOf(jump.offset) == Section::extras && m_away != 0 ? std::exchange(m_away, 0) : next;
            return;
        }
        // The closing record of our writer has no more than 16 bits for the place after the marker.
        if (jump.IsMarker()) m_behindMarker = next;
        m_away = SectionOf(place) == Section::extras ? next : 0;
        at = place;
    }
    bool Leads(std::uint64_t place) const {
        const Header& h = m_drawing.header;
        if (SectionOf(place) == Section::extras) return true;
        return m_home == Section::entities ? place >= h.entityStart && place <= m_drawing.EntityEnd()
                                           : place >= h.blockStart && place < m_drawing.BlockEnd();
    }

    const Drawing& m_drawing;
    const std::function<bool(const Record&)>& m_visit;
    Section m_home = Section::entities;
    std::set<std::uint64_t> m_followed;
    std::uint64_t m_behindMarker = 0;  // where to come back to; 0: the jump back tells
    std::uint64_t m_away = 0;          // after the jump that led to the extra section; 0: not there
    bool m_sound = true;
};

}  // namespace

bool ForEachInOrder(const Drawing& drawing, const std::function<bool(const Record&)>& visit) {
    return Walk(drawing, visit).Run(drawing.header.entityStart, Section::entities);
}

bool ForEachInBlockInOrder(const Drawing& drawing, std::size_t block, const std::function<bool(const Record&)>& visit) {
    if (block >= drawing.blocks.size() || !drawing.blocks[block].readable) return true;
    const std::uint64_t start = static_cast<std::uint64_t>(drawing.header.blockStart) + drawing.blocks[block].offset;
    return Walk(drawing, visit).Run(start, Section::blocks);
}

}  // namespace zm::dwg::reader

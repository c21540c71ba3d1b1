#include "dwg/reader/check.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

#include "runtime/gbk.h"
#include "runtime/numbers.h"

namespace zm::dwg::reader {
namespace {

using numbers::Text;
using ull = unsigned long long;

constexpr std::uint32_t kInExtraSection = 0x80000000;
constexpr std::size_t kClosingBytes = 50;  // a polyline's closing record and the jump behind it
constexpr std::uint16_t kBlockOffsetHigh = 0x4000;

// The record sizes of the tables in the order of Table, for 1006.
constexpr std::size_t kRecordSizes[kTableCount] = {37, 37, 194, 187, 0};
constexpr std::size_t kViewSizes[] = {91, 149};

class Checker {
 public:
    explicit Checker(const Drawing& drawing) : m_drawing(drawing), m_header(drawing.header) {}

    Report Run() {
        if (!m_drawing.Known()) {
            Problem(0, Text("the version stamp \"%.6s\" is not one of 1006 or 1009; nothing else can be checked",
                            gbk::ToUtf8(TextAt(m_drawing.bytes(), 0, 6)).c_str()));
            return std::move(m_report);
        }
        if (!CheckSections()) return std::move(m_report);
        CheckTables();
        CheckTableRecords();
        CheckEntities();
        CheckBlocks();
        CheckExtra();
        return std::move(m_report);
    }

 private:
    void Problem(std::uint64_t offset, std::string text) {
        if (m_report.problems.size() < kMaxFindings)
            m_report.problems.push_back({offset, std::move(text)});
        else
            ++m_report.unlisted;
    }
    void Remark(std::uint64_t offset, std::string text) {
        if (m_report.remarks.size() < kMaxFindings) m_report.remarks.push_back({offset, std::move(text)});
    }

    // The sections' places in the file. False where nothing further can be read.
    bool CheckSections() {
        const std::uint64_t size = m_drawing.bytes().size();
        const std::size_t firstEntity = m_header.variables == 158 ? 1298 : 1310;
        if (size < kHeaderBytes) {
            Problem(size, Text("the file has %llu bytes and ends inside the header of %zu", static_cast<ull>(size),
                               kHeaderBytes));
            return false;
        }
        if (!m_drawing.Is1009()) {
            if (m_header.variables != 158 && m_header.variables != 160)
                Problem(kFieldVariables,
                        Text("%u header variables; a 1006 drawing has 158 or 160", m_header.variables));
            if (m_header.entityStart != firstEntity)
                Problem(kFieldEntityStart,
                        Text("the entity section begins at %u, not behind the header variables at %zu",
                             m_header.entityStart, firstEntity));
        }
        if (m_header.entityEnd < m_header.entityStart)
            Problem(kFieldEntityEnd, Text("the entity section ends at %u, before its start at %u", m_header.entityEnd,
                                          m_header.entityStart));
        if (m_header.entityEnd > size)
            Problem(kFieldEntityEnd, Text("the entity section ends at %u, behind the end of the file at %llu",
                                          m_header.entityEnd, static_cast<ull>(size)));
        if (m_header.blockStart > size)
            Problem(kFieldBlockStart, Text("the block section begins at %u, behind the end of the file at %llu",
                                           m_header.blockStart, static_cast<ull>(size)));
        return m_report.problems.empty();
    }

    void CheckTables() {
        const std::uint64_t size = m_drawing.bytes().size();
        std::uint64_t behind = m_header.entityEnd;
        for (std::size_t i = 0; i < kTableCount; ++i) {
            const TableInfo& table = m_header.tables[i];
            const std::size_t field = kFieldTables + 10 * i;
            const std::uint64_t end = table.address + static_cast<std::uint64_t>(table.recordSize) * table.count;
            if (table.third != 0)
                Problem(field + 4, Text("the third word of the %s table is %u; with it the count would be %lu",
                                        kTableNames[i], table.third, table.count + 65536ul * table.third));
            if (!m_drawing.Is1009()) {
                const bool right = i == static_cast<std::size_t>(Table::view)
                                       ? std::find(std::begin(kViewSizes), std::end(kViewSizes), table.recordSize) !=
                                             std::end(kViewSizes)
                                       : table.recordSize == kRecordSizes[i];
                if (!right)
                    Problem(field,
                            Text("a %s record has %u bytes; 1006 has other sizes", kTableNames[i], table.recordSize));
                if (table.address != behind && table.count > 0)
                    Problem(field + 6, Text("the %s table begins at %u; what stands before it ends at %llu",
                                            kTableNames[i], table.address, static_cast<ull>(behind)));
                behind = end;
            }
            if (table.count > 0 && end > size)
                Problem(field + 2, Text("the %s table of %u records ends at %llu, behind the end of the file at %llu",
                                        kTableNames[i], table.count, static_cast<ull>(end), static_cast<ull>(size)));
        }
        if (!m_drawing.Is1009() && behind > m_header.blockStart)
            Problem(kFieldBlockStart, Text("the block section begins at %u, inside the tables that end at %llu",
                                           m_header.blockStart, static_cast<ull>(behind)));
    }

    std::uint64_t AddressOf(Table table, std::size_t index) const {
        const TableInfo& info = m_header.tables[static_cast<std::size_t>(table)];
        return info.address + static_cast<std::uint64_t>(info.recordSize) * index;
    }

    void CheckName(std::uint64_t at, const char* what, const std::string& name) {
        if (name.size() >= 32) Problem(at + 1, Text("the name of a %s is not terminated within 32 bytes", what));
        if (name.empty()) Remark(at + 1, Text("a %s without a name", what));
    }

    void CheckTableRecords() {
        for (std::size_t i = 0; i < m_drawing.layers.size(); ++i) {
            const std::uint64_t at = AddressOf(Table::layer, i);
            CheckName(at, "layer", m_drawing.layers[i].name);
            if (static_cast<std::size_t>(m_drawing.layers[i].linetype) >= m_drawing.linetypes.size())
                Problem(at + 35, Text("layer %zu has linetype %d; there are %zu", i, m_drawing.layers[i].linetype,
                                      m_drawing.linetypes.size()));
        }
        for (std::size_t i = 0; i < m_drawing.styles.size(); ++i)
            CheckName(AddressOf(Table::style, i), "text style", m_drawing.styles[i].name);
        for (std::size_t i = 0; i < m_drawing.linetypes.size(); ++i) CheckLinetype(i);
    }

    void CheckLinetype(std::size_t index) {
        const Linetype& type = m_drawing.linetypes[index];
        const std::uint64_t at = AddressOf(Table::linetype, index);
        CheckName(at, "linetype", type.name);
        if (type.count < 0 || static_cast<std::size_t>(type.count) > type.elements.size()) {
            Problem(at + 82, Text("linetype %zu says %d elements; there is room for 12", index, type.count));
            return;
        }
        double sum = 0.0;
        for (int i = 0; i < type.count; ++i) sum += std::abs(type.elements[static_cast<std::size_t>(i)]);
        if (!(std::abs(sum - type.length) <= 1e-9 * std::max(1.0, sum)))
            Problem(at + 83,
                    Text("linetype %zu has the length %g; its elements add up to %g", index, type.length, sum));
    }

    // What holds for a record wherever it stands.
    void CheckRecord(const Record& record) {
        const ull at = record.offset;
        if (record.layout == nullptr) {
            Remark(record.offset,
                   Text("a record of the kind %u, which is not known here; its %u bytes were passed over", record.kind,
                        record.length));
            return;
        }
        const bool marker = record.kind == kJump && record.flags == kHasElevation && record.length == kMarkerSize;
        if (record.kind == kJump) {
            if (marker)
                Remark(record.offset, "a jump marker with fields of its own, as a 3D polyline is written here");
            else if (record.length != kRecordHeaderBytes)
                Problem(record.offset + 2, Text("a JUMP record has %u bytes, not 8", record.length));
            return;
        }
        const std::size_t length = record.length + (record.Find("block") != nullptr && m_wide ? 2u : 0u);
        if (record.used != length && !(m_drawing.Is1009() && record.kind == kBlock))
            Problem(record.offset + 2, Text("the %s record at %llu says %u bytes; its flags and options announce %zu",
                                            record.layout->name, at, record.length, record.used));
        if (record.layer >= m_drawing.layers.size())
            Problem(record.offset + 4, Text("the %s record at %llu has layer %u; there are %zu", record.layout->name,
                                            at, record.layer, m_drawing.layers.size()));
        if (record.linetype && static_cast<std::size_t>(*record.linetype) >= m_drawing.linetypes.size() &&
            *record.linetype != kByBlock && *record.linetype != 256 &&
            !(m_drawing.Is1009() && *record.linetype >= 32766))
            Dangling(PrefixOf(record.layout, record.flags) < 0, record.offset + kRecordHeaderBytes,
                     Text("the %s record at %llu has linetype %d; there are %zu", record.layout->name, at,
                          *record.linetype, m_drawing.linetypes.size()));
        if (const Field* style = record.Find("style");
            style != nullptr && style->number >= static_cast<double>(m_drawing.styles.size()))
            Dangling(true, record.offset,
                     Text("the %s record at %llu has text style %g; there are %zu", record.layout->name, at,
                          style->number, m_drawing.styles.size()));
        if (const Field* block = record.Find("block");
            block != nullptr && block->number >= static_cast<double>(m_drawing.blocks.size()))
            Problem(record.offset, Text("the INSERT record at %llu refers to block %g; there are %zu", at,
                                        block->number, m_drawing.blocks.size()));
        for (const Point& point : record.points)
            if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
                Problem(record.offset, Text("the %s record at %llu has a coordinate that is no finite number",
                                            record.layout->name, at));
                break;
            }
    }

    // An index beyond its table. What a record of a block definition of ours kept from the block's own file, because
    // copying does not map it, is no damage: readers take the usual style or linetype.
    void Dangling(bool unmapped, std::uint64_t offset, std::string text) {
        if (m_inBlock && unmapped && m_drawing.CountsEntities())
            Remark(offset, text + ", since it keeps the number that it had in the block's own file");
        else
            Problem(offset, std::move(text));
    }

    // POLYLINE or INSERT with attributes, vertices, SEQEND: keeps what is open and proves the closing link.
    void FollowSequence(const Record& record, std::uint64_t sectionStart) {
        const bool opens = record.kind == kPolyline || record.kind == kJump ||
                           (record.kind == kInsert && (record.flags & kHasFollowers));
        if (opens) {
            if (m_open)
                Problem(record.offset, Text("a sequence begins inside the one at %llu", static_cast<ull>(*m_open)));
            m_open = record.offset;
            m_openKind = record.kind;
            m_openExtended = record.kind == kPolyline && (record.options & 6) != 0;
        } else if (record.kind == kVertex) {
            if (!m_open) Problem(record.offset, "a VERTEX outside a polyline");
        } else if (record.kind == kSeqEnd) {
            if (!m_open)
                Problem(record.offset, "a SEQEND that closes nothing");
            else
                CheckLink(record, sectionStart);
            m_open.reset();
        } else if (m_open && record.layout != nullptr && m_openKind != kInsert) {
            Problem(record.offset,
                    Text("a %s record inside the polyline at %llu", record.layout->name, static_cast<ull>(*m_open)));
        }
    }

    void CheckLink(const Record& record, std::uint64_t sectionStart) {
        const double begin = record.Number("begin", -1.0);
        if (begin == static_cast<double>(*m_open - sectionStart)) return;
        if (begin == static_cast<double>(kInExtraSection) && (m_openKind == kJump || m_openExtended)) return;
        Problem(record.offset, Text("the SEQEND at %llu points to %.0f; its sequence began at %llu",
                                    static_cast<ull>(record.offset), begin, static_cast<ull>(*m_open - sectionStart)));
    }

    void EndOfSection(const char* section) {
        if (m_open)
            Problem(*m_open, Text("the sequence at %llu is not closed within the %s section", static_cast<ull>(*m_open),
                                  section));
        m_open.reset();
    }

    void CheckEntities() {
        const std::uint64_t end = m_header.entityEnd;
        std::uint64_t at = m_header.entityStart;
        Record record;
        while (at < end) {
            if (!ReadRecord(m_drawing.bytes(), at, m_drawing.Is1009(), end, record)) {
                Problem(
                    at,
                    Text("the record at %llu claims %u bytes; %llu are left up to the section's end at %llu, and 8 is "
                         "the least. What follows cannot be read",
                         static_cast<ull>(at), record.length, static_cast<ull>(end - at), static_cast<ull>(end)));
                break;
            }
            ++m_report.entities;
            if (!record.erased) {
                CheckRecord(record);
                FollowSequence(record, 0);
            }
            at += record.length;
        }
        EndOfSection("entity");
        const std::uint32_t counted = m_header.blockSize - kEntityCountStart;
        if (!m_drawing.Is1009() && m_header.blockSize >= kEntityCountStart && counted != m_report.entities)
            Remark(kFieldBlockSize,
                   Text("field 32 counts %u entities above the start value of the template; there are %llu", counted,
                        static_cast<ull>(m_report.entities)));
    }

    void CheckBlocks() {
        const std::uint64_t size = m_drawing.bytes().size();
        if (m_drawing.blocks.empty()) {
            Record closing;
            const bool polyline = ReadRecord(m_drawing.bytes(), m_header.extraStart, false, size, closing) &&
                                  closing.kind == kPolyline && m_header.extraStart + kClosingBytes == size;
            if (!m_drawing.Is1009() && m_header.extraStart == m_header.blockStart && size > m_header.blockStart &&
                !polyline)
                Problem(m_header.blockStart, Text("%llu bytes stand behind the block section, which has no block",
                                                  static_cast<ull>(size - m_header.blockStart)));
            return;
        }
        m_inBlock = true;
        std::set<std::uint64_t> checked;
        for (std::size_t i = 0; i < m_drawing.blocks.size(); ++i) CheckBlock(i, checked);
        m_inBlock = false;
    }

    void CheckBlock(std::size_t index, std::set<std::uint64_t>& checked) {
        const BlockEntry& block = m_drawing.blocks[index];
        const std::uint64_t entry = AddressOf(Table::block, index);
        if (block.name.empty() && block.flag == 0 && block.offset == 0) {
            Remark(entry, Text("block %zu is an empty slot", index));
            return;
        }
        CheckName(entry, "block", block.name);
        if (!m_drawing.Is1009() && U16At(m_drawing.bytes(), entry + 35) != kBlockOffsetHigh)
            Problem(entry + 35, Text("the upper word of the place of block %zu is %u, not %u", index,
                                     U16At(m_drawing.bytes(), entry + 35), kBlockOffsetHigh));
        std::uint64_t at = static_cast<std::uint64_t>(m_header.blockStart) + block.offset;
        if (!checked.insert(at).second)
            Problem(entry + 33,
                    Text("block %zu shares its definition at %llu with another", index, static_cast<ull>(at)));
        Record record;
        std::uint64_t next = 0;
        bool first = true;
        while (true) {
            if (!ReadBlockRecord(m_drawing, at, record, next)) {
                Problem(
                    at,
                    Text("block %zu has no ENDBLK: the record at %llu claims %u bytes up to the section's end at %llu",
                         index, static_cast<ull>(at), record.length, static_cast<ull>(m_drawing.BlockEnd())));
                break;
            }
            if (first && record.kind != kBlock) {
                Problem(entry + 33,
                        Text("block %zu points to %llu, where no BLOCK record stands", index, static_cast<ull>(at)));
                break;
            }
            first = false;
            m_wide = next - at != record.length;
            if (m_wide) Remark(at, "a nested INSERT with a four-byte block number, two bytes longer than it says");
            if (!record.erased && record.kind != kBlock) CheckRecord(record);
            m_wide = false;
            if (record.kind == kEndBlock) break;
            if (!record.erased) FollowBlockSequence(record);
            at = next;
        }
        EndOfSection("block");
    }

    // In a block definition a SEQEND keeps the place that it had in the block's own file, so that only the order is
    // proven.
    void FollowBlockSequence(const Record& record) {
        if (record.kind == kSeqEnd) {
            if (!m_open) Problem(record.offset, "a SEQEND that closes nothing");
            m_open.reset();
        } else {
            FollowSequence(record, 0);
        }
    }

    void CheckExtra() {
        const std::uint64_t size = m_drawing.bytes().size();
        if (m_header.extraStart > size) {
            Remark(kFieldExtraStart,
                   Text("the extra section begins at %u, behind the end of the file at %llu; it is empty",
                        m_header.extraStart, static_cast<ull>(size)));
            return;
        }
        Record record;
        if (m_header.extraStart <= m_header.blockStart ||
            !ReadRecord(m_drawing.bytes(), m_header.extraStart, m_drawing.Is1009(), size, record))
            return;
        if (record.kind != kPolyline || record.used != record.length)
            Remark(m_header.extraStart, "the extra section does not begin with a polyline's closing record");
        else
            CheckRecord(record);
    }

    const Drawing& m_drawing;
    const Header& m_header;
    Report m_report;
    std::optional<std::uint64_t> m_open;  // the record that opened the sequence in hand
    std::uint8_t m_openKind = 0;
    bool m_openExtended = false;
    bool m_inBlock = false;
    bool m_wide = false;  // the record in hand is a nested INSERT of the wide form
};

}  // namespace

Report Check(const Drawing& drawing) {
    return Checker(drawing).Run();
}

}  // namespace zm::dwg::reader

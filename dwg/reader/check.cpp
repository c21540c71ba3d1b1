#include "dwg/reader/check.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"

namespace zm::dwg::reader {
namespace {

using ull = unsigned long long;

constexpr std::uint32_t kInExtraSection = 0x80000000;
constexpr std::size_t kClosingBytes = 50;  // a polyline's closing record and the jump after it
constexpr std::uint16_t kBlockOffsetHigh = 0x4000;
// Tables whose place is in the header variables; the gap is what 1009 has between two tables.
constexpr std::size_t kSystemTable = 1007, kApplicationTable = 1298, kTableGap = 32;

// The record sizes of the tables in the order of Table, for 1006.
constexpr std::size_t kRecordSizes[kTableCount] = {37, 37, 194, 187, 0};
constexpr std::size_t kViewSizes[] = {91, 149};

class Checker {
 public:
    Checker(const Drawing& drawing, Wording wording)
        : m_drawing(drawing), m_header(drawing.header), m_wording(wording) {}

    Report Run() {
        if (!m_drawing.Known()) {
            Problem(0, Worded("the version stamp \"%.6s\" is not one of 1006 or 1009; nothing else can be checked",
                              gbk::ToUtf8(TextAt(m_drawing.bytes(), 0, 6)).c_str()));
            return std::move(m_report);
        }
        if (!CheckSections()) return std::move(m_report);
        CheckTables();
        CheckTableRecords();
        CheckEntities();
        CheckBlocks();
        CheckCircles();
        CheckExtra();
        CheckJumps();
        return std::move(m_report);
    }

 private:
    const char* Translated(const char* english) const { return m_wording != nullptr ? m_wording(english) : english; }
    std::string Worded(const char* english, ...) const ZM_FORMATS(2, 3) {
        std::va_list values;
        va_start(values, english);
        std::string text = numbers::TextV(Translated(english), values);
        va_end(values);
        return text;
    }

    void Problem(std::uint64_t offset, std::string text, bool byCopy = false) {
        if (m_report.problems.size() < kMaxFindings)
            m_report.problems.push_back({offset, std::move(text), byCopy});
        else
            ++m_report.unlisted;
    }
    void Remark(std::uint64_t offset, std::string text) {
        if (m_report.remarks.size() < kMaxFindings) m_report.remarks.push_back({offset, std::move(text), false});
    }

    // The sections' places in the file. False where nothing further can be read.
    bool CheckSections() {
        const std::uint64_t size = m_drawing.bytes().size();
        const std::size_t firstEntity = m_header.variables == 158 ? 1298 : 1310;
        if (size < kHeaderBytes) {
            Problem(size, Worded("the file has %llu bytes and ends inside the header of %zu", static_cast<ull>(size),
                                 kHeaderBytes));
            return false;
        }
        if (!m_drawing.Is1009()) {
            if (m_header.variables != 158 && m_header.variables != 160)
                Problem(kFieldVariables,
                        Worded("%u header variables; a 1006 drawing has 158 or 160", m_header.variables));
            if (m_header.entityStart != firstEntity)
                Problem(kFieldEntityStart,
                        Worded("the entity section begins at %u, not after the header variables at %zu",
                               m_header.entityStart, firstEntity));
        }
        if (m_header.entityEnd < m_header.entityStart)
            Problem(kFieldEntityEnd, Worded("the entity section ends at %u, before its start at %u", m_header.entityEnd,
                                            m_header.entityStart));
        if (m_header.entityEnd > size)
            Problem(kFieldEntityEnd, Worded("the entity section ends at %u, beyond the end of the file at %llu",
                                            m_header.entityEnd, static_cast<ull>(size)));
        if (m_header.blockStart > size)
            Problem(kFieldBlockStart, Worded("the block section begins at %u, beyond the end of the file at %llu",
                                             m_header.blockStart, static_cast<ull>(size)));
        return m_report.problems.empty();
    }

    void CheckTables() {
        const std::uint64_t size = m_drawing.bytes().size();
        const char* const names[kTableCount] = {Translated("block"), Translated("layer"), Translated("style"),
                                                Translated("linetype"), Translated("view")};
        std::uint64_t behind = m_header.entityEnd;
        for (std::size_t i = 0; i < kTableCount; ++i) {
            const TableInfo& table = m_header.tables[i];
            const std::size_t field = kFieldTables + 10 * i;
            const char* name = names[i];
            const std::uint64_t end = table.address + static_cast<std::uint64_t>(table.recordSize) * table.count;
            if (table.third != 0)
                Problem(field + 4, Worded("the third word of the %s table is %u; with it the count would be %lu", name,
                                          table.third, table.count + 65536ul * table.third));
            if (!m_drawing.Is1009()) {
                const bool right = i == static_cast<std::size_t>(Table::view)
                                       ? std::find(std::begin(kViewSizes), std::end(kViewSizes), table.recordSize) !=
                                             std::end(kViewSizes)
                                       : table.recordSize == kRecordSizes[i];
                if (!right)
                    Problem(field, Worded("a %s record has %u bytes; 1006 has other sizes", name, table.recordSize));
                if (table.address != behind && table.count > 0)
                    Problem(field + 6, Worded("the %s table begins at %u; what is before it ends at %llu", name,
                                              table.address, static_cast<ull>(behind)));
                behind = end;
            }
            if (table.count > 0 && end > size)
                Problem(field + 2, Worded("the %s table of %u records ends at %llu, beyond the end of the file at %llu",
                                          name, table.count, static_cast<ull>(end), static_cast<ull>(size)));
        }
        CheckViewports();
        if (!m_drawing.Is1009() && behind > m_header.blockStart)
            Problem(kFieldBlockStart, Worded("the block section begins at %u, inside the tables that end at %llu",
                                             m_header.blockStart, static_cast<ull>(behind)));
    }

    // The table of views on screen is after the others; its count has to be that of the records that are there.
    void CheckViewports() {
        const Bytes b = m_drawing.bytes();
        const auto table = [&](std::size_t at) {
            return TableInfo{U16At(b, at), U16At(b, at + 2), 0, U32At(b, at + 6)};
        };
        const TableInfo viewports = table(kViewportTable), applications = table(kApplicationTable);
        if (m_drawing.Is1009()) {
            const std::uint64_t end = viewports.address + std::uint64_t{viewports.recordSize} * viewports.count;
            if (viewports.recordSize == 0 || applications.address < viewports.address + kTableGap) return;
            if (end + kTableGap != applications.address)
                Problem(
                    kViewportTable + 2,
                    Worded("the VPORT table of %u records ends at %llu; the place for it ends at %llu", viewports.count,
                           static_cast<ull>(end), static_cast<ull>(applications.address - kTableGap)));
            return;
        }
        const TableInfo& views = m_header.tables[static_cast<std::size_t>(Table::view)];
        const std::uint64_t viewEnd = views.address + std::uint64_t{views.recordSize} * views.count;
        if (viewEnd > m_header.blockStart) return;
        const TableInfo systems = table(kSystemTable);
        std::uint64_t tail =
            std::uint64_t{systems.recordSize} * systems.count + std::uint64_t{viewports.recordSize} * viewports.count;
        if (m_header.variables > 158) tail += std::uint64_t{applications.recordSize} * applications.count;
        if (tail != m_header.blockStart - viewEnd)
            Problem(
                kViewportTable + 2,
                Worded("the VPORT table of %u records and those beside it have %llu bytes; between the views and the "
                       "blocks there are %llu",
                       viewports.count, static_cast<ull>(tail), static_cast<ull>(m_header.blockStart - viewEnd)));
    }

    std::uint64_t AddressOf(Table table, std::size_t index) const {
        const TableInfo& info = m_header.tables[static_cast<std::size_t>(table)];
        return info.address + static_cast<std::uint64_t>(info.recordSize) * index;
    }

    void CheckName(std::uint64_t at, const char* what, const std::string& name) {
        if (name.size() >= 32) Problem(at + 1, Worded("the name of a %s is not terminated within 32 bytes", what));
        if (name.empty()) Remark(at + 1, Worded("a %s without a name", what));
    }

    void CheckTableRecords() {
        for (std::size_t i = 0; i < m_drawing.layers.size(); ++i) {
            const std::uint64_t at = AddressOf(Table::layer, i);
            CheckName(at, Translated("layer"), m_drawing.layers[i].name);
            if (static_cast<std::size_t>(m_drawing.layers[i].linetype) >= m_drawing.linetypes.size())
                Problem(at + 35, Worded("layer %zu has linetype %d; there are %zu", i, m_drawing.layers[i].linetype,
                                        m_drawing.linetypes.size()));
        }
        for (std::size_t i = 0; i < m_drawing.styles.size(); ++i)
            CheckName(AddressOf(Table::style, i), Translated("text style"), m_drawing.styles[i].name);
        for (std::size_t i = 0; i < m_drawing.linetypes.size(); ++i) CheckLinetype(i);
    }

    void CheckLinetype(std::size_t index) {
        const Linetype& type = m_drawing.linetypes[index];
        const std::uint64_t at = AddressOf(Table::linetype, index);
        CheckName(at, Translated("linetype"), type.name);
        if (type.count < 0 || static_cast<std::size_t>(type.count) > type.elements.size()) {
            Problem(at + 82, Worded("linetype %zu says %d elements; there is room for 12", index, type.count));
            return;
        }
        double sum = 0.0;
        for (int i = 0; i < type.count; ++i) sum += std::abs(type.elements[static_cast<std::size_t>(i)]);
        if (!(std::abs(sum - type.length) <= 1e-9 * std::max(1.0, sum)))
            Problem(at + 83,
                    Worded("linetype %zu has the length %g; its elements add up to %g", index, type.length, sum));
    }

    // What holds for a record of either section.
    void CheckRecord(const Record& record) {
        const ull at = record.offset;
        if (record.kind > kinds::kLast) {
            Problem(record.offset,
                    Worded("a record of the kind %u, which no program writes; its %u bytes were passed over",
                           record.kind, record.length),
                    m_inBlock && m_drawing.CountsEntities());
            return;
        }
        if (record.erased) return;
        if (record.layout == nullptr) {
            Remark(record.offset,
                   Worded("a record of the kind %u, which is not known here; its %u bytes were passed over",
                          record.kind, record.length));
            return;
        }
        if (record.kind == kJump) {
            if (record.IsMarker())
                Remark(record.offset, Worded("a jump marker with fields of its own, as a 3D polyline is written here"));
            else if (record.length != record.used)
                Problem(record.offset + 2, Worded("a JUMP record has %u bytes, not %zu", record.length, record.used));
            return;
        }
        const std::size_t length = record.length + (record.Find("block") != nullptr && m_wide ? 2u : 0u);
        if (record.used != length) {
            const std::string text = Worded("the %s record at %llu says %u bytes; its flags and options announce %zu",
                                            record.layout->name, at, record.length, record.used);
            const bool unproven = record.kind == kDimension && (record.options & ~fields::kProvenDimensionOptions) != 0;
            const bool whole = record.kind == kBlock || PrefixOf(record.layout, record.flags) < 0;
            if (unproven)
                Remark(record.offset + 2, text + Worded(", among them such as are seldom seen"));
            else
                Problem(record.offset + 2, text, whole && m_inBlock && m_drawing.CountsEntities());
        }
        if (record.layer >= m_drawing.layers.size())
            Problem(record.offset + 4, Worded("the %s record at %llu has layer %u; there are %zu", record.layout->name,
                                              at, record.layer, m_drawing.layers.size()));
        if (record.linetype && static_cast<std::size_t>(*record.linetype) >= m_drawing.linetypes.size() &&
            !record.ByBlock() && !record.ByLayer())
            Dangling(PrefixOf(record.layout, record.flags) < 0, record.offset + kRecordHeaderBytes,
                     Worded("the %s record at %llu has linetype %d; there are %zu", record.layout->name, at,
                            *record.linetype, m_drawing.linetypes.size()));
        if (const Field* style = record.Find("style");
            style != nullptr && style->number >= static_cast<double>(m_drawing.styles.size()))
            Dangling(true, record.offset,
                     Worded("the %s record at %llu has text style %g; there are %zu", record.layout->name, at,
                            style->number, m_drawing.styles.size()));
        if (const Field* block = record.Find("block");
            block != nullptr && block->number >= static_cast<double>(m_drawing.blocks.size()))
            Problem(record.offset,
                    Worded("the %s record at %llu refers to block %g; there are %zu", record.layout->name, at,
                           block->number, m_drawing.blocks.size()),
                    record.kind == kDimension && m_inBlock && m_drawing.CountsEntities());
        else if (block != nullptr && record.kind == kDimension &&
                 m_drawing.blocks[static_cast<std::size_t>(block->number)].name.compare(0, 1, "*") != 0)
            Problem(record.offset,
                    Worded("the DIMENSION record at %llu refers to block %g, which is not one of a dimension", at,
                           block->number),
                    m_inBlock && m_drawing.CountsEntities());
        for (const Point& point : record.points)
            if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
                Problem(
                    record.offset,
                    Worded("the %s record at %llu has a coordinate that is no finite number", record.layout->name, at),
                    m_inBlock && m_drawing.CountsEntities() && PrefixOf(record.layout, record.flags) < 0);
                break;
            }
    }

    // An index beyond its table. A record of a block definition of ours can have kept it from the block's own file,
    // because copying does not map it.
    void Dangling(bool unmapped, std::uint64_t offset, std::string text) {
        if (m_inBlock && unmapped && m_drawing.CountsEntities())
            Problem(offset, text + Worded(", since it keeps the number that it had in the block's own file"), true);
        else
            Problem(offset, std::move(text));
    }

    // POLYLINE or INSERT with attributes, vertices, SEQEND: keeps what is open and proves the closing link.
    void FollowSequence(const Record& record, std::uint64_t sectionStart) {
        const bool opens = record.kind == kPolyline || record.kind == kJump ||
                           (record.kind == kInsert && (record.flags & kHasFollowers));
        if (opens) {
            if (m_open)
                Problem(record.offset, Worded("a sequence begins inside the one at %llu", static_cast<ull>(*m_open)));
            m_open = record.offset;
            m_openKind = record.kind;
            m_openExtended = record.kind == kPolyline && (record.options & 6) != 0;
        } else if (record.kind == kVertex) {
            if (!m_open) Problem(record.offset, Worded("a VERTEX outside a polyline"));
        } else if (record.kind == kSeqEnd) {
            if (!m_open)
                Problem(record.offset, Worded("a SEQEND that closes nothing"));
            else
                CheckLink(record, sectionStart);
            m_open.reset();
        } else if (record.kind == kAttrib) {
            if (!m_open || m_openKind != kInsert)
                Problem(record.offset, Worded("an ATTRIB outside an INSERT with attributes"),
                        m_inBlock && m_drawing.CountsEntities());
        } else if (m_open && record.layout != nullptr && m_openKind != kInsert) {
            Problem(record.offset,
                    Worded("a %s record inside the polyline at %llu", record.layout->name, static_cast<ull>(*m_open)));
        }
    }

    void CheckLink(const Record& record, std::uint64_t sectionStart) {
        const double begin = record.Number("begin", -1.0);
        if (begin == static_cast<double>(*m_open - sectionStart)) return;
        if (begin == static_cast<double>(kInExtraSection) && (m_openKind == kJump || m_openExtended)) return;
        Problem(record.offset,
                Worded("the SEQEND at %llu points to %.0f; its sequence began at %llu", static_cast<ull>(record.offset),
                       begin, static_cast<ull>(*m_open - sectionStart)));
    }

    void EndOfSection(const char* section) {
        if (m_open)
            Problem(*m_open, Worded("the sequence at %llu is not closed within the %s section",
                                    static_cast<ull>(*m_open), section));
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
                    Worded(
                        "the record at %llu claims %u bytes; %llu are left up to the section's end at %llu, and 8 is "
                        "the least. What follows cannot be read",
                        static_cast<ull>(at), record.length, static_cast<ull>(end - at), static_cast<ull>(end)));
                break;
            }
            ++m_report.entities;
            CheckRecord(record);
            if (!record.erased) FollowSequence(record, 0);
            at += record.length;
        }
        EndOfSection(Translated("entity"));
        const std::uint32_t counted = m_header.blockSize - kEntityCountStart;
        if (!m_drawing.Is1009() && m_header.blockSize >= kEntityCountStart && counted != m_report.entities)
            Remark(kFieldBlockSize,
                   Worded("field 32 counts %u entities above the start value of the template; there are %llu", counted,
                          static_cast<ull>(m_report.entities)));
    }

    void CheckBlocks() {
        const std::uint64_t size = m_drawing.bytes().size();
        if (m_drawing.blocks.empty()) {
            Record closing;
            const bool polyline = ReadRecord(m_drawing.bytes(), m_header.extraStart, false, size, closing) &&
                                  closing.kind == kPolyline && m_header.extraStart + kClosingBytes == size;
            if (!m_drawing.Is1009() && m_header.extraStart == m_header.blockStart && size > m_header.blockStart &&
                !polyline && (m_header.extraSize & kSectionSizeMask) == 0)
                Problem(m_header.blockStart, Worded("%llu bytes stand behind the block section, which has no block",
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
        if (block.IsEmptySlot()) {
            Remark(entry, Worded("block %zu is an empty slot", index));
            return;
        }
        if (!block.readable) {
            Problem(entry, Worded("the definition of block %zu runs through those of other blocks", index));
            return;
        }
        CheckName(entry, Translated("block"), block.name);
        if (!m_drawing.Is1009() && U16At(m_drawing.bytes(), entry + 35) != kBlockOffsetHigh)
            Problem(entry + 35, Worded("the upper word of the place of block %zu is %u, not %u", index,
                                       U16At(m_drawing.bytes(), entry + 35), kBlockOffsetHigh));
        std::uint64_t at = static_cast<std::uint64_t>(m_header.blockStart) + block.offset;
        if (!checked.insert(at).second)
            Problem(entry + 33,
                    Worded("block %zu shares its definition at %llu with another", index, static_cast<ull>(at)));
        Record record;
        std::uint64_t next = 0;
        bool first = true;
        while (true) {
            if (!ReadBlockRecord(m_drawing, at, record, next)) {
                Problem(
                    at,
                    Worded(
                        "block %zu has no ENDBLK: the record at %llu claims %u bytes up to the section's end at %llu",
                        index, static_cast<ull>(at), record.length, static_cast<ull>(m_drawing.BlockEnd())));
                break;
            }
            if (first && record.kind != kBlock) {
                Problem(entry + 33, Worded("block %zu points to %llu, where there is no BLOCK record", index,
                                           static_cast<ull>(at)));
                break;
            }
            first = false;
            m_wide = next - at != record.length;
            if (m_wide)
                Problem(
                    at,
                    Worded("a nested INSERT has a four-byte block number and is two bytes longer than it says; what "
                           "follows is lost to other readers"),
                    true);
            CheckRecord(record);
            m_wide = false;
            if (record.kind == kEndBlock) break;
            if (!record.erased) FollowBlockSequence(record);
            at = next;
        }
        EndOfSection(Translated("block"));
    }

    // In a block definition a SEQEND keeps the place that it had in the block's own file, so that only the order is
    // proven.
    void FollowBlockSequence(const Record& record) {
        if (record.kind == kSeqEnd) {
            if (!m_open) Problem(record.offset, Worded("a SEQEND that closes nothing"));
            m_open.reset();
        } else {
            FollowSequence(record, 0);
        }
    }

    // A block that contains itself, through whatever inserts: it has no end.
    void CheckCircles() {
        std::vector<std::vector<std::size_t>> inner(m_drawing.blocks.size());
        for (std::size_t i = 0; i < inner.size(); ++i)
            m_drawing.ForEachInBlock(i, [&](const Record& record) {
                const Field* block = record.erased ? nullptr : record.Find("block");
                if (block != nullptr && block->number < static_cast<double>(inner.size()))
                    inner[i].push_back(static_cast<std::size_t>(block->number));
                return true;
            });
        enum Mark : std::uint8_t { fresh, open, done };
        std::vector<Mark> marks(inner.size(), fresh);
        std::vector<std::pair<std::size_t, std::size_t>> path;  // block, and which of its inserts is next
        for (std::size_t start = 0; start < inner.size(); ++start) {
            if (marks[start] != fresh) continue;
            marks[start] = open;
            path.assign(1, {start, 0});
            while (!path.empty()) {
                auto& [block, next] = path.back();
                if (next == inner[block].size()) {
                    marks[block] = done;
                    path.pop_back();
                    continue;
                }
                const std::size_t to = inner[block][next++];
                if (marks[to] == open)
                    Problem(AddressOf(Table::block, to), Worded("block %zu contains itself", to),
                            m_drawing.CountsEntities());
                if (marks[to] != fresh) continue;
                marks[to] = open;
                path.push_back({to, 0});
            }
        }
    }

    void CheckExtra() {
        const std::uint64_t size = m_drawing.bytes().size();
        const std::uint64_t wanted = m_header.extraSize & kSectionSizeMask;
        if (m_header.extraStart > size) {
            const std::string text = Worded("the extra section begins at %u, beyond the end of the file at %llu",
                                            m_header.extraStart, static_cast<ull>(size));
            if (wanted != 0)
                Problem(kFieldExtraStart, text);
            else
                Remark(kFieldExtraStart, text + Worded("; it is empty"));
            return;
        }
        if (m_header.extraStart + wanted > size)
            Problem(kFieldExtraSize, Worded("the extra section ends at %llu, beyond the end of the file at %llu",
                                            ull{m_header.extraStart} + wanted, static_cast<ull>(size)));
        const std::uint64_t end = m_drawing.ExtraEnd();
        std::uint64_t at = m_header.extraStart;
        Record record;
        for (; at < end; at += record.length) {
            if (!ReadRecord(m_drawing.bytes(), at, m_drawing.Is1009(), end, record)) {
                Problem(at, Worded("the record at %llu claims %u bytes; the extra section ends at %llu",
                                   static_cast<ull>(at), record.length, static_cast<ull>(end)));
                return;
            }
            CheckRecord(record);
        }
    }

    // Each jump has to lead to a record, and the way back has to be there.
    void CheckJumps() {
        if (!ForEachInOrder(m_drawing, [](const Record&) { return true; }))
            Problem(m_header.entityStart,
                    Worded("a JUMP of the entity section leads nowhere, in a circle or not back"));
        for (std::size_t i = 0; i < m_drawing.blocks.size(); ++i)
            if (!ForEachInBlockInOrder(m_drawing, i, [](const Record&) { return true; }) && HasJump(i))
                Problem(AddressOf(Table::block, i),
                        Worded("a JUMP of block %zu leads nowhere, in a circle or not back", i),
                        m_drawing.CountsEntities());
    }
    bool HasJump(std::size_t block) const {
        bool found = false;
        m_drawing.ForEachInBlock(block, [&](const Record& record) { return !(found = found || record.kind == kJump); });
        return found;
    }

    const Drawing& m_drawing;
    const Header& m_header;
    Wording m_wording;
    Report m_report;
    std::optional<std::uint64_t> m_open;  // the record that opened the sequence in hand
    std::uint8_t m_openKind = 0;
    bool m_openExtended = false;
    bool m_inBlock = false;
    bool m_wide = false;  // the record in hand is a nested INSERT of the wide form
};

}  // namespace

Report Check(const Drawing& drawing, Wording wording) {
    return Checker(drawing, wording).Run();
}

}  // namespace zm::dwg::reader

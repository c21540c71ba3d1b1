#include "dwg/import/block_import.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "dwg/import/table_import.h"
#include "dwg/reader/plane.h"

namespace zm::dwg {
namespace {

using reader::Axes;
using reader::Point;
using reader::Record;

constexpr std::uint32_t kLinkMark = kInBlocks << 24;  // a place in the block section
constexpr char kSectionFull[] = "the block definitions of the drawing would pass 64000 bytes";

class Importer {
 public:
    Importer(Session& session, std::vector<std::uint8_t> bytes)
        : m_session(session),
          m_tables(session.tables()),
          m_source(std::move(bytes)),
          m_map(session, m_source),
          m_slots(m_source.blocks.size(), kNone) {}

    bool Run(const std::string& name);
    const ImportFault& fault() const { return m_fault; }

 private:
    static constexpr int kNone = -1;

    // A block of the file that a reference means, to be written as the block of a slot.
    struct Job {
        std::size_t block;
        int slot;
        bool shifted;  // a dimension's block has its strokes where they stand in the drawing
    };

    bool Fail(std::string reason) {
        m_fault.reason = std::move(reason);
        m_fault.offset = m_offset;
        return false;
    }
    bool Overflow(const char* limit) {
        m_fault.limit = true;
        m_fault.reason = limit;
        m_fault.offset = m_offset;
        return false;
    }

    bool Put(const void* data, std::size_t count);
    bool OpenSlot(const std::string& name, std::uint8_t flag, int& slot);
    void BeginDefinition(int slot);
    bool PutBlock(const Point& base, unsigned layer);
    bool PutEnd();
    bool WriteEntities();
    bool WriteJob(const Job& job);
    bool Take(const Record& record, bool shifted);
    bool TakeInSequence(const Record& record);
    bool Prove(const Record& record);
    bool MapBlock(const Record& record, bool shifted, int& slot);
    bool Convert(const Record& record, bool shifted);
    bool HasCircle(std::size_t block, std::vector<char>& marks) const;

    Session& m_session;
    Tables& m_tables;
    reader::Drawing m_source;
    TableImport m_map;
    std::vector<int> m_slots;  // of the file's blocks
    std::vector<Job> m_jobs;
    std::uint64_t m_offset = 0;     // of the record in hand
    std::uint8_t m_open = 0;        // kind of the record whose sequence is open; 0: none
    std::uint32_t m_openPlace = 0;  // where it was written, in the block section
    Axes m_polylineAxes;
    ImportFault m_fault;
};

bool Importer::Put(const void* data, std::size_t count) {
    auto& section = m_tables.section();
    if (kBlockSectionSize - section.size() < count) return Overflow(kSectionFull);
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    section.insert(section.end(), bytes, bytes + count);
    m_tables.AddToField(kExtraStart, static_cast<std::uint32_t>(count));
    return true;
}

bool Importer::OpenSlot(const std::string& name, std::uint8_t flag, int& slot) {
    if (m_tables.Full(Table::block)) return Overflow("a drawing holds 500 blocks");
    slot = m_tables.Count(Table::block);
    std::uint8_t* record = m_tables.Slot(Table::block, slot);
    record[0] = flag;
    std::memset(record + 1, 0, kNameSize);
    std::copy_n(name.data(), std::min(name.size(), kNameSize - 1), record + 1);
    m_tables.AddBlock();
    m_session.TablesChanged();
    return true;
}

void Importer::BeginDefinition(int slot) {
    std::uint8_t* record = m_tables.Slot(Table::block, slot);
    Store(record + block_record::kOffset, static_cast<std::uint16_t>(m_tables.section().size()));
    Store(record + block_record::kMark, block_record::kMarkValue);
}

bool Importer::PutBlock(const Point& base, unsigned layer) {
    std::uint8_t record[24] = {};
    static_assert(sizeof record == kBlock.length);
    Store(record, kBlock.word);
    Store(record + 2, kBlock.length);
    Store(record + 4, static_cast<std::uint16_t>(layer));
    Store(record + 8, base.x);
    Store(record + 16, base.y);
    return Put(record, sizeof record);
}

bool Importer::PutEnd() {
    std::uint8_t record[kEntityHeaderSize] = {};
    Store(record, kBlockEnd.word);
    Store(record + 2, kBlockEnd.length);
    return Put(record, sizeof record);
}

// What has to hold for a record before anything of it is taken over.
bool Importer::Prove(const Record& record) {
    if (record.layout == nullptr)
        return Fail("a record of the kind " + std::to_string(record.kind) + ", which is not known");
    const std::size_t wide = record.used == record.length + kReferenceSurplus && record.kind == kinds::kInsert ? 2 : 0;
    if (!reader::IsProvenLength(record) && wide == 0)
        return Fail("flags and options of a record announce other fields than its length holds");
    if (record.layer >= m_source.layers.size()) return Fail("a layer index leads outside the layer table");
    for (const Point& point : record.points)
        if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z))
            return Fail("a coordinate is no finite number");
    return true;
}

// The order of the records: vertices and attributes between their owner and a SEQEND.
bool Importer::TakeInSequence(const Record& record) {
    const bool opens =
        record.kind == kinds::kPolyline || (record.kind == kinds::kInsert && (record.flags & kHasFollowers) != 0);
    if (record.kind == kinds::kVertex && m_open != kinds::kPolyline) return Fail("a vertex is outside a polyline");
    if (record.kind == kinds::kAttrib && m_open != kinds::kInsert) return Fail("an attribute is outside a reference");
    if (record.kind == kinds::kSeqEnd && m_open == 0)
        return Fail("an end of a polyline or reference is where none is open");
    if (m_open != 0 && record.kind != kinds::kSeqEnd && record.kind != kinds::kVertex && record.kind != kinds::kAttrib)
        return Fail("a polyline or reference has no end");
    if (opens) {
        m_open = record.kind;
        m_openPlace = static_cast<std::uint32_t>(m_tables.section().size());
        m_polylineAxes = AxesOf(record);
    }
    return true;
}

bool Importer::MapBlock(const Record& record, bool shifted, int& slot) {
    const double number = record.Number("block", -1.0);
    if (!(number >= 0.0) || number >= static_cast<double>(m_source.blocks.size()))
        return Fail("a block number leads outside the block table");
    const auto block = static_cast<std::size_t>(number);
    if (m_slots[block] == kNone) {
        const reader::BlockEntry& entry = m_source.blocks[block];
        // Blocks of dimensions have no names of their own, but stars.
        const bool anonymous = entry.name.compare(0, 1, "*") == 0;
        const std::string name = anonymous ? entry.name : FreeName(entry.name, [&](const std::string& wanted) {
            std::uint8_t field[kNameSize] = {};
            std::memcpy(field, wanted.data(), std::min(wanted.size(), kNameSize - 1));
            return m_tables.LastBlock(field, m_tables.Count(Table::block)) >= 0;
        });
        const auto flag = static_cast<std::uint8_t>(kReferenced | (entry.flag & 3));  // anonymous, with attributes
        if (!OpenSlot(name, flag, m_slots[block])) return false;
        m_jobs.push_back({block, m_slots[block], shifted && anonymous && record.kind == kinds::kDimension});
    }
    slot = m_slots[block];
    return true;
}

// Writes a record in the shape of the output.
bool Importer::Convert(const Record& record, bool shifted) {
    const auto layer = m_map.Layer(record.layer);
    if (!layer) return Overflow(m_map.limit());
    unsigned flags = record.flags & ~static_cast<unsigned>(kHasExtra);
    int linetype = kByBlock;
    if (record.ByLayer()) {
        flags &= ~static_cast<unsigned>(kHasLinetype);
    } else if (!record.ByBlock()) {
        const auto index = static_cast<std::size_t>(*record.linetype);
        if (index >= m_source.linetypes.size()) return Fail("a linetype index leads outside the linetype table");
        const auto mapped = m_map.Linetype(index);
        if (!mapped) return Overflow(m_map.limit());
        linetype = *mapped;
    }
    int slot = 0, style = 0;
    if (RefersToBlock(record.kind) && !MapBlock(record, shifted, slot)) return false;
    if (const reader::Field* field = record.Find("style")) {
        if (field->number >= static_cast<double>(m_source.styles.size()))
            return Fail("a text style index leads outside the text style table");
        const auto mapped = m_map.Style(static_cast<std::size_t>(field->number));
        if (!mapped) return Overflow(m_map.limit());
        style = *mapped;
    }
    Point shift = shifted ? m_source.variables.base : Point{};
    shift.z = 0.0;
    const bool world = record.layout->threeD;
    if (!world) shift = (record.kind == kinds::kVertex ? m_polylineAxes : AxesOf(record)).FromWorld(shift);
    double elevation = record.elevation.value_or(0.0);
    if (!world && shift.z != 0.0 && (record.layout->points > 0 || record.kind == kinds::kPolyline)) {
        flags |= kHasElevation;
        elevation -= shift.z;
    }

    std::vector<std::uint8_t> out(kEntityHeaderSize);
    const auto append = [&](auto value) {
        const std::size_t at = out.size();
        out.resize(at + sizeof value);
        Store(out.data() + at, value);
    };
    const auto number = [&](FieldType type, double value) {
        if (type == FieldType::u8)
            append(static_cast<std::uint8_t>(value));
        else if (type == FieldType::u16)
            append(static_cast<std::uint16_t>(value));
        else if (type == FieldType::u32)
            append(static_cast<std::uint32_t>(value));
        else
            append(value);
    };
    auto point = record.points.begin();
    auto field = record.fields.begin();
    ForEachField(*record.layout, flags, record.options, {false, false}, [&](const FieldLayout& layout) {
        switch (layout.role) {
            case FieldRole::color:
                return append(static_cast<std::uint8_t>(record.color.value_or(0)));
            case FieldRole::linetype:
                return append(static_cast<std::uint8_t>(linetype));
            case FieldRole::elevation:
                return append(elevation);
            case FieldRole::thickness:
                return append(record.thickness.value_or(0.0));
            case FieldRole::handle:
                append(static_cast<std::uint8_t>(record.handle.size()));
                out.insert(out.end(), record.handle.begin(), record.handle.end());
                return;
            case FieldRole::x:
                return append(point->x - shift.x);
            case FieldRole::y:
                append(point->y - shift.y);
                if (!world || (flags & kHasElevation) != 0) ++point;
                return;
            case FieldRole::z:
                return append((point++)->z);
            case FieldRole::extended:
            case FieldRole::viewport:
                return;  // the output has none
            default:
                break;
        }
        const reader::Field& value = *field++;
        switch (layout.role) {
            case FieldRole::block:
                return append(static_cast<std::uint16_t>(slot));
            case FieldRole::style:
                return append(static_cast<std::uint8_t>(style));
            case FieldRole::link:
                return append(kLinkMark | m_openPlace);
            case FieldRole::movedX:
                return append(value.number - shift.x);
            case FieldRole::movedY:
                return append(value.number - shift.y);
            default:
                break;
        }
        if (layout.type != FieldType::text) return number(layout.type, value.number);
        append(static_cast<std::uint16_t>(value.text.size()));
        out.insert(out.end(), value.text.begin(), value.text.end());
    });
    Store(out.data(), static_cast<std::uint16_t>(record.kind + 256 * flags));
    Store(out.data() + 2, static_cast<std::uint16_t>(out.size()));
    Store(out.data() + 4, static_cast<std::uint16_t>(*layer));
    Store(out.data() + 6, record.options);
    return Put(out.data(), out.size());
}

bool Importer::Take(const Record& record, bool shifted) {
    m_offset = record.offset;
    // Paper space is no part of what a reference shows.
    if (record.InPaperSpace() || record.kind == kinds::kViewport) {
        ++m_fault.paperSpace;
        return true;
    }
    if (!Prove(record) || !TakeInSequence(record) || !Convert(record, shifted)) return false;
    if (record.HasExtendedData()) ++m_fault.extended;
    if (record.kind == kinds::kSeqEnd) m_open = 0;
    return true;
}

bool Importer::WriteEntities() {
    bool good = true;
    std::uint64_t end = m_source.header.entityStart;
    const bool sound = ForEachInOrder(m_source, [&](const Record& record) {
        if (record.kind == kinds::kBlock || record.kind == kinds::kEndBlock)
            return good = Fail("a block begins or ends in the entity section");
        return good = Take(record, true);
    });
    if (!good) return false;
    m_offset = m_source.header.entityStart;
    if (!sound) return Fail("a jump leads nowhere or in a circle");
    m_source.ForEachEntity([&](const Record& record) { return end = record.offset + record.length, true; });
    m_offset = end;
    if (end != m_source.header.entityEnd) return Fail("the records do not end where the entity section does");
    return m_open == 0 || Fail("a polyline or reference has no end");
}

bool Importer::WriteJob(const Job& job) {
    BeginDefinition(job.slot);
    bool good = true, first = true, ended = false;
    const bool sound = ForEachInBlockInOrder(m_source, job.block, [&](const Record& record) {
        m_offset = record.offset;
        if (std::exchange(first, false)) {
            if (record.kind != kinds::kBlock) return good = Fail("a block does not begin with its BLOCK record");
            if (!Prove(record)) return good = false;
            const auto layer = m_map.Layer(record.layer);
            if (!layer) return good = Overflow(m_map.limit());
            return good = PutBlock(record.points.front(), static_cast<unsigned>(*layer));
        }
        ended = record.kind == kinds::kEndBlock;
        if (ended) return good = PutEnd();
        if (record.kind == kinds::kBlock) return good = Fail("a block begins inside another");
        return good = Take(record, job.shifted);
    });
    if (!good) return false;
    if (!sound) return Fail("a jump leads nowhere or in a circle");
    if (!ended) return Fail("a block has no end");
    return m_open == 0 || Fail("a polyline or reference has no end");
}

// Whether a block contains itself. Marks: 1 in work, 2 done.
bool Importer::HasCircle(std::size_t block, std::vector<char>& marks) const {
    std::vector<std::pair<std::size_t, bool>> stack{{block, false}};
    while (!stack.empty()) {
        const auto [at, leaving] = stack.back();
        stack.pop_back();
        if (leaving) {
            marks[at] = 2;
            continue;
        }
        if (marks[at] != 0) continue;
        marks[at] = 1;
        stack.push_back({at, true});
        bool circle = false;
        m_source.ForEachInBlock(at, [&](const Record& record) {
            const reader::Field* inner = record.erased ? nullptr : record.Find("block");
            if (inner == nullptr || inner->number >= static_cast<double>(marks.size())) return true;
            const auto to = static_cast<std::size_t>(inner->number);
            circle = circle || marks[to] == 1;
            if (marks[to] == 0) stack.push_back({to, false});
            return !circle;
        });
        if (circle) return true;
    }
    return false;
}

bool Importer::Run(const std::string& name) {
    if (!m_source.Known()) return Fail("it is no drawing of version 1006 or 1009");
    if (m_source.bytes().size() < kBasePointY + 8 || m_source.header.entityStart < kBasePointY + 8)
        return Fail("it is shorter than its header");
    const auto& header = m_source.header;
    if (header.entityEnd < header.entityStart || header.entityEnd > m_source.bytes().size())
        return Fail("its entity section does not lie in the file");
    const Point& base = m_source.variables.base;
    if (!std::isfinite(base.x) || !std::isfinite(base.y)) return Fail("its base point is no finite number");
    int slot = 0;
    if (!OpenSlot(name, kReferenced, slot)) return false;
    BeginDefinition(slot);
    if (!PutBlock({}, 0) || !WriteEntities() || !PutEnd()) return false;
    std::vector<char> marks(m_source.blocks.size());
    for (std::size_t i = 0; i < m_jobs.size(); ++i) {
        const Job job = m_jobs[i];
        if (HasCircle(job.block, marks))
            return Fail("its block " + m_source.blocks[job.block].name + " contains itself");
        if (!WriteJob(job)) return false;
    }
    return true;
}

}  // namespace

ImportFault ImportBlockFile(Session& session, std::vector<std::uint8_t> bytes, const std::string& name) {
    session.TablesChanged();  // the header image is to hold all entities before it is kept for a return
    const Tables before = session.tables();
    Importer importer(session, std::move(bytes));
    importer.Run(name);
    ImportFault fault = importer.fault();
    session.TablesChanged();
    // A reference to the block comes next, so that both fit or none.
    if (fault.reason.empty() && session.room() < kInsert.length) {
        fault.reason = "the drawing has reached 4 GiB";
        fault.limit = true;
    }
    if (!fault.reason.empty()) {
        session.tables() = before;
        session.TablesChanged();
    }
    return fault;
}

}  // namespace zm::dwg

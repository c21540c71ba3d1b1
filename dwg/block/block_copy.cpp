#include "dwg/block/block_copy.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "dwg/block/source_drawing.h"
#include "dwg/reader/record.h"
#include "dwg/texts.h"
#include "dwg/writer/selection.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace zm::dwg {
namespace {

bool HasLinetypeField(int flags) {
    return flags == 2 || flags == 3 || flags == 6 || flags == 7 || flags == 130 || flags == 131;
}

// What a sound record has that copying does not know: of its kind and flags, the first that copying passes over.
const char* UnknownIn(int kind, int flags) {
    const bool world = kind == kinds::kLine || kind == kinds::kPoint;  // there the flag says that z is missing
    if ((flags & kHasElevation) != 0 && !world)
        return "a record uses elevation (flag 4), which block copying does not know";
    if ((flags & kHasElevation) == 0 && world)
        return "a record has heights (no flag 4), which block copying does not know";
    if ((flags & kHasThickness) != 0) return "a record uses thickness (flag 8), which block copying does not know";
    if ((flags & kHasHandle) != 0) return "a record uses a handle (flag 32), which block copying does not know";
    if ((flags & kHasExtra) != 0)
        return "a record uses extended data or paper space (flag 64), which block copying does not know";
    if ((flags & kHasFollowers) != 0)
        return "a record is followed by others (flag 128), which block copying does not know";
    return "a record uses flags that block copying does not know";
}

class BlockCopier {
 public:
    BlockCopier(Session& session, SourceFile& file)
        : m_tables(session.tables()),
          m_session(session),
          m_file(file),
          m_source(file),
          m_tail(state().blockTail),
          m_first(m_tables.Count(Table::block)),
          m_pending(m_first),
          m_wanted(static_cast<std::size_t>(LayoutOf(Table::block).capacity)) {}

    bool Copy(const char* name);
    const CopyFault& fault() const { return m_fault; }

 private:
    struct Record {
        std::uint64_t start;  // in the block file
        int kind;
        int flags;
        int length;         // in the block file
        int working;        // what is left of the length by the rules of the kinds
        int tail;           // bytes at its end that the output lacks
        bool narrowed;      // its linetype field is one byte shorter in the output
        bool byBlock;       // its linetype byte stays
        std::size_t begun;  // in the block section
        int copiedLength;
    };

    // Every record is proven before, so that one with unknown flags is no damage.
    bool Fail(const char* reason) {
        m_fault = {m_unknown != nullptr ? m_unknown : reason, m_recordStart, false, m_unknown != nullptr};
        return false;
    }
    bool Overflow(const char* limit) {
        m_fault = {limit, m_recordStart, true, false};
        return false;
    }

    bool OpenBlock(const char* name);
    bool CopyNested(int number);
    bool CopyRecord(bool nested, double dx, double dy, Record& record);
    bool CopyBody(const Record& record, double dx, double dy);
    bool MapLayer(unsigned index);
    bool MapLinetype(unsigned index);
    bool ReadLinetypeField(Record& record);
    bool CopyPrefix(Record& record);
    bool CopyReference();
    bool CopyPoints(int count, double dx, double dy);
    bool CopyBytes(int count);
    bool ProveCopy(const Record& record);
    void NoteRuin(const Record& record);
    const char* RuinOf(const Record& record);
    bool Put(const void* data, std::size_t count);
    void Skip(int count) { m_place += static_cast<std::uint64_t>(count); }

    std::vector<std::uint8_t>& section() { return m_tables.section(); }

    Tables& m_tables;
    Session& m_session;
    SourceFile& m_file;
    SourceDrawing m_source;
    const int m_tail;
    const int m_first;                    // number of the block that the file becomes
    int m_pending;                        // end of the list of wanted blocks, which begins at m_first
    std::vector<std::uint32_t> m_wanted;  // block numbers of the file, still to be copied
    std::uint64_t m_place = 0;            // in the block file
    std::uint64_t m_recordStart = 0;
    const char* m_unknown = nullptr;  // what of the record in hand copying does not know
    std::uint32_t m_mapped = 0;       // block number of the last reference, in the drawing
    CopyFault m_fault;
    std::string m_name;
};

bool BlockCopier::Put(const void* data, std::size_t count) {
    if (kBlockSectionSize - section().size() < count) return Overflow(kSectionFull);
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    section().insert(section().end(), bytes, bytes + count);
    return true;
}

bool BlockCopier::CopyBytes(int count) {
    if (count < 0) return Fail("a record is shorter than its kind needs");
    std::uint8_t part[256];
    while (count > 0) {
        const std::size_t size = std::min<std::size_t>(static_cast<std::size_t>(count), sizeof part);
        if (!m_file.Read(m_place, part, size)) return Fail("the file ends inside a record");
        if (!Put(part, size)) return false;
        m_place += size;
        count -= static_cast<int>(size);
    }
    return true;
}

bool BlockCopier::CopyPoints(int count, double dx, double dy) {
    for (int i = 0; i < count; ++i) {
        std::uint8_t point[16];
        if (!m_file.Read(m_place, point, sizeof point)) return Fail("the file ends inside a record");
        m_place += sizeof point;
        Store(point, LoadReal(point) - dx);
        Store(point + 8, LoadReal(point + 8) - dy);
        if (!Put(point, sizeof point)) return false;
    }
    return true;
}

bool BlockCopier::MapLinetype(unsigned index) {
    char name[kNameSize + 1];
    if (!m_source.LinetypeName(index, name)) return Fail("a linetype index leads outside the linetype table");
    SelectLinetype(m_session, name);
    return true;
}

bool BlockCopier::MapLayer(unsigned index) {
    char name[kNameSize + 1];
    unsigned linetype = 0;
    if (!m_source.Layer(index, m_tail != 0, name, linetype)) return Fail("a layer index leads outside the layer table");
    if (!MapLinetype(linetype)) return false;
    // Required: the layer's own colour is dropped; it takes the current one.
    SelectLayer(m_session, name);
    return true;
}

// Looks at the linetype field after the header: its linetype becomes the current one.
bool BlockCopier::ReadLinetypeField(Record& record) {
    if (record.tail != 0) {
        --record.working;
        record.narrowed = true;
    }
    const int behindColor = (record.flags & kHasColor) != 0 ? 1 : 0;
    std::uint8_t index = 0;
    if (!m_file.Read(m_place + static_cast<std::uint64_t>(behindColor), &index, 1))
        return Fail("the file ends inside a record");
    record.byBlock = index == kByBlock;
    if (record.byBlock) return true;
    if (index > 127) return Fail("a linetype index leads outside the linetype table");
    return MapLinetype(index);
}

// Colour and linetype after the header.
bool BlockCopier::CopyPrefix(Record& record) {
    const KindLayout* layout = KindLayoutOf(static_cast<std::uint8_t>(record.kind));
    if (layout == nullptr || layout->family == kNoFamily) {
        // Nothing is known of such a record but its linetype field, whose second byte goes.
        if (!record.narrowed) return true;
        const int kept = (record.flags & kHasColor) != 0 ? 2 : 1;
        if (!CopyBytes(kept)) return false;
        Skip(1);
        record.working -= kept;
        return true;
    }
    const int prefix = PrefixOf(layout, record.flags);
    if (prefix < 0) {
        m_unknown = UnknownIn(record.kind, record.flags);
        _LMsg(texts::kUnknownType, nullptr, 0);
        return true;
    }
    if ((prefix & kHasColor) != 0) {
        if (!CopyBytes(1)) return false;
        --record.working;
    }
    if ((prefix & kHasLinetype) != 0) {
        const auto index = record.byBlock ? kByBlock : static_cast<std::uint8_t>(state().now.linetype);
        if (!Put(&index, 1)) return false;
        Skip(record.narrowed ? 2 : 1);
        --record.working;
    }
    return true;
}

// The block number of a nested reference: that of a block that is copied already, or of one that will be.
bool BlockCopier::CopyReference() {
    std::uint8_t field[4];
    if (!m_file.Read(m_place, field, sizeof field)) return Fail("the file ends inside a record");
    m_place += sizeof field;
    const std::uint32_t number = Load32(field);
    std::uint8_t block[SourceDrawing::kBlockRecord];
    if (!m_source.Block(number, block)) return Fail("a block number leads outside the block table");
    const auto first = static_cast<std::uint32_t>(m_first);
    std::uint32_t mapped = number + 1;
    bool known = false;
    for (int i = m_first; i < m_pending; ++i) {
        // Required: the scan goes on with the raised number.
        if (m_wanted[static_cast<std::size_t>(i)] != mapped - 1) continue;
        mapped += first;
        known = true;
    }
    if (!known) {
        // Required: the last block of the name wins.
        const int slot = m_tables.LastBlock(block + 1, m_pending);
        if (slot >= 0) mapped = static_cast<std::uint32_t>(slot);
        known = slot >= 0;
    }
    if (!known) {
        if (m_pending == LayoutOf(Table::block).capacity) return Overflow("a drawing holds 500 blocks");
        m_wanted[static_cast<std::size_t>(m_pending++)] = number;
        mapped += first;
    }
    m_mapped = mapped;
    Store(field, mapped);
    return Put(field, sizeof field);
}

bool BlockCopier::CopyBody(const Record& record, double dx, double dy) {
    const int tail = record.tail;
    bool done = false;
    switch (record.kind) {
        case kinds::kLine:
            done = CopyPoints(2, dx, dy);
            break;
        case kinds::kPoint:
            done = CopyPoints(1, dx, dy);
            break;
        case kinds::kCircle:
            done = CopyPoints(1, dx, dy) && CopyBytes(8);
            break;
        case kinds::kText:
        case kinds::kVertex:
            done = CopyPoints(1, dx, dy) && CopyBytes(record.working - 24 - tail);
            break;
        case kinds::kArc:
            done = CopyPoints(1, dx, dy) && CopyBytes(24);
            break;
        case kinds::kTrace:
        case kinds::kSolid:
            done = CopyPoints(4, dx, dy);
            break;
        case kinds::kInsert:
            done = CopyReference() && CopyPoints(1, dx, dy) && CopyBytes(record.working - 26 - tail);
            break;
        default:
            done = CopyBytes(record.working - 8 - tail);
            break;
    }
    if (done) Skip(tail);
    return done;
}

bool BlockCopier::CopyRecord(bool nested, double dx, double dy, Record& record) {
    std::uint8_t header[kEntityHeaderSize];
    m_recordStart = m_place;
    m_unknown = nullptr;
    if (!m_file.Read(m_place, header, sizeof header)) return Fail("the file ends where a record should begin");
    m_place += sizeof header;
    const int length = Load16(header + 2);
    record = {m_recordStart, header[0], header[1], length, length, m_tail, false, false, section().size(), 0};
    if (length < static_cast<int>(kEntityHeaderSize)) return Fail("a record is shorter than its header");
    // The BLOCK record of a later file has 8 bytes more at its end.
    if (nested && record.kind == kinds::kBlock && m_tail != 0) record.tail += 6;
    if (!MapLayer(Load16(header + 4))) return false;
    if (HasLinetypeField(record.flags) && !ReadLinetypeField(record)) return false;
    record.copiedLength = record.working - record.tail;
    if (record.copiedLength < static_cast<int>(kEntityHeaderSize)) return Fail("a record is shorter than its header");
    Store(header + 2, static_cast<std::uint16_t>(record.copiedLength));
    Store(header + 4, state().now.layer);
    if (!Put(header, sizeof header)) return false;
    if (nested) m_tables.AddToField(kExtraStart, static_cast<std::uint32_t>(record.copiedLength));
    if (!CopyPrefix(record)) return false;
    const bool ends = nested && record.kind == kinds::kEndBlock;
    if (!ends && !CopyBody(record, dx, dy)) return false;
    const std::uint64_t surplus = record.kind == kinds::kInsert ? kReferenceSurplus : 0;
    const std::uint64_t read = m_place - record.start;
    const std::uint64_t written = section().size() - record.begun;
    if ((!ends && read != static_cast<std::uint64_t>(length) + surplus) ||
        written != static_cast<std::uint64_t>(record.copiedLength) + surplus)
        return Fail("the length of a record is not that of its fields");
    if (!ProveCopy(record)) return false;
    NoteRuin(record);
    return true;
}

// What other programs will read wrong, because copying is required to be as it is.
void BlockCopier::NoteRuin(const Record& record) {
    const char* reason = RuinOf(record);
    if (reason == nullptr) return;
    const auto offset = static_cast<unsigned long>(record.start);
    state().copyWarnings.push_back(numbers::Text(texts::kCopyWarning, m_name.c_str(), offset, reason));
}

const char* BlockCopier::RuinOf(const Record& record) {
    switch (record.kind) {
        case kinds::kInsert:
            return "a reference within a block gets a number of four bytes that its length does not count";
        case kinds::kDimension:
            return "a dimension keeps the block number of its own file";
        case kinds::kJump:
            return "a polyline comes after a jump, which leads nowhere in the copy";
        default:
            break;
    }
    if ((record.kind & ~kErased) > kinds::kLast) return "a record is of a kind that no program writes";
    reader::Record copied;
    if (!reader::ReadRecord(section(), record.begun, false, section().size(), copied)) return nullptr;
    const reader::Field* style = copied.Find("style");
    if (style != nullptr && style->number >= m_tables.Count(Table::style))
        return "a text style of its own file, which the drawing lacks";
    if (copied.linetype && !copied.ByBlock() && *copied.linetype >= m_tables.Count(Table::linetype))
        return "a linetype of its own file, which the drawing lacks";
    if (copied.used != copied.length) return "a record loses fields that it announces";
    return nullptr;
}

// A record whose flags copying does not understand can be another one after it: its points do not stand where they are
// looked for.
bool BlockCopier::ProveCopy(const Record& record) {
    if (record.kind == kinds::kBlock && m_tail != 0) return true;
    const auto copied = std::span(section()).subspan(record.begun);
    const RecordProof proof = ProveRecord(copied, {false, true}, m_source.StyleCount());
    if (proof.fault != nullptr) return Fail(proof.fault);
    if (record.kind == kinds::kInsert && proof.block != m_mapped)
        return Fail("the block number of a reference is not where its flags say");
    return true;
}

// A nested block: the records from its BLOCK to its ENDBLK.
bool BlockCopier::CopyNested(int number) {
    const int slot = m_first + number + 1;
    if (slot >= LayoutOf(Table::block).capacity || m_tables.Full(Table::block))
        return Overflow("a drawing holds 500 blocks");
    std::uint8_t block[SourceDrawing::kBlockRecord];
    if (!m_source.Block(static_cast<std::uint32_t>(number), block))
        return Fail("a block number leads outside the block table");
    m_place = m_source.BlockStart(block, m_tail != 0);
    Store(block + block_record::kOffset, static_cast<std::uint16_t>(section().size()));
    Store(block + block_record::kMark, block_record::kMarkValue);
    // Required: the slot follows from the number in the file, so that a reference can tell it before the block is
    // copied. A file with blocks that nobody refers to leaves holes.
    std::memcpy(m_tables.Slot(Table::block, slot), block, sizeof block);
    m_tables.AddBlock();
    const Attributes before = state().now;
    Record record;
    bool first = true;
    do {
        if (!CopyRecord(true, 0.0, 0.0, record)) return false;
        if (first && record.kind != kinds::kBlock) return Fail("a block does not begin with its BLOCK record");
        first = false;
    } while (record.kind != kinds::kEndBlock);
    state().now.layer = before.layer;
    state().now.linetype = before.linetype;
    return true;
}

// The block table's record of the file and the BLOCK record.
bool BlockCopier::OpenBlock(const char* name) {
    if (m_tables.Full(Table::block)) return Overflow("a drawing holds 500 blocks");
    std::uint8_t* slot = m_tables.Slot(Table::block, m_first);
    slot[0] = kReferenced;
    std::memset(slot + 1, 0, kNameSize);
    std::copy_n(name, std::strlen(name), slot + 1);
    Store(slot + block_record::kOffset, static_cast<std::uint16_t>(section().size()));
    Store(slot + block_record::kMark, block_record::kMarkValue);
    std::uint8_t record[24] = {};
    static_assert(sizeof record == kBlock.length);
    Store(record, kBlock.word);
    Store(record + 2, kBlock.length);
    m_tables.AddBlock();
    return Put(record, sizeof record);
}

bool BlockCopier::Copy(const char* name) {
    m_name = name;
    if (!m_source.Read()) return Fail("it is shorter than its header");
    m_fault = BlockFileProof(m_file, m_source, m_tables, m_tail).Run();
    if (m_fault.reason != nullptr) return false;
    if (!OpenBlock(name)) return false;
    const Attributes before = state().now;
    m_place = m_source.EntitiesStart();
    const std::uint64_t size = std::uint64_t{m_source.EntitiesEnd()} - m_source.EntitiesStart();
    for (std::uint64_t done = 0; done != size;) {
        Record record;
        if (!CopyRecord(false, m_source.BaseX(), m_source.BaseY(), record)) return false;
        done += static_cast<std::uint64_t>(record.length);
        if (done > size) return Fail("a record runs past the end of the entity section");
    }
    std::uint8_t end[kEntityHeaderSize] = {};
    Store(end, kBlockEnd.word);
    Store(end + 2, kBlockEnd.length);
    if (!Put(end, sizeof end)) return false;
    // Required: the whole section so far, the blocks of earlier files too, so that this field runs ahead.
    m_tables.AddToField(kExtraStart, static_cast<std::uint32_t>(section().size()));
    for (int i = m_first; i < m_pending; ++i)
        if (!CopyNested(static_cast<int>(m_wanted[static_cast<std::size_t>(i)]))) return false;
    state().now.layer = before.layer;
    state().now.linetype = before.linetype;
    return true;
}

}  // namespace

CopyFault CopyBlockFile(Session& session, SourceFile& source, const char* name) {
    session.TablesChanged();  // the header image is to hold all entities before it is kept for a return
    const Tables before = session.tables();
    const Attributes attributes = state().now;
    const std::size_t warnings = state().copyWarnings.size();
    BlockCopier copier(session, source);
    CopyFault fault;
    if (!copier.Copy(name)) fault = copier.fault();
    session.TablesChanged();
    // A reference to the block comes next, so that both fit or none.
    if (fault.reason == nullptr && session.room() < kInsert.length)
        fault = {"the drawing has reached 4 GiB", 0, true, false};
    if (fault.reason != nullptr) {
        session.tables() = before;
        state().copyWarnings.resize(warnings);
        state().now.layer = attributes.layer;
        state().now.linetype = attributes.linetype;
        session.TablesChanged();
    }
    return fault;
}

}  // namespace zm::dwg

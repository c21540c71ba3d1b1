#include "dwg/block/block_proof.h"

#include <cstring>

#include "dwg/format/bytes.h"
#include "dwg/reader/check.h"
#include "dwg/reader/drawing.h"

namespace zm::dwg {
namespace {

// Copying makes no record shorter than half, so that more than this does not fit into the block section.
constexpr std::uint64_t kMostProven = 2 * kBlockSectionSize;
// The files of other programs have none of the two bytes; what follows is then no fault of theirs.
constexpr char kPastReference[] =
    "a record does not fit after a reference, which block copying takes for two bytes longer than its length";

constexpr std::size_t kPiece = std::size_t{1} << 16;
constexpr std::size_t kMostRead = std::size_t{1} << 26;  // bytes of a file that is looked at whole

}  // namespace

BlockFileProof::BlockFileProof(SourceFile& file, SourceDrawing& source, Tables& tables, int tail)
    : m_file(file), m_source(source), m_tables(tables), m_shape{tail != 0, true} {}

bool BlockFileProof::Fail(const char* reason, bool limit) {
    m_fault = {reason, m_recordStart, limit, false};
    return false;
}

CopyFault BlockFileProof::Run() {
    if (ProveAll()) return {};
    if (m_pastReference && !m_fault.limit && IsSoundAsItIs()) m_fault = {kPastReference, m_fault.offset, false, true};
    return m_fault;
}

bool BlockFileProof::ProveAll() {
    if (!ProveEntities()) return false;
    for (std::size_t i = 0; i < m_wanted.size(); ++i)
        if (!ProveNested(m_wanted[i])) return false;
    return true;
}

// Whether the reader, which goes by the lengths, finds nothing wrong with the whole file.
bool BlockFileProof::IsSoundAsItIs() {
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < kMostRead) {
        std::size_t piece = kPiece;
        const std::size_t at = bytes.size();
        bytes.resize(at + piece);
        while (piece > 0 && !m_file.Read(at, bytes.data() + at, piece)) piece /= 2;
        bytes.resize(at + piece);
        if (piece == 0) break;
    }
    return reader::Check(reader::Drawing(bytes)).problems.empty();
}

bool BlockFileProof::ProveEntities() {
    m_pastReference = false;
    m_place = m_recordStart = m_source.EntitiesStart();
    if (m_source.EntitiesEnd() < m_source.EntitiesStart()) return Fail("its entity section ends before it begins");
    const std::uint64_t size = m_source.EntitiesEnd() - m_source.EntitiesStart();
    SequenceProof sequence;
    std::uint64_t done = 0;
    while (done < size) {
        if (!ProveNextRecord(sequence)) return false;
        done += Load16(m_record.data() + 2);  // not the bytes: those of a reference are more
    }
    if (done > size) return Fail("a record runs past the end of the entity section");
    return sequence.End() == nullptr || Fail(sequence.End());
}

bool BlockFileProof::ProveNested(std::uint64_t place) {
    m_pastReference = false;
    m_place = place;
    SequenceProof sequence;
    std::uint8_t kind = 0;
    for (bool first = true; kind != kinds::kEndBlock; first = false) {
        if (!ProveNextRecord(sequence)) return false;
        kind = m_record[0];
        if (first && kind != kinds::kBlock) return Fail("a block does not begin with its BLOCK record");
    }
    return true;
}

bool BlockFileProof::ProveNextRecord(SequenceProof& sequence) {
    m_recordStart = m_place;
    m_record.resize(kEntityHeaderSize);
    if (!m_file.Read(m_place, m_record.data(), kEntityHeaderSize))
        return Fail("the file ends where a record should begin");
    const std::size_t length = Load16(m_record.data() + 2);
    const std::size_t tail = m_shape.later ? kLaterEndSize : 0;
    if (length < kEntityHeaderSize + tail) return Fail("a record is shorter than its header");
    m_record.resize(length + (m_record[0] == kinds::kInsert ? kReferenceSurplus : 0));
    if (!m_file.Read(m_place, m_record.data(), m_record.size())) return Fail("the file ends inside a record");
    m_place += m_record.size();
    m_proven += m_record.size();
    if (m_proven > kMostProven) return Fail(kSectionFull, true);
    if (const char* fault = ProveRecord(m_record, m_shape, m_source.StyleCount()).fault) return Fail(fault);
    if (const char* fault = sequence.Take(m_record.data())) return Fail(fault);
    if (m_record[0] != kinds::kInsert) return true;
    if (!ProveReference()) return false;
    m_pastReference = true;
    return true;
}

// The number is where copying takes it from: after colour and linetype, if copying knows the flags.
bool BlockFileProof::ProveReference() {
    const int prefix = PrefixOf(KindLayoutOf(kinds::kInsert), m_record[1]);
    std::size_t at = kEntityHeaderSize;
    if (prefix > 0 && (prefix & kHasColor) != 0) at += 1;
    if (prefix > 0 && (prefix & kHasLinetype) != 0) at += m_shape.later ? 2 : 1;
    const std::uint32_t number = Load32(m_record.data() + at);
    if (!m_known.insert(number).second) return true;
    std::uint8_t block[SourceDrawing::kBlockRecord];
    if (!m_source.Block(number, block)) return Fail("a block number leads outside the block table");
    if (m_tables.LastBlock(block + 1, m_tables.Count(Table::block)) >= 0) return true;  // it is not copied again
    if (std::memchr(block + 1, 0, kNameSize) == nullptr) return Fail("the name of a nested block has no end");
    m_wanted.push_back(m_source.BlockStart(block, m_shape.later));
    return true;
}

}  // namespace zm::dwg

// Real and recorded drawings, damaged in every way: all of it is read to an end, in little memory, and no jump, count
// or circle leads anywhere else.
#include <gtest/gtest.h>

#include <cstdlib>

#include "dwg/reader/check.h"
#include "dwg/reader/dump.h"
#include "dwg/reader/picture.h"
#include "tests/dwg/reader/peak_memory.h"
#include "tests/dwg/reader/real_drawings.h"
#include "tests/dwg/reader/recorded.h"
#include "tests/support/random.h"

namespace {

using namespace zm::dwg::reader;
using zm::test::RealDrawing;
using zm::test::RealDrawings;
using Buffer = std::vector<std::uint8_t>;

constexpr std::size_t kSmall = 1u << 18;  // what reports and the record in hand take of any file

// Reads, checks and measures; more memory than twice the file fails. Returns the number of problems.
std::size_t Look(Buffer bytes) {
    const std::size_t size = bytes.size();
    zm::test::MarkMemory();
    std::size_t problems = 0;
    {
        const Drawing drawing(std::move(bytes));
        const Report report = Check(drawing);
        problems = report.problems.size() + report.unlisted;
        Point low, high;
        Extents(drawing, low, high);
    }
    EXPECT_LE(zm::test::PeakSinceMark(), 2 * size + kSmall);
    return problems;
}

Buffer Cut(const Buffer& whole, std::size_t size) {
    return {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)};
}

// All ways of damage with ZM_EVERY_DAMAGE set; else each byte in one way.
bool EveryWay() {
    return std::getenv("ZM_EVERY_DAMAGE") != nullptr;
}

void DamageEveryByte(const Buffer& whole, zm::test::Random& random) {
    const std::uint8_t ways[] = {0x00, 0xFF, 0x7F, 0x80};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        const int chosen = random.Int(0, 4);
        for (int way = 0; way < 5; ++way) {
            if (way != chosen && !EveryWay()) continue;
            Buffer bytes = whole;
            bytes[i] = way < 4 ? ways[way] : static_cast<std::uint8_t>(bytes[i] ^ 1);
            Look(std::move(bytes));
        }
    }
}

TEST(RealDrawings, WithAnyByteChangedAreReadToAnEndInLittleMemory) {
    ZM_NEED_REAL_DRAWINGS();
    ZM_TRACE_SEED();
    zm::test::Random random(19);
    for (const RealDrawing& real : RealDrawings()) {
        SCOPED_TRACE(real.name);
        DamageEveryByte(real.bytes, random);
    }
}

TEST(RealDrawings, CutAtAnyLengthAreReadToAnEndInLittleMemory) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        SCOPED_TRACE(real.name);
        // A drawing that ends before its last section does is not sound.
        const Drawing whole(real.bytes);
        const std::size_t tables = whole.header.blockStart;
        for (std::size_t size = 0; size < real.bytes.size(); ++size) {
            const std::size_t problems = Look(Cut(real.bytes, size));
            if (size < tables) {
                EXPECT_GT(problems, 0u) << size;
            }
        }
    }
}

// All counts and sizes that a header has, as high as they go, one by one and together.
TEST(RealDrawings, WithCountsOf65535AreReadToAnEndInLittleMemory) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        SCOPED_TRACE(real.name);
        Buffer all = real.bytes;
        for (std::size_t table = 0; table < 5; ++table) {
            for (const std::size_t field : {44 + 10 * table, 46 + 10 * table}) {
                Buffer one = real.bytes;
                one[field] = one[field + 1] = all[field] = all[field + 1] = 0xFF;
                const std::size_t problems = Look(std::move(one));
                if (field % 10 == 6) {  // a count; the size of the records of an empty table is no matter
                    EXPECT_GT(problems, 0u) << field;
                }
            }
        }
        EXPECT_GT(Look(all), 0u);
    }
}

// Each jump leads to itself, to the other, to the first record, and outside.
TEST(RealDrawings, WithJumpsThatLeadNowhereOrInACircleAreReadToAnEnd) {
    ZM_NEED_REAL_DRAWINGS();
    int jumps = 0;
    for (const RealDrawing& real : RealDrawings()) {
        const Drawing drawing(real.bytes);
        std::vector<Record> found;
        const auto take = [&](const Record& record) {
            if (record.kind == zm::dwg::kinds::kJump && !record.erased) found.push_back(record);
            return true;
        };
        drawing.ForEachEntity(take);
        drawing.ForEachExtra(take);
        for (const Record& jump : found) {
            for (const std::uint64_t to :
                 {jump.offset, found.front().offset, found.back().offset, std::uint64_t{drawing.header.entityStart},
                  std::uint64_t{0xFFFFFFFF}, jump.offset - drawing.header.extraStart + (zm::dwg::kInExtras << 24)}) {
                SCOPED_TRACE(real.name + " to " + std::to_string(to));
                Buffer bytes = real.bytes;
                for (std::size_t i = 0; i < 4; ++i)
                    bytes[jump.offset + 4 + i] = static_cast<std::uint8_t>(to >> (8 * i));
                Look(bytes);
                std::size_t visited = 0;
                ForEachInOrder(Drawing(bytes), [&](const Record&) { return ++visited < bytes.size(); });
                EXPECT_LT(visited, bytes.size() / 4) << "records are visited again and again";
                ++jumps;
            }
        }
    }
    EXPECT_GT(jumps, 6);
}

// A drawing with blocks that refer to blocks. The definitions follow each other, if they do not all begin where they are said to.
class BlockDrawing {
 public:
    BlockDrawing() : m_bytes(zm::test::RecordedTemplate("plain")), m_section(Drawing(m_bytes).header.blockStart) {
        m_bytes.resize(m_section);
    }
    /// Returns where the record begins in the block section.
    std::size_t Record(unsigned kind, std::size_t size, unsigned block = 0) {
        const std::size_t at = m_bytes.size();
        m_bytes.resize(at + size);
        m_bytes[at] = static_cast<std::uint8_t>(kind);
        Put(at + 2, size, 2);
        if (kind == zm::dwg::kinds::kInsert) Put(at + 8, block, 2);
        return at - m_section;
    }
    /// The drawing with a table of blocks that begin at these places.
    Buffer Finished(const std::vector<std::size_t>& starts) {
        const std::size_t table = m_bytes.size();
        m_bytes.resize(table + starts.size() * kEntryBytes);
        for (std::size_t i = 0; i < starts.size(); ++i) {
            m_bytes[table + i * kEntryBytes + 1] = 'A';
            Put(table + i * kEntryBytes + 33, starts[i] + 0x40000000, 4);
        }
        Put(44, kEntryBytes, 2);
        Put(46, starts.size(), 2);
        Put(50, table, 4);
        Put(32, 0, 4);
        return std::move(m_bytes);
    }

 private:
    static constexpr std::size_t kEntryBytes = 37;
    void Put(std::size_t at, std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) m_bytes.at(at + i) = static_cast<std::uint8_t>(value >> (8 * i));
    }
    Buffer m_bytes;
    std::size_t m_section;
};

constexpr std::size_t kBlockBytes = 24, kInsertBytes = 26, kEndBytes = 8;

// Each block refers to the next one, and the last to the first.
TEST(Damaged, BlocksInCirclesAreNamedAndDrawnToAnEnd) {
    for (unsigned count = 1; count < 6; ++count) {
        BlockDrawing blocks;
        std::vector<std::size_t> starts;
        for (unsigned i = 0; i < count; ++i) {
            starts.push_back(blocks.Record(zm::dwg::kinds::kBlock, kBlockBytes));
            blocks.Record(zm::dwg::kinds::kInsert, kInsertBytes, (i + 1) % count);
            blocks.Record(zm::dwg::kinds::kEndBlock, kEndBytes);
        }
        const Buffer bytes = blocks.Finished(starts);
        std::string all;
        for (const Finding& problem : Check(Drawing(bytes)).problems) all += problem.text + "\n";
        EXPECT_NE(all.find("contains itself"), std::string::npos) << count << ": " << all;
        Look(bytes);
    }
}

// So many blocks that all run through the same records would take hours and gigabytes, read one by one.
TEST(Damaged, BlocksThatRunThroughEachOtherAreReadInLittleTimeAndMemory) {
    constexpr unsigned kInserts = 20000, kBlocks = 10000;
    BlockDrawing blocks;
    std::vector<std::size_t> starts;
    for (unsigned i = 0; i < kInserts; ++i) {
        const std::size_t at = blocks.Record(zm::dwg::kinds::kInsert, kInsertBytes, i % kBlocks);
        if (i < kBlocks) starts.push_back(at);
    }
    const Buffer bytes = blocks.Finished(starts);
    EXPECT_EQ(Drawing(bytes).blocks.size(), kBlocks);
    EXPECT_GT(Look(bytes), 0u);
}

}  // namespace

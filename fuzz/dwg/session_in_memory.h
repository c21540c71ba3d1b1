// A drawing session of a fuzz target: from the usual template, into a block of memory.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "dwg/writer/session.h"
#include "tools/make_template/template_drawing.h"

namespace zm::fuzz {

/// A stream on bytes that outlive it; null for none, which the C library refuses.
inline dwg::FileOwner StreamOn(std::vector<std::uint8_t>& bytes, const char* mode) {
    return dwg::FileOwner(bytes.empty() ? nullptr : fmemopen(bytes.data(), bytes.size(), mode));
}

/// Ends the run with a message if a condition that every drawing keeps does not hold.
inline void Require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

class MemoryDrawing {
 public:
    static constexpr std::size_t kSize = std::size_t{1} << 18;

    /// Opens the session that the writer's functions then use.
    explicit MemoryDrawing(const dwg::DrawingTemplate& drawing) : m_file(kSize) {
        dwg::state().session =
            dwg::SessionOwner(new dwg::Session("memory", StreamOn(m_file, "wb+"), drawing, dwg::kLongestRecord));
    }
    ~MemoryDrawing() { dwg::state().session.reset(); }
    MemoryDrawing(const MemoryDrawing&) = delete;
    MemoryDrawing& operator=(const MemoryDrawing&) = delete;

    /// Finishes the file and checks that everything stands where its header says.
    void Check() { CheckPlaces(2); }
    /// The same of a drawing whose references within blocks are as long as they say.
    void CheckWithoutSurplus() { CheckPlaces(0); }
    /// The bytes of the file that was checked; without a closing record.
    std::vector<std::uint8_t> Bytes() const {
        return {m_file.begin(), m_file.begin() + static_cast<std::ptrdiff_t>(m_end)};
    }
    void SetTail(std::size_t size) { m_tail = size; }

 private:
    // A reference in a block that was copied is so many bytes longer than it says.
    void CheckPlaces(unsigned surplus) {
        Require(dwg::state().session->Finish(), "the file is written whole");
        const std::uint8_t* file = m_file.data();
        std::uint64_t place = dwg::Load32(file + dwg::kEntitiesStart);
        while (place != dwg::Load32(file + dwg::kEntitiesEnd)) place += Length(place, 0);
        for (const dwg::TableLayout& table : dwg::kTables) {
            Require(dwg::Load32(file + table.addressField) == place, "a table stands behind the one before");
            place += dwg::Load32(file + table.countField) * table.recordSize;
        }
        place += m_tail;
        Require(dwg::Load32(file + dwg::kBlocksStart) == place, "the block section stands behind the tables");
        const std::uint64_t end = place + dwg::state().session->tables().section().size();
        while (place < end) place += Length(place, file[place] == 14 ? surplus : 0);
        Require(place == end, "the records of the block section fill it");
        m_end = end;
    }
    std::uint64_t Length(std::uint64_t place, unsigned surplus) const {
        Require(place + dwg::kEntityHeaderSize <= kSize, "a record stands inside the file");
        const unsigned length = dwg::Load16(m_file.data() + place + 2);
        Require(length >= dwg::kEntityHeaderSize, "a record is as long as its header");
        return length + surplus;
    }

    std::vector<std::uint8_t> m_file;
    std::size_t m_tail = 0;
    std::uint64_t m_end = 0;
};

}  // namespace zm::fuzz

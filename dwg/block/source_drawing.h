// Header and tables of a block file, as far as copying needs them. Record sizes come from the file, which may be of a
// later version.
#pragma once

#include <cstdint>

#include "dwg/block/source_file.h"

namespace zm::dwg {

class SourceDrawing {
 public:
    static constexpr std::size_t kBlockRecord = 37;  // bytes that are read of a block record

    explicit SourceDrawing(SourceFile& file) : m_file(file) {}
    /// Reads header and base point; false where the file is too short for them.
    bool Read();

    std::uint32_t EntitiesStart() const;
    std::uint32_t EntitiesEnd() const;
    double BaseX() const;
    double BaseY() const;

    // False for an index outside the table or a table outside the file. Names are of kNameSize + 1 bytes.
    bool LinetypeName(unsigned index, char* name);
    /// \param later  the record is of version digits 1009 and up
    bool Layer(unsigned index, bool later, char* name, unsigned& linetype);
    unsigned StyleCount() const;
    /// \param record  kBlockRecord bytes
    bool Block(std::uint32_t number, std::uint8_t* record);
    /// Where the block of such a record begins in the file.
    std::uint64_t BlockStart(const std::uint8_t* record, bool later) const;

 private:
    std::uint32_t BlocksStart() const;
    unsigned Count(Table table) const;
    bool ReadRecord(Table table, std::uint32_t index, std::uint8_t* record, std::size_t size);

    SourceFile& m_file;
    std::uint8_t m_start[kBasePointY + 8] = {};
};

}  // namespace zm::dwg

#include "dwg/block/source_drawing.h"

#include <cstring>

#include "dwg/format/bytes.h"

namespace zm::dwg {

bool SourceDrawing::Read() {
    return m_file.Read(0, m_start, sizeof m_start);
}

std::uint32_t SourceDrawing::EntitiesStart() const {
    return Load32(m_start + kEntitiesStart);
}

std::uint32_t SourceDrawing::EntitiesEnd() const {
    return Load32(m_start + kEntitiesEnd);
}

std::uint32_t SourceDrawing::BlocksStart() const {
    return Load32(m_start + kBlocksStart);
}

double SourceDrawing::BaseX() const {
    return LoadReal(m_start + kBasePointX);
}

double SourceDrawing::BaseY() const {
    return LoadReal(m_start + kBasePointY);
}

unsigned SourceDrawing::Count(Table table) const {
    // The count has 16 bits in files of other programs, with a word of another meaning after it.
    return Load16(m_start + LayoutOf(table).countField);
}

unsigned SourceDrawing::StyleCount() const {
    return Count(Table::style);
}

bool SourceDrawing::ReadRecord(Table table, std::uint32_t index, std::uint8_t* record, std::size_t size) {
    const TableLayout& layout = LayoutOf(table);
    if (index >= Count(table)) return false;
    const std::uint64_t recordSize = Load16(m_start + layout.recordSizeField);
    return m_file.Read(Load32(m_start + layout.addressField) + index * recordSize, record, size);
}

bool SourceDrawing::LinetypeName(unsigned index, char* name) {
    std::uint8_t record[1 + kNameSize];
    if (!ReadRecord(Table::linetype, index, record, sizeof record)) return false;
    std::memcpy(name, record + 1, kNameSize);
    name[kNameSize] = '\0';
    return true;
}

bool SourceDrawing::Layer(unsigned index, bool later, char* name, unsigned& linetype) {
    std::uint8_t record[39];
    if (!ReadRecord(Table::layer, index, record, later ? 39 : 37)) return false;
    std::memcpy(name, record + 1, kNameSize);
    name[kNameSize] = '\0';
    linetype = Load16(record + (later ? 37 : layer_record::kLinetype));
    return true;
}

bool SourceDrawing::Block(std::uint32_t number, std::uint8_t* record) {
    return ReadRecord(Table::block, number, record, kBlockRecord);
}

std::uint64_t SourceDrawing::BlockStart(const std::uint8_t* record, bool later) const {
    return std::uint64_t{BlocksStart()} + Load16(record + (later ? 35 : block_record::kOffset));
}

}  // namespace zm::dwg

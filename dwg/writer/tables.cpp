#include "dwg/writer/tables.h"

#include <algorithm>
#include <cstring>

namespace zm::dwg {

std::string_view NameOf(const std::uint8_t* record) {
    const char* name = reinterpret_cast<const char*>(record) + 1;
    const void* end = std::memchr(name, 0, kNameSize);
    return {name, end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - name) : kNameSize};
}

Tables::Tables(std::span<const std::uint8_t> drawing) {
    std::memcpy(m_header, drawing.data(), kHeaderSize);
    for (int i = 0; i < kTableCount; ++i) {
        const TableLayout& layout = kTables[i];
        const Table table = static_cast<Table>(i);
        m_slots[i].resize(layout.recordSize * static_cast<std::size_t>(layout.capacity));
        const auto records = drawing.subspan(Field(layout.addressField), Records(table).size());
        std::copy(records.begin(), records.end(), m_slots[i].begin());
        for (int slot = 0; slot < Count(table); ++slot) m_names[i].Add(NameOf(Slot(table, slot)), slot);
    }
    const std::size_t viewEnd = Field(LayoutOf(Table::view).addressField) + Records(Table::view).size();
    m_tail.assign(drawing.begin() + static_cast<std::ptrdiff_t>(viewEnd),
                  drawing.begin() + static_cast<std::ptrdiff_t>(Field(kBlocksStart)));
    m_section.reserve(kBlockSectionSize);
}

std::span<const std::uint8_t> Tables::Records(Table table) const {
    return {m_slots[static_cast<int>(table)].data(),
            static_cast<std::size_t>(Count(table)) * LayoutOf(table).recordSize};
}

int Tables::Add(Table table, std::string_view name) {
    const int slot = Count(table);
    std::uint8_t* record = Slot(table, slot);
    std::copy(name.begin(), name.end(), record + 1);
    record[1 + name.size()] = 0;
    m_names[static_cast<int>(table)].Add(name, slot);
    AddToField(LayoutOf(table).countField, 1);
    const auto size = static_cast<std::uint32_t>(LayoutOf(table).recordSize);
    if (table == Table::layer)
        Move(kMovedByLayer, size);
    else if (table == Table::style)
        Move(kMovedByStyle, size);
    else
        Move(kMovedByLinetype, size);
    return slot;
}

int Tables::LastBlock(const std::uint8_t* nameField, int slots) {
    while (--slots >= 0)
        if (std::memcmp(Slot(Table::block, slots) + 1, nameField, kNameSize) == 0) break;
    return slots;
}

void Tables::AddBlock() {
    AddToField(LayoutOf(Table::block).countField, 1);
    Move(kMovedByBlock, static_cast<std::uint32_t>(LayoutOf(Table::block).recordSize));
}

std::uint64_t Tables::FileEnd() const {
    const std::uint64_t sectionEnd = std::uint64_t{Field(kBlocksStart)} + m_section.size();
    return std::max(sectionEnd, std::uint64_t{Field(kExtraStart)} + kClosingRecordSize);
}

}  // namespace zm::dwg

// Header image, tables and block section of an open drawing: all that stays in memory until close, because its place in
// the file moves with every entity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dwg/format/bytes.h"
#include "dwg/format/file_layout.h"

namespace zm::dwg {

/// Finds the first record of a name without comparing with all of them.
class NameIndex {
 public:
    /// The record's number, -1 if there is none.
    int Find(std::string_view name) const {
        const auto found = m_slots.find(name);
        return found != m_slots.end() ? found->second : -1;
    }
    /// A name that is there already keeps its first record, as a search from the first slot would find.
    void Add(std::string_view name, int slot) { m_slots.emplace(std::string(name), slot); }

 private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };
    std::unordered_map<std::string, int, Hash, std::equal_to<>> m_slots;
};

class Tables {
 public:
    /// Fills header image, tables and tail from the bytes of a proven template. Slots beyond are zero.
    explicit Tables(std::span<const std::uint8_t> drawing);

    std::uint32_t Field(std::size_t offset) const { return Load32(m_header + offset); }
    void AddToField(std::size_t offset, std::uint32_t amount) { Store(m_header + offset, Field(offset) + amount); }
    template <std::size_t N>
    void Move(const std::size_t (&fields)[N], std::uint32_t amount) {
        for (const std::size_t field : fields) AddToField(field, amount);
    }
    const std::uint8_t* header() const { return m_header; }

    int Count(Table table) const { return static_cast<int>(Field(LayoutOf(table).countField)); }
    std::uint8_t* Slot(Table table, int index) {
        return m_slots[static_cast<int>(table)].data() + static_cast<std::size_t>(index) * LayoutOf(table).recordSize;
    }
    bool Full(Table table) const { return Count(table) >= LayoutOf(table).capacity; }
    /// The records of a table, as many as the header counts.
    std::span<const std::uint8_t> Records(Table table) const;

    /// The number of the first record of this name, -1 if there is none. Not for blocks.
    int Find(Table table, std::string_view name) const { return m_names[static_cast<int>(table)].Find(name); }
    /// Takes the next slot for a name: the name is set, count and offsets moved. Not for blocks; not if full.
    /// Required: the slot is not cleared, the flag included; a style of a type above 7 keeps what the slot holds.
    int Add(Table table, std::string_view name);
    /// The last block among the first slots whose name field is the same to the last byte, -1 if there is none.
    int LastBlock(const std::uint8_t* nameField, int slots);
    /// Counts one more block and moves the offsets.
    void AddBlock();

    const std::vector<std::uint8_t>& tail() const { return m_tail; }
    /// The block section, from its base to the write cursor.
    std::vector<std::uint8_t>& section() { return m_section; }
    const std::vector<std::uint8_t>& section() const { return m_section; }
    /// Where the file ends at least, with room for a closing record.
    std::uint64_t FileEnd() const;

 private:
    std::uint8_t m_header[kHeaderSize];
    std::vector<std::uint8_t> m_slots[kTableCount];
    NameIndex m_names[kTableCount];
    std::vector<std::uint8_t> m_tail;
    std::vector<std::uint8_t> m_section;
};

/// The name field of a table record: up to its zero byte, at most 32 bytes.
std::string_view NameOf(const std::uint8_t* record);

}  // namespace zm::dwg

// A drawing file of version digits 1006 or 1009, read for inspection.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "dwg/reader/bytes.h"
#include "dwg/reader/layout.h"
#include "dwg/reader/record.h"

namespace zm::dwg::reader {

struct TableInfo {
    std::uint16_t recordSize = 0;
    std::uint16_t count = 0;
    std::uint16_t third = 0;
    std::uint32_t address = 0;
};

struct Header {
    int version = 0;  // 1006, 1009
    std::uint16_t variables = 0;
    std::uint32_t entityStart = 0;
    std::uint32_t entityEnd = 0;
    std::uint32_t blockStart = 0;
    std::uint32_t blockSize = 0;  // as it stands; a finished drawing of ours counts entities in it
    std::uint32_t extraStart = 0;
    std::uint32_t extraSize = 0;
    std::array<TableInfo, kTableCount> tables;
    int codePage = 0;
};

struct Layer {
    std::string name;  // GBK
    int color = 0;     // negative: off
    int linetype = 0;
};
struct Style {
    std::string name;
    std::string font;
    std::string bigFont;
    double widthFactor = 1.0;
    double oblique = 0.0;
    int flag = 0;
    int generation = 0;
};
struct Linetype {
    std::string name;
    std::string description;
    int count = 0;
    double length = 0.0;
    std::array<double, 12> elements{};
};
struct BlockEntry {
    std::string name;
    int flag = 0;
    std::uint32_t offset = 0;  // in the block section
};

class Drawing {
 public:
    /// Reads the header and the tables of a file's bytes. Never fails on any bytes: what is missing is left empty.
    /// Whether the file is sound is Check's affair.
    explicit Drawing(std::vector<std::uint8_t> bytes);

    /// True if the version stamp is one that this reads.
    bool Known() const { return header.version == 1006 || header.version == 1009; }
    bool Is1009() const { return header.version >= 1009; }
    Bytes bytes() const { return m_bytes; }
    /// True for a drawing of our writer: its field 32 counts the records of the entity section.
    bool CountsEntities() const { return m_countsEntities; }
    /// The place behind the last whole entity record.
    std::uint64_t EntityEnd() const { return std::min<std::uint64_t>(header.entityEnd, m_bytes.size()); }
    std::uint64_t BlockEnd() const;

    /// Calls visit for each record of the entity section, in order, until it returns false or a record cannot be read.
    void ForEachEntity(const std::function<bool(const Record&)>& visit) const;
    /// The same for the records of a block definition, from its BLOCK to its ENDBLK, both included.
    void ForEachInBlock(std::size_t block, const std::function<bool(const Record&)>& visit) const;

    Header header;
    std::vector<Layer> layers;
    std::vector<Style> styles;
    std::vector<Linetype> linetypes;
    std::vector<BlockEntry> blocks;

 private:
    void ReadHeader();
    void ReadTables();
    void CountEntities();

    std::vector<std::uint8_t> m_bytes;
    bool m_countsEntities = false;
};

/// Reads the record of a block section at offset. A nested INSERT of a drawing of ours has a four-byte block number and
/// is two bytes longer than it says; where a drawing does not tell that it is ours, the INSERT is taken as such where
/// only then a record follows. next receives the place of the following record.
bool ReadBlockRecord(const Drawing& drawing, std::uint64_t offset, Record& record, std::uint64_t& next);

/// Bounds of what is drawn in the entity section, text by its anchor, inserts by their point. False if there is
/// nothing.
bool Extents(const Drawing& drawing, Point& low, Point& high);

}  // namespace zm::dwg::reader

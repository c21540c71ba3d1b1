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
#include "zenromath/export.h"

namespace zm::dwg::reader {

// The table of views on screen, which is in the header variables; its count and address.
constexpr std::size_t kViewportTable = 1280;

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
    std::uint32_t blockSize = 0;  // as it is; a finished drawing of ours counts entities in it
    std::uint32_t extraStart = 0;
    std::uint32_t extraSize = 0;
    std::array<TableInfo, kTableCount> tables;
    int codePage = 0;
};

/// The three places of records.
enum class Section { entities, blocks, extras };

struct Layer {
    std::string name;  // GBK
    int color = 0;     // negative: off
    int linetype = 0;
    int flag = 0;  // kFrozen
    bool Shown() const { return color >= 0 && (flag & kFrozen) == 0; }

    static constexpr int kFrozen = 1;
};
struct Style {
    std::string name;
    std::string font;
    std::string bigFont;
    double widthFactor = 1.0;
    double oblique = 0.0;  // radians
    double height = 0.0;   // 0: each text has its own
    double lastHeight = 0.0;
    int flag = 0;
    int generation = 0;

    static constexpr int kShapeFile = 1;
    static constexpr int kVertical = 4;
};
struct Linetype {
    std::string name;
    std::string description;
    int flag = 0;
    int alignment = 0;
    int count = 0;
    double length = 0.0;
    std::array<double, 12> elements{};
};
struct BlockEntry {
    std::string name;
    int flag = 0;
    std::uint32_t offset = 0;  // in the block section
    int mark = 0;              // the top byte of the place, 0x40
    bool readable = true;      // false: an empty slot, or its definition runs through those of other blocks
    bool IsEmptySlot() const { return name.empty() && flag == 0 && offset == 0; }
};

/// What of the header variables is used here.
struct Variables {
    Point base;             // INSBASE
    Point extentsLow;       // EXTMIN
    Point extentsHigh;      // EXTMAX
    Point limitsLow;        // LIMMIN
    Point limitsHigh;       // LIMMAX
    Point viewCentre;       // VIEWCTR
    double viewHeight = 0;  // VIEWSIZE
    double linetypeScale = 1.0;
    int attributeMode = 1;  // ATTMODE: 0 none is shown, 1 those that are not invisible, 2 all
    int splineFrame = 0;    // SPLFRAME
    int pointMode = 0;      // PDMODE
    double pointSize = 0.0;
    int linearUnits = 2, linearPlaces = 4;
    int angularUnits = 0, angularPlaces = 0;
    int fillMode = 1;
};

class ZM_API Drawing {
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
    /// The place after the last whole entity record.
    std::uint64_t EntityEnd() const { return std::min<std::uint64_t>(header.entityEnd, m_bytes.size()); }
    std::uint64_t BlockEnd() const;
    /// The place after the extra section; its start where it is empty. The closing record of our writer counts to it.
    std::uint64_t ExtraEnd() const;
    /// Where a JUMP leads: a place in the file.
    std::uint64_t PlaceOf(std::uint32_t jump) const;

    /// Calls visit for each record of the entity section, in order, until it returns false or a record cannot be read.
    void ForEachEntity(const std::function<bool(const Record&)>& visit) const;
    /// The same for the records of a block definition, from its BLOCK to its ENDBLK, both included.
    void ForEachInBlock(std::size_t block, const std::function<bool(const Record&)>& visit) const;
    /// The same for the extra section.
    void ForEachExtra(const std::function<bool(const Record&)>& visit) const;

    Header header;
    Variables variables;
    std::vector<Layer> layers;
    std::vector<Style> styles;
    std::vector<Linetype> linetypes;
    std::vector<BlockEntry> blocks;

 private:
    void ReadHeader();
    void ReadVariables();
    void ReadTables();
    void CountEntities();
    void LimitBlocks();

    std::vector<std::uint8_t> m_bytes;
    bool m_countsEntities = false;
};

/// Calls visit for the records as they belong together: a JUMP leads to where it says and back, and is no record itself;
/// erased ones are left out. Of the entity section, or of the block of this number.
///
/// \return false where a JUMP leads nowhere or in a circle; what was reached was visited
bool ForEachInOrder(const Drawing& drawing, const std::function<bool(const Record&)>& visit);
bool ForEachInBlockInOrder(const Drawing& drawing, std::size_t block, const std::function<bool(const Record&)>& visit);

/// Reads the record of a block section at offset. A nested INSERT of a drawing of ours has a four-byte block number and
/// is two bytes longer than it says; where a drawing does not tell that it is ours, the INSERT is taken as such where
/// only then a record follows. next receives the place of the following record.
bool ReadBlockRecord(const Drawing& drawing, std::uint64_t offset, Record& record, std::uint64_t& next);

}  // namespace zm::dwg::reader

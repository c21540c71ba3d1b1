// The layout of the drawing file as data: header fields, tables, limits and entity records. The writer fills it, the
// reader checks against it. All integers are little-endian; u16 and u32 unsigned, f64 an IEEE double.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dwg/format/record_layout.h"

namespace zm::dwg {

constexpr std::size_t kHeaderSize = 96;         // the header image of the writer; the variables begin inside it
constexpr std::size_t kVariablesEnd = 1310;     // after the header variables, 160 of them
constexpr std::size_t kOldVariablesEnd = 1298;  // the same with 158 of them
constexpr std::size_t kBasePointX = 94;         // f64, the first variable
constexpr std::size_t kBasePointY = 102;        // f64
constexpr char kVersion[] = "1006";             // digits at bytes 2 to 5

// Header fields, all u32.
constexpr std::size_t kEntitiesStart = 20;
constexpr std::size_t kEntitiesEnd = 24;
constexpr std::size_t kBlocksStart = 28;  // the block section
constexpr std::size_t kEntityCount = 32;
constexpr std::size_t kExtraStart = 36;  // the closing record

enum class Table { block, layer, style, linetype, view };
constexpr int kTableCount = 5;

struct TableLayout {
    std::size_t recordSizeField;  // u16 in the header; the writer uses recordSize instead
    std::size_t countField;       // u32
    std::size_t addressField;     // u32
    std::size_t recordSize;       // bytes, in the output
    int capacity;                 // records
};
constexpr TableLayout kTables[kTableCount] = {
    {44, 46, 50, 37, 500},   // block
    {54, 56, 60, 37, 200},   // layer
    {64, 66, 70, 194, 10},   // style
    {74, 76, 80, 187, 100},  // linetype
    {84, 86, 90, 91, 1},     // view
};
constexpr const TableLayout& LayoutOf(Table table) {
    return kTables[static_cast<int>(table)];
}

// The header fields that move. Each event adds its record's size to these fields.
constexpr std::size_t kMovedByEntity[] = {24, 28, 50, 60, 70, 80, 90, 36};
constexpr std::size_t kMovedByBlock[] = {28, 60, 70, 80, 90, 36};
constexpr std::size_t kMovedByLayer[] = {28, 36, 70, 80, 90};
constexpr std::size_t kMovedByStyle[] = {28, 36, 80, 90};
constexpr std::size_t kMovedByLinetype[] = {28, 36, 90};

constexpr std::size_t kTailSize = 498;            // most bytes between the view table and the block section
constexpr std::size_t kBlockSectionSize = 64000;  // most bytes of block definitions
constexpr std::size_t kTemplateEntities = 8;      // most bytes of entities in the template
constexpr std::size_t kNameSize = 32;             // of every table record, its end byte included
constexpr std::size_t kFontSize = 64;             // of the two font fields, the end byte included
constexpr int kPatternSize = 12;                  // elements of a linetype
constexpr std::uint8_t kReferenced = '@';         // flag of every record written
constexpr std::uint8_t kVerticalStyle = 'D';      // flag of a vertical style

// Table records; the flag is at 0, the name at 1.
namespace layer_record {
constexpr std::size_t kColor = 33;     // u16
constexpr std::size_t kLinetype = 35;  // u16
}  // namespace layer_record
namespace linetype_record {
constexpr std::size_t kDescription = 33;  // 48 bytes
constexpr std::size_t kAlignment = 81;    // "A"
constexpr std::size_t kCount = 82;        // u8
constexpr std::size_t kLength = 83;       // f64
constexpr std::size_t kElements = 91;     // 12 x f64
}  // namespace linetype_record
namespace style_record {
constexpr std::size_t kHeight = 33;      // f64
constexpr std::size_t kWidth = 41;       // f64
constexpr std::size_t kOblique = 49;     // f64, radians
constexpr std::size_t kGeneration = 57;  // u8: 2 backward, 4 upside down
constexpr std::size_t kLastHeight = 58;  // f64
constexpr std::size_t kFont = 66;        // 64 bytes
constexpr std::size_t kBigFont = 130;    // 64 bytes
}  // namespace style_record
namespace block_record {
constexpr std::size_t kOffset = 33;          // u16, from the start of the block section
constexpr std::size_t kMark = 35;            // u16
constexpr std::uint16_t kMarkValue = 16384;  // 0x40 in the top byte of the 32-bit offset
}  // namespace block_record

struct EntityLayout {
    std::uint16_t word;    // kind + 256 * flags
    std::uint16_t length;  // bytes of the record, header included
    std::uint16_t options;
};
constexpr std::uint16_t Word(int kind, int flags) {
    return static_cast<std::uint16_t>(kind + 256 * flags);
}
constexpr int kAllCommon = kHasColor | kHasLinetype | kHasElevation | kHasThickness;
constexpr EntityLayout kLine = {Word(1, 11), 66, 0};
constexpr EntityLayout kPoint = {Word(2, 11), 42, 0};
constexpr EntityLayout kCircle = {Word(3, kAllCommon), 50, 0};
constexpr EntityLayout kText = {Word(7, 7), 70, 31};  // and the bytes of the text
constexpr EntityLayout kArc = {Word(8, kAllCommon), 66, 0};
constexpr EntityLayout kTrace = {Word(9, kAllCommon), 90, 0};
constexpr EntityLayout kSolid = {Word(11, kAllCommon), 90, 0};
constexpr EntityLayout kBlock = {Word(12, 0), 24, 0};
constexpr EntityLayout kBlockEnd = {Word(13, 0), 8, 0};
constexpr EntityLayout kInsert = {Word(14, 0), 58, 15};
constexpr EntityLayout kColouredInsert = {Word(14, kHasColor), 59, 15};  // the colour before the block number
constexpr EntityLayout kSequenceEnd = {Word(17, kAllCommon), 30, 0};
constexpr EntityLayout kJump = {Word(18, kHasElevation), 26, 32768};
constexpr EntityLayout kPolyline = {Word(19, kHasFollowers | kAllCommon), 26, 0};
constexpr EntityLayout kClosedPolyline = {Word(19, kHasFollowers | kAllCommon), 27, 1};  // and the byte "closed"
constexpr EntityLayout kPolyline3d = {Word(19, kHasFollowers | kAllCommon), 42, 6};
constexpr EntityLayout kVertex = {Word(20, kAllCommon), 42, 0};
constexpr EntityLayout kFace3d = {Word(22, 3), 106, 0};
static_assert(kLine.word == 2817 && kPoint.word == 2818 && kCircle.word == 3843 && kText.word == 1799);
static_assert(kArc.word == 3848 && kTrace.word == 3849 && kSolid.word == 3851 && kSequenceEnd.word == 3857);
static_assert(kPolyline.word == 36627 && kVertex.word == 3860 && kFace3d.word == 790 && kJump.word == 1042);

constexpr std::size_t kClosingRecordSize = 50;        // the first polyline with heights, and its jump back
constexpr std::uint32_t kSequenceEnd3d = 0x80000000;  // in place of a position in the SEQEND of such polylines
constexpr std::size_t kLongestRecord = 32767;         // its length counts as a signed 16-bit number
constexpr std::size_t kLongestText = kLongestRecord - kText.length;

}  // namespace zm::dwg

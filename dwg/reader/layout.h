// The layout of drawings of version digits 1006 and 1009, as data: header fields, record kinds and their fields.
// docs/dwg/writer.md and docs/dwg/template.md tell what the fields mean.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zm::dwg::reader {

constexpr std::size_t kHeaderBytes = 94;
constexpr std::size_t kRecordHeaderBytes = 8;
constexpr std::size_t kSectionSizeMask = 0xFFFFFF;       // the low 24 bits of a section size field
constexpr std::uint32_t kEntityCountStart = 0x40010000;  // what the template has in field 32 before the first entity

/// Offsets of the header's fields.
enum HeaderField : std::size_t {
    kFieldVariables = 17,
    kFieldEntityStart = 20,
    kFieldEntityEnd = 24,
    kFieldBlockStart = 28,
    kFieldBlockSize = 32,
    kFieldExtraStart = 36,
    kFieldExtraSize = 40,
    kFieldTables = 44,  // five tables of 10 bytes: u16 record size, u16 count, u16 0, u32 address
};

enum class Table { block, layer, style, linetype, view };
constexpr std::size_t kTableCount = 5;
constexpr std::array<const char*, kTableCount> kTableNames = {"block", "layer", "style", "linetype", "view"};

enum class FieldType : std::uint8_t { u8, u16, u32, f64, text };

struct FieldLayout {
    const char* name;
    FieldType type;
    std::uint16_t option;  // the options bit that announces it; 0: always there
};

/// How the coordinates of a kind stand: points of x, y, or x, y, z, the latter without z where flag 4 is set.
struct KindLayout {
    std::uint8_t kind;
    const char* name;
    int points;   // leading points
    bool threeD;  // points have a z of their own
    std::span<const FieldLayout> fields;
};

/// The layout of a kind without its erased bit; null where it is not known.
const KindLayout* LayoutOf(std::uint8_t kind);

enum Kind : std::uint8_t {
    kLine = 1,
    kPoint = 2,
    kCircle = 3,
    kShape = 4,
    kText = 7,
    kArc = 8,
    kTrace = 9,
    kSolid = 11,
    kBlock = 12,
    kEndBlock = 13,
    kInsert = 14,
    kSeqEnd = 17,
    kJump = 18,
    kPolyline = 19,
    kVertex = 20,
    kLine3D = 21,
    kFace3D = 22,
};

enum Flag : std::uint8_t {
    kHasColor = 1,
    kHasLinetype = 2,
    kHasElevation = 4,
    kHasThickness = 8,
    kHasHandle = 32,
    kHasExtra = 64,  // 1009 only
    kIsSequence = 128,
};

}  // namespace zm::dwg::reader

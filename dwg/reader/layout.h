// The layout of drawings of version digits 1006 and 1009, as data: header fields here, record kinds and their fields in
// dwg/format/record_layout.h. docs/dwg/writer.md and docs/dwg/template.md say what the fields mean.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "dwg/format/record_layout.h"

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

using enum kinds::Kind;

}  // namespace zm::dwg::reader

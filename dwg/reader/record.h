// One record of an entity or block section, decoded.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dwg/reader/layout.h"

namespace zm::dwg::reader {

struct Point {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A field after the points: a number, or bytes in GBK where text is set.
struct Field {
    const FieldLayout* layout = nullptr;
    double number = 0.0;
    std::string text;
};

struct Record {
    std::uint64_t offset = 0;  // in the file
    std::uint8_t kind = 0;     // without the erased bit
    bool erased = false;
    std::uint8_t flags = 0;
    std::uint16_t length = 0;
    std::uint16_t layer = 0;
    std::uint16_t options = 0;
    const KindLayout* layout = nullptr;  // null: a kind that is not known, its body is passed over
    std::optional<int> color;            // absent: by layer; 0: by block
    std::optional<int> linetype;         // absent: by layer; 255: by block
    std::optional<double> elevation;
    std::optional<double> thickness;
    std::string handle;  // bytes, the highest first
    unsigned extra = 0;  // what else a record of 1009 has, kHasExtendedData and kHasViewport
    std::optional<int> viewport;
    std::uint32_t jump = 0;  // of a JUMP: where it leads, as it is; Drawing::PlaceOf makes a place of it
    std::vector<Point> points;
    std::vector<Field> fields;
    std::size_t used = 0;  // bytes that the announced fields take; equals length in a sound record

    /// True for a record of paper space, which is no part of the drawing's model.
    bool InPaperSpace() const { return (extra & kHasViewport) != 0; }
    bool HasExtendedData() const { return (extra & kHasExtendedData) != 0; }
    /// The marker of our writer in front of the vertices of its first polyline with heights: a JUMP with fields.
    bool IsMarker() const { return kind == kJump && flags == kHasElevation && length == kMarkerSize; }
    bool ByBlock() const { return linetype && (*linetype == kByBlock || *linetype == kByBlock1009); }
    bool ByLayer() const { return !linetype || *linetype == 256 || *linetype == kByLayer1009; }

    /// The number of a field by name; otherwise where it is absent.
    double Number(std::string_view name, double otherwise) const;
    const Field* Find(std::string_view name) const;
};

/// Whether a record is as long as its fields; of a kind with fields that are seldom seen nothing is asked.
inline bool IsProvenLength(const Record& record) {
    const bool unproven = record.kind == kDimension && (record.options & ~fields::kProvenDimensionOptions) != 0;
    return record.used == record.length || (unproven && record.used <= record.length);
}

/// Decodes the record that begins at offset. False where fewer than 8 bytes are left or its length is below 8 or leads
/// past the end of the bytes; then only offset, kind, flags and length are set as far as they could be read. Fields
/// that would stand after the record's end are left out, and used then exceeds length.
///
/// \param bytes    the file
/// \param offset   of the record
/// \param r1009    the shape of 1009: two-byte linetype fields and two bytes after each record
/// \param room     where the section ends; no byte at or after it is read
/// \param wideInsert  read an INSERT's block number as four bytes, as nested ones are copied, with a record that is two
///                    bytes longer than it says
bool ReadRecord(std::span<const std::uint8_t> bytes, std::uint64_t offset, bool r1009, std::uint64_t room,
                Record& record, bool wideInsert = false);

}  // namespace zm::dwg::reader

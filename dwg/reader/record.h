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

/// A field behind the points: a number, or bytes in GBK where text is set.
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
    std::string handle;
    std::vector<Point> points;
    std::vector<Field> fields;
    std::size_t used = 0;  // bytes that the announced fields take; equals length in a sound record

    /// The number of a field by name; otherwise where it is absent.
    double Number(std::string_view name, double otherwise) const;
    const Field* Find(std::string_view name) const;
};

/// Decodes the record that begins at offset. False where fewer than 8 bytes are left or its length is below 8 or leads
/// past the end of the bytes; then only offset, kind, flags and length are set as far as they could be read. Fields
/// that would stand behind the record's end are left out, and used then exceeds length.
///
/// \param bytes    the file
/// \param offset   of the record
/// \param r1009    the shape of 1009: two-byte linetype fields and two bytes behind each record
/// \param room     where the section ends; no byte at or behind it is read
/// \param wideInsert  read an INSERT's block number as four bytes, as nested ones are copied, with a record that is two
///                    bytes longer than it says
bool ReadRecord(std::span<const std::uint8_t> bytes, std::uint64_t offset, bool r1009, std::uint64_t room,
                Record& record, bool wideInsert = false);

}  // namespace zm::dwg::reader

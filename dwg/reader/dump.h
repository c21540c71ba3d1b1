// A drawing as text: an overview, and each record as a line.
#pragma once

#include <string>

#include "dwg/reader/drawing.h"
#include "zenromath/export.h"

namespace zm::dwg::reader {

/// Version, counts, tables with their entries, extents. UTF-8, lines ended by a line feed; json: one object.
ZM_API std::string Info(const Drawing& drawing, bool json);

/// Where a record of a dump lies.
struct Place {
    Section section = Section::entities;
    const BlockEntry* block = nullptr;  // in the block section: the definition that it belongs to
};

/// One record as a line without its line feed: offset, kind, layer by name, colour, linetype by name, fields with their
/// names. json: an object. UTF-8.
///
/// \param place  null: neither section nor block are named
ZM_API std::string Line(const Drawing& drawing, const Record& record, bool json, const Place* place = nullptr);

}  // namespace zm::dwg::reader

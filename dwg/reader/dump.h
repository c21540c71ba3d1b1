// A drawing as text: an overview, and each record as a line.
#pragma once

#include <string>

#include "dwg/reader/drawing.h"

namespace zm::dwg::reader {

/// Version, counts, tables with their entries, extents. UTF-8, lines ended by a line feed; json: one object.
std::string Info(const Drawing& drawing, bool json);

/// One record as a line without its line feed: offset, kind, layer by name, colour, linetype by name, fields with their
/// names. json: an object. UTF-8.
std::string Line(const Drawing& drawing, const Record& record, bool json);

}  // namespace zm::dwg::reader

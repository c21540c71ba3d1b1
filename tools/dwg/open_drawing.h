// A drawing file opened for people: what is no drawing is refused, what is damaged is reported.
#pragma once

#include <string>

#include "dwg/reader/drawing.h"

namespace zm::tool {

struct Context;

/// A drawing that this reads. Another file is named by what it says itself; a damaged one is read as far as it goes, and
/// the first damage is reported with its place. Throws Failure (kNoInput).
dwg::reader::Drawing OpenKnown(const std::string& file, Context& context);

}  // namespace zm::tool

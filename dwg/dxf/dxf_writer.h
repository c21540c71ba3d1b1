// A drawing as DXF: R12 in ASCII, which about every program for drawings and maps reads.
#pragma once

#include <functional>
#include <string_view>

#include "dwg/reader/drawing.h"
#include "zenromath/export.h"

namespace zm::dwg::dxf {

struct Options {
    bool utf8 = false;  // texts in UTF-8; else GBK bytes, as $DWGCODEPAGE ANSI_936 says
};

struct Count {
    long entities = 0;  // written, those of blocks included
    long leftOut = 0;   // of kinds that R12 lacks, or with a coordinate that is no finite number, or out of place
};

/// Takes the next bytes of the file; false where they could not be written, and nothing further comes then.
using Output = std::function<bool(std::string_view)>;

/// Writes header, tables, blocks and entities, in the order of the drawing, jumps followed, erased records left out.
/// Angles are degrees. Blocks and layers without a name, and names that are there twice, get names of their own; blocks
/// of dimensions are numbered. Each entity has a handle: its own, or one that is free.
/// \param[out] count  what was written
/// \return  whether all of it was taken
ZM_API bool WriteDxf(const reader::Drawing& drawing, const Options& options, const Output& output, Count& count);

}  // namespace zm::dwg::dxf

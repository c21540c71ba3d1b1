// A drawing file as DXF, and what a program for drawings shows when it opens one.
#pragma once

#include <filesystem>

#include "dwg/dxf/dxf_writer.h"
#include "tools/zenro/map/page.h"

namespace zm::tool {

/// Reads a drawing file. Throws Failure (kNoInput) where it cannot be read.
dwg::reader::Drawing ReadDrawingFile(const std::filesystem::path& path);

/// Writes a drawing as DXF. Throws Failure (kNoOutput), naming target.
dwg::dxf::Count WriteDxfFile(const dwg::reader::Drawing& drawing, const std::filesystem::path& path,
                             const std::filesystem::path& target, bool utf8);

/// Gives a drawing file that our library wrote the sheet's extents and limits, a view of the sheet, and decimal units with
/// millimetres. False where the file cannot be changed.
bool SetDrawingView(const std::filesystem::path& path, const Page& page);

}  // namespace zm::tool

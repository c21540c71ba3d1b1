// The margins of a sheet: what a file says is around the map, and where.
#pragma once

#include <filesystem>

#include "tools/zenro/map/frame.h"

namespace zm::tool {

/// Reads a file of lines KEY = VALUE in UTF-8 into the texts; keys in English or Chinese, # begins a comment line. What
/// the texts have already stays where the file says nothing. Throws Failure: kNoInput if it cannot be read, kUsage with
/// file and line for a key that is none, a key named twice or a value that cannot be.
void ReadMargins(const std::filesystem::path& path, FrameTexts& texts);

/// The margins of paper that the texts need.
Margins MarginsFor(const FrameTexts& texts);

/// Draws everything outside the outer frame. The clip area is switched off by the caller.
void DrawMargins(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes);

/// Kilometres of the south-west corner, north before east: two decimals at 1:500, one at 1:1000 and 1:2000, none at
/// 1:5000, more where the corner needs them. Empty for a turned sheet.
std::string SheetNumber(const Page& page);

}  // namespace zm::tool

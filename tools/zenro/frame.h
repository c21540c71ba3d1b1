// What stands around the map: neat line, outer frame, grid crosses with coordinates, title, scale, system, north arrow.
#pragma once

#include <string>

#include "tools/zenro/lettering.h"
#include "tools/zenro/page.h"

namespace zm::tool {

struct FrameTexts {
    std::string title;   // UTF-8
    std::string number;  // under the title; empty: made of the sheet's south-west corner
    std::string system;  // lower left
    std::string remark;  // lower right: source, date, whatever the user wants
};

/// Draws the frame on the working context. Clipping is switched off meanwhile.
void DrawFrame(const Page& page, const FrameTexts& texts, TqNoteLayBase& notes);
/// The strokes of the grid crosses, as they are drawn.
std::vector<Chain> GridCrosses(const Page& page);
/// Draws the grid crosses, which lie in the map and turn with it.
void DrawCrosses(const Page& page);

}  // namespace zm::tool

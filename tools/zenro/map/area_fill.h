// Fills of areas: solid, by lines, by symbols in ranks of which only whole ones are drawn.
#pragma once

#include <vector>

#include "tools/zenro/map/masks.h"

namespace zm::tool {

/// One part of a fill as a hatch symbol has it.
struct FillPart {
    enum class Kind { ranks, lines, solid, pattern } kind = Kind::solid;
    double angle1 = 0.0, step1 = 0.0;  // of the lines: radians, millimetres of paper
    double angle2 = 0.0, step2 = 0.0;  // of the second lines, on whose crossings symbols stand
    int symbol = 0;
    COLORREF colour = 0;
};

/// A hatch symbol: its parts, and the style of the pen that would draw its outline.
struct FillForm {
    std::vector<FillPart> parts;
    int outlineStyle = 0;
};

/// Reads the form of a hatch of the library in force; no parts where the code is none.
FillForm FillFormOf(int code);

/// Fills an area by lines or symbols with the current pen, holes left out. Ranks stand in one grid for the whole plane,
/// so that neighbours of a kind join.
/// \param masks  what symbols and lines give way to
void DrawFill(const Shape& shape, const FillPart& part, const Page& page, const Masks& masks);

/// Fills an area in a drawing file with SOLID entities of a colour of the CAD palette, holes and what lies beyond the
/// limit of the sheet left out; nothing on other devices.
void FillWithSolids(const Shape& shape, int colour, const Page& page);

/// Fills closed rings given as one without an outline; nothing in a drawing file and on a monochrome device.
/// \param xy  pairs, ground metres
void FillArea(const std::vector<double>& xy, COLORREF colour);

}  // namespace zm::tool

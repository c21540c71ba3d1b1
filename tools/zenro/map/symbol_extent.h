// How far the point symbols of the library in force reach from their anchors.
#pragma once

#include "tools/zenro/map/source.h"

namespace zm::tool {

/// Draws every point symbol once on a device that keeps nothing but the extent. The layers of the context that is made
/// for it end with it: read them again afterwards.
void MeasureSymbols();

/// The box of a point symbol about its anchor, millimetres of paper, pen widths left out; empty where the code is none.
/// Call MeasureSymbols before.
const Box& ExtentOfSymbol(int code);

}  // namespace zm::tool

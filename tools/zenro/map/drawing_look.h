// What a drawing file is given in place of pens: layers with readable names, in colours of the CAD palette that come
// near those of the sheet.
#pragma once

#include <string>

#include "zenromath/platform.h"

namespace zm::tool {

/// The colour of a number of the palette in force.
COLORREF PaletteColour(int number);

/// The entry of the CAD palette that comes nearest to a colour on paper.
int DrawingColourOf(COLORREF colour);

/// Makes a layer the current one of the drawing file, the layer and what follows in a colour of the palette in force,
/// and solid: what the sheet dashes is drawn in dashes.
void SelectDrawingLayer(const std::string& name, int paletteNumber);

/// The same for the layer that holds a feature code; nothing where no layer does.
void SelectDrawingLayerOf(int code);

}  // namespace zm::tool

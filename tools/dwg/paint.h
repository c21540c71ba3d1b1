// A drawing file drawn back, so that a person sees what stands in it.
#pragma once

#include "dwg/reader/drawing.h"
#include "zenromath/draw.h"

namespace zm::tool {

struct Painted {
    long drawn = 0;    // records that left strokes
    long unknown = 0;  // records of kinds that are not drawn
};

/// Draws the entity section on a device context (type 0), each entity in its colour number and with its linetype's
/// dashes in drawing units; inserts with their blocks, up to 16 deep.
///
/// \param dc         the working context, its view set
/// \param thinWidth  of all strokes, device pixels
/// \param minDash    dashes are drawn only where the pattern is at least so many device pixels long
/// \param face       face of all text, GBK
Painted Paint(const dwg::reader::Drawing& drawing, CTqDraw& dc, int thinWidth, double minDash, const char* face);

}  // namespace zm::tool

// A drawing file drawn back, so that a person sees what is in it.
#pragma once

#include <memory>

#include "dwg/reader/picture.h"
#include "zenromath/draw.h"

namespace zm::tool {

/// What draws the items of a drawing on a device context (type 0); the working context, its view set. See Paint.
std::unique_ptr<dwg::reader::PictureSink> PaintingSink(CTqDraw& dc, int thinWidth, double minDash, const char* face);

/// How programs for such drawings show a colour number. 0x00BBGGRR
COLORREF DrawingColour(int number);

/// Draws the entity section on a device context (type 0), each entity in its colour number and with its linetype's
/// dashes in drawing units; inserts with their blocks.
///
/// \param dc         the working context, its view set
/// \param thinWidth  of all strokes, device pixels
/// \param minDash    dashes are drawn only where the pattern is at least so many device pixels long
/// \param face       face of all text, GBK
dwg::reader::PictureCount Paint(const dwg::reader::Drawing& drawing, CTqDraw& dc, int thinWidth, double minDash,
                                const char* face);

}  // namespace zm::tool

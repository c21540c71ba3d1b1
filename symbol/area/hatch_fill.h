// Fills of hatch symbols by the platform's brushes.
#pragma once

#include <cstdint>

#include "zenromath/platform.h"

namespace zm::symbol {

/// In place of a colour: that of the current pen.
constexpr COLORREF kPenColour = 0xFFFFFFFF;

/// Fills with a solid brush (style 0) or a platform hatch (1 to 6, others as 1), and draws the outline.
///
/// \param penStyle  of the outline; its width is 0 where the style is not 0, else that of the current pen
/// \return          1; on a DWG sink the outline alone is drawn and its result returned
int FillBrushPolygon(int n, double* xy, int penStyle, int brushStyle, COLORREF colour);

/// The same with a bitmap of eight rows, four in each word, the first in its lowest byte.
int FillPatternPolygon(int n, double* xy, int penStyle, int brushStyle, COLORREF colour, std::uint32_t low,
                       std::uint32_t high);

}  // namespace zm::symbol

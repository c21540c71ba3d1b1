// The frame of a sheet of the graticule: its sides are meridians and parallels, its margin has minutes and kilometres.
#pragma once

#include <string>

#include "tools/zenro/map/page.h"
#include "zenromath/config.h"

namespace zm::tool {

/// Draws neat line, outer frame, minute band, latitudes and longitudes of the corners, grid ticks and their kilometres.
/// The clip area is switched off by the caller.
/// \param outerWidth  of the outer frame's line, millimetres
void DrawGraticuleFrame(const Page& page, double outerWidth, TqNoteLayBase& notes);

/// The step of the ticks of a side in seconds of arc: minutes where the side has one, so that they are at least 15 mm
/// apart on paper.
/// \param seconds      of the side
/// \param millimetres  of the side on paper
double GraticuleStep(double seconds, double millimetres);

/// Degrees and minutes, and seconds with as many decimals as asked: 39°22' and 52.5".
struct SplitAngle {
    std::string degrees, minutes, seconds;
};
SplitAngle SplitDegrees(double degrees, int decimals);
/// The decimals of seconds, 0 to 3, that write angles exactly.
int DecimalsOfSeconds(double degrees);

}  // namespace zm::tool

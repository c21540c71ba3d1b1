// The one upward call of geometry: while a height table is armed, it sets the elevation that the DWG writer gives to
// the next entity. All that the two folders know of each other is here.
#pragma once

#include "zenromath/export.h"

/// Sets the current elevation of DWG output. Defined by dwg.
ZM_API void SetDwgElevation(double elevation);

namespace zm::dwg {
/// The current elevation of DWG output. Defined by dwg; a height table saves it and puts it back.
double CurrentElevation();
}  // namespace zm::dwg

/// Called by dwg before it writes an entity with a position: while a height table is armed, the current elevation
/// becomes the height found at (x, y), 0.0 where no stored point lies near. Otherwise nothing happens. Defined by
/// geometry.
void _LDBsyncelev(double x, double y);

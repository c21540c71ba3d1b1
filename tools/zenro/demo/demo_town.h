// The town and the country around it, of the demonstration sheet.
#pragma once

#include "tools/zenro/demo/demo_canvas.h"

namespace zm::tool::demo {

/// Streets, river banks and bridges, houses, the school, the square, the factory, lamps and manholes, names.
void AddTown(Canvas& canvas);
/// South of the river: fields, ponds, ditches, the railway, the country road, power lines.
void AddCountry(Canvas& canvas);

}  // namespace zm::tool::demo

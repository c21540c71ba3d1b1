// The ornaments of two polylines: 9, 11 and 22.
#pragma once

#include "symbol/paper.h"

namespace zm::symbol {

/// points: n of them, at least 4. The first half is one line, the second the other; an odd last point is left out.
/// s: 1 mm on the paper, survey metres.
void DrawTwinLines(int number, int n, const Point* points, double s);

}  // namespace zm::symbol

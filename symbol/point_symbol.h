// The placing of graphic symbols, for what knows more of their angle than the number.
#pragma once

#include "geometry/turn.h"

namespace zm::symbol {

constexpr double kDotPixels = 1.5;  // a symbol smaller than this is a dot on a device

/// insert with the angle as a turn; it may become exact.
int PlaceSymbol(double x, double y, geometry::Turn& turn, int code);

}  // namespace zm::symbol

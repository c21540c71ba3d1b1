// Lines far longer than their sheet, cut to its surroundings.
#pragma once

#include <vector>

#include "tools/zenro/map/shapes.h"

namespace zm::tool {

/// The pieces of a chain that lie within a box, in their order. A chain that stays inside is one piece, unchanged.
std::vector<Chain> PiecesWithin(const Chain& chain, const Box& box);

}  // namespace zm::tool

// What the hatch caps left out, for programs that report it: 18 crossings of a line, 494 lines of a family, 495
// segments of a family, 4000 points of an entry. No message is shown for it.
#pragma once

#include <array>
#include <cstdint>

#include "zenromath/export.h"

namespace zm::symbol {

/// What was left out of the polygons hatched with one code, summed since the last reset.
struct HatchCut {
    std::uint64_t polygons = 0;   // polygons of which something was left out
    std::uint64_t drawn = 0;      // lines drawn in those polygons, each piece inside the polygon counted
    std::uint64_t wanted = 0;     // the same with what was left out; a line that was not tried counts as one
    std::uint64_t crossings = 0;  // lines that met more than 18 edges, so that their pieces are not to be relied on
};

struct HatchCuts {
    std::array<HatchCut, 1000> codes{};  // indexed by the symbol code
};

/// The counters, by code: "hatch <code>: <drawn> of <wanted> lines drawn" for each with polygons above 0.
ZM_API const HatchCuts& CurrentHatchCuts();
ZM_API void ResetHatchCuts();

}  // namespace zm::symbol

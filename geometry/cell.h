// The cell of a grid that a place lies in.
#pragma once

namespace zm::geometry {

/// \param place  in cells from the first one's beginning; NaN, and what is before it, is in the first
/// \param count  cells, 1 or more; what is beyond them is in the last
inline int CellAt(double place, int count) {
    if (!(place > 0.0)) return 0;
    return place >= count ? count - 1 : static_cast<int>(place);
}

}  // namespace zm::geometry

// A packed tree over boxes: built once, asked often. Boxes are ordered along a Hilbert curve and gathered sixteen at a
// time, so that what lies together is found together.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

class BoxTree {
 public:
    BoxTree() = default;
    explicit BoxTree(const std::vector<Box>& boxes);
    /// The numbers of the boxes that meet a window, ascending. Empty boxes meet none.
    std::vector<std::uint32_t> Within(const Box& window) const;

 private:
    struct Level {
        std::vector<Box> boxes;
    };
    std::vector<std::uint32_t> m_order;  // the numbers of the boxes along the curve
    std::vector<Level> m_levels;         // the boxes in that order, then their groups, up to one
};

/// Distance along a Hilbert curve of order 16 of a cell, both coordinates 0 to 65535.
std::uint32_t AlongHilbert(std::uint32_t x, std::uint32_t y);

}  // namespace zm::tool

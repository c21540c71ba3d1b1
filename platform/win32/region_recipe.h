// How a region of the system came about: GDI keeps its pixels alone, while devices that draw figures want the outlines.
// Nothing is computed before a device of the library asks.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "zenromath/device.h"

namespace zm::win32 {

class RegionRecipe {
 public:
    using Pointer = std::shared_ptr<const RegionRecipe>;

    static Pointer Polygon(const POINT* points, int count, int mode);
    static Pointer Rectangle(int left, int top, int right, int bottom);
    static Pointer Combined(const Pointer& first, const Pointer& second, int mode);
    /// Of a region that the library did not make: its pixels.
    static Pointer Of(HRGN region);

    const Region& region() const;

 private:
    Region Made() const;

    std::vector<POINT> m_points;  // empty: a combination
    int m_mode = 0;
    Pointer m_first, m_second;
    int m_depth = 0;
    mutable std::optional<Region> m_region;
};

}  // namespace zm::win32

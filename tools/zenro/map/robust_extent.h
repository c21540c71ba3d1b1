// The extent of a layer that one stray vertex does not spoil.
#pragma once

#include <cstddef>
#include <vector>

namespace zm::tool {

/// Collects the vertices of a layer, finds the few that lie far from all the rest, and gives the extent of the rest.
///
/// A stray is a vertex that is no finite number, that lies beyond the limits of the layer's numbers, or that is one of
/// few (at most a thousandth of all, at least one) and farther from the rest than 20 times the width of the rest; among
/// fewer than 50 vertices, 1000 times. A few far places of a real layer stay what they are.
class RobustExtent {
 public:
    /// Millimetres, the smallest unit of plane coordinates: beyond it no number is a place.
    static constexpr double kNoPlace = 1e12;

    /// The vertices of one chain, as they stand in the data.
    void Add(std::size_t n, const double* x, const double* y);
    /// The middle of all finite vertices; false where there is none. Before Settle only.
    bool Middle(double& x, double& y);
    /// Call once after the last Add. Before it, and without it, only what is beyond kNoPlace is a stray.
    /// \param limitX, limitY  beyond them no number is a place: 360 and 90 for degrees
    /// \param grain           the least width of a layer, about 100 m in its own unit
    void Settle(double limitX, double limitY, double grain);

    bool empty() const { return m_x1 > m_x2; }
    bool IsStray(double x, double y) const;
    double x1() const { return m_x1; }
    double y1() const { return m_y1; }
    double x2() const { return m_x2; }
    double y2() const { return m_y2; }

 private:
    std::vector<double> m_xs, m_ys;  // samples: the extremes of each chain and some vertices between them
    double m_x1 = 1e300, m_y1 = 1e300, m_x2 = -1e300, m_y2 = -1e300;
    double m_lowX = -kNoPlace, m_highX = kNoPlace, m_lowY = -kNoPlace, m_highY = kNoPlace;  // strays lie outside
};

}  // namespace zm::tool

// The sea by its shore line: lines with land on their left and water on their right.
#pragma once

#include <optional>
#include <vector>

#include "tools/zenro/store/feature.h"

namespace zm::tool {

class Sea {
 public:
    /// A piece of the shore line, turned as it is drawn. Pieces that share an end go on in each other.
    void Add(const Chain& shore) { m_shores.push_back(shore); }
    /// Finds what of a sheet is water. Where the line ends on the sheet, or where pieces contradict each other, nothing
    /// is: what is land there and what is water cannot be known.
    /// \param tolerance  ends so near the edge of the sheet lie on it, ground metres
    void Build(const Box& sheet, double tolerance);

    /// The water with its islands as holes, cut at the edge of the sheet.
    const std::vector<Shape>& areas() const { return m_areas; }
    struct Place {
        double x, y;
    };
    /// Where the shore line is open or contradicts itself.
    const std::optional<Place>& fault() const { return m_fault; }

 private:
    std::vector<Chain> m_shores;
    std::vector<Shape> m_areas;
    std::optional<Place> m_fault;
};

}  // namespace zm::tool

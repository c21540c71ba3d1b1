// An index over points with heights: the first stored point near a position, in about constant time.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "geometry/cell.h"

namespace zm::geometry {

/// A stored point is near a position if the sum of the two coordinate differences is below this; metres.
constexpr double kNear = 0.1;

inline bool IsNear(double pointX, double pointY, double x, double y) {
    return std::fabs(pointY - y) + std::fabs(pointX - x) < kNear;
}

/// A grid over the points with about one cell for each of them. A crowded cell has a grid of its own, so that one
/// far-off point does not throw all the others into one cell. Within a cell the points keep their order.
class HeightGrid {
 public:
    struct alignas(32) Entry {  // two to a cache line, none across one
        double x, y, h;
        int number;  // place in the arrays that the grid was built from
    };

    /// Throws std::bad_alloc, and nothing else.
    HeightGrid(const double* x, const double* y, const double* h, int n);

    /// The near point with the least number; null if there is none. The same point that a scan from the first would
    /// find.
    const Entry* First(double x, double y) const;

 private:
    // The cells of one grid: cell c holds the entries m_starts[firstStart + c] up to m_starts[firstStart + c + 1].
    struct Cells {
        double xmin, ymin, xmax, ymax;  // of its points
        double inverse;                 // cells per metre
        int columns, rows;
        std::size_t firstStart;
        std::vector<std::pair<std::size_t, std::size_t>> crowded;  // cell, number of its own grid; in order of cells

        std::size_t Column(double x) const { return CellOf((x - xmin) * inverse, columns); }
        std::size_t Row(double y) const { return CellOf((y - ymin) * inverse, rows); }
        bool OutOfReach(double x, double y) const;
        static std::size_t CellOf(double place, int count) { return static_cast<std::size_t>(CellAt(place, count)); }
    };

    std::size_t Build(std::size_t begin, std::size_t end);
    void SortIntoCells(const Cells& cells, std::size_t begin, std::size_t end);
    void Search(const Cells& cells, double x, double y, const Entry*& best) const;
    void SearchCell(const Cells& cells, std::size_t cell, double x, double y, const Entry*& best) const;

    std::vector<Entry> m_entries;
    std::vector<Entry> m_sorted;  // scratch of the building
    std::vector<Entry> m_far;     // points so far out that differences of coordinates may overflow; scanned
    std::vector<int> m_starts;
    std::vector<Cells> m_grids;  // the first one spans all the points
};

}  // namespace zm::geometry

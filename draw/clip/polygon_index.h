// A grid over the edges of a polygon, so that a clip does not visit every edge.
//
// It only chooses which edges are looked at and which answers are beyond doubt; what it cannot answer surely it leaves
// to the plain functions. So its answers are those of the plain order of edges, bit for bit. Why:
// docs/draw/polygon-index.md.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "geometry/cell.h"
#include "zenromath/draw.h"

namespace zm::draw {

class PolygonIndex {
 public:
    struct Crossing {
        std::uint32_t edge;
        double x, y;
    };

    /// Builds the index, or leaves it empty for a small polygon or coordinates that are too large for it.
    void Build(const PP* polygon, int n);
    bool IsBuilt() const { return !m_starts.empty(); }

    /// The answer of PtInPolyEdge for a point in the polygon's box; false where only the plain function can say.
    bool Locate(const PP* polygon, int n, double px, double py, int& answer) const;

    /// The crossings of a segment with the edges, in the order of the edges; false where the plain order is to be
    /// walked.
    bool Crossings(const PP* polygon, int n, double x1, double y1, double x2, double y2,
                   std::vector<Crossing>& crossings);

 private:
    struct Grid {
        double left = 0.0, bottom = 0.0;
        double cellWidth = 1.0, cellHeight = 1.0;
        double perWidth = 1.0, perHeight = 1.0;  // reciprocals
        int columns = 0, rows = 0;
        int Column(double x) const { return geometry::CellAt((x - left) * perWidth, columns); }
        int Row(double y) const { return geometry::CellAt((y - bottom) * perHeight, rows); }
    };
    template <class Visit>
    void VisitCells(const PP& a, const PP& b, double margin, Visit visit) const;
    bool Lay(const PP* polygon, int n);
    void SortHeights(const PP* polygon, int n);
    void MarkCentres(const PP* polygon, int n);
    bool NearOtherHeight(double y) const;

    Grid m_grid;
    std::vector<std::uint32_t> m_starts;        // of each cell in m_edges, and the end
    std::vector<std::uint32_t> m_edges;         // rising within a cell
    std::vector<std::uint8_t> m_inside;         // is the cell's centre inside?
    std::vector<double> m_heights;              // of the vertices, rising, each once
    std::vector<std::uint32_t> m_heightStarts;  // first height of each band of heights, and the end
    double m_perBand = 1.0;
    double m_largest = 0.0;             // greatest absolute coordinate
    double m_shortest = 0.0;            // length of the shortest edge
    double m_size = 0.0;                // width and height of the box together
    double m_margin = 0.0;              // by which the edges are widened when they are laid into the cells
    std::vector<std::uint32_t> m_seen;  // mark of the query that saw the edge last
    std::uint32_t m_query = 0;
};

}  // namespace zm::draw

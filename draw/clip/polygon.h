// The polygon of a clip area: its points, the two arrays that the point-in-polygon test wants, and an index.
#pragma once

#include <cstddef>
#include <vector>

#include "draw/clip/polygon_index.h"
#include "geometry/exact/crossing.h"
#include "runtime/uses.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

namespace zm::draw {

/// What belongs to a polygon. The points that the interface hands out lie in a block of their own.
struct PolygonBlock {
    std::vector<double> x, y;
    PolygonIndex index;
    std::vector<PolygonIndex::Crossing> crossings;  // of the segment that is being clipped
};

/// Copies n points (3 or more) and builds what belongs to them; null without memory.
PP* MakePolygon(int n, const double* x, const double* y);
/// Frees all of it; null is nothing.
void ReleasePolygon(PP* polygon);
PolygonBlock& BlockOf(const PP* polygon);

/// The answer of PtInPolyEdge for a point in the polygon's box.
int PointInPolygon(const PP* polygon, int n, double px, double py);

/// Calls take(cx, cy) for each edge that Cross_P reports as meeting the segment, in the order of the edges, until take
/// returns false.
template <class Take>
void ForEachCrossing(const PP* polygon, int n, double x1, double y1, double x2, double y2, Take take) {
    PolygonBlock& block = BlockOf(polygon);
    if (block.index.Crossings(polygon, n, x1, y1, x2, y2, block.crossings)) {
        uses::Count(uses::segmentByIndex);
        for (const auto& crossing : block.crossings)
            if (!take(crossing.x, crossing.y)) return;
        return;
    }
    uses::Count(uses::segmentByEdges);
    const geometry::SidesOfBox sides(x1, y1, x2, y2);
    for (int i = 0; i < n; ++i) {
        const PP& a = polygon[i];
        const PP& b = polygon[i + 1 < n ? i + 1 : 0];
        if (sides.Miss(a.x, a.y, b.x, b.y)) continue;
        double cx = 0.0;
        double cy = 0.0;
        if (Cross_P(cx, cy, x1, y1, x2, y2, a.x, a.y, b.x, b.y) == 0 && !take(cx, cy)) return;
    }
}

}  // namespace zm::draw

#include "draw/clip/polygon.h"

#include <cstring>
#include <memory>
#include <new>

#include "draw/access.h"

namespace zm::draw {

// The place before the first point holds the address of what belongs to the polygon.
PP* MakePolygon(int n, const double* x, const double* y) {
    try {
        const auto count = static_cast<std::size_t>(n);
        auto block = std::make_unique<PolygonBlock>();
        block->x.assign(x, x + count);
        block->y.assign(y, y + count);
        auto points = std::make_unique<PP[]>(count + 1);
        for (std::size_t i = 0; i < count; ++i) points[i + 1] = {x[i], y[i]};
        block->index.Build(points.get() + 1, n);
        // NOLINTBEGIN(bugprone-sizeof-expression): the address itself is kept before the points
        static_assert(sizeof(PolygonBlock*) <= sizeof(PP));
        const PolygonBlock* address = block.release();
        std::memcpy(points.get(), &address, sizeof address);
        // NOLINTEND(bugprone-sizeof-expression)
        return points.release() + 1;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void ReleasePolygon(PP* polygon) {
    if (polygon == nullptr) return;
    delete &BlockOf(polygon);
    delete[](polygon - 1);
}

PolygonBlock& BlockOf(const PP* polygon) {
    PolygonBlock* block = nullptr;
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the address itself is kept before the points
    std::memcpy(&block, polygon - 1, sizeof block);
    return *block;
}

int PointInPolygon(const PP* polygon, int n, double px, double py) {
    PolygonBlock& block = BlockOf(polygon);
    int answer = 0;
    if (block.index.Locate(polygon, n, px, py, answer)) {
        uses::Count(uses::pointByIndex);
        return answer;
    }
    uses::Count(uses::pointByEdges);
    return PtInPolyEdge(n, block.x.data(), block.y.data(), px, py);
}

const PolygonIndex* Access::Index(const CCutArea& area) {
    if (!area.IsPolygon()) return nullptr;
    const PolygonIndex& index = BlockOf(area.m_polygon).index;
    return index.IsBuilt() ? &index : nullptr;
}

}  // namespace zm::draw

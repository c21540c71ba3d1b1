// Point in polygon: ours on plain arrays, the same predicate written bare, and a prepared polygon of a peer.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

#if defined(ZM_HAVE_GEOS)
#include <geos_c.h>
#endif

namespace {

struct Walk {  // moving points, so that no branch is learned by heart
    double px = -110.0, py = -110.0;
    void Step() {
        px += 1.37;
        if (px > 110.0) {
            px = -110.0;
            py = py > 110.0 ? -110.0 : py + 0.91;
        }
    }
};

void BM_PtInPolyEdge(benchmark::State& run) {
    zm::bench::Line ring = zm::bench::StarRing(static_cast<int>(run.range(0)), 7);
    Walk at;
    for (auto _ : run) {
        benchmark::DoNotOptimize(PtInPolyEdge(ring.n(), ring.x.data(), ring.y.data(), at.px, at.py));
        at.Step();
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PtInPolyEdge)->Arg(10)->Arg(1000)->Arg(100000);

// The limit: the boundary test by products, and the crossing test, in one loop; no tolerance of the vertices.
int BarePointInPolygon(int n, const double* x, const double* y, double px, double py) {
    bool inside = false;
    for (int i = 0, j = n - 1; i < n; j = i++) {
        const double dx = x[i] - x[j];
        const double dy = y[i] - y[j];
        const double cross = dx * (py - y[j]) - dy * (px - x[j]);
        if (px >= std::min(x[i], x[j]) - 1e-7 && px <= std::max(x[i], x[j]) + 1e-7 &&
            py >= std::min(y[i], y[j]) - 1e-7 && py <= std::max(y[i], y[j]) + 1e-7 &&
            cross * cross < 1e-14 * (dx * dx + dy * dy))
            return -1;
        if ((y[i] > py) != (y[j] > py) && (cross > 0.0) == (dy > 0.0)) inside = !inside;
    }
    return inside ? 1 : 0;
}
void BM_PtInPolyEdgeBare(benchmark::State& run) {
    const zm::bench::Line ring = zm::bench::StarRing(static_cast<int>(run.range(0)), 7);
    Walk at;
    for (auto _ : run) {
        benchmark::DoNotOptimize(BarePointInPolygon(ring.n(), ring.x.data(), ring.y.data(), at.px, at.py));
        at.Step();
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PtInPolyEdgeBare)->Arg(10)->Arg(1000)->Arg(100000);

void BM_PtInPoly(benchmark::State& run) {
    zm::bench::Line ring = zm::bench::StarRing(static_cast<int>(run.range(0)), 7);
    Walk at;
    for (auto _ : run) {
        benchmark::DoNotOptimize(PtInPoly(ring.x.data(), ring.y.data(), ring.n(), at.px, at.py));
        at.Step();
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PtInPoly)->Arg(10)->Arg(1000)->Arg(100000);

#if defined(ZM_HAVE_GEOS)
// The peer's prepared polygon has an index over the edges; building it is not counted. Ours scans plain arrays.
void BM_PointInPreparedPolygonGeos(benchmark::State& run) {
    GEOSContextHandle_t geos = GEOS_init_r();
    const zm::bench::Line ring = zm::bench::StarRing(static_cast<int>(run.range(0)), 7);
    GEOSCoordSequence* points = GEOSCoordSeq_create_r(geos, static_cast<unsigned>(ring.n()) + 1, 2);
    for (unsigned i = 0; i <= static_cast<unsigned>(ring.n()); ++i) {
        const unsigned k = i % static_cast<unsigned>(ring.n());
        GEOSCoordSeq_setXY_r(geos, points, i, ring.x[k], ring.y[k]);
    }
    GEOSGeometry* polygon = GEOSGeom_createPolygon_r(geos, GEOSGeom_createLinearRing_r(geos, points), nullptr, 0);
    const GEOSPreparedGeometry* prepared = GEOSPrepare_r(geos, polygon);
    Walk at;
    for (auto _ : run) {
        GEOSGeometry* point = GEOSGeom_createPointFromXY_r(geos, at.px, at.py);
        benchmark::DoNotOptimize(GEOSPreparedCovers_r(geos, prepared, point));
        GEOSGeom_destroy_r(geos, point);
        at.Step();
    }
    run.SetItemsProcessed(run.iterations());
    GEOSPreparedGeom_destroy_r(geos, prepared);
    GEOSGeom_destroy_r(geos, polygon);
    GEOS_finish_r(geos);
}
BENCHMARK(BM_PointInPreparedPolygonGeos)->Arg(10)->Arg(1000)->Arg(100000);
#endif

}  // namespace

// Parallel lines, beside a peer's one-sided offset and the same corners without trigonometry.
#include <benchmark/benchmark.h>

#include <cmath>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

#if defined(ZM_HAVE_GEOS)
#include <geos_c.h>
#endif

namespace {

void BM_Parallel(benchmark::State& run) {
    zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)), 2);
    zm::bench::Line out = line;
    for (auto _ : run) {
        parallel(line.n(), line.x.data(), line.y.data(), out.x.data(), out.y.data(), 2.5, 1);
        benchmark::DoNotOptimize(out.x.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_Parallel)->Arg(100)->Arg(262144);

// The limit: unit vectors instead of bearings. It agrees to about 1e-8 of the distance only, since
// bearings pass an arc cosine.
void BM_ParallelBareVectors(benchmark::State& run) {
    const zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)), 2);
    zm::bench::Line out = line;
    for (auto _ : run) {
        double ux = 1.0;
        double uy = 0.0;
        for (std::size_t i = 0; i + 1 < line.x.size(); ++i) {
            const double dx = line.x[i + 1] - line.x[i];
            const double dy = line.y[i + 1] - line.y[i];
            const double length = std::sqrt(dx * dx + dy * dy);
            const double vx = dx / length;
            const double vy = dy / length;
            const double scale = 2.5 / (1.0 + ux * vx + uy * vy);
            out.x[i] = line.x[i] + (uy + vy) * scale;
            out.y[i] = line.y[i] - (ux + vx) * scale;
            ux = vx;
            uy = vy;
        }
        benchmark::DoNotOptimize(out.x.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_ParallelBareVectors)->Arg(100)->Arg(262144);

#if defined(ZM_HAVE_GEOS)
void BM_ParallelGeos(benchmark::State& run) {
    GEOSContextHandle_t geos = GEOS_init_r();
    const zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)), 2);
    GEOSCoordSequence* points = GEOSCoordSeq_create_r(geos, static_cast<unsigned>(line.n()), 2);
    for (unsigned i = 0; i < static_cast<unsigned>(line.n()); ++i)
        GEOSCoordSeq_setXY_r(geos, points, i, line.x[i], line.y[i]);
    GEOSGeometry* geometry = GEOSGeom_createLineString_r(geos, points);
    for (auto _ : run) {
        GEOSGeometry* offset = GEOSOffsetCurve_r(geos, geometry, -2.5, 8, GEOSBUF_JOIN_MITRE, 5.0);
        benchmark::DoNotOptimize(offset);
        GEOSGeom_destroy_r(geos, offset);
    }
    run.SetItemsProcessed(run.iterations() * run.range(0));
    GEOSGeom_destroy_r(geos, geometry);
    GEOS_finish_r(geos);
}
BENCHMARK(BM_ParallelGeos)->Arg(100);
#endif

}  // namespace

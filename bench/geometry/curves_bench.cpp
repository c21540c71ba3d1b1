// B-spline points, beside a peer's curve generator and four weights a point.
#include <benchmark/benchmark.h>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

#if defined(ZM_HAVE_AGG)
#include <agg_conv_bspline.h>
#include <agg_path_storage.h>
#endif

namespace {

void BM_SplineToPoints(benchmark::State& run) {
    zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)), 3);
    const std::int64_t points = 1 + 5 * (run.range(0) - 1);
    std::vector<double> out(2 * static_cast<std::size_t>(points));
    int count = 0;
    for (auto _ : run) {
        SplineToPoints(line.n(), line.x.data(), line.y.data(), out.data(), &count);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * points);
}
BENCHMARK(BM_SplineToPoints)->Arg(20)->Arg(1000)->Arg(65536);

// The limit: four weights a point, the control points given.
void BM_SplineFourWeights(benchmark::State& run) {
    const zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)) + 2, 3);
    const std::vector<double> w = line.Pairs();
    const std::int64_t points = 5 * (run.range(0) - 1);
    std::vector<double> out(2 * static_cast<std::size_t>(points));
    double weight[5][4];
    for (int k = 0; k < 5; ++k) {
        const double t = 0.2 * (k + 1);
        const double u = 1.0 - t;
        weight[k][0] = u * u * u / 6.0;
        weight[k][1] = (3.0 * t * t * t - 6.0 * t * t + 4.0) / 6.0;
        weight[k][2] = (-3.0 * t * t * t + 3.0 * t * t + 3.0 * t + 1.0) / 6.0;
        weight[k][3] = t * t * t / 6.0;
    }
    for (auto _ : run) {
        double* to = out.data();
        for (std::int64_t s = 0; s + 1 < run.range(0); ++s) {
            const double* c = w.data() + 2 * s;
            for (const auto& b : weight) {
                to[0] = b[0] * c[0] + b[1] * c[2] + b[2] * c[4] + b[3] * c[6];
                to[1] = b[0] * c[1] + b[1] * c[3] + b[2] * c[5] + b[3] * c[7];
                to += 2;
            }
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * points);
}
BENCHMARK(BM_SplineFourWeights)->Arg(20)->Arg(1000)->Arg(65536);

#if defined(ZM_HAVE_AGG)
void BM_SplineAgg(benchmark::State& run) {
    const zm::bench::Line line = zm::bench::WanderingLine(static_cast<int>(run.range(0)), 3);
    agg::path_storage path;
    path.move_to(line.x[0], line.y[0]);
    for (std::size_t i = 1; i < line.x.size(); ++i) path.line_to(line.x[i], line.y[i]);
    agg::conv_bspline<agg::path_storage> curve(path);
    curve.interpolation_step(0.2);
    std::int64_t points = 0;
    for (auto _ : run) {
        curve.rewind(0);
        double x;
        double y;
        while (!agg::is_stop(curve.vertex(&x, &y))) {
            benchmark::DoNotOptimize(x);
            ++points;
        }
    }
    run.SetItemsProcessed(points);
}
BENCHMARK(BM_SplineAgg)->Arg(20)->Arg(1000)->Arg(65536);
#endif

void BM_GotoPointsCircle(benchmark::State& run) {
    double x[] = {0, 100};
    double y[] = {0, 0};
    std::vector<double> out(2 * 4001);
    int count = 0;
    for (auto _ : run) {
        GOTOPOINTS(2, 4, x, y, out.data(), &count, 1000);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * count);
}
BENCHMARK(BM_GotoPointsCircle);

}  // namespace

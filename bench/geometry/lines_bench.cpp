// Intersections and distances along a polyline, beside the same predicates written bare.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

namespace {

constexpr int kSegments = 262144;

// A segment above the whole line, so that every segment of it is asked.
struct Above {
    double x1 = 500000.0, y1 = 4000000.0, x2 = 3000000.0, y2 = 4000100.0;
};

void BM_NormIntersect(benchmark::State& run) {
    std::vector<double> pairs = zm::bench::WanderingLine(kSegments + 1, 1).Pairs();
    const Above a;
    double X = 0.0;
    double Y = 0.0;
    for (auto _ : run)
        benchmark::DoNotOptimize(norm_intersect(a.x1, a.y1, a.x2, a.y2, pairs.data(), kSegments + 1, X, Y));
    run.SetItemsProcessed(run.iterations() * kSegments);
}
BENCHMARK(BM_NormIntersect);

// The limit: the same arithmetic in one loop, the tolerance a constant.
int BareIntersect(double x1, double y1, double x2, double y2, const double* pairs, int n, double& X, double& Y) {
    constexpr double tol = 1e-8;
    const auto outside = [](double v, double a, double b) {
        return (v - a > tol && v - b > tol) || (a - v > tol && b - v > tol);
    };
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    if (tol >= std::fabs(dx) + std::fabs(dy)) return 0;
    for (int i = 1; i < n; ++i) {
        const double* p = pairs + 2 * (i - 1);
        if (tol >= std::fabs(p[0] - p[2]) + std::fabs(p[1] - p[3])) continue;
        const double det = dx * (p[3] - p[1]) - dy * (p[2] - p[0]);
        if (tol >= std::fabs(det)) continue;
        const double g = (p[0] - x1) * (p[3] - y1) - (p[2] - x1) * (p[1] - y1);
        X = x1 + dx * g / det;
        Y = y1 + dy * g / det;
        if (!outside(X, x1, x2) && !outside(Y, y1, y2) && !outside(X, p[0], p[2]) && !outside(Y, p[1], p[3])) return i;
    }
    return 0;
}
void BM_NormIntersectBare(benchmark::State& run) {
    const std::vector<double> pairs = zm::bench::WanderingLine(kSegments + 1, 1).Pairs();
    const Above a;
    double X = 0.0;
    double Y = 0.0;
    for (auto _ : run)
        benchmark::DoNotOptimize(BareIntersect(a.x1, a.y1, a.x2, a.y2, pairs.data(), kSegments + 1, X, Y));
    run.SetItemsProcessed(run.iterations() * kSegments);
}
BENCHMARK(BM_NormIntersectBare);

void BM_Getdist(benchmark::State& run) {
    zm::bench::Line line = zm::bench::WanderingLine(kSegments + 1, 1);
    double px = 500000.0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(getdist(px, 3300050.0, line.n(), line.x.data(), line.y.data()));
        px += 1000.0;
    }
    run.SetItemsProcessed(run.iterations() * kSegments);
}
BENCHMARK(BM_Getdist);

double BareDistance(double px, double py, int n, const double* x, const double* y) {
    double best = std::hypot(x[0] - px, y[0] - py);
    for (int i = 0; i + 1 < n; ++i) {
        const double x1 = x[i], y1 = y[i], x2 = x[i + 1], y2 = y[i + 1];
        const double d1 = (px - x1) * (px - x1) + (py - y1) * (py - y1);
        const double d2 = (px - x2) * (px - x2) + (py - y2) * (py - y2);
        const double c = (x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1);
        const double d = c + d1 > d2 && c + d2 > d1
                             ? std::fabs((py - y2) * (x1 - x2) - (px - x2) * (y1 - y2)) / std::sqrt(c)
                             : std::sqrt(std::min(d1, d2));
        best = std::min(best, d);
    }
    return best;
}
void BM_GetdistBare(benchmark::State& run) {
    const zm::bench::Line line = zm::bench::WanderingLine(kSegments + 1, 1);
    double px = 500000.0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(BareDistance(px, 3300050.0, line.n(), line.x.data(), line.y.data()));
        px += 1000.0;
    }
    run.SetItemsProcessed(run.iterations() * kSegments);
}
BENCHMARK(BM_GetdistBare);

}  // namespace

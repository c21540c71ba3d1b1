// Distance and area on the ellipsoid, beside GeographicLib.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/geodesy/inputs.h"
#include "zenromath/geodesy.h"
#if defined(ZM_HAVE_GEOGRAPHICLIB)
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#endif

using zm::bench::kInputs;
using zm::bench::Uniform;

namespace {

constexpr int kVertices = static_cast<int>(kInputs);

// A line that wanders by up to length degrees in both coordinates with each edge.
std::vector<Point3D> Wandering(double length) {
    const auto east = Uniform(-length, length, 4);
    const auto north = Uniform(-length, length, 5);
    std::vector<Point3D> points(kInputs);
    for (std::size_t i = 0; i < kInputs; ++i) points[i] = {117.0 + east[i] / 2, 31.0 + north[i] / 2, 0.0};
    return points;
}

// Hundredths of a degree, the size axis of the areas.
double Length(const benchmark::State& run) {
    return static_cast<double>(run.range(0)) / 100.0;
}

void CountEdges(benchmark::State& run) {
    run.SetItemsProcessed(run.iterations() * (kVertices - 1));
}

void BM_GetArea_ellipsoid(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    DistandAreaInquiry inquiry(points.data(), kVertices, 1);
    for (auto _ : run) benchmark::DoNotOptimize(inquiry.GetArea());
    CountEdges(run);
}
BENCHMARK(BM_GetArea_ellipsoid)->Arg(1)->Arg(10)->Arg(100);

void BM_GetArea_plane(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    DistandAreaInquiry inquiry(points.data(), kVertices, 0);
    for (auto _ : run) benchmark::DoNotOptimize(inquiry.GetArea());
    CountEdges(run);
}
BENCHMARK(BM_GetArea_plane)->Arg(10);

void BM_TestmyCalEllipseArea_degrees(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    for (auto _ : run)
        benchmark::DoNotOptimize(TestmyCalEllipseArea(points.data(), kVertices, true, 6378137.0, 298.257222101, false));
    CountEdges(run);
}
BENCHMARK(BM_TestmyCalEllipseArea_degrees)->Arg(1)->Arg(10)->Arg(100);

void BM_TestmyCalEllipseArea_plane(benchmark::State& run) {
    auto points = Wandering(Length(run));
    for (Point3D& p : points) {
        double x = 0.0, y = 0.0;
        forward(84, p.y * zm::bench::kRadian, (p.x - 117.0) * zm::bench::kRadian, &x, &y, nullptr);
        p = {39500000.0 + y, x, 0.0};
    }
    for (auto _ : run)
        benchmark::DoNotOptimize(
            TestmyCalEllipseArea(points.data(), kVertices, false, 6378137.0, 298.257222101, false));
    CountEdges(run);
}
BENCHMARK(BM_TestmyCalEllipseArea_plane)->Arg(10);

void BM_GetDist_ellipsoid(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    const DistandAreaInquiry inquiry(points.data(), kVertices, 1);
    for (auto _ : run) benchmark::DoNotOptimize(inquiry.GetDist());
    CountEdges(run);
}
BENCHMARK(BM_GetDist_ellipsoid)->Arg(1)->Arg(100);

#if defined(ZM_HAVE_GEOGRAPHICLIB)
const GeographicLib::Geodesic& Earth() {
    static const GeographicLib::Geodesic earth(6378137.0, 1 / 298.257222101);
    return earth;
}

void BM_peer_GeographicLib_area(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    for (auto _ : run) {
        GeographicLib::PolygonArea polygon(Earth());
        for (const Point3D& p : points) polygon.AddPoint(p.y, p.x);
        double perimeter = 0.0, area = 0.0;
        polygon.Compute(false, true, perimeter, area);
        benchmark::DoNotOptimize(area);
    }
    CountEdges(run);
}
BENCHMARK(BM_peer_GeographicLib_area)->Arg(1)->Arg(10)->Arg(100);

void BM_peer_GeographicLib_distance(benchmark::State& run) {
    const auto points = Wandering(Length(run));
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 1; i < kInputs; ++i) {
            double distance = 0.0;
            Earth().Inverse(points[i - 1].y, points[i - 1].x, points[i].y, points[i].x, distance);
            sum += distance;
        }
        benchmark::DoNotOptimize(sum);
    }
    CountEdges(run);
}
BENCHMARK(BM_peer_GeographicLib_distance)->Arg(1)->Arg(100);
#endif

}  // namespace

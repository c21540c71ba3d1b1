// Hatched polygons a second, and the limit: the crossings of each line found among the edges that can meet it.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/symbol/inputs.h"
#include "symbol/area/hatch_lines.h"

namespace {

using namespace zm::bench;

// 40 lines in a polygon of radius 50.
constexpr char kHatches[] = "*42 G\n1 -0.5,0 0.5,0\n*12 H 1\n2 45 2.3\n*13 H 1\n1 30 6 120 6 42\n*$\n";
constexpr std::size_t kPolygons = 1000;

std::vector<std::vector<double>> Polygons(int vertices) {
    std::mt19937 random(11);
    std::vector<std::vector<double>> all;
    for (std::size_t i = 0; i < kPolygons; ++i)
        all.push_back(Star(random, vertices, 60.0 + static_cast<double>(i % 37) * 40.0,
                           60.0 + static_cast<double>(i % 41) * 40.0, 50.0));
    return all;
}

void BM_Hatch(benchmark::State& run) {
    Stage stage(kHatches, static_cast<int>(run.range(2)));
    auto polygons = Polygons(static_cast<int>(run.range(1)));
    std::size_t i = 0;
    for (auto _ : run) {
        DrawHatch(static_cast<int>(run.range(1)), polygons[i].data(), static_cast<int>(run.range(0)));
        i = i + 1 == kPolygons ? 0 : i + 1;
        stage.Empty();
    }
    run.SetItemsProcessed(run.iterations());
    benchmark::DoNotOptimize(stage.device().sum);
}
BENCHMARK(BM_Hatch)
    ->ArgNames({"code", "vertices", "sink"})
    ->Args({12, 50, kDevice})
    ->Args({12, 1000, kDevice})
    ->Args({12, 50, kDwg})
    ->Args({12, 50, kRecording})
    ->Args({13, 50, kDevice});

// The lines alone, without drawing them.
void BM_GenerateHatchLines(benchmark::State& run) {
    const auto polygons = Polygons(static_cast<int>(run.range(0)));
    std::vector<double> out(static_cast<std::size_t>(zm::symbol::HatchRoom(4000)));
    std::size_t i = 0;
    for (auto _ : run) {
        int count = 4000;
        zm::symbol::LeftOut leftOut;
        zm::symbol::GenerateHatchLines(static_cast<int>(run.range(0)), polygons[i].data(), 0.7853981633974483, 2.3, 0.0,
                                       0.0, 2, count, out.data(), leftOut);
        benchmark::DoNotOptimize(count);
        i = i + 1 == kPolygons ? 0 : i + 1;
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_GenerateHatchLines)->ArgName("vertices")->Arg(10)->Arg(50)->Arg(1000);

// A scan over the edges that steps through the lines which cross each: no tolerances, no caps, no drawing.
void BM_HatchLimit(benchmark::State& run) {
    const auto polygons = Polygons(static_cast<int>(run.range(0)));
    const std::size_t n = static_cast<std::size_t>(run.range(0));
    constexpr double kStep = 2.3 * 1.4142135623730951;
    std::vector<double> crossings(200 * 32);
    std::vector<int> counts(200);
    double sum = 0.0;
    std::size_t at = 0;
    for (auto _ : run) {
        const auto& xy = polygons[at];
        std::fill(counts.begin(), counts.end(), 0);
        const double base = xy[1] - xy[0] - 100.0 * kStep;
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t j = i + 1 == n ? 0 : i + 1;
            const double va = xy[2 * i + 1] - xy[2 * i] - base, vb = xy[2 * j + 1] - xy[2 * j] - base;
            const int first = static_cast<int>(std::ceil(std::min(va, vb) / kStep));
            const int last = static_cast<int>(std::floor(std::max(va, vb) / kStep));
            for (int k = first; k <= last; ++k) {
                const double t = (k * kStep - va) / (vb - va);
                auto& count = counts[static_cast<std::size_t>(k)];
                if (count < 32)
                    crossings[static_cast<std::size_t>(k) * 32 + static_cast<std::size_t>(count++)] =
                        xy[2 * i] + t * (xy[2 * j] - xy[2 * i]);
            }
        }
        for (std::size_t k = 0; k < 200; ++k) {
            double* begin = crossings.data() + k * 32;
            std::sort(begin, begin + counts[k]);
            for (int c = 0; c + 1 < counts[k]; c += 2) sum += begin[c + 1] - begin[c];
        }
        at = at + 1 == kPolygons ? 0 : at + 1;
    }
    run.SetItemsProcessed(run.iterations());
    benchmark::DoNotOptimize(sum);
}
BENCHMARK(BM_HatchLimit)->ArgName("vertices")->Arg(50)->Arg(1000);

}  // namespace

// Patterns along a line, in metres of line, and the limit: dashes stepped off without trigonometry.
#include <benchmark/benchmark.h>

#include "bench/symbol/inputs.h"

namespace {

using namespace zm::bench;

constexpr char kPatterns[] =
    "*42 G\n1 -0.5,0 0.5,0\n1 0,-0.5 0,0.5\n*80 LC\n+4 -2\n*81 LC\n+4 -2 G42 -2\n*82 LC\nL W1 +4 -2\n*$\n";

// Vertices 3 m apart at 1:1000: a dash turns a corner as often as not.
constexpr double kStep = 3.0;

void BM_PatternLine(benchmark::State& run) {
    Stage stage(kPatterns, static_cast<int>(run.range(1)), nullptr, kEasting, kNorthing);
    const int n = 100000;
    const auto xy = Wiggle(n, kStep);
    std::vector<double> x(xy.size() / 2), y(xy.size() / 2);
    for (auto _ : run) {
        run.PauseTiming();
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = xy[2 * i];
            y[i] = xy[2 * i + 1];
        }
        stage.Empty();
        run.ResumeTiming();
        PROCESSALL(n, x.data(), y.data(), 1, static_cast<int>(run.range(0)));
    }
    run.counters["km/s"] = benchmark::Counter(static_cast<double>(run.iterations()) * (n - 1) * kStep / 1000.0,
                                              benchmark::Counter::kIsRate);
    run.SetItemsProcessed(run.iterations() * n);  // vertices
}
BENCHMARK(BM_PatternLine)
    ->ArgNames({"code", "sink"})
    ->Args({80, kDevice})
    ->Args({81, kDevice})
    ->Args({82, kDevice})
    ->Args({80, kDwg})
    ->Args({80, kRecording});

// The same dashes by walking each segment with its direction, straight to the context.
void BM_DashLimit(benchmark::State& run) {
    Stage stage(kPatterns, static_cast<int>(run.range(0)), nullptr, kEasting, kNorthing);
    const int n = 100000;
    const auto xy = Wiggle(n, kStep);
    CTqDraw& dc = stage.dc();
    for (auto _ : run) {
        double left = 4.0;
        bool down = true;
        for (std::size_t i = 0; i + 3 < xy.size(); i += 2) {
            double x = xy[i], y = xy[i + 1];
            const double dx = xy[i + 2] - x, dy = xy[i + 3] - y;
            const double length = std::sqrt(dx * dx + dy * dy);
            double at = 0.0;
            while (at + left <= length) {
                at += left;
                const double ex = xy[i] + dx * at / length, ey = xy[i + 1] + dy * at / length;
                if (down) dc.line(x, y, ex, ey);
                x = ex;
                y = ey;
                down = !down;
                left = down ? 4.0 : 2.0;
            }
            if (down) dc.line(x, y, xy[i + 2], xy[i + 3]);
            left -= length - at;
        }
    }
    run.counters["km/s"] = benchmark::Counter(static_cast<double>(run.iterations()) * (n - 1) * kStep / 1000.0,
                                              benchmark::Counter::kIsRate);
    run.SetItemsProcessed(run.iterations() * n);
    benchmark::DoNotOptimize(stage.device().sum);
}
BENCHMARK(BM_DashLimit)->ArgName("sink")->Arg(kDevice)->Arg(kDwg);

}  // namespace

// Symbols a second, and the limit: the same transformation and strokes in a plain loop.
#include <benchmark/benchmark.h>

#include "bench/symbol/inputs.h"

namespace {

using namespace zm::bench;

constexpr int kStrokes = 10;

void BM_InsertTenStrokes(benchmark::State& run) {
    Stage stage(kTenStrokes, static_cast<int>(run.range(0)));
    double x = 5.0;
    for (auto _ : run) {
        insert(x, 700.0 - 0.3 * x, 0.01 * x, 12);
        x = x > 1900.0 ? 5.0 : x + 0.37;
        stage.Empty();
    }
    run.SetItemsProcessed(run.iterations() * kStrokes);
    benchmark::DoNotOptimize(stage.device().sum);
}
BENCHMARK(BM_InsertTenStrokes)->ArgName("sink")->Arg(kDevice)->Arg(kDwg)->Arg(kRecording);

// The ten strokes through the context, without a library: what any caller pays.
void BM_TenLines(benchmark::State& run) {
    Stage stage(kTenStrokes, static_cast<int>(run.range(0)));
    getsymbody(12);
    double x = 5.0;
    for (auto _ : run) {
        const double y = 700.0 - 0.3 * x;
        const double c = std::cos(0.01 * x);
        const double s = std::sin(0.01 * x);
        for (int i = 0; i < kStrokes; ++i) {
            const SYMBODY* r = TheBody + 4 * i + 1;
            const double ax = r[0].point.x, ay = r[0].point.y, bx = r[1].point.x, by = r[1].point.y;
            stage.dc().line(x + (ax * c - ay * s) * 1000.0, y + (ay * c + ax * s) * 1000.0,
                            x + (bx * c - by * s) * 1000.0, y + (by * c + bx * s) * 1000.0);
        }
        x = x > 1900.0 ? 5.0 : x + 0.37;
        stage.Empty();
    }
    run.SetItemsProcessed(run.iterations() * kStrokes);
    benchmark::DoNotOptimize(stage.device().sum);
}
BENCHMARK(BM_TenLines)->ArgName("sink")->Arg(kDevice)->Arg(kDwg)->Arg(kRecording);

// The limit: the same arithmetic to pixels in a plain loop that hands them to the device.
void BM_TenStrokesLimit(benchmark::State& run) {
    Stage stage(kTenStrokes, kDevice);
    getsymbody(12);
    zm::Device* device = &stage.device();
    benchmark::DoNotOptimize(device);  // strokes are handed over, not drawn into the loop by the compiler
    const zm::Stroke pen;
    const auto px = [](double v) { return static_cast<int>(v * 10.0); };
    const auto py = [](double v) { return static_cast<int>(20000.0 - v * 10.0); };
    double x = 5.0;
    for (auto _ : run) {
        const double y = 700.0 - 0.3 * x;
        const double c = std::cos(0.01 * x);
        const double s = std::sin(0.01 * x);
        for (int i = 0; i < kStrokes; ++i) {
            const SYMBODY* r = TheBody + 4 * i + 1;
            const double ax = r[0].point.x, ay = r[0].point.y, bx = r[1].point.x, by = r[1].point.y;
            device->Line(pen, px(x + (ax * c - ay * s) * 1000.0), py(y + (ay * c + ax * s) * 1000.0),
                         px(x + (bx * c - by * s) * 1000.0), py(y + (by * c + bx * s) * 1000.0));
        }
        x = x > 1900.0 ? 5.0 : x + 0.37;
    }
    run.SetItemsProcessed(run.iterations() * kStrokes);
    benchmark::DoNotOptimize(stage.device().sum);
}
BENCHMARK(BM_TenStrokesLimit);

// Codes in turn, as features of a map come: the lookup is part of it.
void BM_LookUp(benchmark::State& run) {
    std::string library;
    for (int code = 1; code <= 400; ++code)
        library += "*" + std::to_string(code) + " G\n1 0,0 1,1\n2 0,0 1,1 2,0 3,1 4,0\n5 1,1\n";
    Stage stage(library + "*$\n", kDevice);
    int code = 1;
    for (auto _ : run) {
        benchmark::DoNotOptimize(getsymbody(code));
        code = code == 400 ? 1 : code + 1;
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_LookUp);

}  // namespace

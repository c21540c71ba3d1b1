// Polylines through the sinks, beside the bare cost of what the sink must do.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "draw/device.h"
#include "tests/support/writer_trace.h"
#include "zenromath/draw.h"
#include "zenromath/null_device.h"
#include "zenromath/svg.h"

namespace {

std::vector<double> Walk(std::int64_t n) {
    std::vector<double> xy;
    std::mt19937_64 engine(3);
    std::uniform_real_distribution<double> step(-5.0, 5.0);
    double x = 400.0;
    double y = 300.0;
    for (std::int64_t i = 0; i < n; ++i) {
        xy.push_back(x);
        xy.push_back(y);
        x += step(engine);
        y += step(engine);
    }
    return xy;
}

// Takes strokes and does nothing with them.
class SumDevice : public zm::NullDevice {
 public:
    int Line(const zm::Stroke&, int x1, int, int, int) override { return sum += x1, 1; }
    unsigned sum = 0;
};

class NoWriter : public zm::test::Trace {
 public:
    NoWriter() : m_previous(zm::test::SetTrace(this)) {}
    ~NoWriter() override { zm::test::SetTrace(m_previous); }
    NoWriter(const NoWriter&) = delete;
    NoWriter& operator=(const NoWriter&) = delete;

 private:
    zm::test::Trace* m_previous;
};

void SetClip(CTqDraw& dc, std::int64_t kind) {
    dc.SetCutArea(-1e5, -1e5, 1e5, 1e5);
    dc.SetDoCut(kind != 0 ? 1 : 0);
}

void BM_LinesToRecording(benchmark::State& run) {
    auto xy = Walk(run.range(0));
    CTqDraw dc(3);
    SetClip(dc, 1);
    for (auto _ : run) {
        dc.lines(static_cast<int>(run.range(0)), xy.data());
        run.PauseTiming();
        dc.GetTqDCString()->RemoveAll();
        run.ResumeTiming();
    }
    SelectWorkingTqDC(nullptr);
    run.SetItemsProcessed(run.iterations() * run.range(0));  // vertices
}
BENCHMARK(BM_LinesToRecording)->Arg(1000)->Arg(1000000);

// What printing alone takes.
void BM_LinesPrintedBare(benchmark::State& run) {
    const auto xy = Walk(run.range(0));
    char text[160];
    for (auto _ : run)
        for (std::size_t i = 2; i + 1 < xy.size(); i += 2) {
            std::snprintf(text, sizeof text, "Line2:%.6lf:%.6lf:%.6lf:%.6lf", xy[i - 2], xy[i - 1], xy[i], xy[i + 1]);
            benchmark::DoNotOptimize(text);
        }
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_LinesPrintedBare)->Arg(1000)->Arg(1000000);

void BM_LinesToDrawingFileSink(benchmark::State& run) {
    auto xy = Walk(run.range(0));
    const NoWriter none;
    CTqDraw dc(1);
    SetClip(dc, 1);
    for (auto _ : run) benchmark::DoNotOptimize(dc.lines(static_cast<int>(run.range(0)), xy.data()));
    SelectWorkingTqDC(nullptr);
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_LinesToDrawingFileSink)->Arg(1000)->Arg(1000000);

void BM_LinesToDevice(benchmark::State& run) {
    auto xy = Walk(run.range(0));
    SumDevice device;
    CTqDraw dc(0);
    dc.SetViewDrawDC(&device, 1.0, 0.0, 0.0, 800, 600, 0);
    SetClip(dc, 1);
    for (auto _ : run) benchmark::DoNotOptimize(dc.lines(static_cast<int>(run.range(0)), xy.data()));
    SelectWorkingTqDC(nullptr);
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_LinesToDevice)->Arg(1000)->Arg(1000000);

// The same line to an SVG document, as one polyline.
void BM_LinesToSvg(benchmark::State& run) {
    auto xy = Walk(run.range(0));
    for (auto _ : run) {
        zm::SvgDevice device(800, 600);
        CTqDraw dc(0);
        dc.SetViewDrawDC(&device, 1.0, 0.0, 0.0, 800, 600, 0);
        SetClip(dc, 1);
        dc.lines(static_cast<int>(run.range(0)), xy.data());
        benchmark::DoNotOptimize(device.Document().size());
        SelectWorkingTqDC(nullptr);
    }
    run.SetItemsProcessed(run.iterations() * run.range(0));
}
BENCHMARK(BM_LinesToSvg)->Arg(1000000);

}  // namespace

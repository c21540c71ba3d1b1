// Angles: packing and bearings, each beside the plain loop that does the least the work can be.
#include <benchmark/benchmark.h>

#include <cmath>

#include "bench/geodesy/inputs.h"
#include "zenromath/geodesy.h"

using zm::bench::kInputs;
using zm::bench::Uniform;

namespace {

template <class Function>
void OverAngles(benchmark::State& run, Function function) {
    const auto angles = Uniform(-360.0, 360.0, 1);
    for (auto _ : run) {
        double sum = 0.0;
        for (const double angle : angles) sum += function(angle);
        benchmark::DoNotOptimize(sum);
    }
    run.SetItemsProcessed(run.iterations() * static_cast<std::int64_t>(kInputs));
}

void BM_deg_dms(benchmark::State& run) {
    OverAngles(run, [](double v) { return deg_dms(v); });
}
BENCHMARK(BM_deg_dms);
void BM_rad_dms(benchmark::State& run) {
    OverAngles(run, [](double v) { return rad_dms(v); });
}
BENCHMARK(BM_rad_dms);
void BM_dms_deg(benchmark::State& run) {
    OverAngles(run, [](double v) { return dms_deg(v); });
}
BENCHMARK(BM_dms_deg);
void BM_dms_rad(benchmark::State& run) {
    OverAngles(run, [](double v) { return dms_rad(v); });
}
BENCHMARK(BM_dms_rad);

// The limit: the same fields by modf of the C library, without thresholds and signs.
void BM_limit_packing(benchmark::State& run) {
    OverAngles(run, [](double v) {
        double degrees = 0.0;
        double minutes = 0.0;
        const double seconds = std::modf(std::modf(std::abs(v), &degrees) * 60.0, &minutes) * 60.0;
        return degrees + minutes / 100.0 + seconds / 10000.0;
    });
}
BENCHMARK(BM_limit_packing);

template <class Function>
void OverLines(benchmark::State& run, Function function) {
    const auto x = Uniform(0.0, 1000.0, 2);
    const auto y = Uniform(0.0, 1000.0, 3);
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 1; i < kInputs; ++i) sum += function(x[i - 1], y[i - 1], x[i], y[i]);
        benchmark::DoNotOptimize(sum);
    }
    run.SetItemsProcessed(run.iterations() * static_cast<std::int64_t>(kInputs - 1));
}

void BM_BEARING(benchmark::State& run) {
    OverLines(run, _BEARING);
}
BENCHMARK(BM_BEARING);
void BM_peer_atan2(benchmark::State& run) {
    OverLines(run, [](double x1, double y1, double x2, double y2) { return std::atan2(y2 - y1, x2 - x1); });
}
BENCHMARK(BM_peer_atan2);

void BM_ScaleUnitConvert(benchmark::State& run) {
    OverAngles(run, [](double v) {
        double result = 0.0;
        ScaleUnitConvert(znUnitMile, znUnitChain, v, result);
        return result;
    });
}
BENCHMARK(BM_ScaleUnitConvert);

}  // namespace

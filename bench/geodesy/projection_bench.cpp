// The projection, there and back, beside PROJ in its fast and its default form.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "bench/geodesy/inputs.h"
#include "zenromath/geodesy.h"
#if defined(ZM_HAVE_PROJ)
#include <proj.h>
#endif

using zm::bench::kInputs;
using zm::bench::kRadian;
using zm::bench::Uniform;

namespace {

// Positions between 18 and 54 degrees north up to 3 degrees from the meridian of 117 degrees.
struct Positions {
    std::vector<double> B = Uniform(18.0 * kRadian, 54.0 * kRadian, 1);
    std::vector<double> l = Uniform(-3.0 * kRadian, 3.0 * kRadian, 2);
    std::vector<double> x = std::vector<double>(kInputs);
    std::vector<double> y = std::vector<double>(kInputs);
    Positions() { zm::ForwardArray(84, kInputs, B.data(), l.data(), x.data(), y.data()); }
};

const Positions& Input() {
    static const Positions positions;
    return positions;
}

void Count(benchmark::State& run) {
    run.SetItemsProcessed(run.iterations() * static_cast<std::int64_t>(kInputs));
}

void BM_forward(benchmark::State& run) {
    const Positions& in = Input();
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 0; i < kInputs; ++i) {
            double x = 0.0, y = 0.0;
            forward(84, in.B[i], in.l[i], &x, &y, nullptr);
            sum += x + y;
        }
        benchmark::DoNotOptimize(sum);
    }
    Count(run);
}
BENCHMARK(BM_forward);

void BM_ForwardArray(benchmark::State& run) {
    const Positions& in = Input();
    std::vector<double> x(kInputs), y(kInputs);
    for (auto _ : run) {
        zm::ForwardArray(84, kInputs, in.B.data(), in.l.data(), x.data(), y.data());
        benchmark::DoNotOptimize(x.data());
        benchmark::ClobberMemory();
    }
    Count(run);
}
BENCHMARK(BM_ForwardArray);

void BM_UTMtoGS(benchmark::State& run) {
    const Positions& in = Input();
    Coordinate_2Dsys c;
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 0; i < kInputs; ++i) {
            c.B = in.B[i];
            c.L = in.l[i];
            c.UTMtoGS();
            sum += c.GX + c.GY;
        }
        benchmark::DoNotOptimize(sum);
    }
    Count(run);
}
BENCHMARK(BM_UTMtoGS);

void BM_UTMtoGSArray(benchmark::State& run) {
    const Positions& in = Input();
    std::vector<double> x(kInputs), y(kInputs);
    for (auto _ : run) {
        zm::UTMtoGSArray(znCoord84G6, 0, kInputs, in.B.data(), in.l.data(), x.data(), y.data());
        benchmark::DoNotOptimize(x.data());
        benchmark::ClobberMemory();
    }
    Count(run);
}
BENCHMARK(BM_UTMtoGSArray);

void BM_backward(benchmark::State& run) {
    const Positions& in = Input();
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 0; i < kInputs; ++i) {
            double B = 0.0, l = 0.0;
            backward(84, in.x[i], in.y[i], &B, &l, nullptr);
            sum += B + l;
        }
        benchmark::DoNotOptimize(sum);
    }
    Count(run);
}
BENCHMARK(BM_backward);

void BM_BackwardArray(benchmark::State& run) {
    const Positions& in = Input();
    std::vector<double> B(kInputs), l(kInputs);
    for (auto _ : run) {
        zm::BackwardArray(84, kInputs, in.x.data(), in.y.data(), B.data(), l.data());
        benchmark::DoNotOptimize(B.data());
        benchmark::ClobberMemory();
    }
    Count(run);
}
BENCHMARK(BM_BackwardArray);

void BM_GStoUTM(benchmark::State& run) {
    const Positions& in = Input();
    Coordinate_2Dsys c;
    for (auto _ : run) {
        double sum = 0.0;
        for (std::size_t i = 0; i < kInputs; ++i) {
            c.GX = in.x[i];
            c.GY = in.y[i];
            c.GStoUTM();
            sum += c.B + c.L;
        }
        benchmark::DoNotOptimize(sum);
    }
    Count(run);
}
BENCHMARK(BM_GStoUTM);

void BM_GStoUTMArray(benchmark::State& run) {
    const Positions& in = Input();
    std::vector<double> B(kInputs), l(kInputs);
    for (auto _ : run) {
        zm::GStoUTMArray(znCoord84G6, 0, kInputs, in.x.data(), in.y.data(), B.data(), l.data());
        benchmark::DoNotOptimize(B.data());
        benchmark::ClobberMemory();
    }
    Count(run);
}
BENCHMARK(BM_GStoUTMArray);

void BM_InverseOfForwardArray(benchmark::State& run) {
    const Positions& in = Input();
    std::vector<double> B(kInputs), l(kInputs);
    for (auto _ : run) {
        zm::InverseOfForwardArray(84, kInputs, in.x.data(), in.y.data(), B.data(), l.data());
        benchmark::DoNotOptimize(B.data());
        benchmark::ClobberMemory();
    }
    Count(run);
}
BENCHMARK(BM_InverseOfForwardArray);

#if defined(ZM_HAVE_PROJ)
constexpr const char* kFast = "+proj=tmerc +approx +lat_0=0 +lon_0=0 +k=1 +a=6378137 +b=6356752.31414036 +units=m";
constexpr const char* kDefault = "+proj=tmerc +lat_0=0 +lon_0=0 +k=1 +a=6378137 +b=6356752.31414036 +units=m";

// PROJ's array call works in place, so its coordinates are copied in before each call: in pieces that stay in the
// cache, where the copying costs some two per cent.
void OverProj(benchmark::State& run, const char* definition, PJ_DIRECTION direction) {
    const Positions& in = Input();
    PJ_CONTEXT* context = proj_context_create();
    PJ* projection = proj_create(context, definition);
    if (projection == nullptr) {
        run.SkipWithError("PROJ does not know the projection");
        proj_context_destroy(context);
        return;
    }
    constexpr std::size_t kPiece = 1024;
    std::vector<PJ_COORD> coords(kPiece);
    for (auto _ : run) {
        for (std::size_t at = 0; at < kInputs; at += kPiece) {
            for (std::size_t i = 0; i < kPiece; ++i)
                coords[i] = direction == PJ_FWD ? PJ_COORD{{in.l[at + i], in.B[at + i], 0.0, 0.0}}
                                                : PJ_COORD{{in.y[at + i], in.x[at + i], 0.0, 0.0}};
            proj_trans_array(projection, direction, kPiece, coords.data());
            benchmark::DoNotOptimize(coords.data());
            benchmark::ClobberMemory();
        }
    }
    Count(run);
    proj_destroy(projection);
    proj_context_destroy(context);
}

void BM_peer_PROJ_approx_forward(benchmark::State& run) {
    OverProj(run, kFast, PJ_FWD);
}
BENCHMARK(BM_peer_PROJ_approx_forward);
void BM_peer_PROJ_default_forward(benchmark::State& run) {
    OverProj(run, kDefault, PJ_FWD);
}
BENCHMARK(BM_peer_PROJ_default_forward);
void BM_peer_PROJ_approx_inverse(benchmark::State& run) {
    OverProj(run, kFast, PJ_INV);
}
BENCHMARK(BM_peer_PROJ_approx_inverse);
void BM_peer_PROJ_default_inverse(benchmark::State& run) {
    OverProj(run, kDefault, PJ_INV);
}
BENCHMARK(BM_peer_PROJ_default_inverse);
#endif

}  // namespace

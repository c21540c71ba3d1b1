// Dense matrices, beside the product written in the order of its definition.
#include <benchmark/benchmark.h>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

namespace {

std::vector<double> Matrix(std::int64_t n, std::uint64_t seed) {
    std::mt19937_64 engine(seed);
    std::vector<double> a(static_cast<std::size_t>(n * n));
    for (double& v : a) v = zm::bench::Uniform(engine, -10.0, 10.0);
    return a;
}

void BM_Mamulma(benchmark::State& run) {
    const int n = static_cast<int>(run.range(0));
    std::vector<double> a = Matrix(n, 1), b = Matrix(n, 2), c(a.size());
    for (auto _ : run) {
        mamulma(a.data(), n, n, b.data(), n, c.data());
        benchmark::DoNotOptimize(c.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * n * n * n);
}
BENCHMARK(BM_Mamulma)->Arg(6)->Arg(100);

void BM_MamulmaByDefinition(benchmark::State& run) {
    const std::int64_t n = run.range(0);
    const std::vector<double> a = Matrix(n, 1), b = Matrix(n, 2);
    std::vector<double> c(a.size());
    for (auto _ : run) {
        for (std::int64_t i = 0; i < n; ++i)
            for (std::int64_t j = 0; j < n; ++j) {
                double sum = 0.0;
                for (std::int64_t l = 0; l < n; ++l)
                    sum += a[static_cast<std::size_t>(i * n + l)] * b[static_cast<std::size_t>(l * n + j)];
                c[static_cast<std::size_t>(i * n + j)] = sum;
            }
        benchmark::DoNotOptimize(c.data());
        benchmark::ClobberMemory();
    }
    run.SetItemsProcessed(run.iterations() * n * n * n);
}
BENCHMARK(BM_MamulmaByDefinition)->Arg(6)->Arg(100);

void BM_Conversema(benchmark::State& run) {
    const int n = static_cast<int>(run.range(0));
    const std::vector<double> a = Matrix(n, 3);
    std::vector<double> inverse;
    for (auto _ : run) {
        inverse = a;
        benchmark::DoNotOptimize(conversema(inverse.data(), n));
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_Conversema)->Arg(6)->Arg(100);

}  // namespace

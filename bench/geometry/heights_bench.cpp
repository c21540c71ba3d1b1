// Height lookups among a million points, beside an R-tree of a peer that has to give the same first match.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "bench/geometry/lines.h"
#include "zenromath/geometry.h"

#if defined(ZM_HAVE_BOOST)
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#endif

namespace {

constexpr int kPoints = 1000000;

struct Survey {
    std::vector<double> x, y, h;
};

// A survey of 1 point a square metre; every twentieth point doubles another one's place.
const Survey& TheSurvey() {
    static const Survey survey = [] {
        std::mt19937_64 engine(4);
        Survey s;
        for (int i = 0; i < kPoints; ++i) {
            const bool doubled = i > 0 && i % 20 == 0;
            const auto at = doubled ? static_cast<std::size_t>(engine() % static_cast<std::uint64_t>(i)) : 0;
            s.x.push_back(doubled ? s.x[at] : 500000.0 + zm::bench::Uniform(engine, 0.0, 1000.0));
            s.y.push_back(doubled ? s.y[at] : 3300000.0 + zm::bench::Uniform(engine, 0.0, 1000.0));
            s.h.push_back(zm::bench::Uniform(engine, 0.0, 500.0));
        }
        return s;
    }();
    return survey;
}

// The order of the questions: 0 random, 1 by rows of a metre.
std::vector<int> Questions(std::int64_t byRows) {
    const Survey& s = TheSurvey();
    std::vector<int> order(kPoints);
    for (int i = 0; i < kPoints; ++i) order[static_cast<std::size_t>(i)] = i;
    if (byRows != 0) {
        std::sort(order.begin(), order.end(), [&](int a, int b) {
            const auto i = static_cast<std::size_t>(a);
            const auto j = static_cast<std::size_t>(b);
            const double rowA = std::floor(s.y[i]);
            const double rowB = std::floor(s.y[j]);
            return rowA != rowB ? rowA < rowB : s.x[i] < s.x[j];
        });
    } else {
        std::shuffle(order.begin(), order.end(), std::mt19937_64(5));
    }
    return order;
}

// Runs lookup(x, y) over the questions, three in four near a stored point. They stand in the order in which they are
// asked, so that finding a question costs nothing beside its answer.
template <class Lookup>
void Ask(benchmark::State& run, Lookup lookup) {
    const Survey& s = TheSurvey();
    std::vector<std::pair<double, double>> questions;
    for (int number : Questions(run.range(0))) {
        const auto at = static_cast<std::size_t>(number);
        questions.emplace_back(s.x[at] + (at % 4 == 0 ? 0.3 : 0.01), s.y[at] - 0.02);
    }
    std::size_t next = 0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(lookup(questions[next].first, questions[next].second));
        next = next + 1 < questions.size() ? next + 1 : 0;
    }
    run.SetItemsProcessed(run.iterations());
}

void BM_FindH(benchmark::State& run) {
    Survey s = TheSurvey();
    Find4H table(kPoints, s.x.data(), s.y.data(), s.h.data());
    for (int i = 0; i < 10; ++i) table.FindH(0, 0);  // the index is built by now
    Ask(run, [&](double x, double y) { return table.FindH(x, y); });
}
BENCHMARK(BM_FindH)->Arg(0)->Arg(1);

void BM_FindHBuild(benchmark::State& run) {
    Survey s = TheSurvey();
    for (auto _ : run) {
        Find4H table(kPoints, s.x.data(), s.y.data(), s.h.data());
        for (int i = 0; i < 10; ++i) benchmark::DoNotOptimize(table.FindH(0, 0));
    }
    run.SetItemsProcessed(run.iterations() * kPoints);
}
BENCHMARK(BM_FindHBuild)->Unit(benchmark::kMillisecond);

void BM_FindHScan(benchmark::State& run) {
    const Survey& s = TheSurvey();
    Ask(run, [&](double x, double y) {
        for (std::size_t i = 0; i < s.x.size(); ++i)
            if (std::fabs(s.y[i] - y) + std::fabs(s.x[i] - x) < 0.1) return s.h[i] > 9000.0 ? 0.0 : s.h[i];
        return 0.0;
    });
}
BENCHMARK(BM_FindHScan)->Arg(0);

// A grid that fits these points alone: cells of a metre, sorted, nothing asked that is known of them.
void BM_FindHBareGrid(benchmark::State& run) {
    const Survey& s = TheSurvey();
    constexpr int kSide = 1002;
    struct Entry {
        double x, y, h;
        int number;
    };
    const auto cellOf = [](double x, double y) {
        return static_cast<std::size_t>(y - 3299999.0) * kSide + static_cast<std::size_t>(x - 499999.0);
    };
    std::vector<int> begin(kSide * kSide + 1);
    for (std::size_t i = 0; i < kPoints; ++i) ++begin[cellOf(s.x[i], s.y[i]) + 1];
    std::partial_sum(begin.begin(), begin.end(), begin.begin());
    std::vector<Entry> entries(kPoints);
    std::vector<int> next = begin;
    for (std::size_t i = 0; i < kPoints; ++i)
        entries[static_cast<std::size_t>(next[cellOf(s.x[i], s.y[i])]++)] = {s.x[i], s.y[i], s.h[i],
                                                                             static_cast<int>(i)};
    Ask(run, [&](double x, double y) {
        int first = kPoints;
        double h = 0.0;
        const std::size_t from = cellOf(x - 0.1, y - 0.1), to = cellOf(x + 0.1, y + 0.1);
        const std::size_t columns = (to - from) % kSide;
        for (std::size_t row = from; row <= to; row += kSide)
            for (int i = begin[row]; i < begin[row + columns + 1]; ++i) {
                const Entry& entry = entries[static_cast<std::size_t>(i)];
                if (entry.number >= first || !(std::fabs(entry.y - y) + std::fabs(entry.x - x) < 0.1)) continue;
                first = entry.number;
                h = entry.h;
            }
        return h > 9000.0 ? 0.0 : h;
    });
}
BENCHMARK(BM_FindHBareGrid)->Arg(0)->Arg(1);

#if defined(ZM_HAVE_BOOST)
namespace bg = boost::geometry;
using Point = bg::model::d2::point_xy<double>;

void BM_FindHBoost(benchmark::State& run) {
    const Survey& s = TheSurvey();
    std::vector<std::pair<Point, int>> points;
    for (int i = 0; i < kPoints; ++i)
        points.emplace_back(Point(s.x[static_cast<std::size_t>(i)], s.y[static_cast<std::size_t>(i)]), i);
    const bg::index::rtree<std::pair<Point, int>, bg::index::quadratic<16>> tree(points);
    Ask(run, [&](double x, double y) {
        const bg::model::box<Point> box(Point(x - 0.1, y - 0.1), Point(x + 0.1, y + 0.1));
        int first = kPoints;
        for (auto it = tree.qbegin(bg::index::intersects(box)); it != tree.qend(); ++it)
            if (it->second < first && std::fabs(it->first.y() - y) + std::fabs(it->first.x() - x) < 0.1)
                first = it->second;
        const double h = first < kPoints ? s.h[static_cast<std::size_t>(first)] : 0.0;
        return h > 9000.0 ? 0.0 : h;
    });
}
BENCHMARK(BM_FindHBoost)->Arg(0)->Arg(1);
#endif

}  // namespace

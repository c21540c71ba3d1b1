// Clipping of segments and points, beside a bare loop with the same arithmetic and beside peers.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "zenromath/draw.h"
#include "zenromath/geometry.h"

#if defined(ZM_HAVE_AGG)
#include <agg_clip_liang_barsky.h>
#endif
#if defined(ZM_HAVE_GEOS)
#include <geos_c.h>
#endif
#if defined(ZM_HAVE_CLIPPER)
#include <polyclipping/clipper.hpp>
#endif

namespace {

struct Segment {
    double x1, y1, x2, y2;
};

constexpr std::size_t kSegments = 1 << 18;  // fewer, and the processor learns the branches by heart

// Segments over -1000..1000 in x and y; the clip areas lie within -700..700.
const std::vector<Segment>& Segments(double length) {
    static std::vector<Segment> segments;
    static double made = 0.0;
    if (made == length) return segments;
    made = length;
    segments.clear();
    std::mt19937_64 engine(7);
    std::uniform_real_distribution<double> place(-1000.0, 1000.0);
    std::uniform_real_distribution<double> reach(-length, length);
    for (std::size_t i = 0; i < kSegments; ++i) {
        const double x = place(engine);
        const double y = place(engine);
        segments.push_back({x, y, x + reach(engine), y + reach(engine)});
    }
    return segments;
}

constexpr double kShort = 10.0;
constexpr double kLong = 1500.0;

double LengthOf(const benchmark::State& run) {
    return run.range(0) == 0 ? kShort : kLong;
}

// Clips every segment once for each round.
template <class Clip>
void RunOverSegments(benchmark::State& run, const std::vector<Segment>& segments, Clip clip) {
    for (auto _ : run) {
        int left = 0;
        for (Segment s : segments) {
            left += static_cast<int>(clip(s));
            benchmark::DoNotOptimize(s);
        }
        benchmark::DoNotOptimize(left);
    }
    run.SetItemsProcessed(run.iterations() * static_cast<std::int64_t>(segments.size()));
}

// ---- Rectangle ----

void BM_RectangleClip(benchmark::State& run) {
    const auto& segments = Segments(LengthOf(run));
    CCutArea area(1);
    area.setcutarea(-700.0, -700.0, 700.0, 700.0);
    RunOverSegments(run, segments, [&](Segment& s) { return area.cutline(s.x1, s.y1, s.x2, s.y2); });
}
BENCHMARK(BM_RectangleClip)->ArgName("long")->Arg(0)->Arg(1);

// The limit: Cohen and Sutherland's loop.
struct Box {
    double xmin, ymin, xmax, ymax;
    int Code(double x, double y) const {
        return (x < xmin ? 1 : 0) | (x > xmax ? 2 : 0) | (y < ymin ? 4 : 0) | (y > ymax ? 8 : 0);
    }
};
int BareClip(const Box& box, Segment& s) {
    int c1 = box.Code(s.x1, s.y1);
    int c2 = box.Code(s.x2, s.y2);
    while (true) {
        if ((c1 | c2) == 0) return 1;
        if ((c1 & c2) != 0) return 0;
        const int code = c1 != 0 ? c1 : c2;
        double x, y;
        if (code & 8) {
            x = s.x1 + (s.x2 - s.x1) * (box.ymax - s.y1) / (s.y2 - s.y1);
            y = box.ymax;
        } else if (code & 4) {
            x = s.x1 + (s.x2 - s.x1) * (box.ymin - s.y1) / (s.y2 - s.y1);
            y = box.ymin;
        } else if (code & 2) {
            y = s.y1 + (s.y2 - s.y1) * (box.xmax - s.x1) / (s.x2 - s.x1);
            x = box.xmax;
        } else {
            y = s.y1 + (s.y2 - s.y1) * (box.xmin - s.x1) / (s.x2 - s.x1);
            x = box.xmin;
        }
        if (code == c1) {
            s.x1 = x;
            s.y1 = y;
            c1 = box.Code(x, y);
        } else {
            s.x2 = x;
            s.y2 = y;
            c2 = box.Code(x, y);
        }
    }
}
void BM_RectangleBareCohenSutherland(benchmark::State& run) {
    const auto& segments = Segments(LengthOf(run));
    const Box box{-700.0, -700.0, 700.0, 700.0};
    RunOverSegments(run, segments, [&](Segment& s) { return BareClip(box, s); });
}
BENCHMARK(BM_RectangleBareCohenSutherland)->ArgName("long")->Arg(0)->Arg(1);

#if defined(ZM_HAVE_AGG)
void BM_RectangleAgg(benchmark::State& run) {
    const auto& segments = Segments(LengthOf(run));
    const agg::rect_d box(-700.0, -700.0, 700.0, 700.0);
    RunOverSegments(run, segments, [&](Segment& s) { return agg::clip_line_segment(&s.x1, &s.y1, &s.x2, &s.y2, box); });
}
BENCHMARK(BM_RectangleAgg)->ArgName("long")->Arg(0)->Arg(1);
#endif

// ---- Polygon ----

struct Ring {
    std::vector<double> x, y;
    int n() const { return static_cast<int>(x.size()); }
};

// A star-shaped coast: large bays, and roughness of the size of its edges.
Ring Coast(int n) {
    Ring ring;
    std::mt19937_64 engine(5);
    std::uniform_real_distribution<double> rough(-1.0, 1.0);
    for (int i = 0; i < n; ++i) {
        const double a = 6.283185307179586 * i / n;
        const double r = 550.0 * (1.0 + 0.2 * std::sin(5.0 * a) + rough(engine) * 3.0 / n);
        ring.x.push_back(r * std::cos(a));
        ring.y.push_back(r * std::sin(a));
    }
    return ring;
}

void BM_PolygonClip(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    Ring ring = Coast(static_cast<int>(run.range(0)));
    CCutArea area(1);
    area.setcutarea(ring.n(), ring.x.data(), ring.y.data());
    RunOverSegments(run, segments, [&](Segment& s) { return area.cutline(s.x1, s.y1, s.x2, s.y2); });
}
BENCHMARK(BM_PolygonClip)->Arg(10)->Arg(1000)->Arg(100000);

// The bare form: every edge, in order, with the bounding box first.
void BM_PolygonScanOfAllEdges(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    Ring ring = Coast(static_cast<int>(run.range(0)));
    const auto n = static_cast<std::size_t>(run.range(0));
    std::size_t at = 0;
    for (auto _ : run) {
        const Segment s = segments[at++ % segments.size()];
        const int in1 = PtInPolyEdge(ring.n(), ring.x.data(), ring.y.data(), s.x1, s.y1);
        const int in2 = PtInPolyEdge(ring.n(), ring.x.data(), ring.y.data(), s.x2, s.y2);
        double x = 0, y = 0;
        int hits = 0;
        for (std::size_t i = 0; i < n && hits < 2; ++i) {
            const std::size_t j = i + 1 < n ? i + 1 : 0;
            hits += Cross_P(x, y, s.x1, s.y1, s.x2, s.y2, ring.x[i], ring.y[i], ring.x[j], ring.y[j]) == 0 ? 1 : 0;
        }
        benchmark::DoNotOptimize(in1 + in2 + hits);
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PolygonScanOfAllEdges)->Arg(10)->Arg(1000)->Arg(100000);

void BM_PolygonAreaSet(benchmark::State& run) {
    Ring ring = Coast(static_cast<int>(run.range(0)));
    CCutArea area(1);
    for (auto _ : run) area.setcutarea(ring.n(), ring.x.data(), ring.y.data());
    run.SetItemsProcessed(run.iterations() * run.range(0));  // vertices
}
BENCHMARK(BM_PolygonAreaSet)->Arg(10)->Arg(1000)->Arg(100000);

void BM_PointInPolygon(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    Ring ring = Coast(static_cast<int>(run.range(0)));
    CCutArea area(1);
    area.setcutarea(ring.n(), ring.x.data(), ring.y.data());
    for (auto _ : run) {
        int inside = 0;
        for (const Segment& s : segments) inside += area.cutpoint(s.x1, s.y1);
        benchmark::DoNotOptimize(inside);
    }
    run.SetItemsProcessed(run.iterations() * static_cast<std::int64_t>(segments.size()));
}
BENCHMARK(BM_PointInPolygon)->Arg(10)->Arg(1000)->Arg(100000);

#if defined(ZM_HAVE_GEOS)
class Geos {
 public:
    explicit Geos(const Ring& ring) : m_handle(GEOS_init_r()) {
        const auto n = static_cast<unsigned>(ring.n());
        GEOSCoordSequence* points = GEOSCoordSeq_create_r(m_handle, n + 1, 2);
        for (unsigned i = 0; i <= n; ++i) GEOSCoordSeq_setXY_r(m_handle, points, i, ring.x[i % n], ring.y[i % n]);
        m_polygon = GEOSGeom_createPolygon_r(m_handle, GEOSGeom_createLinearRing_r(m_handle, points), nullptr, 0);
        m_prepared = GEOSPrepare_r(m_handle, m_polygon);
    }
    ~Geos() {
        GEOSPreparedGeom_destroy_r(m_handle, m_prepared);
        GEOSGeom_destroy_r(m_handle, m_polygon);
        GEOS_finish_r(m_handle);
    }
    Geos(const Geos&) = delete;
    Geos& operator=(const Geos&) = delete;

    bool Clip(const Segment& s) const {
        GEOSCoordSequence* points = GEOSCoordSeq_create_r(m_handle, 2, 2);
        GEOSCoordSeq_setXY_r(m_handle, points, 0, s.x1, s.y1);
        GEOSCoordSeq_setXY_r(m_handle, points, 1, s.x2, s.y2);
        GEOSGeometry* line = GEOSGeom_createLineString_r(m_handle, points);
        bool some = false;
        // The prepared form tells most segments without the overlay.
        if (GEOSPreparedContains_r(m_handle, m_prepared, line) == 1) {
            some = true;
        } else if (GEOSPreparedIntersects_r(m_handle, m_prepared, line) == 1) {
            GEOSGeometry* part = GEOSIntersection_r(m_handle, m_polygon, line);
            some = GEOSisEmpty_r(m_handle, part) == 0;
            GEOSGeom_destroy_r(m_handle, part);
        }
        GEOSGeom_destroy_r(m_handle, line);
        return some;
    }
    bool Contains(double x, double y) const {
        GEOSGeometry* point = GEOSGeom_createPointFromXY_r(m_handle, x, y);
        const bool inside = GEOSPreparedContains_r(m_handle, m_prepared, point) == 1;
        GEOSGeom_destroy_r(m_handle, point);
        return inside;
    }

 private:
    GEOSContextHandle_t m_handle;
    GEOSGeometry* m_polygon;
    const GEOSPreparedGeometry* m_prepared;
};

void BM_PolygonClipGeos(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    const Geos geos(Coast(static_cast<int>(run.range(0))));
    std::size_t at = 0;
    for (auto _ : run) benchmark::DoNotOptimize(geos.Clip(segments[at++ % segments.size()]));
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PolygonClipGeos)->Arg(10)->Arg(1000)->Arg(100000);

void BM_PointInPolygonGeos(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    const Geos geos(Coast(static_cast<int>(run.range(0))));
    std::size_t at = 0;
    for (auto _ : run) {
        const Segment& s = segments[at++ % segments.size()];
        benchmark::DoNotOptimize(geos.Contains(s.x1, s.y1));
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PointInPolygonGeos)->Arg(10)->Arg(1000)->Arg(100000);
#endif

#if defined(ZM_HAVE_CLIPPER)
ClipperLib::Path PathOf(const Ring& ring) {
    ClipperLib::Path path;
    for (std::size_t i = 0; i < ring.x.size(); ++i)
        path.emplace_back(std::llround(ring.x[i] * 1e6), std::llround(ring.y[i] * 1e6));
    return path;
}

void BM_PolygonClipClipper(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    const ClipperLib::Path ring = PathOf(Coast(static_cast<int>(run.range(0))));
    std::size_t at = 0;
    for (auto _ : run) {
        const Segment& s = segments[at++ % segments.size()];
        ClipperLib::Clipper clipper;
        clipper.AddPath({{std::llround(s.x1 * 1e6), std::llround(s.y1 * 1e6)},
                         {std::llround(s.x2 * 1e6), std::llround(s.y2 * 1e6)}},
                        ClipperLib::ptSubject, false);
        clipper.AddPath(ring, ClipperLib::ptClip, true);
        ClipperLib::PolyTree parts;
        clipper.Execute(ClipperLib::ctIntersection, parts);
        benchmark::DoNotOptimize(parts.Total());
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PolygonClipClipper)->Arg(10)->Arg(1000)->Arg(100000);

void BM_PointInPolygonClipper(benchmark::State& run) {
    const auto& segments = Segments(kShort);
    const ClipperLib::Path ring = PathOf(Coast(static_cast<int>(run.range(0))));
    std::size_t at = 0;
    for (auto _ : run) {
        const Segment& s = segments[at++ % segments.size()];
        benchmark::DoNotOptimize(
            ClipperLib::PointInPolygon({std::llround(s.x1 * 1e6), std::llround(s.y1 * 1e6)}, ring));
    }
    run.SetItemsProcessed(run.iterations());
}
BENCHMARK(BM_PointInPolygonClipper)->Arg(10)->Arg(1000)->Arg(100000);
#endif

}  // namespace

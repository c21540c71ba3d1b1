#include "tools/zenro/demo/demo_terrain.h"

#include <algorithm>

namespace zm::tool::demo {
namespace {

constexpr double kInterval = 1.0;  // metres between contours
constexpr double kGrid = 5.0;      // of the contouring
constexpr double kHillX2 = 232.0;  // contours are drawn west of it and south of the river
constexpr double kSimple = 9.0;    // least distance of the points of a contour

struct Segment {
    Pt a, b;
};

bool OnHill(Pt p) {
    return p.x < kHillX2 && p.y < RiverAt(p.x) - RiverHalfWidth(p.x) - 14.0;
}

// One level by marching squares; saddles are cut apart.
std::vector<Segment> SegmentsOf(double level) {
    std::vector<Segment> segments;
    const auto between = [&](Pt p, Pt q) {
        const double hp = HeightAt(p), hq = HeightAt(q), t = (level - hp) / (hq - hp);
        return Pt{p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)};
    };
    for (double x = -kGrid; x < kHillX2 + kGrid; x += kGrid)
        for (double y = -kGrid; y < 220.0; y += kGrid) {
            const Pt c[4] = {{x, y}, {x + kGrid, y}, {x + kGrid, y + kGrid}, {x, y + kGrid}};
            std::vector<Pt> cuts;
            for (int i = 0; i < 4; ++i)
                if ((HeightAt(c[i]) > level) != (HeightAt(c[(i + 1) % 4]) > level))
                    cuts.push_back(between(c[i], c[(i + 1) % 4]));
            for (std::size_t i = 0; i + 1 < cuts.size(); i += 2) segments.push_back({cuts[i], cuts[i + 1]});
        }
    return segments;
}

bool Same(Pt a, Pt b) {
    return std::fabs(a.x - b.x) < 1e-6 && std::fabs(a.y - b.y) < 1e-6;
}

// Segments joined end to end.
std::vector<Line> Joined(std::vector<Segment> segments) {
    std::vector<Line> lines;
    while (!segments.empty()) {
        Line line{segments.back().a, segments.back().b};
        segments.pop_back();
        for (bool grown = true; grown;) {
            grown = false;
            for (std::size_t i = 0; i < segments.size() && !grown; ++i) {
                const Segment s = segments[i];
                if (Same(s.a, line.back()))
                    line.push_back(s.b);
                else if (Same(s.b, line.back()))
                    line.push_back(s.a);
                else if (Same(s.a, line.front()))
                    line.insert(line.begin(), s.b);
                else if (Same(s.b, line.front()))
                    line.insert(line.begin(), s.a);
                else
                    continue;
                segments.erase(segments.begin() + static_cast<std::ptrdiff_t>(i));
                grown = true;
            }
        }
        lines.push_back(line);
    }
    return lines;
}

Line Simplified(const Line& line) {
    Line simple{line.front()};
    for (const Pt& p : line)
        if (std::hypot(p.x - simple.back().x, p.y - simple.back().y) >= kSimple) simple.push_back(p);
    // A short last step would bend the smooth curve.
    if (simple.size() > 2 && std::hypot(line.back().x - simple.back().x, line.back().y - simple.back().y) < kSimple)
        simple.pop_back();
    simple.push_back(line.back());
    return simple;
}

// The stretches of a line that lie on the hill.
std::vector<Line> HillParts(const Line& line) {
    std::vector<Line> parts(1);
    for (const Pt& p : line) {
        if (OnHill(p))
            parts.back().push_back(p);
        else if (!parts.back().empty())
            parts.emplace_back();
    }
    return parts;
}

void AddContours(Canvas& canvas) {
    for (int i = 8; i <= 46; ++i) {
        const double level = i * kInterval;
        const bool index = i % 5 == 0;
        for (const Line& whole : Joined(SegmentsOf(level + 1e-7)))
            for (const Line& part : HillParts(whole)) {
                if (part.size() < 8) continue;
                canvas.Polyline("terrain", index ? "index_contour" : "contour", Simplified(part),
                                {{"height", Number(level, 0)}});
            }
    }
}

void AddSpotHeights(Canvas& canvas) {
    for (double x = 25.0; x < 500.0; x += 45.0)
        for (double y = 22.0; y < 500.0; y += 45.0) {
            const Pt p{x + canvas.Real(-12.0, 12.0), y + canvas.Real(-12.0, 12.0)};
            if (std::fabs(p.y - RiverAt(p.x)) < RiverHalfWidth(p.x) + 4.0 || !canvas.IsFree({p, {p.x + 1, p.y}}, 3.0))
                continue;
            canvas.Point("terrain", "spot_height", p, {{"height", Number(HeightAt(p), 2)}});
        }
    canvas.Point("terrain", "spot_height", {118.0, 42.0}, {{"height", Number(HeightAt({118.0, 42.0}), 2)}});
}

void AddHill(Canvas& canvas) {
    canvas.Point("control", "triangulation", {79.8, 31.0},
                 {{"name", Quoted("凤凰山")}, {"height", Number(HeightAt({79.8, 31.0}), 2)}});
    canvas.Area("vegetation", "conifer_wood", {{22, 8}, {62, 12}, {70, 40}, {60, 74}, {26, 82}, {12, 44}},
                {{"name", Quoted("松")}});
    canvas.Area("vegetation", "broadleaf_wood", {{104, 50}, {138, 44}, {162, 66}, {146, 100}, {112, 104}, {96, 80}},
                {{"name", Quoted("樟")}});
    canvas.Area("vegetation", "tea", {{112, 6}, {158, 6}, {176, 28}, {150, 38}, {118, 34}}, {{"name", Quoted("茶")}});
    canvas.Area("vegetation", "bamboo", {{178, 60}, {206, 64}, {208, 92}, {184, 98}}, {});
    canvas.Polyline("terrain", "slope_crest", {{156, 14}, {164, 18}, {172, 25}, {177, 33}}, {{"slope", "1"}});
    canvas.Polyline("terrain", "slope_foot", {{159, 6}, {168, 11}, {180, 20}, {187, 31}}, {{"slope", "1"}});
    canvas.Polyline("terrain", "slope", {{196, 60}, {206, 66}, {212, 74}}, {});
    canvas.Polyline("terrain", "scarp", {{24, 106}, {42, 112}, {62, 112}, {84, 106}, {96, 110}}, {{"drop", "1.6"}});
    canvas.Polyline("terrain", "reinforced_scarp", {{196, 8}, {202, 24}, {200, 42}}, {{"drop", "2.4"}});
    canvas.Polyline("terrain", "cliff", {{62, 92}, {72, 86}, {84, 88}, {92, 84}}, {{"drop", "4.2"}});
    canvas.Polyline("terrain", "ticked_scarp", {{206, 104}, {218, 100}, {228, 106}}, {});
    canvas.Polyline("traffic", "path",
                    {{245.9, 36},
                     {222, 40},
                     {208, 50},
                     {196, 48},
                     {182, 52},
                     {170, 48},
                     {150, 42},
                     {132, 40},
                     {121, 42},
                     {113.5, 43.4}},
                    {});
    canvas.Polyline("traffic", "path", {{104.6, 38.5}, {100, 38}, {96, 39}}, {});
    canvas.Area("structures", "steps", {{106, 37}, {114, 41.5}, {112, 45}, {104, 40.5}}, {});
    canvas.Point("buildings", "pavilion", {94.0, 40.0}, {});
    canvas.Point("buildings", "pagoda", {64.0, 27.0}, {{"name", Quoted("凤凰塔")}});
    canvas.Point("terrain", "rock", {52.0, 96.0}, {});
    canvas.Point("terrain", "cave", {76.0, 90.5}, {});
    canvas.Point("terrain", "grave", {142.0, 112.0}, {});
    canvas.Point("terrain", "grave", {148.0, 113.0}, {});
    canvas.Point("terrain", "grave", {145.0, 118.0}, {});
    canvas.Point("water", "spring", {30.0, 122.0}, {});
    canvas.Point("vegetation", "conifer", {100.0, 26.0}, {});
    canvas.Point("vegetation", "bush", {168.0, 108.0}, {});
    canvas.Point("names", "hill", {88.0, 16.0}, {{"name", Quoted("凤凰山")}});
}

}  // namespace

double RiverAt(double x) {
    return 158.0 + 20.0 * std::sin(x / 95.0 + 0.4) + 6.0 * std::sin(x / 41.0);
}

double RiverHalfWidth(double x) {
    return 10.0 + 1.6 * std::sin(x / 57.0);
}

Line RiverLine(double beside, double from, double to, double step) {
    Line middle;
    for (double x = from; x <= to + 1e-9; x += step)
        middle.push_back({x, RiverAt(x) + (beside > 0 ? 1 : beside < 0 ? -1 : 0) * RiverHalfWidth(x)});
    return beside == 0.0 ? middle : Beside(middle, beside > 0 ? beside - 1.0 : beside + 1.0);
}

double HeightAt(Pt p) {
    const auto hill = [&](double cx, double cy, double sx, double sy, double h) {
        return h * std::exp(-((p.x - cx) * (p.x - cx) / (2 * sx * sx) + (p.y - cy) * (p.y - cy) / (2 * sy * sy)));
    };
    return 6.1 + 0.5 * std::sin(p.x / 130.0) + 0.4 * std::cos(p.y / 90.0) + hill(85, 31, 52, 40, 34) +
           hill(168, 70, 26, 22, 9) + hill(30, 76, 24, 20, 5) + 0.8 * std::sin(p.x / 23.0) * hill(85, 40, 60, 45, 1);
}

void AddTerrain(Canvas& canvas) {
    AddContours(canvas);
    AddHill(canvas);
    AddSpotHeights(canvas);
}

}  // namespace zm::tool::demo

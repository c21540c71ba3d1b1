#include "tools/zenro/relief/terrain.h"

#include <ogr_geometry.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "tools/kit/exit_codes.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr int kMostRounds = 40;       // of halving break lines
constexpr double kLeastPiece = 1e-3;  // metres of a break line that are not halved further
constexpr int kIndexEvery = 5;

using Place = std::pair<double, double>;
using Edge = std::pair<int, int>;

Edge EdgeOf(int a, int b) {
    return a < b ? Edge{a, b} : Edge{b, a};
}

// Points without two at one place.
class PointSet {
 public:
    explicit PointSet(Terrain& terrain) : m_terrain(terrain) {}
    int Add(const TerrainPoint& p, bool count) {
        const auto [found, fresh] = m_known.emplace(Place{p.x, p.y}, static_cast<int>(m_terrain.points.size()));
        if (fresh)
            m_terrain.points.push_back(p);
        else if (count)
            ++m_terrain.duplicates;
        return found->second;
    }
    int Find(double x, double y) const {
        const auto found = m_known.find(Place{x, y});
        return found != m_known.end() ? found->second : -1;
    }

 private:
    Terrain& m_terrain;
    std::map<Place, int> m_known;
};

void MakeTriangles(Terrain& terrain, const PointSet& set) {
    OGRMultiPoint all;
    for (const TerrainPoint& p : terrain.points) {
        const OGRPoint point(p.x, p.y);
        all.addGeometry(&point);
    }
    const std::unique_ptr<OGRGeometry> made(all.DelaunayTriangulation(0.0, FALSE));
    terrain.triangles.clear();
    if (made == nullptr || !OGR_GT_IsSubClassOf(made->getGeometryType(), wkbGeometryCollection)) return;
    for (const OGRGeometry* part : *made->toGeometryCollection()) {
        const OGRLinearRing* ring = part->toPolygon()->getExteriorRing();
        if (ring == nullptr || ring->getNumPoints() != 4) continue;
        std::array<int, 3> corners{};
        for (int i = 0; i < 3; ++i) corners[static_cast<std::size_t>(i)] = set.Find(ring->getX(i), ring->getY(i));
        if (*std::min_element(corners.begin(), corners.end()) >= 0) terrain.triangles.push_back(corners);
    }
}

std::set<Edge> EdgesOf(const Terrain& terrain) {
    std::set<Edge> edges;
    for (const auto& t : terrain.triangles)
        for (std::size_t i = 0; i < 3; ++i) edges.insert(EdgeOf(t[i], t[(i + 1) % 3]));
    return edges;
}

// Halves the pieces that are no edges. False where all of them are.
bool Halve(Terrain& terrain, PointSet& set, std::vector<Edge>& pieces) {
    const std::set<Edge> edges = EdgesOf(terrain);
    std::vector<Edge> next;
    bool halved = false;
    for (const Edge& piece : pieces) {
        if (piece.first == piece.second || edges.count(EdgeOf(piece.first, piece.second)) != 0) {
            next.push_back(piece);
            continue;
        }
        const TerrainPoint a = terrain.points[static_cast<std::size_t>(piece.first)],
                           b = terrain.points[static_cast<std::size_t>(piece.second)];
        if (std::hypot(b.x - a.x, b.y - a.y) < kLeastPiece)
            throw Failure(kFailed, Phrase("the break line at {0},{1} cannot be kept; do two of them cross there?",
                                          Fixed(a.x, 3), Fixed(a.y, 3)));
        const std::size_t before = terrain.points.size();
        const int middle = set.Add({(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2}, false);
        terrain.added += static_cast<long>(terrain.points.size() - before);
        next.push_back({piece.first, middle});
        next.push_back({middle, piece.second});
        halved = true;
    }
    pieces = std::move(next);
    return halved;
}

// The end of a contour's step: where it crosses an edge.
struct Step {
    Edge from, to;
};

// The steps of a level through all triangles; a corner at the level counts as above it.
std::vector<Step> StepsOf(const Terrain& terrain, double level) {
    std::vector<Step> steps;
    for (const auto& t : terrain.triangles) {
        std::array<bool, 3> above{};
        for (std::size_t i = 0; i < 3; ++i) above[i] = terrain.points[static_cast<std::size_t>(t[i])].z >= level;
        if (above[0] == above[1] && above[1] == above[2]) continue;
        std::size_t lone = 0;
        while (above[(lone + 1) % 3] != above[(lone + 2) % 3]) ++lone;
        const TerrainPoint &a = terrain.points[static_cast<std::size_t>(t[0])],
                           &b = terrain.points[static_cast<std::size_t>(t[1])],
                           &c = terrain.points[static_cast<std::size_t>(t[2])];
        const bool left = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 0.0;  // corners counter-clockwise
        Edge from = EdgeOf(t[lone], t[(lone + 1) % 3]), to = EdgeOf(t[lone], t[(lone + 2) % 3]);
        // From the first to the second the lone corner of a counter-clockwise triangle lies to the left.
        if (left == above[lone]) std::swap(from, to);
        steps.push_back({from, to});
    }
    return steps;
}

void AddCrossing(const Terrain& terrain, const Edge& edge, double level, ContourLine& line) {
    const TerrainPoint &a = terrain.points[static_cast<std::size_t>(edge.first)],
                       &b = terrain.points[static_cast<std::size_t>(edge.second)];
    const double t = (level - a.z) / (b.z - a.z), x = a.x + t * (b.x - a.x), y = a.y + t * (b.y - a.y);
    if (!line.x.empty() && line.x.back() == x && line.y.back() == y) return;  // through a corner
    line.x.push_back(x);
    line.y.push_back(y);
}

// Each edge is left by one step at most, so a line is followed from one to the next.
void Join(const Terrain& terrain, const std::vector<Step>& steps, double level, bool index,
          std::vector<ContourLine>& lines) {
    std::map<Edge, std::size_t> leaving;
    std::set<Edge> reached;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        leaving[steps[i].from] = i;
        reached.insert(steps[i].to);
    }
    std::vector<bool> used(steps.size(), false);
    const auto follow = [&](std::size_t first) {
        ContourLine line{level, index, {}, {}};
        AddCrossing(terrain, steps[first].from, level, line);
        for (std::size_t at = first; !used[at];) {
            used[at] = true;
            AddCrossing(terrain, steps[at].to, level, line);
            const auto next = leaving.find(steps[at].to);
            if (next == leaving.end()) break;
            at = next->second;
        }
        if (line.x.size() > 1) lines.push_back(std::move(line));
    };
    for (std::size_t i = 0; i < steps.size(); ++i)  // those that begin at the rim
        if (reached.count(steps[i].from) == 0) follow(i);
    for (std::size_t i = 0; i < steps.size(); ++i)
        if (!used[i]) follow(i);
}

}  // namespace

Terrain Triangulate(const std::vector<TerrainPoint>& points, const std::vector<BreakLine>& breakLines) {
    Terrain terrain;
    PointSet set(terrain);
    std::vector<Edge> pieces;
    for (const BreakLine& line : breakLines)
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
            pieces.push_back({set.Add(line[i], false), set.Add(line[i + 1], false)});
    for (const TerrainPoint& p : points) set.Add(p, true);
    MakeTriangles(terrain, set);
    if (terrain.triangles.empty())
        throw Failure(kFailed, Phrase("contours need three points of known height that are not in one line."));
    for (int round = 0; !pieces.empty() && Halve(terrain, set, pieces); ++round) {
        if (round >= kMostRounds)
            throw Failure(kFailed, Phrase("the break lines cannot be kept; do some of them cross?"));
        MakeTriangles(terrain, set);
    }
    return terrain;
}

std::vector<ContourLine> ContoursOf(const Terrain& terrain, double interval) {
    std::vector<ContourLine> lines;
    const auto [low, high] = std::minmax_element(terrain.points.begin(), terrain.points.end(),
                                                 [](const auto& a, const auto& b) { return a.z < b.z; });
    constexpr double kMostLevels = 100000.0;
    if (low == terrain.points.end() || (high->z - low->z) / interval > kMostLevels)
        throw Failure(kUsage, Phrase("--interval gives more than 100000 contours; take a larger one."));
    for (double k = std::ceil(low->z / interval); k * interval <= high->z; ++k)
        Join(terrain, StepsOf(terrain, k * interval), k * interval, std::fmod(k, kIndexEvery) == 0.0, lines);
    return lines;
}

}  // namespace zm::tool

#include "tools/zenro/map/sea.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "tools/zenro/map/shapes.h"

namespace zm::tool {
namespace {

constexpr double kSame = 0.01;  // metres: ends that are nearer meet

// A stretch of the shore line on the sheet. An end on the sheet's edge has a place along it, clockwise from the upper
// left corner; another has none.
struct Stretch {
    Chain chain;
    std::optional<double> from, to;
    bool used = false;
};

using Key = std::pair<long long, long long>;
Key KeyOf(double x, double y) {
    return {std::llround(x / kSame), std::llround(y / kSame)};
}

bool IsRing(const Chain& chain) {
    return chain.size() > 3 && KeyOf(chain.x.front(), chain.y.front()) == KeyOf(chain.x.back(), chain.y.back());
}

// The edge of a sheet, clockwise, so that what lies on the right of a course along it is the sheet.
class Edge {
 public:
    Edge(const Box& sheet, double tolerance) : m_sheet(sheet), m_tolerance(tolerance) {}

    double Round() const { return 2.0 * (Width() + Height()); }
    std::optional<double> PlaceOf(double x, double y) const {
        if (m_sheet.y2 - y <= m_tolerance) return x - m_sheet.x1;
        if (m_sheet.x2 - x <= m_tolerance) return Width() + m_sheet.y2 - y;
        if (y - m_sheet.y1 <= m_tolerance) return Width() + Height() + m_sheet.x2 - x;
        if (x - m_sheet.x1 <= m_tolerance) return 2.0 * Width() + Height() + y - m_sheet.y1;
        return std::nullopt;
    }
    // How far it is from one place to another.
    double Way(double from, double to) const {
        const double way = std::fmod(to - from, Round());
        return way < 0.0 ? way + Round() : way;
    }
    // Adds the corners between two places.
    void AddCorners(double from, double to, Chain& ring) const {
        const double places[] = {Width(), Width() + Height(), 2.0 * Width() + Height(), Round()};
        const double x[] = {m_sheet.x2, m_sheet.x2, m_sheet.x1, m_sheet.x1},
                     y[] = {m_sheet.y2, m_sheet.y1, m_sheet.y1, m_sheet.y2};
        const double way = Way(from, to);
        std::vector<std::pair<double, int>> between;
        for (int i = 0; i < 4; ++i)
            if (const double there = Way(from, places[i]); there > 0.0 && there < way) between.emplace_back(there, i);
        std::sort(between.begin(), between.end());
        for (const auto& [there, i] : between) {
            ring.x.push_back(x[i]);
            ring.y.push_back(y[i]);
        }
    }
    Chain Whole() const {
        return {{m_sheet.x1, m_sheet.x2, m_sheet.x2, m_sheet.x1, m_sheet.x1},
                {m_sheet.y2, m_sheet.y2, m_sheet.y1, m_sheet.y1, m_sheet.y2}};
    }
    // The part of a segment that lies on the sheet; false if none does.
    bool Clip(double x, double y, double dx, double dy, double& t0, double& t1) const {
        t0 = 0.0;
        t1 = 1.0;
        const double p[] = {-dx, dx, -dy, dy}, q[] = {x - m_sheet.x1, m_sheet.x2 - x, y - m_sheet.y1, m_sheet.y2 - y};
        for (int i = 0; i < 4; ++i) {
            if (p[i] == 0.0 && q[i] < 0.0) return false;
            if (p[i] < 0.0) t0 = std::max(t0, q[i] / p[i]);
            if (p[i] > 0.0) t1 = std::min(t1, q[i] / p[i]);
        }
        return t0 < t1;
    }

 private:
    double Width() const { return m_sheet.x2 - m_sheet.x1; }
    double Height() const { return m_sheet.y2 - m_sheet.y1; }
    Box m_sheet;
    double m_tolerance;
};

// The stretches of a line on the sheet. Its own ends, unless they lie on the edge, are left to be joined.
void AddStretches(const Chain& line, const Edge& edge, std::vector<Stretch>& stretches) {
    Chain chain;
    const auto end = [&] {
        if (chain.size() > 1) {
            Stretch s{std::move(chain), std::nullopt, std::nullopt};
            s.from = edge.PlaceOf(s.chain.x.front(), s.chain.y.front());
            s.to = edge.PlaceOf(s.chain.x.back(), s.chain.y.back());
            stretches.push_back(std::move(s));
        }
        chain = {};
    };
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double x = line.x[i], y = line.y[i], dx = line.x[i + 1] - x, dy = line.y[i + 1] - y;
        double t0, t1;
        if (!edge.Clip(x, y, dx, dy, t0, t1)) {
            end();
            continue;
        }
        if (t0 > 0.0) end();
        if (chain.size() == 0) chain = {{x + t0 * dx}, {y + t0 * dy}};
        chain.x.push_back(t1 < 1.0 ? x + t1 * dx : line.x[i + 1]);
        chain.y.push_back(t1 < 1.0 ? y + t1 * dy : line.y[i + 1]);
        if (t1 < 1.0) end();
    }
    end();
}

// Stretches whose ends meet on the sheet become one; \return where an end meets none.
std::optional<Sea::Place> Join(std::vector<Stretch>& stretches) {
    std::multimap<Key, std::size_t> begins;
    for (std::size_t i = 0; i < stretches.size(); ++i)
        if (!stretches[i].from) begins.emplace(KeyOf(stretches[i].chain.x[0], stretches[i].chain.y[0]), i);
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        Stretch& s = stretches[i];
        if (s.used) continue;
        while (!s.to && !IsRing(s.chain)) {
            const auto next = begins.find(KeyOf(s.chain.x.back(), s.chain.y.back()));
            if (next == begins.end() || next->second == i) return Sea::Place{s.chain.x.back(), s.chain.y.back()};
            Stretch& other = stretches[next->second];
            begins.erase(next);
            other.used = true;
            s.chain.x.insert(s.chain.x.end(), other.chain.x.begin() + 1, other.chain.x.end());
            s.chain.y.insert(s.chain.y.end(), other.chain.y.begin() + 1, other.chain.y.end());
            s.to = other.to;
        }
    }
    std::erase_if(stretches, [](const Stretch& s) { return s.used; });
    for (const Stretch& s : stretches)
        if (!s.from && !IsRing(s.chain)) return Sea::Place{s.chain.x.front(), s.chain.y.front()};
    return std::nullopt;
}

// Water lies on the right of a shore, so along the edge of the sheet it goes clockwise to where the next shore begins.
// \return where a shore ends before one begins
std::optional<Sea::Place> CloseAlong(const Edge& edge, std::vector<Stretch>& stretches, std::vector<Shape>& water) {
    const auto placeOf = [](const Chain& chain) { return Sea::Place{chain.x.back(), chain.y.back()}; };
    for (Stretch& first : stretches) {
        if (first.used || !first.from) continue;
        Chain ring;
        for (Stretch* at = &first; !at->used;) {
            at->used = true;
            ring.x.insert(ring.x.end(), at->chain.x.begin(), at->chain.x.end());
            ring.y.insert(ring.y.end(), at->chain.y.begin(), at->chain.y.end());
            Stretch* next = nullptr;
            double least = edge.Round(), end = edge.Round();
            for (Stretch& other : stretches) {
                if (!other.from) continue;
                if (const double way = edge.Way(*at->to, *other.from); way < least) {
                    least = way;
                    next = &other;
                }
                if (const double way = edge.Way(*at->to, *other.to); &other != at && way > 0.0)
                    end = std::min(end, way);
            }
            if (next == nullptr || end < least || (next->used && next != &first)) return placeOf(at->chain);
            edge.AddCorners(*at->to, *next->from, ring);
            at = next;
        }
        ring.x.push_back(ring.x.front());
        ring.y.push_back(ring.y.front());
        water.push_back({GeometryKind::area, {std::move(ring)}});
    }
    return std::nullopt;
}

}  // namespace

void Sea::Build(const Box& sheet, double tolerance) {
    if (m_shores.empty()) return;
    const Edge edge(sheet, tolerance);
    std::vector<Stretch> stretches;
    for (const Chain& shore : m_shores) AddStretches(shore, edge, stretches);
    std::vector<Shape> water;
    m_fault = Join(stretches);
    if (!m_fault) m_fault = CloseAlong(edge, stretches, water);
    if (m_fault) return;
    std::vector<Chain> islands;
    for (Stretch& s : stretches) {
        if (s.from) continue;
        if (TurnOf(s.chain) > 0.0)  // land lies inside
            islands.push_back(std::move(s.chain));
        else
            water.push_back({GeometryKind::area, {std::move(s.chain)}});
    }
    // The least water that an island lies in.
    const auto waterAbout = [&](const Chain& island) {
        Shape* about = nullptr;
        for (Shape& area : water) {
            if (!Inside(area.chains[0], island.x[0], island.y[0])) continue;
            if (about == nullptr || -TurnOf(area.chains[0]) < -TurnOf(about->chains[0])) about = &area;
        }
        return about;
    };
    const auto onAnIsland = [&](const Shape& area) {
        return std::any_of(islands.begin(), islands.end(), [&](const Chain& island) {
            return Inside(island, area.chains[0].x[0], area.chains[0].y[0]);
        });
    };
    const auto adrift = std::find_if(islands.begin(), islands.end(),
                                     [&](const Chain& island) { return waterAbout(island) == nullptr; });
    if (adrift != islands.end()) {
        // Where no shore leaves the sheet, and no water but that on islands is there, water fills it.
        const bool shoreless =
            std::none_of(stretches.begin(), stretches.end(), [](const Stretch& s) { return s.from.has_value(); });
        if (!shoreless || !std::all_of(water.begin(), water.end(), onAnIsland)) {
            m_fault = Place{adrift->x[0], adrift->y[0]};
            return;
        }
        water.push_back({GeometryKind::area, {edge.Whole()}});
    }
    for (Chain& island : islands) waterAbout(island)->chains.push_back(std::move(island));
    m_areas = std::move(water);
}

}  // namespace zm::tool
